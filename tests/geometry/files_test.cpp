#include "support/geometry_fixture.h"

namespace {

TEST_F(GeometryTest, ScenesBringGeometryBack) {
  PolygonObject* figure = AddFigure();
  ((VertexMapTag*)figure->MakeVariableTag(Tvertexmap, 6))->GetDataAddressW()[4] = 0.75f;
  SplineObject* spline = AddSpline();
  doc_->InsertObject(PolygonObject::Alloc(0, 0), spline, nullptr);
  const auto all = [](BaseObject* first) {
    return std::vector<std::string>{Content(first), Content(first->GetDown()), Content(first->GetNext())};
  };
  const std::vector<std::string> before = all(spline);
  const std::string bytes = Save();
  doc_ = Reload();
  ASSERT_NE(doc_, nullptr);
  EXPECT_EQ(all(doc_->GetFirstObject()), before);
  EXPECT_EQ(Save(), bytes);
}

TEST_F(GeometryTest, DamagedElementsAreRefusedWithOneLine) {
  PolygonObject* figure = AddFigure();
  ((VertexMapTag*)figure->MakeVariableTag(Tvertexmap, 6))->GetDataAddressW()[0] = 1.0f;
  const std::string figureScene = Save();
  PolygonObject::Free(figure);
  AddSpline();
  const std::string splineScene = Save();

  const std::string points = ArrayHead(HYPERFILEARRAY_LREAL, 8, 18);
  const std::string polygons = ArrayHead(HYPERFILEARRAY_LONG, 4, 8);
  const std::string weights = ArrayHead(HYPERFILEARRAY_SREAL, 4, 6);
  const std::string curve = ArrayHead(HYPERFILEARRAY_LREAL, 8, 15);
  const std::string segments = ArrayHead(HYPERFILEARRAY_LONG, 4, 4);
  const int atCount = -4, atType = -11;
  ExpectRefusals({
      {Patched<LONG>(figureScene, polygons, 28, -1), "polygon 1 has a corner at point -1, expected one of 6"},
      {Patched<LONG>(figureScene, polygons, atCount, 7), "found 7 numbers of polygons, expected"},
      {Patched<LONG>(figureScene, points, atCount, 17), "found 17 numbers of points, expected"},
      {Patched<double>(figureScene, points, 32, INFINITY), "point 1 has the value inf, expected"},
      {Patched<float>(figureScene, weights, 20, std::nanf("")), "weight 5 has the value nan"},
      {Patched<LONG>(splineScene, segments, 0, 3), "the segments have 6 points together, expected 5"},
      {Patched<LONG>(splineScene, segments, 0, -2), "segment 0 has -2 points, expected at least 0"},
      {Patched<LONG>(splineScene, curve, atType, 5), "found interpolation 5, expected 0 to 4"},
  });
}

TEST_F(GeometryTest, WhatCouldNotBeLoadedIsNotSaved) {
  PolygonObject* figure = AddFigure();
  SplineObject* spline = AddSpline();
  const std::string good = Save();
  const struct {
    std::function<void(bool)> spoil; ///< or mends
    const char* text;
  } cases[] = {
      {[&](bool bad) { figure->GetPolygonW()[1].d = bad ? 6 : 5; }, "polygon 1 has a corner at point 6"},
      {[&](bool bad) { spline->GetSegmentW()[1].cnt = bad ? 4 : 3; }, "the segments have 6 points together"},
      {[&](bool bad) { spline->GetSegmentW()[0].cnt = bad ? MAXLONGl : 2; }, "2147483650 points together"},
  };
  for (const auto& item : cases) {
    item.spoil(true);
    const std::string refused = Save();
    EXPECT_NE(refused.find(item.text), std::string::npos) << refused.substr(0, 200);
    EXPECT_EQ(Read(Path("scene")), good) << "the old file stays";
    item.spoil(false);
  }
  EXPECT_EQ(Save(), good);
}

} // namespace
