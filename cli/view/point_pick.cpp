#include "cli/view/point_pick.h"

#include "cli/text/format.h"
#include "host/render.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <cmath>
#include <filesystem>

namespace cli {

namespace {

/** The cloud's points as the application's own point object, for as long as this lives. */
class ConvertedCloud {
public:
  explicit ConvertedCloud(BaseObject* cloud) {
    BaseContainer* data = cloud->GetDataInstance();
    const BaseContainer own = *data;
    data->SetLong(KELVRA_CONVERT_MODE, KELVRA_CONVERT_MODE_POINTS);
    BaseObject* built = host::UpdateCache(cloud, cloud->GetDocument(), BUILDFLAGS_0);
    *data = own;
    if (built && built->GetType() == Opolygon) points_ = (PointObject*)host::TakeCache(cloud);
  }
  ~ConvertedCloud() {
    BaseObject* points = points_;
    if (points) BaseObject::Free(points);
  }
  ConvertedCloud(const ConvertedCloud&) = delete;
  ConvertedCloud& operator=(const ConvertedCloud&) = delete;

  LONG Count() const { return points_ ? points_->GetPointCount() : 0; }
  const Vector* Points() const { return points_->GetPointR(); }
  Vector Color(LONG index) const {
    Vector color(1.0);
    for (LONG channel = 0; channel < 3; ++channel)
      if (BaseTag* tag = points_->GetTag(Tvertexmap, channel))
        color[channel] = ((VertexMapTag*)tag)->GetDataAddressW()[index];
    return color;
  }

private:
  PointObject* points_ = nullptr;
};

/** Fills in what the cloud knows of its point of that number. */
void Describe(BaseObject* cloud, LONG index, PickedPoint* picked) {
  std::vector<LVector> positions((std::size_t)index + 1);
  KelvraSurvey survey = {1, index + 1, positions.data()};
  if (cloud->Message(KELVRA_MESSAGE_SURVEY, &survey) && survey.count == index + 1) {
    const LVector& position = positions.back();
    picked->file[0] = position.x;
    picked->file[1] = position.y;
    picked->file[2] = position.z;
  }
  KelvraCloudReport report = {};
  report.version = 1;
  picked->index = index;
  if (!cloud->Message(KELVRA_MESSAGE_REPORT, &report)) return;
  for (LONG block = 0; block < report.blockCount; ++block) {
    if (picked->index < report.blocks[block].points) {
      picked->source = report.blocks[block].source;
      return;
    }
    picked->index -= report.blocks[block].points;
  }
}

} // namespace

std::string PickedPoint::Text() const {
  const auto level = [](double share) { return std::to_string((int)std::lround(share * 255.0)); };
  const std::string name =
      source.empty() ? "received" : std::filesystem::u8path(source).filename().u8string();
  return "x " + Fixed(file[0], 3) + "  y " + Fixed(file[1], 3) + "  z " + Fixed(file[2], 3) + "\ncolour " +
         level(color.x) + " " + level(color.y) + " " + level(color.z) + "\n" + name + ", point " +
         Grouped(index);
}

std::optional<PickedPoint> PickPoint(const CloudSession& session, const host::ViewCamera& camera,
                                     double aspect, const PicturePlace& at, double reach) {
  const host::ViewFrame frame = host::MakeFrame(camera, aspect);
  std::optional<PickedPoint> picked;
  double nearest = 1e300;
  for (BaseObject* cloud : session.Clouds()) {
    const ConvertedCloud converted(cloud);
    const Matrix global = cloud->GetMg();
    LONG found = -1;
    for (LONG i = 0; i < converted.Count(); ++i) {
      const Vector offset = global * converted.Points()[i] - frame.position;
      const double depth = offset * frame.forward;
      if (!(depth > 0.0) || depth >= nearest) continue;
      const double height = depth * frame.tangent;
      const double dx = offset * frame.right / height - at.x * aspect, dy = offset * frame.up / height - at.y;
      if (dx * dx + dy * dy > reach * reach) continue;
      nearest = depth;
      found = i;
    }
    if (found < 0) continue;
    picked.emplace();
    picked->world = global * converted.Points()[found];
    picked->color = converted.Color(found);
    Describe(cloud, found, &*picked);
  }
  return picked;
}

} // namespace cli
