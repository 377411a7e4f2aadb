// Colours that stand for heights, intensities, classes and returns.
#include "cloud/color_ramp.h"
#include "cloud/percentiles.h"
#include "host/parameter_step.h"
#include "kelvra_messages.h"
#include "otallyframe.h"
#include "support/las_files.h"
#include "support/object_fixture.h"

#include <limits>
#include <random>

namespace {

using kelvra::RampColor;

class ColorsTest : public ObjectTest {
protected:
  using Rgb = std::vector<UWORD>;
  void Set(LONG id, LONG value) { op_->GetDataInstance()->SetLong(id, value); }
  LReal Get(LONG id) { return op_->GetDataInstance()->GetReal(id); }
  /** Of all stored points in order. */
  Rgb Colors() {
    Rgb colors;
    Cloud(op_).store.VisitBlocks([&](const kelvra::PointBlock& block, VLONG) {
      colors.insert(colors.end(), block.attrib3, block.attrib3 + (VLONG)block.count * 3);
      return true;
    });
    return colors;
  }
  static Rgb Of(const kelvra::StoredColor& color) { return Rgb(color.rgb, color.rgb + 3); }
  Rgb At(std::size_t point) {
    const Rgb all = Colors();
    return Rgb(all.begin() + (long)point * 3, all.begin() + (long)point * 3 + 3);
  }
  /** "0 0 z" for each height. */
  std::string Heights(const char* name, const std::vector<double>& heights) {
    std::string text;
    for (const double z : heights) text += "0 0 " + std::to_string(z) + " 10 20 30\n";
    return Write(name, text);
  }
};

TEST(Percentiles, AreThoseOfTheSortedValues) {
  std::mt19937 random(7);
  std::normal_distribution<float> spread(-3.0f, 100.0f);
  for (const std::size_t count : {1u, 2u, 101u, 5000u}) {
    std::vector<float> values(count);
    for (float& value : values) value = spread(random);
    const kelvra::FloatRange range = kelvra::RangeOfShares(0.1, 0.75, [&values](auto visit) {
      for (const float value : values) visit(value);
    });
    std::sort(values.begin(), values.end());
    EXPECT_EQ(range.low, values[(std::size_t)std::lround(0.1 * (double)(count - 1))]);
    EXPECT_EQ(range.high, values[(std::size_t)std::lround(0.75 * (double)(count - 1))]);
  }
}

// The maps' own first, middle and last colours, as their authors give them.
TEST(Ramps, FollowTheMapsThatTheyAreNamedAfter) {
  const struct {
    LONG ramp;
    double share, r, g, b;
  } cases[] = {
      {KELVRA_RAMP_GRAY, 0.25, 0.25, 0.25, 0.25},      {KELVRA_RAMP_VIRIDIS, 0, 0.267, 0.005, 0.329},
      {KELVRA_RAMP_VIRIDIS, 0.5, 0.128, 0.567, 0.551}, {KELVRA_RAMP_VIRIDIS, 1, 0.993, 0.906, 0.144},
      {KELVRA_RAMP_TURBO, 0.5, 0.644, 0.990, 0.234},   {KELVRA_RAMP_TURBO, 0.125, 0.275, 0.422, 0.89},
      {KELVRA_RAMP_TERRAIN, -5, 0.18, 0.36, 0.24},     {KELVRA_RAMP_TERRAIN, 5, 0.95, 0.94, 0.92}};
  for (const auto& c : cases) {
    const kelvra::StoredColor color = RampColor(c.ramp, c.share);
    const double wanted[3] = {c.r, c.g, c.b};
    for (int channel = 0; channel < 3; ++channel)
      EXPECT_NEAR(color.rgb[channel] / 65535.0, wanted[channel], c.ramp == KELVRA_RAMP_TURBO ? 0.09 : 0.035)
          << c.ramp << " at " << c.share;
  }
}

TEST_F(ColorsTest, HeightsOfAllFilesShareOneScaleAndOutliersDoNotStretchIt) {
  Set(KELVRA_LOAD_COLOR, KELVRA_LOAD_COLOR_HEIGHT);
  std::vector<double> low, high = {9000};
  for (int i = 0; i < 200; ++i) low.push_back(i * 0.1);
  for (int i = 0; i < 200; ++i) high.push_back(100 - i * 0.1);
  Load(Heights("low.xyz", low));
  const Rgb alone = At(199);
  EXPECT_EQ(alone, Of(RampColor(KELVRA_RAMP_VIRIDIS, 1)));
  Load(Heights("high.xyz", high));
  EXPECT_NE(At(199), alone) << "points of the earlier file moved down on the scale";
  EXPECT_EQ(At(0), Of(RampColor(KELVRA_RAMP_VIRIDIS, 0)));
  EXPECT_EQ(At(200), Of(RampColor(KELVRA_RAMP_VIRIDIS, 1)))
      << "the bird has the colour of the highest others";
  EXPECT_NEAR(Get(KELVRA_RAMP_FROM), 0.4, 0.11);
  EXPECT_NEAR(Get(KELVRA_RAMP_TO), 99.7, 0.11);

  LONG bins[2] = {};
  KelvraHeights heights = {1, 10, 90, 2, bins};
  ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_HEIGHTS, &heights));
  EXPECT_EQ((Rgb{(UWORD)heights.below, (UWORD)bins[0], (UWORD)bins[1], (UWORD)heights.above}),
            (Rgb{100, 100, 100, 101}));
  EXPECT_EQ(heights.lowest, 0);
  EXPECT_EQ(heights.highest, 9000);

  String source;
  KelvraSight sight = {1, Vector(0.5, 500, 0), Vector(0, -1, 0), 0.01};
  sight.source = &source;
  ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_SIGHT, &sight)) << "the bird is behind the eye";
  EXPECT_EQ(sight.number, 1) << "the highest before the eye";
  EXPECT_EQ(sight.file, LVector(0, 0, 100));
  EXPECT_NE(host::Utf8(source).find("high.xyz"), std::string::npos);
  sight.from.x = 500;
  EXPECT_FALSE(op_->Message(KELVRA_MESSAGE_SIGHT, &sight)) << "looks past all points";
}

TEST_F(ColorsTest, TheButtonColorsStoredPointsAndCanBeUndone) {
  Load(Heights("cloud.xyz", {1, 2, 3, 4, 5}));
  const Rgb own = Colors();
  EXPECT_EQ(At(0), (Rgb{10 * 256, 20 * 256, 30 * 256})) << "nothing is coloured unasked";
  BaseObject* copy = static_cast<BaseObject*>(op_->GetClone(COPYFLAGS_0, nullptr));
  Set(KELVRA_RAMP, KELVRA_RAMP_GRAY);
  op_->GetDataInstance()->SetReal(KELVRA_RAMP_LOW, 0.0);
  op_->GetDataInstance()->SetReal(KELVRA_RAMP_HIGH, 1.0);
  {
    const host::OneStep step(doc_);
    application_->PressButton(op_, KELVRA_COLOR_AGAIN);
    application_->PressButton(op_, KELVRA_COLOR_AGAIN);
  }
  EXPECT_EQ(At(0), (Rgb{0, 0, 0}));
  EXPECT_EQ(At(4), (Rgb{65535, 65535, 65535}));
  EXPECT_EQ(Get(KELVRA_RAMP_FROM), 1.0);
  EXPECT_EQ(Get(KELVRA_RAMP_TO), 5.0);
  EXPECT_EQ(Cloud(copy).store.GetFirstBlock()->attrib3[0], own[0]) << "a copy keeps its colours";
  BaseObject::Free(copy);
  ASSERT_TRUE(doc_->DoUndo());
  EXPECT_EQ(Colors(), own) << "both presses were one step";
}

TEST_F(ColorsTest, PointsThatAreNeverShownHaveNoSayInHeights) {
  Give(op_, {Vector(1, 10, 1), Vector(2, 20, 2), Vector(3, 30, 3), Vector(4, 40, 4)});
  SReal* positions = Cloud(op_).store.groups[0].blocks[0].positions;
  positions[1] = std::numeric_limits<SReal>::quiet_NaN();
  positions[10] = std::numeric_limits<SReal>::infinity();
  Set(KELVRA_RAMP, KELVRA_RAMP_GRAY);
  op_->GetDataInstance()->SetReal(KELVRA_RAMP_LOW, std::numeric_limits<LReal>::quiet_NaN()); // counts as 0
  op_->GetDataInstance()->SetReal(KELVRA_RAMP_HIGH, 1.0);
  application_->PressButton(op_, KELVRA_COLOR_AGAIN);
  EXPECT_EQ(Get(KELVRA_RAMP_FROM), 20.0);
  EXPECT_EQ(Get(KELVRA_RAMP_TO), 30.0);
  EXPECT_EQ(At(2), (Rgb{65535, 65535, 65535}));

  LONG bins[2] = {};
  KelvraHeights heights = {1, 10, 30, 2, bins};
  ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_HEIGHTS, &heights));
  EXPECT_EQ((std::vector<LONG>{heights.below, bins[0], bins[1], heights.above}),
            (std::vector<LONG>{0, 0, 2, 0}));
  EXPECT_EQ(heights.lowest, 20.0);
  EXPECT_EQ(heights.highest, 30.0);
  KelvraSpread spread = {1};
  ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_SPREAD, &spread));
  EXPECT_EQ(spread.min, Vector(1, 20, 1));
  EXPECT_EQ(spread.max, Vector(4, 30, 4));
}

TEST_F(ColorsTest, IntensityClassAndReturnAreReadWhenAsked) {
  if (!kelvra::LasFile::Available()) GTEST_SKIP() << "this build has no LASlib";
  for (const unsigned format : {3u, 7u}) {
    Bytes las = MakeLas(format, Spiral(9));
    const std::size_t start = Take<std::uint32_t>(las, 96), length = Take<std::uint16_t>(las, 105);
    for (std::size_t i = 0; i < 9; ++i) {
      Put(las, start + i * length + 12, (std::uint16_t)(i * 100));
      las[start + i * length + 14] = (std::uint8_t)(format == 7 ? 0x30 | (1 + i % 3) : 0x18 | (1 + i % 3));
    }
    const Bytes compressed = Compress(las, 4);
    const std::string path = Write("cloud.laz", std::string(compressed.begin(), compressed.end()));
    const struct {
      LONG by, first, step;
    } cases[] = {{KELVRA_LOAD_COLOR_INTENSITY, 0, 9},
                 {KELVRA_LOAD_COLOR_CLASS, 1, 6},
                 {KELVRA_LOAD_COLOR_RETURN, 1, 3}};
    for (const auto& c : cases) {
      SCOPED_TRACE(std::to_string(format) + " by " + std::to_string(c.by));
      op_ = Add();
      Set(KELVRA_LOAD_COLOR, c.by);
      Load(path);
      ASSERT_EQ(Colors().size(), 27u);
      for (std::size_t i = 0; i < 9; ++i)
        for (std::size_t j = 0; j < i; ++j)
          EXPECT_EQ(At(i) == At(j), i % (std::size_t)c.step == j % (std::size_t)c.step) << i << " and " << j;
      KelvraLegend legend = {};
      legend.version = 1;
      ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_LEGEND, &legend));
      EXPECT_EQ(legend.kind, c.by);
      EXPECT_EQ(legend.count, c.by == KELVRA_LOAD_COLOR_INTENSITY ? 64 : (LONG)c.step);
      EXPECT_EQ(legend.entries[0].value, c.first);
      EXPECT_EQ(legend.entries[legend.count - 1].value,
                c.by == KELVRA_LOAD_COLOR_INTENSITY ? 800.0 : c.step - 1 + c.first);
    }
  }
}

} // namespace
