// Real files of many makers through the load button: outcome, coordinates and colours as other readers found
// them.
#include "module_fixture.h"

#include "object/las/reader.h"
#include "res/kelvra_messages.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

std::vector<std::string> DataFiles() {
  std::vector<std::string> names;
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(KELVRA_DATA_DIR, missing))
    if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
  std::sort(names.begin(), names.end());
  if (names.empty()) names.push_back("no files");
  return names;
}

class DataFile : public ModuleTest, public testing::WithParamInterface<std::string> {
protected:
  void SetUp() override {
    ModuleTest::SetUp();
    path_ = std::string(KELVRA_DATA_DIR "/") + GetParam();
    if (!fs::exists(path_)) GTEST_SKIP() << path_ << " is not here";
    const std::string suffix = fs::path(path_).extension().string();
    las_ = suffix == ".las" || suffix == ".laz";
    if (las_ && !kelvra::LasFile::Available()) GTEST_SKIP() << "this build has no LASlib";
    std::ifstream(path_ + ".json") >> known_;
  }

  /** Stored as 32-bit floats, and in the host's axes. */
  void ExpectPoint(const Json& point, const StoredBlock& block, std::size_t index) {
    const auto stored = block.Point(index);
    for (int axis = 0; axis < 3; ++axis) {
      const double known = point[std::string(1, "xyz"[axis])].get<double>();
      EXPECT_EQ(stored[(std::size_t)axis], (double)(float)known) << axis;
    }
    if (!las_) {
      EXPECT_EQ(block.Rgb(index), (point["attrib3"].get<std::array<int, 3>>()));
    } else if (known_["expected"]["has_rgb_fields"].get<bool>()) {
      // 8-bit values in 16-bit fields are widened.
      const int factor = known_["expected"]["max_rgb"].get<int>() <= 255 ? 255 : 1;
      EXPECT_EQ(block.Rgb(index),
                (std::array<int, 3>{factor * point["r"].get<int>(), factor * point["g"].get<int>(),
                                    factor * point["b"].get<int>()}));
    }
  }

  std::string path_;
  bool las_ = false;
  Json known_;
};

TEST_P(DataFile, LoadsAsOtherReadersFoundIt) {
  const std::vector<std::string> lines = Load(path_);
  const StoredCloud cloud = Stored();
  const Json& outcome = known_["outcome"];
  ASSERT_EQ(cloud.Points(), outcome["points"].get<long long>());
  ASSERT_FALSE(lines.empty());
  for (const std::string& line : lines) EXPECT_EQ(line.rfind(path_ + ": ", 0), 0u) << line;
  KelvraCloudReport report = {1};
  ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_REPORT, &report));
  ASSERT_EQ(report.fileCount, 1);
  EXPECT_EQ(report.files[0].outcome == KELVRA_LOAD_PARTIAL, outcome.contains("partial"));
  EXPECT_EQ(report.files[0].kept, cloud.Points());
  if (cloud.Points() == 0) {
    EXPECT_TRUE(cloud.blocks.empty()) << "no empty block stays";
    return;
  }
  ASSERT_EQ(cloud.blocks.size(), 1u);
  const StoredBlock& block = cloud.blocks[0];
  const std::size_t last = (std::size_t)block.count - 1;
  EXPECT_EQ(block.key, las_ ? 1 : 0);
  EXPECT_EQ(op_->GetDataInstance()->GetType(1601), DA_NIL) << "key 1 names no system";
  if (!las_) {
    ExpectPoint(outcome["first"], block, 0);
    ExpectPoint(outcome["last"], block, last);
    return;
  }
  const Json& points = known_["expected"]["points_first"];
  for (std::size_t i = 0; i < points.size(); ++i) ExpectPoint(points[i], block, i);
  ExpectPoint(known_["expected"]["point_last"], block, last);
  for (int axis = 0; axis < 3; ++axis) {
    const int stored = axis == 0 ? 0 : 3 - axis; // y up
    const auto bound = [&](const char* side) {
      return (float)known_["expected"][side][(std::size_t)axis].get<double>();
    };
    EXPECT_EQ((float)block.corners[0][stored], bound("min_xyz"));
    EXPECT_EQ((float)block.corners[1][stored], bound("max_xyz"));
  }
}

INSTANTIATE_TEST_SUITE_P(Each, DataFile, testing::ValuesIn(DataFiles()), [](const auto& file) {
  std::string name = file.param;
  for (char& c : name)
    if (!std::isalnum((unsigned char)c)) c = '_';
  return name;
});

} // namespace
