// Render settings: from an object's parameters to what rays read.
#include "tests/rays/scenes.h"

#include "object/render_record.h"
#include "otallyframe.h"

#include <set>

namespace rays {

TEST_F(RaysTest, NumbersHaveDefaultsAndBounds) {
  typedef LReal RenderObjectRecord::*Number;
  const Number radius = &RenderObjectRecord::pointRadius, clear = &RenderObjectRecord::transparency,
               bias = &RenderObjectRecord::falloffBias, soft = &RenderObjectRecord::softDepth,
               variation = &RenderObjectRecord::radiusVariation;
  const struct {
    LONG id; ///< 0: nothing is set
    LReal set;
    Number number;
    LReal expected;
  } cases[] = {
      {0, 0, radius, 0.25},     {0, 0, clear, 0.0},         {0, 0, bias, 0.5},     {0, 0, soft, 0.0},
      {0, 0, variation, 0.0},   {1251, 3.5, radius, 3.5},   {1251, 0, radius, 1e-6}, {1251, -2, radius, 1e-6},
      {1252, 0.3, clear, 0.3},  {1252, -1, clear, 0.0},     {1252, 1.5, clear, 1.0}, {1253, 0, bias, 1e-6},
      {1253, 0.7, bias, 0.7},   {1253, 2, bias, 1.0},       {1254, 2.5, soft, 2.5},  {1255, 0.4, variation, 0.4},
  };
  for (const auto& item : cases) {
    BaseContainer settings;
    if (item.id) settings.SetReal(item.id, item.set);
    RenderObjectRecord record;
    ASSERT_TRUE(FillRecord(settings, Matrix(), &record));
    EXPECT_EQ(record.*item.number, item.expected) << item.id << " set to " << item.set;
  }
  for (const LONG id : {1251, 1252, 1253, 1254, 1255})
    for (const LReal odd : {(LReal)std::nan(""), (LReal)INFINITY, -(LReal)INFINITY}) {
      BaseContainer settings;
      settings.SetReal(id, odd);
      RenderObjectRecord record;
      ASSERT_TRUE(FillRecord(settings, Matrix(), &record));
      for (const Number number : {radius, clear, bias, soft, variation})
        EXPECT_TRUE(std::isfinite(record.*number) && record.*number >= 0.0) << id << " set to " << odd;
    }
}

TEST_F(RaysTest, EachFlagHasItsParameterAndIsOnByDefault) {
  LONG RenderObjectRecord::*const flags[] = {
      &RenderObjectRecord::seenSwitch,        &RenderObjectRecord::illuminateAlt,
      &RenderObjectRecord::illuminate,        &RenderObjectRecord::reflectionVisible,
      &RenderObjectRecord::transparencyVisible, &RenderObjectRecord::refractionVisible};
  for (LONG cleared = 1200; cleared <= 1206; ++cleared) {
    BaseContainer settings;
    settings.SetBool(cleared, FALSE);
    RenderObjectRecord record;
    ASSERT_TRUE(FillRecord(settings, Matrix(), &record));
    for (LONG i = 0; i < 6; ++i) EXPECT_EQ(record.*flags[i] != 0, cleared != 1201 + i) << cleared;
  }
}

/** A curve that rises from one value to another. */
BaseContainer WithCurve(LONG id, Real from, Real to) {
  BaseContainer settings;
  AutoAlloc<SplineData> curve;
  curve->InsertKnot(0.0, from);
  curve->InsertKnot(1.0, to);
  settings.SetData(id, GeData(CUSTOMDATATYPE_SPLINE, *(SplineData*)curve));
  return settings;
}

TEST_F(RaysTest, CurvesAreReadByHeightInTheObjectsOwnSpace) {
  const LLONG before = app_.Live().blocks;
  {
    BaseContainer settings = WithCurve(KELVRA_OPACITY_CURVE, 0.25, 0.75);
    settings.SetReal(KELVRA_CURVE_MIN_HEIGHT, -10.0);
    settings.SetReal(KELVRA_CURVE_MAX_HEIGHT, 30.0);
    const Matrix global = MatrixMove(Vector(5, 100, 0)) * HPBToMatrix(Vector(0, pi05, 0), ROTATIONORDER_HPB);
    RenderObjectRecord record;
    ASSERT_TRUE(FillRecord(settings, global, &record));
    EXPECT_EQ(record.radiusCurve.values, nullptr);
    const struct {
      LReal height, expected;
    } cases[] = {{-1e300, 0.25}, {-10, 0.25}, {0, 0.375}, {10, 0.5}, {25.3, 0.69125}, {30, 0.75}, {1e9, 0.75}};
    for (const auto& item : cases) {
      const LVector world = global * Vector(3, item.height, -7);
      if (std::abs(item.height) < 1e6) EXPECT_NEAR(record.HeightOf(world), item.height, 1e-9);
      EXPECT_NEAR(record.opacityCurve.At(item.height), item.expected, 1e-6) << item.height;
    }
    FreeRecord(record);
    EXPECT_EQ(record.opacityCurve.values, nullptr);

    settings = WithCurve(KELVRA_RADIUS_CURVE, 0.0, 4.0); // heights 0 to 100
    settings.SetReal(KELVRA_POINT_RADIUS, 0.5);
    ASSERT_TRUE(FillRecord(settings, Matrix(), &record));
    EXPECT_NEAR(RadiusOf(record, 50.0, 1), 1.0, 1e-6);
    EXPECT_NEAR(RadiusOf(record, 100.0, 2), 2.0, 1e-6);
    EXPECT_GT(RadiusOf(record, -3.0, 2), 0.0) << "a sphere always has a radius";
    FreeRecord(record);
  }
  EXPECT_EQ(app_.Live().blocks, before);
}

TEST_F(RaysTest, RefusedCurveTableLeavesNothingBehind) {
  BaseContainer settings = WithCurve(KELVRA_RADIUS_CURVE, 0.0, 1.0);
  const BaseContainer other = WithCurve(KELVRA_OPACITY_CURVE, 0.0, 1.0);
  settings.SetData(KELVRA_OPACITY_CURVE, other.GetData(KELVRA_OPACITY_CURVE));
  const LLONG before = app_.Live().blocks;
  for (int refused = 1; refused <= 3; ++refused) {
    const host::ModuleScope asModule;
    RenderObjectRecord record;
    app_.GetFaults().FailAt(host::Fault::Allocation, refused);
    EXPECT_EQ(FillRecord(settings, Matrix(), &record) != FALSE, refused == 3);
    app_.GetFaults().Clear();
    EXPECT_EQ(app_.Live().blocks, before + (refused == 3 ? 2 : 0));
    FreeRecord(record);
  }
}

TEST_F(RaysTest, RadiusVariesByTheNumberOfThePointOnly) {
  RenderObjectRecord record;
  record.pointRadius = 2.0;
  EXPECT_EQ(RadiusOf(record, 0.0, 17), 2.0);
  record.radiusVariation = 0.5;
  std::set<LReal> radii;
  LReal sum = 0.0;
  for (LONG number = 0; number < 10000; ++number) {
    const LReal radius = RadiusOf(record, number * 0.3, number);
    ASSERT_EQ(radius, RadiusOf(record, -5.0, number));
    radii.insert(radius);
    sum += radius;
  }
  EXPECT_GE(*radii.begin(), 1.0);
  EXPECT_LT(*radii.begin(), 1.05);
  EXPECT_LE(*radii.rbegin(), 3.0);
  EXPECT_GT(*radii.rbegin(), 2.95);
  EXPECT_GT(radii.size(), 9900u);
  EXPECT_NEAR(sum / 10000, 2.0, 0.05);
  record.radiusVariation = 1.0;
  for (LONG number = -1000; number < 1000; ++number) ASSERT_GT(RadiusOf(record, 0.0, number), 0.0);
}

} // namespace rays
