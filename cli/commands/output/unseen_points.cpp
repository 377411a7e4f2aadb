#include "cli/commands/output/unseen_points.h"

#include "cli/session/cloud_parameters.h"
#include "cli/text/format.h"
#include "host/render.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

/** A setting that hides points. */
struct Hiding {
  LONG id;
  const char* text;
  bool (*hides)(double value, double cloudSize);
};

/** Size of a point, in those of the cloud, from which on it hides the cloud. */
constexpr double kTooLarge = 10.0;

bool IsNone(double value, double) {
  return value <= 0.0;
}

constexpr Hiding kShare = {KELVRA_POINT_SHARE, "point_share is 0: no point is shown", IsNone};
constexpr Hiding kOfViewport[] = {
    kShare,
    {KELVRA_POINT_SIZE, "point_size is 0: no point is drawn (leave it out to have it chosen by density)",
     IsNone}};
constexpr Hiding kOfRendered[] = {
    kShare,
    {KELVRA_POINT_RADIUS,
     "point_radius is 0: the points are too small to be seen (leave it out to have it chosen by density)",
     IsNone},
    // A rendered point covers a disc of the root of its radius.
    {KELVRA_POINT_RADIUS,
     "point_radius makes each point much larger than the whole cloud: nothing of it can be made out",
     [](double value, double cloudSize) {
       return cloudSize > 0.0 && std::sqrt(value) > kTooLarge * cloudSize;
     }},
    {KELVRA_TRANSPARENCY, "transparency is 100%: no point can be seen",
     [](double value, double) { return value >= 1.0; }}};

/** Values that kelvra chose itself are never the reason. */
template <std::size_t Count>
std::string HiddenBy(const Hiding (&settings)[Count], const CloudSession& session, double size) {
  const std::vector<BaseObject*> clouds = session.Clouds();
  for (const Hiding& setting : settings)
    if (std::all_of(clouds.begin(), clouds.end(), [&](BaseObject* cloud) {
          const bool chosen = session.WasSet(setting.id) || session.IsFromScene(cloud);
          return chosen && setting.hides(RealParameter(cloud, setting.id), size);
        }))
      return setting.text;
  return std::string();
}

constexpr const char* kBeside = "beside what the camera looks at";

/** Where a box lies that is nowhere in the picture; empty where a part of it may be. */
std::string PlaceOutside(const host::ViewFrame& frame, const WorldExtent& extent) {
  const host::Box box = {extent.box.low - Vector(extent.disc), extent.box.high + Vector(extent.disc)};
  const auto all = [&](auto isOutside) {
    for (int corner = 0; corner < 8; ++corner)
      if (!isOutside(box.Corner(corner) - frame.position)) return false;
    return true;
  };
  if (all([&](const Vector& p) { return p * frame.forward < 0.0; })) return "behind the camera";
  const auto halfHeight = [&](const Vector& p) {
    return frame.halfHeight > 0.0 ? frame.halfHeight : p * frame.forward * frame.tangent;
  };
  for (const Vector& outwards : {frame.right, -frame.right})
    if (all([&](const Vector& p) { return p * outwards > halfHeight(p) * frame.aspect; })) return kBeside;
  for (const Vector& outwards : {frame.up, -frame.up})
    if (all([&](const Vector& p) { return p * outwards > halfHeight(p); })) return kBeside;
  return std::string();
}

} // namespace

std::string WhyUnseen(const CloudSession& session, Drawing drawing, const host::ViewCamera& camera,
                      const WorldExtent& extent, double aspect) {
  if (session.Clouds().empty() || extent.box.IsEmpty()) return std::string();
  const double size = extent.box.Size().GetLength();
  const std::string hidden = drawing == Drawing::Viewport ? HiddenBy(kOfViewport, session, size)
                                                          : HiddenBy(kOfRendered, session, size);
  if (!hidden.empty()) return hidden;
  const std::string place = PlaceOutside(host::MakeFrame(camera, aspect), extent);
  if (place.empty()) return std::string();
  return "no point is in the picture: the points lie " + place +
         " (--camera and --target are in scene units, with --camera-survey in those of the files; without "
         "them "
         "kelvra finds a place)";
}

} // namespace cli
