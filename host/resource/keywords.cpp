#include "host/resource/keywords.h"

namespace host::resource {
namespace {

using E = ElementType;
constexpr std::uint32_t kNumeric = kCommonWords | kLimitWords | kDefaultWord;

const std::vector<ElementInfo>& Elements() {
  static const std::vector<ElementInfo> elements = {
      {"BOOL", E::kBool, kCommonWords | kDefaultWord, true},
      {"LONG", E::kLong, kNumeric | kCycleWord, true},
      {"REAL", E::kReal, kNumeric, true},
      {"VECTOR", E::kVector, kNumeric, true},
      {"COLOR", E::kColor, kNumeric, true},
      {"STRING", E::kString, kCommonWords | kDefaultWord, true},
      {"FILENAME", E::kFilename, kCommonWords | kDefaultWord | kPathWords, true},
      {"LINK", E::kLink, kCommonWords | kLinkWords, true},
      {"BUTTON", E::kButton, kCommonWords, true},
      {"STATICTEXT", E::kStaticText, kCommonWords, false},
      {"SEPARATOR", E::kSeparator, kCommonWords | kLineWord, false},
      {"GROUP", E::kGroup, kCommonWords | kGroupWords, false},
      {"BASETIME", E::kBaseTime, kNumeric, true},
      {"MATRIX", E::kMatrix, kCommonWords, true},
      {"SPLINE", E::kSpline, kCommonWords, true},
      {"GRADIENT", E::kGradient, kCommonWords | kGradientWords, true},
      {"IN_EXCLUDE", E::kInExclude, kCommonWords | kLinkWords, true},
      {"SHADERLINK", E::kShaderLink, kCommonWords | kLinkWords, true},
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
      {"STEP", A::kShownNumbers, S::kNumbers, kLimitWords, {}},
      {"MINSLIDER", A::kShownNumbers, S::kNumbers, kLimitWords, {}},
      {"MAXSLIDER", A::kShownNumbers, S::kNumbers, kLimitWords, {}},
      {"UNIT", A::kUnit, S::kChoice, kLimitWords, {"REAL", "LONG", "PERCENT", "DEGREE", "METER", "TIME"}},
      {"CUSTOMGUI", A::kLayout, S::kName, kCommonWords, {}},
      {"CYCLE", A::kCycle, S::kCycleList, kCycleWord, {}},
      {"DEFAULT", A::kDefault, S::kValue, kDefaultWord | kGroupWords, {}},
      {"ANIM", A::kLayout, S::kChoice, kCommonWords, {"OFF", "ON", "MIX"}},
      {"HIDDEN", A::kHidden, S::kFlag, kCommonWords, {}},
      {"PARENTID", A::kParentId, S::kId, kCommonWords, {}},
      {"PARENTCOLLAPSE", A::kParentId, S::kOptionalId, kCommonWords, {}},
      {"COLUMNS", A::kLayout, S::kNumber, kGroupWords, {}},
      {"ACCEPT", A::kAccept, S::kIdList, kLinkWords, {}},
      {"REFUSE", A::kLayout, S::kIdList, kLinkWords, {}},
      {"DIRECTORY", A::kLayout, S::kFlag, kPathWords, {}},
      {"SAVE", A::kLayout, S::kFlag, kPathWords, {}},
      {"OPEN", A::kLayout, S::kFlag, kCommonWords, {}},
      {"LAYOUTGROUP", A::kLayout, S::kFlag, kGroupWords, {}},
      {"LINE", A::kLayout, S::kFlag, kLineWord, {}},
      {"COLOR", A::kLayout, S::kFlag, kGradientWords, {}},
  };
  return attributes;
}

// Words without a value that are legal on every element.
constexpr const char* kPlainWords[] = {"SCALE_H",      "SCALE_V",   "FIT_H", "NEWLINE",       "JOINEND",
                                       "JOINENDSCALE", "ALIGNLEFT", "PAGE",  "FORBID_SCALING"};

std::vector<AttributeInfo> PlainAttributes() {
  std::vector<AttributeInfo> plain;
  for (const char* word : kPlainWords) plain.push_back({word, A::kLayout, S::kFlag, kCommonWords, {}});
  return plain;
}

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

} // namespace host::resource
