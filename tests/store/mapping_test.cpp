#include "cloud/point_header.h"
#include "support/common.h"

namespace kelvra {
namespace {

PointHeader Header(const LVector& low, const LVector& high, UWORD key = 1) {
  PointHeader header;
  header.SetBounds(low, high);
  header.key = key;
  return header;
}

/** Bounds in file axes; the stored point and where it is shown in the host's. */
struct MappingCase {
  const char* what;
  LVector low, high;
  LReal size;
  SReal stored[3];
  Vector shown;
};

const MappingCase kCases[] = {
    {"lowest corner", {1000, 2000, 30}, {1400, 2100, 70}, 200, {1000, 30, 2000}, {-100, 0, -25}},
    {"highest corner", {1000, 2000, 30}, {1400, 2100, 70}, 200, {1400, 70, 2100}, {100, 20, 25}},
    {"outside the bounds", {0, 0, 0}, {10, 10, 10}, 10, {20, -5, -10}, {15, -5, -15}},
    {"no x width: fitted by y", {5, 0, 0}, {5, 50, 10}, 100, {5, 10, 50}, {0, 20, 50}},
    {"no x and y width: fitted by z", {5, 7, 0}, {5, 7, 10}, 100, {5, 10, 7}, {0, 100, 0}},
    {"one point: scale 1, in the middle", {5, 7, 9}, {5, 7, 9}, 100, {5, 9, 7}, {0, 0, 0}},
    {"size 0", {0, 0, 0}, {10, 10, 10}, 0, {3, 4, 5}, {0, 0, 0}},
};

TEST(Mapping, FitsTheSourceIntoTheDisplay) {
  for (const MappingCase& c : kCases) {
    const Vector p = PointMapping(Header(c.low, c.high), c.size).Map(c.stored);
    EXPECT_EQ(PointMapping(Header(c.low, c.high, 0), c.size).Map(c.stored)[1], c.stored[1])
        << "no key: as it is";
    EXPECT_NEAR((p - c.shown).GetLength(), 0.0, 1e-9) << c.what << ": " << p.x << " " << p.y << " " << p.z;
  }
}

TEST(Mapping, IsFiniteWhateverTheHeaderHolds) {
  const LReal infinity = HUGE_VAL,
              extremes[] = {0.0, 1e-320, -1e308, 1e308, infinity, -infinity, std::nan("")};
  for (const LReal low : extremes)
    for (const LReal high : extremes)
      for (const LReal size : {0.0, 200.0, 1e308, infinity, std::nan("")}) {
        const PointHeader headers[] = {Header(LVector(low, 0, 0), LVector(high, 1, 1)),
                                       Header(LVector(0, low, 0), LVector(1, high, 1)),
                                       Header(LVector(0, 0, low), LVector(1, 1, high))};
        for (const PointHeader& header : headers) {
          EXPECT_TRUE(std::isfinite(FitScale(header, size))) << low << " " << high << " " << size;
          for (const SReal v : {0.0f, 3.4e38f, -3.4e38f}) {
            const SReal stored[3] = {v, v, v};
            const Vector p = PointMapping(header, size).Map(stored);
            EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z))
                << v << " in " << low << " " << high << " at " << size;
          }
        }
      }
}

} // namespace
} // namespace kelvra
