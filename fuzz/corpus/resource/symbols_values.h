#define X 1
enum Named {
  A = 0x10,
  B,
  C = B,
  /* gap */ D = -3,
  E = +7,
};
