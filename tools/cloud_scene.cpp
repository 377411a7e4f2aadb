#include "tools/cloud_scene.h"

#include <algorithm>
#include <cmath>

namespace tools {

namespace {

/** Mixes a cell and a salt into 64 bits (the finaliser of SplitMix64). */
std::uint64_t Hash(std::int64_t x, std::int64_t y, std::uint64_t salt) {
  std::uint64_t h =
      (std::uint64_t)x * 0x9E3779B97F4A7C15ull + (std::uint64_t)y * 0xC2B2AE3D27D4EB4Full + salt;
  h = (h ^ (h >> 30)) * 0xBF58476D1CE4E5B9ull;
  h = (h ^ (h >> 27)) * 0x94D049BB133111EBull;
  return h ^ (h >> 31);
}

double Unit(std::uint64_t h) {
  return (double)(h >> 11) / 9007199254740992.0;
}

/** Value noise with smooth interpolation between lattice points, 0 to 1. */
double Noise(double x, double y, std::uint64_t salt) {
  const double fx = std::floor(x), fy = std::floor(y);
  const std::int64_t ix = (std::int64_t)fx, iy = (std::int64_t)fy;
  const double u = x - fx, v = y - fy;
  const double su = u * u * (3 - 2 * u), sv = v * v * (3 - 2 * v);
  const double south = Unit(Hash(ix, iy, salt)) * (1 - su) + Unit(Hash(ix + 1, iy, salt)) * su;
  const double north = Unit(Hash(ix, iy + 1, salt)) * (1 - su) + Unit(Hash(ix + 1, iy + 1, salt)) * su;
  return south * (1 - sv) + north * sv;
}

std::uint8_t Shade(double value) {
  return (std::uint8_t)std::clamp(value, 0.0, 255.0);
}

void Paint(ScanPoint* point, double r, double g, double b, int classification) {
  point->r = Shade(r);
  point->g = Shade(g);
  point->b = Shade(b);
  point->classification = (std::uint8_t)classification;
}

constexpr double kBuildingCell = 60.0, kTreeCell = 14.0, kWaterLevel = 14.0;

} // namespace

CloudScene::CloudScene(std::uint64_t seed, long long count, double extent)
    : seed_(seed), state_(Hash(1, 2, seed)), count_(std::max(1LL, count)), extent_(extent) {
  columns_ = std::max(1LL, (long long)std::ceil(std::sqrt((double)count_)));
}

double CloudScene::Random() {
  state_ += 0x9E3779B97F4A7C15ull;
  return Unit(Hash((std::int64_t)state_, 0, 7));
}

double CloudScene::Terrain(double x, double y) const {
  double height = 0, size = 240, share = 48;
  for (int octave = 0; octave < 5; ++octave, size *= 0.5, share *= 0.45)
    height += share * Noise(x / size, y / size, seed_ + (std::uint64_t)octave);
  return height;
}

bool CloudScene::Building(double x, double y, ScanPoint* point) const {
  const std::int64_t cx = (std::int64_t)std::floor(x / kBuildingCell),
                     cy = (std::int64_t)std::floor(y / kBuildingCell);
  const std::uint64_t h = Hash(cx, cy, seed_ + 100);
  if (Unit(h) > 0.3) return false;
  const double centreX = (cx + 0.5) * kBuildingCell, centreY = (cy + 0.5) * kBuildingCell;
  const double halfX = 7 + 12 * Unit(Hash(cx, cy, seed_ + 101)),
               halfY = 7 + 9 * Unit(Hash(cx, cy, seed_ + 102));
  const double ground = Terrain(centreX, centreY);
  if (std::abs(x - centreX) > halfX || std::abs(y - centreY) > halfY || ground < kWaterLevel) return false;
  // A gable roof along x.
  const double wall = 5 + 9 * Unit(Hash(cx, cy, seed_ + 103));
  point->z = ground + wall + 4.0 * (1.0 - std::abs(y - centreY) / halfY);
  const double light = y > centreY ? 0.75 : 1.0;
  Paint(point, 176 * light, 82 * light, 62 * light, 6);
  return true;
}

bool CloudScene::Tree(double x, double y, ScanPoint* point) {
  const std::int64_t cx = (std::int64_t)std::floor(x / kTreeCell),
                     cy = (std::int64_t)std::floor(y / kTreeCell);
  // Trees stand where the wood noise is high.
  if (Noise(x / 110, y / 110, seed_ + 200) < 0.5 || Unit(Hash(cx, cy, seed_ + 201)) > 0.8) return false;
  const double centreX = (cx + 0.3 + 0.4 * Unit(Hash(cx, cy, seed_ + 202))) * kTreeCell;
  const double centreY = (cy + 0.3 + 0.4 * Unit(Hash(cx, cy, seed_ + 203))) * kTreeCell;
  const double radius = 3 + 3 * Unit(Hash(cx, cy, seed_ + 204)),
               height = 9 + 14 * Unit(Hash(cx, cy, seed_ + 205));
  const double distance = std::hypot(x - centreX, y - centreY);
  const double ground = Terrain(centreX, centreY);
  if (distance > radius || ground < kWaterLevel) return false;
  // Part of the pulses passes through the crown.
  if (Random() < 0.2) return false;
  point->z = ground + height * (1.0 - 0.75 * distance / radius) * (0.85 + 0.15 * Random());
  const double tint = 0.7 + 0.6 * Random();
  Paint(point, 46 * tint, 104 * tint, 38 * tint, 5);
  return true;
}

ScanPoint CloudScene::Point(long long index) {
  ScanPoint point = {};
  const double step = extent_ / (double)columns_;
  point.x = ((double)(index % columns_) + Random()) * step;
  point.y = ((double)(index / columns_) + Random()) * step;
  if (!Building(point.x, point.y, &point) && !Tree(point.x, point.y, &point)) {
    const double ground = Terrain(point.x, point.y);
    if (ground < kWaterLevel) {
      point.z = kWaterLevel + 0.05 * Random();
      Paint(&point, 52, 92, 132, 9);
    } else {
      point.z = ground + 0.08 * Random();
      const double dry = Noise(point.x / 35, point.y / 35, seed_ + 300);
      Paint(&point, 96 + 90 * dry, 128 + 26 * dry, 70 + 30 * dry, 2);
    }
  }
  point.intensity = (std::uint16_t)(40 + (point.r + point.g + point.b) / 4 + 20 * Random());
  return point;
}

} // namespace tools
