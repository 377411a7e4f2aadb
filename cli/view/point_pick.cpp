#include "cli/view/point_pick.h"

#include "cli/text/format.h"
#include "host/application.h"
#include "kelvra_messages.h"

#include <cmath>
#include <filesystem>

namespace cli {

std::string PickedPoint::Text() const {
  const auto level = [](double share) { return std::to_string((int)std::lround(share * 255.0)); };
  const std::string name =
      source.empty() ? "received" : std::filesystem::u8path(source).filename().u8string();
  return "x " + Fixed(file.x, 3) + "  y " + Fixed(file.y, 3) + "  z " + Fixed(file.z, 3) + "\ncolour " +
         level(color.x) + " " + level(color.y) + " " + level(color.z) + "\n" + name + ", point " +
         Grouped(index);
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
