// Render settings: from an object's parameters to what rays read.
#include "tests/rays/scenes.h"

#include "object/render/render_record.h"

namespace rays {

TEST_F(RaysTest, NumbersHaveDefaultsAndBounds) {
  const LReal none = std::nan(""), huge = INFINITY;
  const struct {
    LONG id;
    LReal RenderObjectRecord::*number;
    LReal standard;
    std::vector<std::pair<LReal, LReal>> setAndFilled;
  } cases[] = {
      {1251, &RenderObjectRecord::pointRadius, 0.25, {{3.5, 3.5}, {0, 1e-6}, {-2, 1e-6}, {none, 0.25}}},
      {1252, &RenderObjectRecord::transparency, 0, {{0.3, 0.3}, {-1, 0}, {1.5, 1}, {none, 0}}},
      {1253, &RenderObjectRecord::falloffBias, 0.5, {{0.7, 0.7}, {0, 1e-6}, {2, 1}, {none, 0.5}}},
      {1254, &RenderObjectRecord::softDepth, 0, {{2.5, 2.5}, {huge, 0}, {none, 0}}},
      {1255, &RenderObjectRecord::radiusVariation, 0, {{0.4, 0.4}, {none, 0}}},
  };
  RenderObjectRecord record;
  for (const auto& item : cases) {
    ASSERT_TRUE(FillRecord(BaseContainer(), Matrix(), &record));
    EXPECT_EQ(record.*item.number, item.standard) << item.id;
    for (const auto& [set, filled] : item.setAndFilled) {
      BaseContainer settings;
      settings.SetReal(item.id, set);
      ASSERT_TRUE(FillRecord(settings, Matrix(), &record));
      EXPECT_EQ(record.*item.number, filled) << item.id << " set to " << set;
    }
  }
}

TEST_F(RaysTest, EachFlagHasItsParameterAndIsOnByDefault) {
  for (LONG cleared = 1200; cleared <= 1206; ++cleared) {
    BaseContainer settings;
    settings.SetBool(cleared, FALSE);
    RenderObjectRecord r;
    ASSERT_TRUE(FillRecord(settings, Matrix(), &r));
    const LONG flags[] = {r.seenSwitch,        r.illuminateAlt,       r.illuminate,
                          r.reflectionVisible, r.transparencyVisible, r.refractionVisible};
    for (LONG i = 0; i < 6; ++i) EXPECT_EQ(flags[i] != 0, cleared != 1201 + i) << cleared;
  }
}

TEST_F(RaysTest, CurvesAreReadByHeightInTheObjectsOwnSpace) {
  BaseContainer settings;
  AutoAlloc<SplineData> curve;
  ASSERT_TRUE(curve->InsertKnot(0.0, 0.0) != NOTOK && curve->InsertKnot(1.0, 0.5) != NOTOK);
  for (const LONG id : {1025, 1035}) settings.SetData(id, GeData(CUSTOMDATATYPE_SPLINE, *(SplineData*)curve));
  settings.SetReal(1256, -10.0); // up to 100
  const Matrix global(Vector(5, 100, 0), Vector(2, 0, 0), Vector(0, 1.6, 1.2), Vector(0, -1.2, 1.6));
  const LLONG before = app.Live().blocks;
  RenderObjectRecord record;
  for (int refused = 1; refused <= 2; ++refused) { // a table for each curve
    const host::ModuleScope asModule;
    app.GetFaults().FailAt(host::Fault::Allocation, refused);
    EXPECT_FALSE(FillRecord(settings, global, &record));
    EXPECT_EQ(app.Live().blocks, before);
    app.GetFaults().Clear();
  }
  ASSERT_TRUE(FillRecord(settings, global, &record));
  EXPECT_NEAR(record.HeightOf(global * Vector(3, 45.3, -7)), 45.3, 1e-9);
  for (const auto& [height, share] : {std::pair(-1e300, 0.0), {-10.0, 0.0}, {45.3, 0.2513636}, {1e9, 0.5}}) {
    EXPECT_NEAR(record.opacityCurve.At(height), share, 1e-6) << height;
    EXPECT_NEAR(RadiusOf(record, height, 1), 0.25 * share, 1.1e-6) << height;
    EXPECT_GT(RadiusOf(record, height, 1), 0.0) << "a sphere always has a radius";
  }
  FreeRecord(record);
  EXPECT_EQ(app.Live().blocks, before);
}

TEST_F(RaysTest, RadiusVariesByTheNumberOfThePointOnly) {
  RenderObjectRecord record;
  EXPECT_EQ(RadiusOf(record, 0.0, 17), 0.25);
  record.pointRadius = 2.0;
  record.radiusVariation = 0.5;
  std::set<LReal> radii;
  for (LONG number = 0; number < 10000; ++number) {
    radii.insert(RadiusOf(record, number * 0.3, number));
    ASSERT_EQ(radii.count(RadiusOf(record, -5.0, number)), 1u);
  }
  EXPECT_TRUE(*radii.begin() >= 1.0 && *radii.begin() < 1.05 && *radii.rbegin() > 2.95 &&
              *radii.rbegin() <= 3.0);
  EXPECT_GT(radii.size(), 9900u);
}

} // namespace rays
