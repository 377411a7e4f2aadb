// A made-up landscape as an airborne scanner would see it: terrain, buildings, trees.
#pragma once

#include <cstdint>

namespace tools {

/** One scanned point, metres in a local system: x east, y north, z up. Colours 0 to 255. */
struct ScanPoint {
  double x, y, z;
  std::uint8_t r, g, b;
  std::uint8_t classification; ///< 2 ground, 5 high vegetation, 6 building, 9 water
  std::uint16_t intensity;
};

/** Yields points line by line from south to north; the same seed and count give the same cloud. */
class CloudScene {
public:
  CloudScene(std::uint64_t seed, long long count, double extent);
  ScanPoint Point(long long index);

private:
  double Random();
  double Terrain(double x, double y) const;
  bool Building(double x, double y, ScanPoint* point) const;
  bool Tree(double x, double y, ScanPoint* point);

  std::uint64_t seed_, state_;
  long long count_, columns_;
  double extent_;
};

} // namespace tools
