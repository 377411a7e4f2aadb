// Real files of many makers through the load button: outcome, coordinates and colours as other readers found
// them.
#include "support/data_folder.h"
#include "support/module_fixture.h"

#include "object/las/reader.h"
#include "res/kelvra_messages.h"

namespace {

using nlohmann::json;

class RealFiles : public ModuleTest {
protected:
  /** Stored as 32-bit floats, and in the host's axes. */
  static void ExpectPoint(const json& point, const StoredBlock& block, std::size_t index, const json& rgb) {
    const auto stored = block.Point(index);
    for (std::size_t axis = 0; axis < 3; ++axis)
      EXPECT_EQ(stored[axis], (double)(float)point[std::string(1, "xyz"[axis])].get<double>()) << axis;
    if (!rgb.is_null()) {
      EXPECT_EQ(json(block.Rgb(index)), rgb);
    }
  }
  /** Colours of 8 bits in fields of 16 are widened; null for points without colour. */
  static json ColorOf(const json& point, const json& expected) {
    if (!expected["has_rgb_fields"].get<bool>()) return nullptr;
    const int factor = expected["max_rgb"].get<int>() <= 255 ? 255 : 1;
    return {factor * point["r"].get<int>(), factor * point["g"].get<int>(), factor * point["b"].get<int>()};
  }
  static void ExpectText(const json& outcome, const StoredBlock& block) {
    EXPECT_EQ(block.key, 0);
    ExpectPoint(outcome["first"], block, 0, outcome["first"]["attrib3"]);
    ExpectPoint(outcome["last"], block, (std::size_t)block.count - 1, outcome["last"]["attrib3"]);
  }
  static void ExpectLas(const json& expected, const StoredBlock& block) {
    EXPECT_EQ(block.key, 1);
    const json& points = expected["points_first"];
    for (std::size_t i = 0; i < points.size(); ++i)
      ExpectPoint(points[i], block, i, ColorOf(points[i], expected));
    ExpectPoint(expected["point_last"], block, (std::size_t)block.count - 1,
                ColorOf(expected["point_last"], expected));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const int stored = axis == 0 ? 0 : 3 - (int)axis; // y up
      EXPECT_EQ((float)block.corners[0][stored], (float)expected["min_xyz"][axis].get<double>());
      EXPECT_EQ((float)block.corners[1][stored], (float)expected["max_xyz"][axis].get<double>());
    }
  }
};

TEST_F(RealFiles, LoadAsOtherReadersFoundThem) {
  int files = 0;
  for (const RealCloud& cloud : RealClouds()) {
    const bool las = IsLas(cloud.path);
    if (las && !kelvra::LasFile::Available()) continue;
    SCOPED_TRACE(cloud.path);
    ++files;
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    const std::vector<std::string> lines = Load(cloud.path);
    const StoredCloud stored = Stored();
    const json& outcome = cloud.facts["outcome"];
    ASSERT_EQ(stored.Points(), outcome["points"].get<long long>());
    ASSERT_FALSE(lines.empty());
    for (const std::string& line : lines) EXPECT_EQ(line.rfind(cloud.path + ": ", 0), 0u) << line;
    KelvraCloudReport report = {2};
    ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_REPORT, &report));
    ASSERT_EQ(report.fileCount, 1);
    EXPECT_EQ(report.files[0].outcome == KELVRA_LOAD_PARTIAL, outcome.contains("partial")) << lines[0];
    ASSERT_EQ(stored.blocks.size(), stored.Points() > 0 ? 1u : 0u) << "no empty block stays";
    EXPECT_EQ(op_->GetDataInstance()->GetType(1601), DA_NIL) << "key 1 names no system";
    if (!stored.blocks.empty() && las) ExpectLas(cloud.facts["expected"], stored.blocks[0]);
    if (!stored.blocks.empty() && !las) ExpectText(outcome, stored.blocks[0]);
    BaseObject::Free(op_);
  }
  if (files == 0) GTEST_SKIP() << "no real clouds in " << DataFolder() << " (KELVRA_TEST_DATA)";
}

} // namespace
