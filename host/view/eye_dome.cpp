#include "host/view/eye_dome.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {

namespace {

constexpr float kNothing = std::numeric_limits<float>::infinity();
constexpr int kNeighbours = 8;
/** Darkening for each doubling of the distance: neighbours in a cloud differ by a thousandth of that. */
constexpr double kResponse = 120.0;
/** Part of the light that is left in the deepest crease. */
constexpr double kLeast = 0.12;

/** Neighbour i of a pixel on a ring, rounded to whole pixels. */
void NeighbourAt(int i, double radius, int* dx, int* dy) {
  const double angle = i * 2.0 * 3.14159265358979323846 / kNeighbours;
  *dx = (int)std::lround(std::cos(angle) * radius);
  *dy = (int)std::lround(std::sin(angle) * radius);
}

std::uint8_t Byte(double value) {
  return (std::uint8_t)(std::clamp(value, 0.0, 1.0) * 255.0 + 0.5);
}

} // namespace

std::vector<float> EyeDistances(const ViewFrame& frame, const std::vector<float>& depth) {
  std::vector<float> distances(depth.size());
  const double nearest = frame.nearDistance, range = frame.farDistance - frame.nearDistance;
  for (std::size_t i = 0; i < depth.size(); ++i) {
    const double d = depth[i];
    // A parallel view has no viewer to be far from: one stands as far in front as the scene is deep.
    const double distance = frame.halfHeight > 0.0
                                ? range * (1.0 + d)
                                : nearest * frame.farDistance / (frame.farDistance - d * range);
    distances[i] = d < 1.0 ? (float)distance : kNothing;
  }
  return distances;
}

void ShadeByDepth(gl::Image* image, const std::vector<float>& distances, const EyeDome& settings) {
  std::vector<float> levels(distances.size());
  for (std::size_t i = 0; i < levels.size(); ++i)
    levels[i] = std::isfinite(distances[i]) ? std::log2(distances[i]) : kNothing;
  const int width = image->width, height = image->height;
  int dx[kNeighbours], dy[kNeighbours];
  for (int i = 0; i < kNeighbours; ++i) NeighbourAt(i, settings.radius, &dx[i], &dy[i]);

  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const float own = levels[(std::size_t)y * width + x];
      if (!std::isfinite(own)) continue;
      double nearer = 0.0;
      for (int i = 0; i < kNeighbours; ++i) {
        const int nx = x + dx[i], ny = y + dy[i];
        if (nx < 0 || ny < 0 || nx >= width || ny >= height) continue;
        const float other = levels[(std::size_t)ny * width + nx];
        if (other < own) nearer += own - other;
      }
      const double light =
          kLeast + (1.0 - kLeast) * std::exp(-kResponse * settings.strength * nearer / kNeighbours);
      std::uint8_t* pixel = image->At(x, y);
      for (int channel = 0; channel < 3; ++channel) pixel[channel] = Byte(pixel[channel] / 255.0 * light);
    }
}

void FillBackground(gl::Image* image, const std::vector<float>& depth, const Vector& top,
                    const Vector& bottom) {
  for (int y = 0; y < image->height; ++y) {
    const double share = (y + 0.5) / image->height;
    const Vector color = top + (bottom - top) * share;
    for (int x = 0; x < image->width; ++x) {
      if (depth[(std::size_t)y * image->width + x] < 1.0f) continue;
      for (int channel = 0; channel < 3; ++channel) image->At(x, y)[channel] = Byte(color[channel]);
    }
  }
}

} // namespace host
