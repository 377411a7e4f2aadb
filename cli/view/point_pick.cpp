#include "cli/view/point_pick.h"

#include "cli/text/format.h"
#include "host/application.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace cli {

namespace {

/** What a stored channel is multiplied by, by the reader, when the file has 8 bits of it: text, LAS. */
constexpr int kPerLevel[] = {256, 255};

/** Channels as the file has them if it has 8 bits of each, else the nearest of 8 bits. */
std::string Levels(const Vector& color) {
  int stored[3];
  for (int i = 0; i < 3; ++i) stored[i] = (int)std::lround(color[i] * 65535.0);
  const auto* const per = std::find_if(std::begin(kPerLevel), std::end(kPerLevel), [&](int factor) {
    return std::all_of(stored, stored + 3,
                       [factor](int value) { return value % factor == 0 && value / factor < 256; });
  });
  std::string text;
  for (const int value : stored)
    text += " " + std::to_string(per == std::end(kPerLevel) ? (int)std::lround(value / 257.0) : value / *per);
  return text;
}

} // namespace

std::string PickedPoint::Text() const {
  const std::string name =
      source.empty() ? "received" : std::filesystem::u8path(source).filename().u8string();
  return "x " + Fixed(file.x, 3) + "  y " + Fixed(file.y, 3) + "  z " + Fixed(file.z, 3) + "\ncolour" +
         Levels(color) + "\n" + name + ", point " + Grouped(index);
}

std::optional<PickedPoint> PickPoint(const CloudSession& session, const host::ViewCamera& camera,
                                     double aspect, const PicturePlace& at, double reach) {
  const host::ViewFrame frame = host::MakeFrame(camera, aspect);
  const Vector line =
      frame.forward + frame.right * (at.x * frame.tangent * aspect) + frame.up * (at.y * frame.tangent);
  std::optional<PickedPoint> picked;
  double nearest = 0.0;
  for (BaseObject* cloud : session.Clouds()) {
    if (!host::IsShownInViews(cloud)) continue;
    const Matrix global = cloud->GetMg(), inverse = !global;
    String source;
    KelvraSight sight = {};
    sight.version = 1;
    sight.from = inverse * frame.position;
    sight.along = (line ^ inverse).GetNormalized();
    sight.reach = reach * frame.tangent;
    sight.source = &source;
    if (!cloud->Message(KELVRA_MESSAGE_SIGHT, &sight)) continue;
    const Vector world = global * sight.position;
    const double distance = (world - frame.position).GetLength();
    if (picked && distance >= nearest) continue;
    nearest = distance;
    picked.emplace();
    picked->world = world;
    picked->color = sight.color;
    picked->file = sight.file;
    picked->index = sight.number;
    picked->source = host::Utf8(source);
  }
  return picked;
}

} // namespace cli
