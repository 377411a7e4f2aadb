#include "host/resource/resource_check.h"
#include "host/resource/resource_file.h"
#include "host/resource/resource_folder.h"

#include "res/c4d_symbols.h"
#include "res/description/kelvraprefs.h"
#include "res/description/otallyframe.h"
#include "res/description/prefsmyprefs.h"
#include "res/description/vpkelvrarender.h"
#include "res/description/xkelvra_shader.h"

#include <gtest/gtest.h>
#include <set>

using namespace host::resource;

namespace {

const std::filesystem::path kFolder = std::filesystem::path(KELVRA_SOURCE_DIR) / "res";

struct Required {
  std::int32_t id;
  ElementType type;
  std::optional<double> number; // the default
};

class ShippedResources : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(folder_.Open(kFolder, "us", &error_)) << error_; }

  const Description& Load(const std::string& name) {
    const Description* description = folder_.LoadDescription(name, &error_);
    if (!description) throw std::runtime_error(error_);
    return *description;
  }

  void ExpectParameters(const std::string& name, const std::vector<Required>& required) {
    const Description& description = Load(name);
    std::set<std::int32_t> known;
    for (const Required& each : required) {
      known.insert(each.id);
      const Parameter* parameter = description.FindParameter(each.id);
      ASSERT_TRUE(parameter) << name << " lacks " << each.id;
      EXPECT_EQ(parameter->type, each.type) << parameter->identifier;
      ASSERT_EQ(parameter->defaultNumbers.has_value(), each.number.has_value()) << parameter->identifier;
      const double number = each.number ? (*parameter->defaultNumbers)[0] : 0.0;
      EXPECT_EQ(number, each.number.value_or(0.0)) << parameter->identifier;
    }
    for (const Parameter& parameter : description.parameters) {
      EXPECT_TRUE(parameter.origin != name || known.count(parameter.id))
          << parameter.identifier << " is not wanted";
    }
  }

  ResourceFolder folder_;
  std::string error_;
};

using E = ElementType;

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

TEST_F(ShippedResources, GiveTheObjectItsParameters) {
  ExpectParameters(
      "Otallyframe",
      {{1000, E::kReal, 1.0},   {1001, E::kReal, 0.0},   {1004, E::kLong, 0},     {1005, E::kLink, {}},
       {1006, E::kReal, 1.0},   {1007, E::kLong, 0},     {1009, E::kReal, 200.0}, {1010, E::kReal, 10.0},
       {1011, E::kLong, 0},     {1012, E::kLong, 0},     {1013, E::kButton, {}},  {1014, E::kLong, 0},
       {1016, E::kLong, 0},     {1025, E::kSpline, {}},  {1035, E::kSpline, {}},  {1100, E::kLong, 0},
       {1181, E::kLong, 60},    {1182, E::kLong, 1},     {1201, E::kLong, 0},     {1202, E::kBool, 0},
       {1203, E::kBool, 1},     {1204, E::kBool, 1},     {1205, E::kBool, 1},     {1206, E::kBool, 1},
       {1251, E::kReal, 0.25},  {1252, E::kReal, 0.0},   {1253, E::kReal, 0.5},   {1254, E::kReal, 0.0},
       {1255, E::kReal, 0.0},   {1256, E::kReal, 0.0},   {1257, E::kReal, 100.0}, {1501, E::kVector, 0.0},
       {1502, E::kVector, 0.0}, {1504, E::kReal, 100.0}, {1505, E::kReal, 0.0},   {1506, E::kLong, 0},
       {1507, E::kReal, 1.0},   {1600, E::kButton, {}},  {1601, E::kString, {}},  {1602, E::kButton, {}},
       {1603, E::kString, {}},  {1604, E::kString, {}},  {1605, E::kString, {}},  {1606, E::kString, {}},
       {1607, E::kString, {}},  {1608, E::kString, {}},  {1609, E::kButton, {}},  {1801, E::kReal, 0.0},
       {1802, E::kReal, 100.0}, {1803, E::kReal, 1.0}});
  const Description& object = Load("Otallyframe");
  EXPECT_TRUE(object.FindParameter(KELVRA_LOAD_REQUEST)->hidden);
  EXPECT_TRUE(object.FindParameter(900)) << "the name of every object";
}

TEST_F(ShippedResources, GiveTheOtherPluginsTheirs) {
  ExpectParameters("VPkelvrarender", {{1003, E::kLink, {}},
                                      {1025, E::kSpline, {}},
                                      {1035, E::kSpline, {}},
                                      {1201, E::kBool, 1},
                                      {1202, E::kBool, 1},
                                      {1203, E::kBool, 1},
                                      {1204, E::kBool, 1},
                                      {1205, E::kBool, 1},
                                      {1206, E::kBool, 1},
                                      {1251, E::kReal, 0.25},
                                      {1252, E::kReal, 0.0},
                                      {1253, E::kReal, 0.5},
                                      {1254, E::kReal, 0.0},
                                      {1255, E::kReal, 0.0},
                                      {1256, E::kReal, 0.0},
                                      {1257, E::kReal, 100.0}});
  ExpectParameters("XKelvra_Shader", {{1000, E::kLink, {}}});
  ExpectParameters("Prefsmyprefs", {{1000, E::kString, {}},
                                    {1001, E::kString, {}},
                                    {1002, E::kString, {}},
                                    {1003, E::kButton, {}},
                                    {1006, E::kString, {}},
                                    {1007, E::kButton, {}},
                                    {1020, E::kString, {}},
                                    {1021, E::kString, {}},
                                    {1022, E::kString, {}},
                                    {1023, E::kLong, 1}});
  EXPECT_EQ(Load("Prefsmyprefs").FindParameter(KELVRA_PREFS_VERSION)->defaultText, "1.44");
  EXPECT_EQ(Load("Prefsmyprefs").FindParameter(KELVRA_PREFS_STATUS)->defaultText, "Unregistered");
  EXPECT_TRUE(Load("KelvraPrefs").FindParameter(KELVRA_PREFS_CHECK_UPDATE));
  EXPECT_EQ(Load("XKelvra_Shader").FindParameter(KELVRA_SHADER_OBJECT)->accept,
            std::vector<std::int32_t>{1037074});
}

TEST_F(ShippedResources, LetEveryMeaningfulValueThrough) {
  const Description& object = Load("Otallyframe");
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

TEST_F(ShippedResources, HoldAnIconOfThirtyTwoPixels) {
  std::string bytes;
  ASSERT_TRUE(ReadResourceFile(kFolder / "Kelvra.tif", &bytes, &error_)) << error_;
  const auto number = [&](std::size_t at, int size) {
    std::uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i)
      value = value << 8 | static_cast<unsigned char>(bytes.at(at + std::size_t(i)));
    return value;
  };
  ASSERT_EQ(bytes.substr(0, 4), std::string("II*\0", 4));
  std::map<std::uint32_t, std::uint32_t> tags;
  const std::size_t directory = number(4, 4);
  for (std::size_t entry = 0; entry < number(directory, 2); ++entry) {
    const std::size_t at = directory + 2 + 12 * entry;
    const bool isShort = number(at + 2, 2) == 3 && number(at + 4, 4) == 1;
    tags[number(at, 2)] = number(at + 8, isShort ? 2 : 4);
  }
  const std::map<std::uint32_t, std::uint32_t> expected = {{256, 32}, {257, 32}, {259, 1},
                                                           {262, 2},  {277, 4},  {279, 4096}};
  for (const auto& [tag, value] : expected) EXPECT_EQ(tags[tag], value) << "tag " << tag;
  ASSERT_EQ(tags[273] + tags[279], bytes.size());
  std::set<std::string> colors;
  for (std::size_t pixel = tags[273]; pixel < bytes.size(); pixel += 4) {
    if (bytes[pixel + 3] != 0) colors.insert(bytes.substr(pixel, 3));
  }
  EXPECT_GT(colors.size(), 30u) << "the picture is empty";
  EXPECT_EQ(number(tags[273], 4), 0u) << "the corner is not transparent";
}
