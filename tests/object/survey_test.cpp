// With a local origin, coordinates come out as LASlib itself reads them, whatever happens to the object.
#include "cloud/local_origin.h"
#include "support/data_folder.h"
#include "support/las_files.h"
#include "support/object_fixture.h"

#ifdef KELVRA_HAVE_LASLIB
#include <lasreader.hpp>

namespace {

using Point = std::array<double, 3>;
using Points = std::vector<Point>;
constexpr LONG kOriginMode = 1190, kOrigin = 1191, kSurvey = 1193, kSave = 1609;

class SurveyTest : public ObjectTest {
protected:
  /** Points around (691000; 5570000; 400), to the millimetre, counted from `east` in the file. */
  std::string Far(const std::string& name, double east, int firstX) const {
    std::vector<TestPoint> spiral = Spiral(2000);
    for (TestPoint& p : spiral) p = {p.x + firstX, p.y * 3, p.z, 1, p.r, p.g, p.b, 0};
    spiral.front() = {firstX, 1, 3, 1, 1, 2, 3, 0};
    spiral.back() = {firstX + 100000, 500001, 7, 1, 1, 2, 3, 0};
    ::Bytes las = MakeLas(2, spiral);
    const double offset[] = {east, 5570000, 400}, size[] = {200, 1000, 10};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      Put(Put(las, 131 + 8 * axis, 0.001), 155 + 8 * axis, offset[axis]);
      Put(Put(las, 179 + 16 * axis, offset[axis] + size[axis]), 187 + 16 * axis, offset[axis] - 100);
    }
    return Write(name, std::string(las.begin(), las.end()));
  }
  /** LASlib's plain reader, which comes apart on the index of a cloud-optimised file. */
  static Points Independent(const std::string& path, double step[3]) {
    Points points;
    kelvra::LasFile ours;
    EXPECT_TRUE(ours.Open(path));
    std::copy_n(ours.Findings().header.scale, 3, step);
    if (Read(path).find("copc") < 1000) {
      for (kelvra::LasPoint p; ours.Next(); points.push_back({p.x, p.y, p.z})) ours.Get(p);
      return points;
    }
    LASreadOpener opener;
    opener.set_file_name(path.c_str());
    const std::unique_ptr<LASreader> reader(opener.open());
    while (reader->read_point()) points.push_back({reader->get_x(), reader->get_y(), reader->get_z()});
    reader->close();
    return points;
  }
  void LoadNew(const std::string& path, LONG mode = 1) {
    op_ = Add();
    op_->GetDataInstance()->SetLong(kOriginMode, mode);
    Load(path);
  }
  Points Exported(BaseObject* op) {
    op->GetDataInstance()->SetBool(kSurvey, TRUE);
    PressWithFile(*application_, op, kSave, Path("out.txt"));
    std::istringstream lines(Read(Path("out.txt")));
    Points points;
    Point p;
    for (double r, g, b; lines >> p[0] >> p[1] >> p[2] >> r >> g >> b;) points.push_back(p);
    return points;
  }
  std::vector<Vector> Shown(BaseObject* op) {
    std::vector<Vector> shown((std::size_t)Cloud(op).store.GetPointCount());
    kelvra::GrowingBox<Vector> box;
    Cloud(op).store.ExportPositions(shown.data(), (LONG)shown.size(), &box, 200.0);
    return shown;
  }
};

TEST_F(SurveyTest, EveryFileComesOutWithinHalfItsStepAndThenStays) {
  std::vector<std::string> paths = {Far("far.las", 691000, 0)};
  for (const RealCloud& cloud : RealClouds())
    if (IsLas(cloud.path)) paths.push_back(cloud.path);
  int beyondFloats = 0;
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    LoadNew(path);
    if (Cloud(op_).store.GetPointCount() == 0) continue;
    double step[3];
    const Points source = Independent(path, step), survey = Exported(op_);
    ASSERT_GE(source.size(), survey.size());
    ASSERT_EQ((LONG)survey.size(), Cloud(op_).store.GetPointCount());
    const LVector origin = op_->GetDataInstance()->GetVector(kOrigin);
    double worst[3] = {0, 0, 0}, lost[3] = {0, 0, 0};
    for (std::size_t i = 0; i < survey.size(); ++i)
      for (std::size_t k = 0; k < 3; ++k) {
        worst[k] = std::max(worst[k], std::abs(survey[i][k] - source[i][k]));
        const double stored = kelvra::FloatStep(source[i][k] - origin[(LONG)k]);
        if (stored > step[k] / 10) lost[k] = std::max(lost[k], stored / 2);
      }
    for (int k = 0; k < 3; ++k) EXPECT_LE(worst[k], step[k] / 2 + lost[k]) << "axis " << k;
    beyondFloats += lost[0] + lost[1] + lost[2] > 0;
    // Text without a step of its own keeps millimetres.
    if (std::min({step[0], step[1], step[2]}) < 0.001 || survey.size() > 200000) continue;
    const std::string again = Write("again.xyz", Read(Path("out.txt")));
    LoadNew(again);
    EXPECT_EQ(Exported(op_), survey) << "a fixed point";
  }
  EXPECT_LE(beyondFloats, 4) << "files that span more of their steps than a float has digits";
}

TEST_F(SurveyTest, TheDisplayMovesByLessThanAFloatsStep) {
  LoadNew(Far("far.las", 691000, 0), 0);
  const std::vector<Vector> off = Shown(op_);
  LoadNew(Path("far.las"));
  const std::vector<Vector> on = Shown(op_);
  ASSERT_EQ(on.size(), off.size());
  const double unit = Cloud(op_).store.GetFirstBlock()->reals[0], steps[] = {0.0625, 3.1e-5, 0.5}; // x, z, y
  for (std::size_t i = 0; i < on.size(); ++i)
    for (int k = 0; k < 3; ++k) ASSERT_LE(std::abs(on[i][k] - off[i][k]), steps[k] * unit) << i << " " << k;
}

TEST_F(SurveyTest, TilesMeetAtTheirSharedEdge) {
  // The east tile begins at the last point of the west one, counted from another offset.
  LoadNew(Far("west.las", 691000, 0));
  Load(Far("east.las", 690900, 200000));
  const Points survey = Exported(op_);
  const std::vector<Vector> shown = Shown(op_);
  const std::size_t west = 1999, east = 2000;
  ASSERT_EQ(survey.size(), 4000u);
  EXPECT_EQ(survey[west][0], survey[east][0]);
  EXPECT_LE(std::abs(shown[west].x - shown[east].x), 0.001 * Cloud(op_).store.GetFirstBlock()->reals[0]);
}

TEST_F(SurveyTest, TheOriginGoesWhereItsPointsGo) {
  LoadNew(Far("far.las", 691000, 0));
  const Points survey = Exported(op_);
  const LVector origin = op_->GetDataInstance()->GetVector(kOrigin);
  ASSERT_NE(origin, LVector());
  ASSERT_TRUE(doc_->DoUndo());
  EXPECT_EQ(Cloud(op_).store.GetPointCount(), 0);
  EXPECT_EQ(op_->GetDataInstance()->GetVector(kOrigin), LVector()) << "an empty object takes the next one";
  ASSERT_TRUE(doc_->DoRedo());
  EXPECT_EQ(Exported(op_), survey);

  BaseObject* copy = (BaseObject*)op_->GetClone(COPYFLAGS_0, nullptr);
  doc_->InsertObject(copy, nullptr, nullptr);
  op_->GetDataInstance()->SetLong(kOriginMode, 0);
  EXPECT_EQ(Exported(op_), survey) << "the parameter moves no stored point";
  EXPECT_EQ(Exported(copy), survey);
  std::string error;
  ASSERT_TRUE(application_->SaveScene(doc_, Path("a.scene"), &error)) << error;
  BaseDocument* reopened = application_->LoadScene(Path("a.scene"), &error);
  ASSERT_TRUE(reopened) << error;
  EXPECT_EQ(Exported(reopened->GetFirstObject()), survey);
  application_->CloseDocument(reopened);

  // Points of another module are absolute.
  copy->GetDataInstance()->SetLong(1014, 2);
  kelvra::PointDelivery delivery;
  delivery.state = 2;
  delivery.points = Group({Vector(691000.5, 410, 5570001.5)});
  copy->Message(kelvra::kMessageDeliverPoints, &delivery);
  EXPECT_EQ(Exported(copy).back(), (Point{691000.5, 5570001.5, 410}));
}

} // namespace
#endif
