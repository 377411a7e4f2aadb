// Real files of many writers, against what independent readers found in them.
#include "las/las_fixture.h"

#include <nlohmann/json.hpp>

#include <map>

namespace {

using nlohmann::json;

json FactsOf(const std::string& name) {
  return json::parse(std::ifstream(KELVRA_DATA_DIR "/" + name + ".json"));
}

std::vector<std::string> SampleFiles(bool withPointsOnly) {
  std::vector<std::string> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(KELVRA_DATA_DIR, error)) {
    const std::string name = entry.path().filename().string(), suffix = entry.path().extension().string();
    if (suffix != ".las" && suffix != ".laz") continue;
    if (!withPointsOnly || FactsOf(name).at("outcome").at("points") > 0) files.push_back(name);
  }
  std::sort(files.begin(), files.end());
  return files;
}

class SampleFile : public LasTest, public testing::WithParamInterface<std::string> {
protected:
  std::string path_ = KELVRA_DATA_DIR "/" + GetParam();
};
class SamplePoints : public SampleFile {};

void ExpectSamePosition(const kelvra::SourceRecord& record, const json& point) {
  EXPECT_EQ(static_cast<float>(record.x), point.at("x").get<float>());
  EXPECT_EQ(static_cast<float>(record.y), point.at("y").get<float>());
  EXPECT_EQ(static_cast<float>(record.z), point.at("z").get<float>());
}

TEST_P(SampleFile, LoadsAsIndependentReadersDo) {
  const json facts = FactsOf(GetParam()), outcome = facts.at("outcome");
  CountingMemory memory;
  const kelvra::LasCloud cloud = kelvra::ReadLas(path_, {}, memory, nullptr);
  EXPECT_EQ(cloud.report.outcome == kelvra::LoadOutcome::kRefused, outcome.at("refused").get<bool>());
  EXPECT_EQ(cloud.report.outcome == kelvra::LoadOutcome::kPartial, outcome.contains("partial"));
  ASSERT_EQ(cloud.report.kept, outcome.at("points").get<std::int64_t>());
  if (cloud.report.kept == 0) return;

  const json& expected = facts.at("expected");
  const json& first = expected.at("points_first");
  for (std::size_t i = 0; i < first.size(); ++i) ExpectSamePosition(cloud.records[i], first[i]);
  ExpectSamePosition(cloud.records[cloud.report.kept - 1], expected.at("point_last"));
  for (int axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(cloud.pointBox.minimum[axis],
                expected.at("min_xyz")[static_cast<std::size_t>(axis)].get<double>(), 1e-6);
    EXPECT_NEAR(cloud.pointBox.maximum[axis],
                expected.at("max_xyz")[static_cast<std::size_t>(axis)].get<double>(), 1e-6);
  }
  EXPECT_TRUE(cloud.headerBoxHolds);
  EXPECT_EQ(cloud.hasColor, expected.at("has_rgb_fields").get<bool>());
  if (cloud.hasColor) {
    const int factor = cloud.widened ? 255 : 1;
    EXPECT_EQ(cloud.records[0].r, first[0].at("r").get<int>() * factor);
    EXPECT_EQ(cloud.records[0].b, first[0].at("b").get<int>() * factor);
  }
  memory.Free(cloud.records);
}

TEST_P(SamplePoints, HoldsTheSamePointsAndClasses) {
  kelvra::LasFile file;
  ASSERT_TRUE(file.Open(path_)) << file.Refusal();
  std::map<std::string, std::int64_t> classes;
  std::int64_t sum[3] = {}, maxColor = 0;
  const kelvra::LasHeader& header = file.Findings().header;
  kelvra::LasPoint point;
  while (file.Next()) {
    file.Get(point);
    ++classes[std::to_string(point.classification)];
    const double position[] = {point.x, point.y, point.z};
    for (int axis = 0; axis < 3; ++axis)
      sum[axis] += std::llround((position[axis] - header.offset[axis]) / header.scale[axis]);
    maxColor = std::max<std::int64_t>({maxColor, point.r, point.g, point.b});
  }
  const json expected = FactsOf(GetParam()).at("expected");
  EXPECT_EQ(classes, expected.at("class_histogram").get<decltype(classes)>());
  for (int axis = 0; axis < 3; ++axis)
    EXPECT_EQ(sum[axis], expected.at("sum_XYZ_int")[static_cast<std::size_t>(axis)].get<std::int64_t>());
  if (file.HasColor()) {
    EXPECT_EQ(maxColor, expected.at("max_rgb").get<std::int64_t>());
  }
  const json& keys = expected.at("geokeys");
  EXPECT_EQ(file.Findings().geoKeyCode,
            keys.contains("3072") ? keys["3072"].get<unsigned>() : keys.value("2048", 0u));
}

TEST(SampleFolder, IsThere) {
  if (!std::filesystem::exists(KELVRA_DATA_DIR)) GTEST_SKIP() << "no sample files in " << KELVRA_DATA_DIR;
  EXPECT_GE(SampleFiles(true).size(), 20u);
}

std::string TestName(const testing::TestParamInfo<std::string>& instance) {
  std::string name = instance.param;
  for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Las, SampleFile, testing::ValuesIn(SampleFiles(false)), TestName);
INSTANTIATE_TEST_SUITE_P(Las, SamplePoints, testing::ValuesIn(SampleFiles(true)), TestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SampleFile);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SamplePoints);

} // namespace
