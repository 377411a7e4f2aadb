// Real files of many writers, against what independent readers found in them.
#include "support/data_folder.h"
#include "support/las_files.h"

namespace {

using nlohmann::json;

TEST_F(LasTest, RealFilesHoldThePointsAndClassesThatOthersFound) {
  int files = 0;
  for (const RealCloud& cloud : RealClouds()) {
    if (!IsLas(cloud.path) || cloud.facts.at("outcome").at("points") == 0) continue;
    SCOPED_TRACE(cloud.path);
    ++files;
    kelvra::LasFile file;
    ASSERT_TRUE(file.Open(cloud.path)) << file.Refusal();
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
    const json& expected = cloud.facts.at("expected");
    EXPECT_EQ(classes, expected.at("class_histogram").get<decltype(classes)>());
    for (std::size_t axis = 0; axis < 3; ++axis)
      EXPECT_EQ(sum[axis], expected.at("sum_XYZ_int")[axis].get<std::int64_t>());
    if (file.HasColor()) {
      EXPECT_EQ(maxColor, expected.at("max_rgb").get<std::int64_t>());
    }
    const json& keys = expected.at("geokeys");
    EXPECT_EQ(file.Findings().geoKey.code,
              keys.contains("3072") ? keys["3072"].get<unsigned>() : keys.value("2048", 0u));
  }
  if (files == 0) GTEST_SKIP() << "no real clouds in " << DataFolder() << " (KELVRA_TEST_DATA)";
}

} // namespace
