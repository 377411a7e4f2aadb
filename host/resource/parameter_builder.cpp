#include "host/resource/parameter_builder.h"

#include <cmath>
#include <limits>

namespace host::resource {
namespace {

constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180.0;

bool IsWhole(ElementType type) {
  return type == ElementType::kLong || type == ElementType::kBool;
}
bool IsTriple(ElementType type) {
  return type == ElementType::kVector || type == ElementType::kColor;
}
bool IsText(ElementType type) {
  return type == ElementType::kString || type == ElementType::kFilename;
}

double ToStored(Unit unit, ElementType type, double shown) {
  if (IsWhole(type)) return shown;
  if (unit == Unit::kPercent) return shown / 100.0;
  if (unit == Unit::kDegree) return shown * kRadiansPerDegree;
  return shown;
}

class ParameterFiller {
public:
  ParameterFiller(const ParameterContext& context, Parameter* parameter)
      : context_(context), parameter_(*parameter) {}

  void Fill(const ElementSyntax& element) {
    // The unit decides what the numbers mean, wherever it stands.
    for (const AttributeSyntax& attribute : element.attributes) {
      if (attribute.info->attribute == Attribute::kUnit) TakeUnit(attribute.values[0].text);
    }
    for (const AttributeSyntax& attribute : element.attributes) Apply(attribute);
  }

private:
  void TakeUnit(const std::string& word) {
    const std::vector<std::string_view>& words = FindAttribute("UNIT")->choices;
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i] == word) parameter_.unit = Unit(i);
    }
  }

  void Apply(const AttributeSyntax& attribute) {
    switch (attribute.info->attribute) {
    case Attribute::kMin:
      parameter_.min = ReadNumbers(attribute);
      break;
    case Attribute::kMax:
      parameter_.max = ReadNumbers(attribute);
      break;
    case Attribute::kMinExclusive:
      TakeExclusive(attribute, &parameter_.min, &parameter_.minExclusive);
      break;
    case Attribute::kMaxExclusive:
      TakeExclusive(attribute, &parameter_.max, &parameter_.maxExclusive);
      break;
    case Attribute::kShownNumbers:
      TakeShown(attribute);
      break;
    case Attribute::kCycle:
      TakeCycle(attribute);
      break;
    case Attribute::kDefault:
      TakeDefault(attribute);
      break;
    case Attribute::kHidden:
      parameter_.hidden = true;
      break;
    case Attribute::kParentId:
      for (const Token& parent : attribute.values) context_.resolveId(parent);
      break;
    case Attribute::kAccept:
      // The application's own types are named; a name says nothing without its list.
      for (const Token& type : attribute.values)
        if (type.isInteger) parameter_.accept.push_back(context_.resolveId(type));
      break;
    case Attribute::kLayout:
      if (attribute.info->keyword == std::string_view("CUSTOMGUI"))
        parameter_.isSlider = attribute.values[0].text.find("SLIDER") != std::string::npos;
      break;
    case Attribute::kUnit:
      break;
    }
  }

  [[noreturn]] void Fail(const Token& token, const std::string& message) const {
    throw ParseError(context_.file, token.place, message);
  }

  double ReadNumber(const Token& token) const {
    using Limits = std::numeric_limits<std::int32_t>;
    if (IsWhole(parameter_.type) &&
        (!token.isInteger || token.integer < Limits::min() || token.integer > Limits::max())) {
      Fail(token, "expected a whole number of 32 bits, found '" + token.text + "'");
    }
    return ToStored(parameter_.unit, parameter_.type, token.number);
  }

  Numbers ReadNumbers(const AttributeSyntax& attribute) const {
    const std::vector<Token>& values = attribute.values;
    if (values.size() == 1) {
      const double number = ReadNumber(values[0]);
      return {number, number, number};
    }
    if (!IsTriple(parameter_.type)) {
      Fail(values[1],
           "expected ';': only VECTOR and COLOR take three numbers, found '" + values[1].text + "'");
    }
    return {ReadNumber(values[0]), ReadNumber(values[1]), ReadNumber(values[2])};
  }

  void TakeExclusive(const AttributeSyntax& attribute, std::optional<Numbers>* limit, bool* exclusive) {
    *exclusive = true;
    if (!attribute.values.empty()) *limit = ReadNumbers(attribute);
  }

  void TakeShown(const AttributeSyntax& attribute) {
    const std::string_view keyword = attribute.info->keyword;
    std::optional<Numbers>& taken = keyword == "STEP"        ? parameter_.step
                                    : keyword == "MINSLIDER" ? parameter_.sliderMin
                                                             : parameter_.sliderMax;
    taken = ReadNumbers(attribute);
  }

  void TakeCycle(const AttributeSyntax& attribute) {
    for (const CycleItem& item : attribute.cycle) {
      CycleEntry entry;
      entry.identifier = item.id.text;
      entry.isDivider = item.id.isInteger && item.id.integer == -1;
      entry.id = context_.resolveId(item.id);
      if (!entry.isDivider) entry.text = context_.textOf(entry.identifier);
      if (item.icon) context_.resolveId(*item.icon);
      parameter_.cycle.push_back(std::move(entry));
    }
  }

  void TakeDefault(const AttributeSyntax& attribute) {
    const Token& value = attribute.values[0];
    if (IsText(parameter_.type) != (value.kind == TokenKind::kText)) {
      Fail(value, std::string("expected ") + (IsText(parameter_.type) ? "a text in quotes" : "a number") +
                      " as the default of this " + InfoOf(parameter_.type).keyword + ", found '" +
                      value.text + "'");
    }
    if (value.kind == TokenKind::kText) {
      parameter_.defaultText = value.text;
    } else if (value.kind == TokenKind::kName) {
      const double number = context_.resolveId(value);
      parameter_.defaultNumbers = Numbers{number, number, number};
    } else {
      parameter_.defaultNumbers = ReadNumbers(attribute);
    }
  }

  const ParameterContext& context_;
  Parameter& parameter_;
};

} // namespace

void FillParameter(const ParameterContext& context, const ElementSyntax& element, Parameter* parameter) {
  ParameterFiller(context, parameter).Fill(element);
}

} // namespace host::resource
