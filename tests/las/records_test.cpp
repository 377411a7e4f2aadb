// The load loop: thinning, budget, colours, widening, progress, memory.
#include "support/las_files.h"

#include "object/las/palette.h"
#include "object/las/system_units.h"

namespace {

using kelvra::LasCloud;
using kelvra::LasReadOptions;
using kelvra::LoadCut;
using kelvra::LoadOutcome;
using kelvra::SourceRecord;

class Records : public LasTest {
protected:
  ~Records() override {
    if (cloud.records) memory.Free(cloud.records);
    EXPECT_EQ(memory.alive, 0);
  }
  void Read(const Bytes& file, LasReadOptions options = {}, const kelvra::LasProgress& progress = nullptr) {
    if (cloud.records) memory.Free(cloud.records);
    cloud = kelvra::ReadLas(Write(file), options, memory, progress);
  }
  std::vector<int> KeptX() const {
    std::vector<int> kept;
    for (std::int64_t i = 0; i < cloud.report.kept; ++i)
      kept.push_back((int)std::lround(cloud.records[i].x * 100));
    return kept;
  }
  /** Each point that was read is counted once. */
  void ExpectBalance() const {
    const kelvra::LoadReport& r = cloud.report;
    EXPECT_EQ(r.read, r.kept + r.thinned + r.dropped.notFinite);
  }
  CountingMemory memory;
  LasCloud cloud;
};

std::vector<TestPoint> Row(int count) {
  std::vector<TestPoint> points;
  for (int i = 0; i < count; ++i) points.push_back({i});
  return points;
}

TEST_F(Records, ThinningAndBudget) {
  const struct {
    int points;
    std::int64_t limit, step;
    std::vector<int> kept;
  } cases[] = {{10, 1000, 3, {0, 3, 6, 9}},
               {11, 1000, 3, {0, 3, 6, 9}},
               {4, 1000, 1, {0, 1, 2, 3}},
               {4, 1000, 0, {0, 1, 2, 3}},
               {4, 1000, -5, {0, 1, 2, 3}},
               {4, 1000, 100, {0}},
               {9, 2, 1, {0, 1, 2}},
               {9, 2, 2, {0, 2, 4}},
               {9, 0, 1, {0}},
               {9, -1, 1, {}},
               {9, -7, 1, {}},
               {9, std::numeric_limits<std::int64_t>::max(), 4, {0, 4, 8}}};
  for (const auto& c : cases) {
    Read(MakeLas(0, Row(c.points)), {c.limit, c.step});
    EXPECT_EQ(KeptX(), c.kept) << c.points << " points, limit " << c.limit << ", step " << c.step;
    if (c.kept.empty()) {
      EXPECT_EQ(cloud.records, nullptr);
      EXPECT_EQ(cloud.report.refusal, "the point limit is below 0, so that no point is kept");
      continue;
    }
    EXPECT_EQ(memory.asked, c.kept.size() * 64);
    const bool whole = (std::int64_t)c.kept.size() == cloud.report.Expected();
    EXPECT_EQ(cloud.report.cut, whole ? LoadCut::kNone : LoadCut::kBudget);
    EXPECT_EQ(cloud.report.outcome, whole ? LoadOutcome::kWhole : LoadOutcome::kPartial);
    ExpectBalance();
  }
}

TEST_F(Records, TheMostPointsOfABlockEndALoadLikeTheBudget) {
  Read(MakeLas(0, Row(20)), {1000, 2, 10});
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kWhole);
  Read(MakeLas(0, Row(21)), {1000, 2, 10});
  EXPECT_EQ(KeptX().size(), 10u);
  EXPECT_EQ(cloud.report.cut, LoadCut::kBlockCap);
  EXPECT_EQ(cloud.report.Expected(), 11);
  ExpectBalance();
}

TEST_F(Records, ShortFileLoadsWhatIsThereAndSaysSo) {
  Bytes file = MakeLas(0, Row(1065));
  file.resize(file.size() - 2);
  Read(file);
  EXPECT_EQ(std::tuple(cloud.report.outcome, cloud.report.cut),
            std::tuple(LoadOutcome::kPartial, LoadCut::kFileEnd));
  EXPECT_EQ(std::tie(cloud.report.kept, cloud.report.available), std::tuple(1064, 1064));
  Read(file, {9, 1});
  EXPECT_EQ(cloud.report.cut, LoadCut::kBudget) << "it ended the load before the file did";
  Read(file, {2000, 3});
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kPartial);
  EXPECT_EQ(cloud.report.kept, cloud.report.Expected()) << "the missing point would have been thinned";
  ExpectBalance();
}

TEST_F(Records, RecordHoldsCoordinatesNormalFlagAndColor) {
  Read(MakeLas(3, {{100, -200, 250, 0x42, 300, 2, 1}, {0, 0, 0, 0x22, 1, 1, 1}}));
  const SourceRecord& first = cloud.records[0];
  EXPECT_NEAR(first.x, 1.0, 1e-12);
  EXPECT_NEAR(first.y, -2.0, 1e-12);
  EXPECT_NEAR(first.z, 2.5, 1e-12);
  EXPECT_TRUE(first.second[0] == 0 && first.second[1] == 0 && first.second[2] == 1);
  EXPECT_EQ(first.intensity, 0u);
  EXPECT_EQ(first.flag, 1) << "bit 6 of the classification byte";
  EXPECT_EQ(cloud.records[1].flag, 0) << "bit 5 is another flag";
  EXPECT_EQ(first.r, 300);
  EXPECT_EQ(first.g, 2);
  EXPECT_FALSE(cloud.widened);
  Read(MakeLas(6, {{0, 0, 0, 2, 0, 0, 0, 0x02}, {0, 0, 0, 66, 0, 0, 0, 0x05}}));
  EXPECT_TRUE(cloud.records[0].flag == 1 && cloud.records[1].flag == 0)
      << "the newer formats' key-point flag";
}

TEST_F(Records, EightBitColorsAreWidenedBy255) {
  Read(MakeLas(2, {{0, 0, 0, 1, 255, 1, 0}, {0, 0, 0, 1, 7, 254, 128}}));
  const SourceRecord& widened = cloud.records[0];
  EXPECT_TRUE(widened.r == 65025 && widened.g == 255 && widened.b == 0) << widened.r;
  const Bytes wide = MakeLas(2, {{0, 0, 0, 1, 255, 1, 0}, {0, 0, 0, 1, 7, 256, 128}});
  Read(wide);
  EXPECT_EQ(cloud.records[0].r, 255) << "one larger component says the colours have 16 bits";
  Read(wide, {100, 2});
  EXPECT_EQ(cloud.records[0].r, 65025) << "it was not kept";
}

TEST(Palette, ClassesAndGreys) {
  using Rgb = std::vector<unsigned>;
  const auto color = [](unsigned classification, double z) {
    const kelvra::LasColor c = kelvra::ColorOfClass(classification, z);
    return Rgb{c.r, c.g, c.b};
  };
  EXPECT_EQ(color(2, 9), (Rgb{15535, 22222, 55535}));
  EXPECT_EQ(color(0, 0.5), Rgb(3, 32767));
  EXPECT_EQ(color(8, 2), Rgb(3, 65534)) << "heights wrap around";
  EXPECT_EQ(color(16, -0.5), Rgb(3, 32769));
  EXPECT_EQ(color(255, 1), Rgb(3, 65535));
  for (const double z : {std::nan(""), 1e300, -1e300, 1e15, std::numeric_limits<double>::infinity()})
    EXPECT_EQ(kelvra::GreyOfHeight(z), 0) << z;
}

TEST_F(Records, ColorComesFromThePointOrItsClass) {
  Read(MakeLas(1, {{0, 0, 100, 0xe2}, {0, 0, 100, 0x1f}}));
  EXPECT_EQ(cloud.records[0].g, 22222) << "the flags above the class do not count";
  EXPECT_EQ(cloud.records[1].g, 65535);
  Read(MakeLas(6, {{0, 0, 100, 66}, {0, 0, 0, 2}}));
  EXPECT_EQ(cloud.records[0].b, 65535) << "66 is not 2";
  Read(MakeLas(3, {{0, 0, 0, 2, 0, 0, 0}}));
  EXPECT_EQ(cloud.records[0].g, 0) << "a format with colour is not coloured by class";
}

TEST_F(Records, ClassZeroStaysAndTheKeyIsOne) {
  const Bytes directory = {1, 0, 1, 0, 0, 0, 1, 0, 0, 12, 0, 0, 1, 0, 0xb2, 0x0b}; // 3072: 2994
  Read(MakeLas(0, {{1, 2, 3, 0}}, {{"LASF_Projection", 34735, directory}}));
  EXPECT_TRUE(cloud.report.kept == 1 && cloud.key == 1u && cloud.report.epsg == 2994u);
  Read(MakeLas(0, {}, {{"LASF_Projection", 34735, directory}}));
  EXPECT_EQ(cloud.key, 2994u) << "only a point in the header sets 1";
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kEmpty);
}

TEST_F(Records, PointsWithoutFiniteCoordinatesAreDropped) {
  Bytes file = MakeLas(0, {{2, 1, 1}, {2000000000, 1, 1}, {3, 1, 1}});
  Put(file, 131, 1e30);
  Read(file);
  EXPECT_EQ(std::tie(cloud.report.kept, cloud.report.dropped.notFinite), std::tuple(2, 1));
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kPartial);
}

TEST_F(Records, HeaderBoxHoldsWhenItEnclosesTheKeptPoints) {
  Bytes file = MakeLas(0, {{100, 0, 0}, {300, 0, 0}});
  Read(file);
  EXPECT_TRUE(cloud.headerBoxHolds);
  EXPECT_DOUBLE_EQ(cloud.pointBox.min[0], 1);
  EXPECT_DOUBLE_EQ(cloud.pointBox.max[0], 3);
  Read(Put(file, 179, 2.996));
  EXPECT_TRUE(cloud.headerBoxHolds) << "rounded by its writer";
  Read(Put(file, 179, 2.9));
  EXPECT_FALSE(cloud.headerBoxHolds);
  Read(file, {100, 2});
  EXPECT_TRUE(cloud.headerBoxHolds) << "the point outside was not kept";
  Read(Put(file, 179, std::nan("")));
  EXPECT_FALSE(cloud.headerBoxHolds);
}

TEST_F(Records, OneStrayPointOfAHundredDoesNotPlaceTheCloud) {
  for (const int strays : {2, 3}) {
    std::vector<TestPoint> points = Row(200);
    for (int i = 0; i < strays; ++i) points[(std::size_t)i * 7].y = 2000000000;
    Read(MakeLas(0, points));
    EXPECT_EQ(cloud.headerBoxHolds, strays == 2);
    EXPECT_EQ(cloud.report.notes.at(0).text,
              strays == 2
                  ? "2 of 200 points lie outside the header's bounds, which place the cloud all the same"
                  : "the header's bounds do not enclose the points; the points' own bounds are used");
  }
}

TEST(CoordinateSystem, IsNamedWithItsUnit) {
  using kelvra::LengthUnit;
  const struct {
    const char *text, *name;
    LengthUnit unit;
  } cases[] = {
      {"PROJCS[\"a\",GEOGCS[\"b\",UNIT[\"degree\",0.0174]],UNIT[\"metre\",1,AUTHORITY[\"EPSG\",\"9001\"]]]",
       "a", LengthUnit::kMetre},
      {"COMPD_CS[\"c\",PROJCS[\"a\",UNIT[\"foot\",0.3048006096012192]],VERT_CS[\"v\",UNIT[\"metre\",1]]]",
       "a", LengthUnit::kUsFoot},
      {"PROJCRS[\"a\",CS[Cartesian,2],LENGTHUNIT[\"foot\",0.3048]]", "a", LengthUnit::kFoot},
      {"PROJCS[\"heights inside\",UNIT[\"foot\",0.3048],VERTCS[\"v\",UNIT[\"foot\",1.0]]]", "heights inside",
       LengthUnit::kFoot},
      {"PROJCRS[\"axes\",CS[Cartesian,2],AXIS[\"E\",east,LENGTHUNIT[\"foot\",0.3048]],"
       "AREA[\"w\"],VERTICALEXTENT[-9,9,LENGTHUNIT[\"metre\",1]]]",
       "axes", LengthUnit::kFoot},
      {"GEOGCS[\"WGS 84\",UNIT[\"degree\",0.0174]]", "WGS 84", LengthUnit::kDegree},
      {"PROJCS[\"never closed", "never closed", LengthUnit::kUnknown},
      {"PROJCS[", "", LengthUnit::kUnknown},
      {"no system", "", LengthUnit::kUnknown},
  };
  for (const auto& c : cases) {
    const kelvra::CoordinateSystem system = kelvra::ReadSystemText(c.text);
    EXPECT_EQ(system.name, c.name);
    EXPECT_EQ(system.unit, c.unit) << c.text;
  }
  const std::pair<unsigned, LengthUnit> codes[] = {{25832, LengthUnit::kMetre}, {2264, LengthUnit::kUsFoot},
                                                   {2256, LengthUnit::kFoot},   {4326, LengthUnit::kDegree},
                                                   {0, LengthUnit::kUnknown},   {2048, LengthUnit::kUnknown}};
  for (const auto& [code, unit] : codes) EXPECT_EQ(kelvra::UnitOfSystem(code), unit) << code;
}

TEST_F(Records, ProgressIsTheWholePercentageOfKeptPointsAndCanStop) {
  const Bytes file = MakeLas(0, Row(5000));
  std::vector<std::int64_t> seen;
  Read(file, {1000000, 2}, [&](std::int64_t kept, std::int64_t total, int percent) {
    seen.insert(seen.end(), {kept, total, percent});
    return true;
  });
  EXPECT_EQ(seen, (std::vector<std::int64_t>{1024, 2500, 40, 2048, 2500, 81}));
  Read(file, {}, [](std::int64_t, std::int64_t, int) { return false; });
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kStopped);
  EXPECT_EQ(cloud.records, nullptr);
  int asked = 0;
  Read(file, {1000000, 4000, kelvra::kMostBlockPoints, [&] { return ++asked == 3; }});
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kStopped) << "points that are thinned are read as well";
}

TEST_F(Records, AFileMadeToFillTheMemoryIsLoadedWithAWarningOrRefused) {
  const Bytes file = Compress(MakeLas(0, std::vector<TestPoint>(1000000)), 50000);
  Read(file);
  EXPECT_EQ(cloud.report.kept, 1000000);
  ASSERT_EQ(cloud.report.notes.size(), 1u);
  EXPECT_EQ(cloud.report.notes[0].severity, kelvra::NoteSeverity::kWarning);
  memory.asked = 0;
  LasReadOptions cautious;
  cautious.refuseDoubtful = true;
  Read(file, cautious);
  EXPECT_EQ(cloud.report.cut, kelvra::LoadCut::kDoubt);
  EXPECT_EQ(memory.asked, 0u) << "nothing is asked for";
}

TEST_F(Records, RefusedMemoryAndMissingFilesAreOneClearLine) {
  memory.refuse = true;
  Read(MakeLas(0, Row(20)));
  EXPECT_EQ(cloud.report.cut, LoadCut::kNoMemory);
  EXPECT_NE(cloud.report.refusal.find("20 points need 1,280 bytes"), std::string::npos);
  cloud = kelvra::ReadLas(KELVRA_SOURCE_DIR, {}, memory, nullptr);
  EXPECT_EQ(cloud.report.outcome, LoadOutcome::kRefused);
  EXPECT_EQ(cloud.report.refusal, "is not a file");
  cloud = kelvra::ReadLas("/nowhere/no.las", {}, memory, nullptr);
  EXPECT_EQ(cloud.report.refusal, "cannot be opened: No such file or directory");
}

} // namespace
