// Results that lie in the cache: point objects, hair, splines and the empty null object.
#include "support/convert_fixture.h"

namespace {

class Geometry : public ConvertTest {
protected:
  void SetUp() override {
    ConvertTest::SetUp();
    Give(Scatter(50));
    Give(Scatter(30, 50), 1);
  }
};

struct Share {
  double ratio;
  LONG count;
};
const Share kShares[] = {{0.0, 0},   {-1.0, 0}, {0.01, 0},  {0.5, 40},
                         {0.99, 79}, {1.0, 80}, {1.5, 120}, {std::nan(""), 0}};

TEST_F(Geometry, PointsCarryPositionsAndColoursOfTheFirstOnesAndTheBoxIsTheirs) {
  const std::vector<Vector> all = Positions(), colors = Colors();
  ASSERT_EQ(all.size(), 80u);
  EXPECT_EQ(all[7], Scatter(8)[7].p + Vector(0, (SReal)(7 - 5.5 + 0.007) - (7 - 5.5 + 0.007), 0));
  for (const Share& share : kShares) {
    SCOPED_TRACE(share.ratio);
    Set(KELVRA_POINT_SHARE, GeData(share.ratio));
    BaseObject* built = Build(kPoints);
    ASSERT_EQ(built->GetType(), Opolygon);
    EXPECT_EQ(((PolygonObject*)built)->GetPolygonCount(), 0);
    ASSERT_EQ(((PolygonObject*)built)->GetPointCount(), share.count);
    std::vector<Vector> expected = all, tints = colors;
    expected.resize(share.count); // beyond the store: at the origin, black
    tints.resize(share.count);
    EXPECT_EQ(PointsOf(built), expected);
    kelvra::GrowingBox<Vector> box;
    for (LONG i = 0; i < LMin(share.count, 80); ++i) box.Add(all[i]);
    EXPECT_EQ(Cloud().display.box.min, box.min);
    EXPECT_EQ(Cloud().display.box.max, box.max);
    EXPECT_EQ(Cloud().display.box.valid, share.count > 0);
    BaseTag* tag = built->GetTag(Tvertexmap);
    for (LONG channel = 0; channel < 3; ++channel, tag = tag->GetNext()) {
      VertexMapTag* map = (VertexMapTag*)tag;
      ASSERT_NE(map, nullptr);
      EXPECT_EQ(map->GetName(), String(channel == 0 ? "Red" : channel == 1 ? "Green" : "Blue"));
      ASSERT_EQ(map->GetDataCount(), share.count);
      EXPECT_EQ(map->GetDataSize(), (LONG)sizeof(SReal));
      for (LONG i = 0; i < share.count; ++i)
        EXPECT_EQ(map->GetDataAddressR()[i], (SReal)tints[i][channel]) << channel << " of " << i;
    }
  }
}

TEST_F(Geometry, HairStandsOnEachPointAtTheSameHeight) {
  Build(kPoints); // leaves a box
  for (const Share& share : kShares)
    for (const double size : {0.0, 1.0, 200.0, 1e6}) {
      SCOPED_TRACE(testing::Message() << share.ratio << " " << size);
      Set(KELVRA_POINT_SHARE, GeData(share.ratio));
      Set(KELVRA_OBJECT_SIZE, GeData(size));
      HairObject* hair = (HairObject*)Build(kHair);
      ASSERT_EQ(hair->GetType(), Ohair);
      EXPECT_EQ(Cloud().display.box.valid, share.count > 0);
      EXPECT_FALSE(hair->IsLocked());
      ASSERT_TRUE(hair->Lock(doc_, nullptr, FALSE, 0));
      HairGuides* guides = hair->GetGuides();
      ASSERT_NE(guides, nullptr);
      EXPECT_EQ(guides->GetCount(), share.count);
      EXPECT_EQ(guides->GetSegmentCount(), 1);
      const std::vector<Vector> roots = Positions();
      for (LONG i = 0; i < share.count; ++i) {
        EXPECT_EQ(guides->GetPoints()[2 * i], roots[i]);
        EXPECT_EQ(guides->GetPoints()[2 * i + 1], roots[i] + Vector(0, 0.01, 0));
      }
      hair->Unlock();
    }
}

TEST_F(Geometry, ModesWithoutAResultBuildAnEmptyNullObject) {
  for (const LONG mode : {kEmpty + 0, 0, 7, -1, MAXLONGl, -MAXLONGl - 1, kParticles + 0, kEmitter + 0}) {
    SCOPED_TRACE(mode);
    ExpectEmpty(Build(mode));
  }
  EXPECT_TRUE(Printed().empty());
  host::Libraries& libraries = application_.GetLibraries();
  libraries.hair = libraries.particles = libraries.emitter = false;
  for (const LONG mode : {kHair, kParticles, kEmitter}) ExpectEmpty(Build(mode));
  libraries.emitter = true;
  Set(KELVRA_POINT_SHARE, GeData(1e300));
  application_.GetFaults().FailAt(host::Fault::LargeBlock, 1, -1);
  for (const LONG mode : {kPoints, kSpline, kEmitter}) ExpectEmpty(Build(mode));
  EXPECT_EQ(Printed(), (std::vector<std::string>{"could not create hair", "cant set xp count"}));
  Set(KELVRA_POINT_SHARE, GeData(0.0));
  ExpectEmpty(Build(kSpline)); // a spline without points has no array
}

TEST_F(Geometry, AResultIsKeptUntilSomethingItDependsOnChanges) {
  const struct {
    const char* what;
    std::function<void()> change;
    bool rebuilt;
  } cases[] = {{"nothing", [] {}, false},
               {"flag", [this] { Cloud().settingsChanged = 1; }, true},
               {"parameter", [this] { Set(KELVRA_OBJECT_SIZE, GeData(100.0)); }, true},
               {"points", [this] { Give(Scatter(1)); }, true},
               {"points by the button", [this] { Add({{Vector(1, 2, 3)}}); }, true}};
  for (const LONG mode : {kPoints, kHair, kParticles, kSpline})
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << mode << " " << c.what);
      Build(mode);
      Build(mode)->SetName("kept");
      c.change();
      EXPECT_EQ(Build(mode)->GetName() != String("kept"), c.rebuilt);
      EXPECT_EQ(Cloud().settingsChanged, 0);
      Build(mode)->SetName("kept");
      EXPECT_EQ(Build(mode)->GetName(), String("kept")) << "once";
    }
}

class Spline : public ConvertTest {
protected:
  std::vector<LONG> Segments(BaseObject* built) {
    EXPECT_EQ(built->GetType(), Ospline);
    SplineObject* spline = (SplineObject*)built;
    EXPECT_EQ(spline->GetInterpolationType(), SPLINETYPE_LINEAR);
    std::vector<LONG> lengths;
    for (LONG i = 0; i < spline->GetSegmentCount(); ++i) {
      lengths.push_back(spline->GetSegmentR()[i].cnt);
      EXPECT_FALSE(spline->GetSegmentR()[i].closed);
    }
    return lengths;
  }
};

TEST_F(Spline, SegmentsBeginAtLongStepsAndChangesOfTheScalarsBit) {
  const struct {
    const char* what;
    std::vector<std::pair<double, UWORD>> points; ///< x and scalar
    double step, ratio;
    std::vector<LONG> lengths; ///< none: no tag
  } cases[] = {
      {"second far off", {{0, 0}, {100, 0}, {101, 0}}, 10, 1, {}},
      {"third far off", {{0, 0}, {1, 0}, {100, 0}}, 10, 1, {2, 1}},
      {"as far as allowed", {{0, 0}, {1, 0}, {11, 0}, {21, 0}}, 10, 1, {}},
      {"a little farther", {{0, 0}, {1, 0}, {11, 0}, {21.5, 0}}, 10, 1, {3, 1}},
      {"second changes", {{0, 0}, {0, 1}, {0, 1}}, 10, 1, {1, 2}},
      {"other bits", {{0, 0}, {0, 2}, {0, 65534}}, 10, 1, {}},
      {"bit among others", {{0, 2}, {0, 3}, {0, 1}, {0, 4}}, 10, 1, {1, 2, 1}},
      {"both", {{0, 0}, {1, 1}, {50, 0}, {51, 0}}, 10, 1, {1, 1, 2}},
      {"less than none", {{0, 0}, {0, 0}, {0, 0}, {0, 0}}, -1, 1, {2, 1, 1}},
      {"half", {{0, 0}, {1, 0}, {90, 0}, {190, 0}, {290, 0}, {390, 0}}, 10, 0.5, {2, 1}},
      {"beyond the store", {{0, 0}, {1, 0}, {100, 0}, {101, 0}}, 10, 2, {2, 6}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    std::vector<CloudPoint> points;
    for (const auto& [x, scalar] : c.points) points.push_back({Vector(x, 0, 0), 0, 0, 0, scalar});
    Give(points);
    Data().SetReal(KELVRA_SEGMENT_BREAK, c.step);
    Data().SetReal(KELVRA_POINT_SHARE, c.ratio);
    BaseObject* built = Build(kSpline);
    EXPECT_EQ(Segments(built), c.lengths);
    EXPECT_EQ(PointsOf(built), Positions());
  }
}

TEST_F(Spline, PointsLieInWorldSpaceAndShowInTheirPlace) {
  Give(Scatter(40));
  Give(Scatter(20, 40), 1);
  op_->SetMl(kPlace);
  BaseObject* built = Build(kSpline);
  EXPECT_EQ(PointsOf(built), InWorld(Positions()));
  const Matrix shown = op_->GetMg() * built->GetMl();
  for (const Vector& p : PointsOf(built)) ExpectNear(shown * p, p, 1e-9);

  // A flat cloud has no way back from the world; its spline shows in its place all the same.
  op_->SetMl(Matrix(Vector(5, 6, 7), Vector(0, 0, 2), Vector(), Vector(1, 0, 0)));
  Cloud().settingsChanged = 1;
  built = Build(kSpline);
  const std::vector<Vector> points = PointsOf(built), expected = InWorld(Positions());
  ASSERT_EQ(points.size(), expected.size());
  for (std::size_t i = 0; i < points.size(); ++i)
    ExpectNear(op_->GetMg() * built->GetMl() * points[i], expected[i], 1e-9);
}

TEST_F(Spline, ScaleMovesItsBreaks) {
  Give({{Vector(0, 0, 0)}, {Vector(4, 0, 0)}, {Vector(10, 0, 0)}});
  EXPECT_EQ(Segments(Build(kSpline)), std::vector<LONG>());
  Build(kSpline)->SetName("kept");
  const double c = std::cos(0.3), s = std::sin(0.3);
  op_->SetMl(Matrix(Vector(1e6, 5, 5), Vector(c, s, 0), Vector(-s, c, 0), Vector(0, 0, 1)));
  EXPECT_EQ(Build(kSpline)->GetName(), String("kept")) << "turned";
  op_->SetMl(MatrixScale(Vector(2, 2, 2)));
  EXPECT_EQ(Segments(Build(kSpline)), (std::vector<LONG>{2, 1}));
}

TEST_F(Spline, SegmentsMayOutnumberAnyStepOfTheirList) {
  std::vector<CloudPoint> points = Scatter(50000);
  for (std::size_t i = 0; i < points.size(); ++i) points[i].scalar = (UWORD)(i / 2 % 2);
  Give(points);
  Data().SetReal(KELVRA_SEGMENT_BREAK, 1e9);
  EXPECT_EQ(Segments(Build(kSpline)), std::vector<LONG>(25000, 2));
}

} // namespace
