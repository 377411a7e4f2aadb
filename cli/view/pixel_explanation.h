// What made a pixel, in short: the points of an explanation, without the steps that led to them.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace cli {

/** A point that rays of a pixel meet. */
struct PixelPoint {
  long number = 0; ///< among the rendered ones
  Vector place;
  double weight = 0.0; ///< its part of the pixel, 0 to 1
  std::string text;    ///< file, number and coordinates
};

/** For people to read. */
struct PixelReport {
  struct Part {
    std::string share, text; ///< "45 %", and whose it is
  };
  std::string title;
  std::vector<Part> parts; ///< the largest first
  std::string steps;       ///< of each ray
  bool IsEmpty() const { return title.empty(); }
};

class PixelExplanation {
public:
  /** One more ray of the pixel, with what the module says of it. */
  void AddRay(const Vector& origin, const Vector& direction, const std::string& lines);

  int Rays() const { return rays_; }
  /** Each point once, in the order in which the rays meet them. */
  const std::vector<PixelPoint>& Points() const { return points_; }
  PixelReport Report() const;

private:
  PixelPoint& PointOf(long number);

  int rays_ = 0;
  double behind_ = 0.0; ///< sum of the rays' parts of what lies behind the points
  std::vector<PixelPoint> points_;
  std::string steps_;
};

} // namespace cli
