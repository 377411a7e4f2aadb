#include "host/resource/keywords.h"

#include <utility>

namespace host::resource {
namespace {

using E = ElementType;
constexpr std::uint32_t kNumeric = kCommonWords | kLimitWords | kDefaultWord;

const std::vector<ElementInfo>& Elements() {
  static const std::vector<ElementInfo> elements = {
      {"BOOL", E::kBool, kCommonWords | kDefaultWord, 400006001, true},
      {"LONG", E::kLong, kNumeric | kCycleWord, 15, true},
      {"REAL", E::kReal, kNumeric, 19, true},
      {"VECTOR", E::kVector, kNumeric, 23, true},
      {"COLOR", E::kColor, kNumeric, 3, true},
      {"STRING", E::kString, kCommonWords | kDefaultWord, 130, true},
      {"FILENAME", E::kFilename, kCommonWords | kDefaultWord | kPathWords, 131, true},
      {"LINK", E::kLink, kCommonWords | kLinkWords, 133, true},
      {"BUTTON", E::kButton, kCommonWords, 8, true},
      {"STATICTEXT", E::kStaticText, kCommonWords, 12, false},
      {"SEPARATOR", E::kSeparator, kCommonWords | kLineWord, 11, false},
      {"GROUP", E::kGroup, kCommonWords | kGroupWords, 1, false},
      {"BASETIME", E::kBaseTime, kNumeric, 22, true},
      {"MATRIX", E::kMatrix, kCommonWords, 25, true},
      {"SPLINE", E::kSpline, kCommonWords, 1009060, true},
      {"GRADIENT", E::kGradient, kCommonWords | kGradientWords, 1000481, true},
      {"IN_EXCLUDE", E::kInExclude, kCommonWords | kLinkWords, 1009290, true},
      {"SHADERLINK", E::kShaderLink, kCommonWords | kLinkWords, 133, true},
      {"TEXTURE", E::kTexture, kCommonWords, 7, true},
      {"FONT", E::kFont, kCommonWords, 0, true},
      {"HYPERLINK", E::kHyperlink, kCommonWords, 0, true},
      {"PRIORITY", E::kPriority, kCommonWords, 0, true},
      {"DATETIME", E::kDateTime, kCommonWords, 0, true},
      {"UNITSCALE", E::kUnitScale, kCommonWords, 200000275, true},
      {"LENSGLOW", E::kLensGlow, kCommonWords, 0, true},
      {"MATPREVIEW", E::kMaterialPreview, kCommonWords, 0, true},
      {"DYNAMIC", E::kDynamic, kCommonWords, 10, true},
  };
  return elements;
}

using A = Attribute;
using S = AttributeShape;

const std::vector<AttributeInfo>& Attributes() {
  static const std::vector<AttributeInfo> attributes = {
      {"MIN", A::kMin, S::kNumbers, kLimitWords, {}},
      {"MAX", A::kMax, S::kNumbers, kLimitWords, {}},
      {"MINEX", A::kMinExclusive, S::kOptionalNumbers, kLimitWords, {}},
      {"MAXEX", A::kMaxExclusive, S::kOptionalNumbers, kLimitWords, {}},
      {"STEP", A::kStep, S::kNumbers, kLimitWords, {}},
      {"MINSLIDER", A::kMinSlider, S::kNumbers, kLimitWords, {}},
      {"MAXSLIDER", A::kMaxSlider, S::kNumbers, kLimitWords, {}},
      {"UNIT", A::kUnit, S::kChoice, kLimitWords, {"REAL", "LONG", "PERCENT", "DEGREE", "METER", "TIME"}},
      {"CUSTOMGUI", A::kCustomGui, S::kName, kCommonWords, {}},
      {"CYCLE", A::kCycle, S::kCycleList, kCycleWord, {}},
      {"DEFAULT", A::kDefault, S::kValue, kDefaultWord | kGroupWords, {}},
      {"ANIM", A::kAnimate, S::kChoice, kCommonWords, {"OFF", "ON", "MIX"}},
      {"HIDDEN", A::kHidden, S::kFlag, kCommonWords, {}},
      {"PARENTID", A::kParentId, S::kId, kCommonWords, {}},
      {"PARENTCOLLAPSE", A::kParentCollapse, S::kOptionalId, kCommonWords, {}},
      {"COLUMNS", A::kColumns, S::kNumber, kGroupWords, {}},
      {"ACCEPT", A::kAccept, S::kIdList, kLinkWords, {}},
      {"REFUSE", A::kRefuse, S::kIdList, kLinkWords, {}},
      {"DIRECTORY", A::kDirectory, S::kFlag, kPathWords, {}},
      {"SAVE", A::kSave, S::kFlag, kPathWords, {}},
      {"OPEN", A::kOpen, S::kFlag, kCommonWords, {}},
      {"PARENTMSG", A::kLayout, S::kId, kCommonWords, {}},
      {"MATEDCOLUMNS", A::kLayout, S::kNumber, kGroupWords, {}},
      {"MINPORTS", A::kLayout, S::kNumber, kCommonWords, {}},
      {"MAXPORTS", A::kLayout, S::kNumber, kCommonWords, {}},
      {"LAYOUTGROUP", A::kLayout, S::kFlag, kGroupWords, {}},
      {"LINE", A::kLayout, S::kFlag, kLineWord, {}},
      {"COLOR", A::kLayout, S::kFlag, kGradientWords, {}},
      {"ICC_BASEDOCUMENT", A::kLayout, S::kFlag, kGradientWords, {}},
  };
  return attributes;
}

// Words without a value that are legal on every element.
const char* const kPlainWords[] = {"SCALE_H",    "SCALE_V",        "FIT_H",       "NEWLINE",
                                   "JOINEND",    "JOINENDSCALE",   "ALIGNLEFT",   "PAGE",
                                   "INPORT",     "OUTPORT",        "STATICPORT",  "MULTIPLE",
                                   "PORTONLY",   "NEEDCONNECTION", "NOTMOVABLE",  "EDITPORT",
                                   "CREATEPORT", "FORBID_SCALING", "NOGUISWITCH", "FORBID_INLINE_FOLDING"};

std::vector<AttributeInfo> PlainAttributes() {
  std::vector<AttributeInfo> plain;
  for (const char* word : kPlainWords) plain.push_back({word, A::kLayout, S::kFlag, kCommonWords, {}});
  return plain;
}

constexpr std::pair<std::string_view, std::int32_t> kTypeNames[] = {{"Obase", 5155},
                                                                    {"Opoint", 5156},
                                                                    {"Opolygon", 5100},
                                                                    {"Ospline", 5101},
                                                                    {"Oline", 5137},
                                                                    {"Oinstance", 5126},
                                                                    {"Onull", 5140},
                                                                    {"Oplugin", 5154},
                                                                    {"Oparticle", 5109},
                                                                    {"Olight", 5102},
                                                                    {"Ocamera", 5103},
                                                                    {"Tbase", 5694},
                                                                    {"Ttexture", 5616},
                                                                    {"Tuvw", 5671},
                                                                    {"Tplugin", 5691},
                                                                    {"Tvariable", 5695},
                                                                    {"Tpolygonselection", 5673},
                                                                    {"Tpointselection", 5674},
                                                                    {"Tvertexmap", 5682},
                                                                    {"Mbase", 5702},
                                                                    {"Mmaterial", 5703},
                                                                    {"Xbase", 5707},
                                                                    {"Xbitmap", 5833},
                                                                    {"VPbase", 5709},
                                                                    {"Tbaselist2d", 110050},
                                                                    {"Tgelistnode", 110069},
                                                                    {"Olayer", 100004801}};

template <typename Table>
auto FindKeyword(const Table& table, std::string_view keyword) -> decltype(&table[0]) {
  for (const auto& entry : table) {
    if (keyword == entry.keyword) return &entry;
  }
  return nullptr;
}

} // namespace

const ElementInfo* FindElement(std::string_view keyword) {
  return FindKeyword(Elements(), keyword);
}

const AttributeInfo* FindAttribute(std::string_view keyword) {
  static const std::vector<AttributeInfo> plain = PlainAttributes();
  const AttributeInfo* found = FindKeyword(Attributes(), keyword);
  return found ? found : FindKeyword(plain, keyword);
}

const ElementInfo& InfoOf(ElementType type) {
  return Elements()[std::size_t(type)];
}

std::int32_t FindTypeName(std::string_view name) {
  for (const auto& [known, number] : kTypeNames) {
    if (known == name) return number;
  }
  return 0;
}

} // namespace host::resource
