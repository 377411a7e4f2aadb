#include "host/resource/resource_check.h"
#include "host/resource/resource_folder.h"
#include "support/common.h"

#include "res/c4d_symbols.h"
#include "res/description/otallyframe.h"
#include "res/description/xkelvra_shader.h"

using namespace host::resource;

namespace {

const std::filesystem::path kFolder = std::filesystem::path(KELVRA_SOURCE_DIR) / "res";

class ShippedResources : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(folder_.Open(kFolder, "us", &error_)) << error_; }

  const Description& Load(const std::string& name) {
    const Description* description = folder_.LoadDescription(name, &error_);
    if (!description) throw std::runtime_error(error_);
    return *description;
  }

  ResourceFolder folder_;
  std::string error_;
};

} // namespace

TEST_F(ShippedResources, AreSound) {
  for (const std::string& complaint : CheckResourceFolder(kFolder)) ADD_FAILURE() << complaint;
}

TEST_F(ShippedResources, NameThePlugins) {
  EXPECT_EQ(folder_.LoadString(10000), "Kelvra Point Cloud");
  EXPECT_EQ(folder_.LoadString(IDS_KELVRA_SHADER), "Kelvra Ray Colors");
  EXPECT_EQ(folder_.LoadString(IDS_KELVRA_RENDER), "Kelvra Render");
  EXPECT_EQ(folder_.LoadString(10003), "Kelvra");
}

TEST_F(ShippedResources, LetEveryMeaningfulValueThrough) {
  const Description& object = Load("Otallyframe");
  EXPECT_TRUE(object.FindParameter(KELVRA_LOAD_REQUEST)->hidden);
  EXPECT_EQ(Load("XKelvra_Shader").FindParameter(KELVRA_SHADER_OBJECT)->accept,
            std::vector<std::int32_t>{1037074});
  const auto entries = [&](std::int32_t id) {
    std::set<std::int32_t> numbers;
    for (const CycleEntry& entry : object.FindParameter(id)->cycle) numbers.insert(entry.id);
    return numbers;
  };
  EXPECT_EQ(entries(KELVRA_COLOR_MODE), (std::set<std::int32_t>{0, 1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(entries(KELVRA_CONVERT_MODE), (std::set<std::int32_t>{0, 1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(entries(KELVRA_LOAD_STATE), (std::set<std::int32_t>{0, 1, 2}));
  EXPECT_EQ(entries(KELVRA_FALLOFF_SHAPE), (std::set<std::int32_t>{0, 1}));
  EXPECT_EQ(entries(KELVRA_FALLOFF_ACTION), (std::set<std::int32_t>{0, 1, 2}));
  const struct {
    std::int32_t id;
    double value;
  } values[] = {
      {KELVRA_POINT_SHARE, 1.5},   {KELVRA_THIN_VIEW, 1e6},       {KELVRA_LOAD_NTH, 1e8},
      {KELVRA_LOAD_BUDGET, 1e5},   {KELVRA_MIN_HEIGHT, -500.0},   {KELVRA_FALLOFF_OFFSET, -10.0},
      {KELVRA_POINT_RADIUS, 1e-6}, {KELVRA_FALLOFF_CENTER, -1e6}, {KELVRA_CURVE_MIN_HEIGHT, -1e4},
      {KELVRA_EDGE_BIAS, 1.0},     {KELVRA_TRANSPARENCY, 1.0},    {KELVRA_FALLOFF_EXPONENT, 0.0},
  };
  for (const auto& each : values) {
    const Parameter& parameter = *object.FindParameter(each.id);
    EXPECT_TRUE(!parameter.min || (*parameter.min)[0] <= each.value) << parameter.identifier;
    EXPECT_TRUE(!parameter.max || (*parameter.max)[0] >= each.value) << parameter.identifier;
  }
}
