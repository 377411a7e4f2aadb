// Scalar types, enumeration helpers and small value helpers of the release-14 interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

typedef int Bool;
typedef char CHAR;
typedef unsigned char UCHAR;
typedef std::int16_t SWORD;
typedef std::uint16_t UWORD;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef std::int64_t LLONG;
typedef std::uint64_t LULONG;
typedef std::ptrdiff_t VLONG;
typedef std::size_t VULONG;
typedef int INT;
typedef unsigned int UINT;
typedef float SReal;
typedef double LReal;
typedef double Real;
typedef UCHAR PIX;
typedef void* Hndl;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

#define NOTOK (-1)
#define MAXLONGl 0x7fffffff
#define MINLONGl (-0x7fffffff)
#define MAXULONG 0xffffffffU
#define MAXSWORD 32767
#define MAXUWORD 65535
#define MAXREALs 9.0e18f
#define MAXREALr 1.0e308
#define MAXREALl 1.0e308
#define MINREALs (-9.0e18f)
#define MINREALr (-1.0e308)
#define MINREALl (-1.0e308)

#define SCO (SReal)
#define RCO (Real)
#define LCO (LReal)

const Real pi = 3.14159265358979323846;
const Real pi2 = 2.0 * pi;
const Real pi05 = 0.5 * pi;

inline Real Rad(Real degrees) {
  return degrees * pi / 180.0;
}
inline Real Deg(Real radians) {
  return radians * 180.0 / pi;
}

#define API_VERSION 14000

/** Four characters as one number, first character in the high byte. */
#define C4D_FOUR_BYTE(a, b, c, d)                                                                            \
  ((LONG)(((ULONG)(UCHAR)(a) << 24) | ((ULONG)(UCHAR)(b) << 16) | ((ULONG)(UCHAR)(c) << 8) |                 \
          (ULONG)(UCHAR)(d)))

/** Closes a flag enumeration: its values combine with | & ^ ~. */
#define ENUM_END_FLAGS(E)                                                                                    \
  inline E operator|(E a, E b) {                                                                             \
    return (E)((ULONG)a | (ULONG)b);                                                                         \
  }                                                                                                          \
  inline E operator&(E a, E b) {                                                                             \
    return (E)((ULONG)a & (ULONG)b);                                                                         \
  }                                                                                                          \
  inline E operator^(E a, E b) {                                                                             \
    return (E)((ULONG)a ^ (ULONG)b);                                                                         \
  }                                                                                                          \
  inline E operator~(E a) {                                                                                  \
    return (E)(~(ULONG)a);                                                                                   \
  }                                                                                                          \
  inline E& operator|=(E& a, E b) {                                                                          \
    return a = a | b;                                                                                        \
  }                                                                                                          \
  inline E& operator&=(E& a, E b) {                                                                          \
    return a = a & b;                                                                                        \
  }

/** Closes a value enumeration: combining its values, or comparing one with a number, does not compile. */
#define ENUM_END_LIST(E)                                                                                     \
  void operator|(E, E) = delete;                                                                             \
  void operator&(E, E) = delete;                                                                             \
  void operator+(E, LONG) = delete;                                                                          \
  bool operator==(E, LONG) = delete;                                                                         \
  bool operator!=(E, LONG) = delete;

/** Tag for constructors that leave their members as they are. */
enum _DONTCONSTRUCT { DC };

#define INSTANCEOF(X, Y)                                                                                     \
private:                                                                                                     \
  typedef Y SUPER;                                                                                           \
                                                                                                             \
public:

template <class T>
inline T FCut(T a, T lo, T hi) {
  return a < lo ? lo : (a > hi ? hi : a);
}
inline Real FCut01(Real a) {
  return FCut(a, 0.0, 1.0);
}
inline LONG LMin(LONG a, LONG b) {
  return a < b ? a : b;
}
inline LONG LMax(LONG a, LONG b) {
  return a > b ? a : b;
}
inline LONG LCut(LONG a, LONG lo, LONG hi) {
  return FCut(a, lo, hi);
}
