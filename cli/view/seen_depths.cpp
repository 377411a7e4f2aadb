#include "cli/view/seen_depths.h"

#include "host/render.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cli {

namespace {

constexpr int kMeant = 4; ///< pixels around the pointer that count as pointed at

} // namespace

bool SeenDepths::IsEmpty() const {
  return std::none_of(distances.begin(), distances.end(), [](float d) { return std::isfinite(d); });
}

template <class Visit>
void SeenDepths::Around(const Pixel& middle, int reach, const Visit& visit) const {
  for (int y = std::max(0, middle.y - reach); y <= std::min(height - 1, middle.y + reach); ++y)
    for (int x = std::max(0, middle.x - reach); x <= std::min(width - 1, middle.x + reach); ++x)
      visit(Pixel{x, y}, distances[(std::size_t)y * (std::size_t)width + (std::size_t)x]);
}

std::optional<SeenDepths::Pixel> SeenDepths::DrawnNear(const Pixel& at) const {
  std::optional<Pixel> nearest;
  double least = std::numeric_limits<double>::infinity();
  const int all = std::max(width, height);
  for (int reach = kMeant; !nearest && reach < 4 * all; reach *= 4)
    Around(at, reach, [&](const Pixel& pixel, float distance) {
      const double apart = std::hypot(pixel.x - at.x, pixel.y - at.y);
      if (!std::isfinite(distance) || apart >= least) return;
      least = apart;
      nearest = pixel;
    });
  return nearest;
}

std::optional<Vector> SeenDepths::Near(const PicturePlace& at) const {
  if (distances.empty()) return std::nullopt;
  const auto drawn = DrawnNear({(int)((at.x + 1.0) * 0.5 * width), (int)((1.0 - at.y) * 0.5 * height)});
  if (!drawn) return std::nullopt;
  float distance = std::numeric_limits<float>::infinity();
  Around(*drawn, kMeant, [&distance](const Pixel&, float d) { distance = std::min(distance, d); });
  const host::ViewFrame frame = host::MakeFrame(camera, (double)width / height);
  const double x = (drawn->x + 0.5) / width * 2.0 - 1.0, y = 1.0 - (drawn->y + 0.5) / height * 2.0;
  return frame.position +
         (frame.forward + frame.right * (x * frame.tangent * frame.aspect) + frame.up * (y * frame.tangent)) *
             (double)distance;
}

} // namespace cli
