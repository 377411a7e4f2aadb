// What the checks in front of the library refuse, each by one small change to a sound file, and what they let
// through.
#include "support/las_files.h"

#include "object/las/geokeys.h"

namespace {

using kelvra::LasFindings;

struct RefusedCase {
  unsigned format;
  std::function<void(Bytes&)> change;
  const char* complaint; // its decisive part: place, value, bound
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/** A record with a payload of ten bytes at the end of the header, of which it claims one more. */
void AddLongRecord(Bytes& f) {
  f = MakeLas(0, {TestPoint()}, {{"someone", 7, Bytes(10)}});
  Put<std::uint16_t>(f, 227 + 20, 11);
}

const RefusedCase kRefused[] = {
    {0, [](Bytes& f) { f.clear(); }, "it is empty"},
    {0, [](Bytes& f) { f = {'~', 'V', 'E', 'R', 'S', 'I', 'O', 'N', ' ', 'I'}; }, "starts with ~VERSION…"},
    {0, [](Bytes& f) { Put(f, 0, 0x89504e47u); }, "starts with G"},
    {0, [](Bytes& f) { f.resize(226); }, "has 226 bytes, a header needs at least 227"},
    {0, [](Bytes& f) { f[25] = 6; }, "version (byte 24) is 1.6, 1.0 to 1.5"},
    {0, [](Bytes& f) { Put<std::uint16_t>(f, 94, 226); }, "header size (byte 94) is 226"},
    {0, [](Bytes& f) { f[25] = 3; }, "227, version 1.3 has at least 235"},
    {6, [](Bytes& f) { Put<std::uint16_t>(f, 94, 374); }, "374, version 1.4 has at least 375"},
    {6, [](Bytes& f) { f[25] = 5; }, "375, version 1.5 has at least 393"},
    {0, [](Bytes& f) { Put(f, 96, 226u); }, "offset to point data (byte 96) is 226, the header has 227"},
    {0, [](Bytes& f) { Put(f, 96, 100000u); }, "is 100,000, the file has 247"},
    {0, [](Bytes& f) { Put(f, 100, 1069128089u).pop_back(); },
     "1,069,128,089 variable-length records (byte 100)"},
    {0, AddLongRecord, "record 0 at byte 227 ends at byte 292, the point data starts at byte 291"},
    {1, [](Bytes& f) { Put<std::uint16_t>(f, 105, 27); }, "27, point format 1 has at least 28"},
    {0, [](Bytes& f) { f[104] = 11; }, "point format (byte 104) is 11, 0 to 10"},
    {0, [](Bytes& f) { f[104] = 6; }, "is 6, version 1.2 has 0 to 5"},
    {0, [](Bytes& f) { f[104] |= 128; }, "no compression record"},
    {6, [](Bytes& f) { Put(f, 107, 7u); }, "number of points is 7 in the old field (byte 107), 1"},
    {0, [](Bytes& f) { Put(f, 139, 0.0); }, "y scale (byte 139) is 0"},
    {0, [](Bytes& f) { Put(f, 131, kInfinity); }, "x scale (byte 131) is inf"},
    {0, [](Bytes& f) { Put(f, 171, std::nan("")); }, "z offset (byte 171) is"},
};

TEST(Validator, ComplaintsNamePlaceValueAndBound) {
  for (const RefusedCase& c : kRefused) {
    Bytes file = MakeLas(c.format, {TestPoint()});
    EXPECT_TRUE(Validate(file).complaints.empty());
    c.change(file);
    const LasFindings findings = Validate(file);
    ASSERT_FALSE(findings.complaints.empty()) << c.complaint;
    EXPECT_NE(findings.complaints[0].find(c.complaint), std::string::npos) << findings.complaints[0];
  }
}

TEST_F(LasTest, RecordsThatAreMissingAndALongerHeaderKeepNoPointFromBeingRead) {
  const std::vector<TestPoint> points = Spiral(5);
  Bytes late = MakeLas(6, points);
  late[25] = 5;
  late.insert(late.begin() + 375, 18, 0);
  Put(Put<std::uint16_t>(late, 94, 393), 96, 393u);
  EXPECT_EQ(Heights(late), HeightsOf(points, 5));

  const Bytes plain = MakeLas(1, points, {{"someone", 7, Bytes(10)}}, 1);
  for (Bytes file : {plain, Compress(plain, 50)}) {
    const auto announced = Take<std::uint32_t>(file, 100) + 2;
    Put(file, 100, announced);
    ASSERT_EQ(Validate(file).notes.size(), 1u);
    const std::string there = announced == 3 ? "; 1 is there" : "; 2 are there";
    EXPECT_NE(Validate(file).notes[0].text.find(there), std::string::npos);
    EXPECT_EQ(Heights(file), HeightsOf(points, 5));
  }
  Bytes longer = plain;
  Put(longer, 100, 2u);
  longer.push_back(0);
  EXPECT_FALSE(Validate(longer).complaints.empty()) << "the points may lie elsewhere";
}

TEST(Validator, CountsWhatIsThere) {
  Bytes attribute(192);
  attribute[2] = 3; // 16-bit number
  const LasFindings whole =
      Validate(MakeLas(1, {TestPoint()}, {{"LASF_Spec", 4, attribute}, {"x", 1, Bytes(3)}}, 2));
  EXPECT_TRUE(whole.complaints.empty() && whole.patches.empty() && whole.readable == 1u);
  Bytes file = MakeLas(0, Spiral(10));
  file.resize(file.size() - 21);
  EXPECT_EQ(Validate(file).readable, 8u);
  Put(file, 107, 4000000000u); // allocates nothing
  EXPECT_EQ(Validate(file).readable, 8u);
  EXPECT_EQ(Validate(file).cut, kelvra::LoadCut::kFileEnd);
}

class LasRecords : public LasTest, public testing::WithParamInterface<TestRecord> {};

Bytes Attribute(std::uint8_t type) {
  Bytes attribute(192, 'a');
  attribute[2] = type;
  attribute[3] = 1;
  return attribute;
}

// The library would read past the end of each of these, refuse the file, or change the order of its points.
INSTANTIATE_TEST_SUITE_P(
    Validator, LasRecords,
    testing::Values(TestRecord{"copc", 1, Bytes(160, 255)}, TestRecord{"LASF_Projection", 34735, Bytes(4)},
                    TestRecord{"LASF_Projection", 34735, {1, 0, 1, 0, 0, 0, 9, 0}},
                    TestRecord{"LASF_Spec", 4, Bytes(191)}, TestRecord{"LASF_Spec", 4, {}},
                    TestRecord{"LASF_Spec", 4, Attribute(31)}, TestRecord{"LASF_Spec", 4, Attribute(30)},
                    TestRecord{"LASF_Spec", 4, Attribute(2)}, TestRecord{"LASF_Spec", 100, Bytes(25)},
                    TestRecord{"LAStools", 10, Bytes(27)}, TestRecord{"LAStools", 20, Bytes(28)},
                    TestRecord{"lastools tile", 1, Bytes(29)}, TestRecord{"LAStools", 30, Bytes(40, 255)}));

TEST_P(LasRecords, TrapsAreHiddenAndThePointsRead) {
  const std::vector<TestPoint> points = Spiral(5);
  const Bytes file = MakeLas(7, points, {GetParam(), {"someone else's", 1, Bytes(8)}});
  EXPECT_EQ(Validate(file).patches.size(), 1u);
  EXPECT_EQ(Heights(file), HeightsOf(points, 5));
}

TEST_F(LasTest, ExtendedRecordsCountOnlyWhenCounted) {
  const std::vector<TestPoint> points = Spiral(5);
  Bytes file = MakeLas(6, points);
  Put(file, 235, (std::uint64_t)file.size());
  EXPECT_TRUE(Validate(file).patches.empty());
  for (const std::uint64_t length : {std::uint64_t{4}, std::uint64_t{5}, ~std::uint64_t{0}}) {
    Bytes extended(60 + 4);
    Put(extended, 20, length);
    Bytes counted = file;
    counted.insert(counted.end(), extended.begin(), extended.end());
    Put(counted, 243, 1u);
    EXPECT_EQ(Validate(counted).patches.size(), length == 4 ? 0u : 1u) << length;
    EXPECT_EQ(Heights(counted), HeightsOf(points, 5)) << length;
  }
}

TEST_F(LasTest, IndexBesideTheCloudIsNotOpened) {
  Write(Bytes(100, 255), "cloud.lax");
  EXPECT_EQ(Heights(MakeLas(0, Spiral(3))).size(), 3u);
  kelvra::LasFile file;
  ASSERT_TRUE(file.Open(Write(MakeLas(0, Spiral(3)))));
  EXPECT_TRUE(file.LibraryMessages().empty()) << file.LibraryMessages().front();
}

TEST(GeoKeys, FirstOfTheKnownKeysCounts) {
  const struct {
    std::vector<std::uint16_t> entries; // key, place, count, value
    unsigned code, offered;
  } cases[] = {
      {{}, 0, 0},
      {{1024, 0, 1, 1, 2048, 0, 1, 4326}, 4326, 4326},
      {{2048, 0, 1, 4269, 3072, 0, 1, 26995, 4099, 0, 1, 9003}, 26995, 26995},
      {{4098, 0, 1, 5103, 4099, 0, 1, 9001}, 5103, 0},
      {{3072, 34737, 1, 12, 2048, 0, 1, 4326}, 4326, 4326}, // a value that stands elsewhere
      {{2048, 0, 1, 4269, 3072, 0, 1, 32767}, 32767, 0},    // user-defined: its points are not in degrees
      {{2054, 0, 1, 9102, 2050, 0, 1, 6269, 3076, 0, 1, 9002}, 9002, 0}, // a unit
      {{2054, 0, 1, 9102, 2050, 0, 1, 6269}, 6269, 0},                   // a datum
      {{4099, 0, 1, 9001, 3076, 0, 1, 9002}, 9001, 0},
      {{3072, 0, 1, 0}, 0, 0}};
  for (const auto& c : cases) {
    Bytes directory(8);
    Put<std::uint16_t>(directory, 6, (std::uint16_t)(c.entries.size() / 4));
    for (const std::uint16_t value : c.entries) Put(directory, directory.size(), value);
    const kelvra::GeoKey found = Validate(MakeLas(0, {}, {{"LASF_Projection", 34735, directory}})).geoKey;
    EXPECT_EQ(found.code, c.code);
    EXPECT_EQ(kelvra::OfferedCode(found), c.offered) << c.code;
  }
}

} // namespace
