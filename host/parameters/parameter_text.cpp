#include "host/parameters/parameter_text.h"

#include "host/base/text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <sstream>

namespace host {

namespace {

using resource::ElementType;
using resource::Parameter;

std::string Lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = (char)(c - 'A' + 'a');
  return text;
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t");
  return first == std::string::npos ? std::string()
                                    : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Short(double n) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << n;
  return out.str();
}

/** The whole text as a number, "%" as hundredths. */
bool ParseNumber(std::string text, double* number) {
  const bool percent = !text.empty() && text.back() == '%';
  if (percent) text.pop_back();
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  in >> std::noskipws >> *number;
  if (text.empty() || in.fail() || in.peek() != std::char_traits<char>::eof() || !std::isfinite(*number))
    return false;
  if (percent) *number /= 100.0;
  return true;
}

bool InRange(const Parameter& parameter, std::size_t axis, double value) {
  if (parameter.min) {
    const double low = (*parameter.min)[axis];
    if (value < low || (parameter.minExclusive && value == low)) return false;
  }
  if (parameter.max) {
    const double high = (*parameter.max)[axis];
    if (value > high || (parameter.maxExclusive && value == high)) return false;
  }
  return true;
}

bool Fail(const std::string& expected, std::string* error) {
  *error = "expected " + expected;
  return false;
}

bool CheckedNumber(const Parameter& parameter, std::size_t axis, const std::string& text,
                   const std::string& what, double* number, std::string* error) {
  const std::string range = RangeText(parameter, axis);
  const bool hasComma = parameter.type != ElementType::kLong && text.find(',') != std::string::npos;
  const std::string expected =
      what + (range.empty() ? "" : " " + range) + (hasComma ? ", with a decimal point" : "");
  return (ParseNumber(text, number) && InRange(parameter, axis, *number)) || Fail(expected, error);
}

bool ParseBool(const std::string& text, GeData* value, std::string* error) {
  const std::string word = Lower(text);
  const bool yes = word == "1" || word == "true" || word == "yes" || word == "on";
  const bool no = word == "0" || word == "false" || word == "no" || word == "off";
  if (!yes && !no) return Fail("on or off", error);
  value->SetLong(yes);
  return true;
}

/** By number, by identifier or its end, or by the text that users see. */
bool ParseCycle(const Parameter& parameter, const std::string& text, GeData* value, std::string* error) {
  const std::string word = Lower(text);
  std::string expected;
  for (const resource::CycleEntry& entry : parameter.cycle) {
    if (entry.isDivider) continue;
    const std::string identifier = Lower(entry.identifier);
    const bool isEnd =
        identifier.size() > word.size() && !word.empty() &&
        identifier.compare(identifier.size() - word.size() - 1, std::string::npos, "_" + word) == 0;
    if (word == std::to_string(entry.id) || word == identifier || isEnd || word == Lower(entry.text)) {
      value->SetLong(entry.id);
      return true;
    }
    expected += (expected.empty() ? "" : ", ") + EntryName(parameter, entry);
  }
  return Fail("one of " + expected, error);
}

bool ParseLong(const Parameter& parameter, const std::string& text, GeData* value, std::string* error) {
  if (!parameter.cycle.empty()) return ParseCycle(parameter, text, value, error);
  double number = 0;
  if (!CheckedNumber(parameter, 0, text, "a whole number", &number, error)) return false;
  if (number != std::floor(number)) return Fail("a whole number", error);
  if (std::abs(number) > 2147483647.0) return Fail("a whole number of at most 2147483647", error);
  value->SetLong((LONG)number);
  return true;
}

/** Three numbers apart by commas or blanks. */
bool ParseVector(const Parameter& parameter, std::string text, GeData* value, std::string* error) {
  std::replace(text.begin(), text.end(), ',', ' ');
  std::istringstream in(text);
  std::string part;
  Vector v;
  for (LONG axis = 0; axis < 3; ++axis) {
    if (!(in >> part)) return Fail("three numbers, X,Y,Z", error);
    if (!CheckedNumber(parameter, (std::size_t)axis, part, "three numbers", &v[axis], error)) return false;
  }
  if (in >> part) return Fail("three numbers, X,Y,Z", error);
  value->SetVector(v);
  return true;
}

/** Knots "x,y" apart by semicolons; an empty text means no curve. */
bool ParseCurve(const std::string& text, GeData* value, std::string* error) {
  value->Free();
  SplineData curve;
  std::istringstream in(text);
  std::string knot;
  for (LONG number = 1; std::getline(in, knot, ';'); ++number) {
    const std::size_t comma = knot.find(',');
    double x = 0, y = 0;
    const bool good = comma != std::string::npos && ParseNumber(Trimmed(knot.substr(0, comma)), &x) &&
                      ParseNumber(Trimmed(knot.substr(comma + 1)), &y) && x >= 0.0 && x <= 1.0;
    if (!good || number > SplineData::kMaxKnots) {
      *error = "knot " + std::to_string(number) + " is \"" + knot +
               "\"; expected x,y with x from 0 to 1 and y finite, and at most " +
               std::to_string(SplineData::kMaxKnots) + " knots";
      return false;
    }
    if (curve.InsertKnot(x, y) == NOTOK) {
      *error = "not enough memory for its knots";
      return false;
    }
  }
  if (!text.empty()) value->SetCustomDataType(CUSTOMDATATYPE_SPLINE, curve);
  return true;
}

bool ParseLink(const std::string& text, Document* doc, GeData* value, std::string* error) {
  BaseLink link;
  if (!text.empty()) {
    const String name = FromUtf8(text);
    const std::vector<Node*> nodes = doc ? Hierarchy(*doc) : std::vector<Node*>();
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const Node* node) {
      return node->kind == NodeKind::Object && node->name == name;
    });
    if (found == nodes.end()) return Fail("the name of an object in the document, or nothing", error);
    link.target = (*found)->linkId;
  }
  value->SetBaseLink(&link);
  return true;
}

} // namespace

std::string ParameterName(const Parameter& parameter) {
  return Lower(parameter.identifier.substr(parameter.identifier.find('_') + 1));
}

std::string EntryName(const Parameter& parameter, const resource::CycleEntry& entry) {
  const std::string start = parameter.identifier + "_";
  const bool begins = entry.identifier.compare(0, start.size(), start) == 0;
  return begins ? Lower(entry.identifier.substr(start.size())) : std::to_string(entry.id);
}

std::string RangeText(const Parameter& parameter, std::size_t axis) {
  std::string text, percent;
  const auto add = [&](const std::optional<resource::Numbers>& limit, const char* word) {
    if (!limit) return;
    text += (text.empty() ? "" : " ") + (word + Short((*limit)[axis]));
    percent += (percent.empty() ? "" : " ") + (word + Short((*limit)[axis] * 100.0)) + "%";
  };
  add(parameter.min, parameter.minExclusive ? "above " : "from ");
  add(parameter.max, parameter.maxExclusive ? "below " : "to ");
  return parameter.unit == resource::Unit::kPercent && parameter.max ? text + ", or " + percent : text;
}

const Parameter* FindParameterByName(const resource::Description& description, const std::string& name) {
  if (name.empty()) return nullptr;
  if (const Parameter* exact = description.FindParameter(std::string_view(name))) return exact;
  const std::string wanted = Lower(name);
  for (const Parameter& parameter : description.parameters) {
    const std::size_t underscore = parameter.identifier.find('_');
    if (underscore != std::string::npos && Lower(parameter.identifier.substr(underscore + 1)) == wanted)
      return &parameter;
  }
  return nullptr;
}

bool ParseParameter(const Parameter& parameter, const std::string& text, Document* doc, GeData* value,
                    std::string* error) {
  switch (parameter.type) {
  case ElementType::kBool:
    return ParseBool(text, value, error);
  case ElementType::kLong:
    return ParseLong(parameter, text, value, error);
  case ElementType::kVector:
  case ElementType::kColor:
    return ParseVector(parameter, text, value, error);
  case ElementType::kLink:
    return ParseLink(text, doc, value, error);
  case ElementType::kSpline:
    return ParseCurve(text, value, error);
  case ElementType::kReal: {
    double number = 0;
    if (!CheckedNumber(parameter, 0, text, "a number", &number, error)) return false;
    value->SetReal(number);
    return true;
  }
  case ElementType::kString:
    value->SetString(FromUtf8(text));
    return true;
  case ElementType::kFilename:
    value->SetFilename(Filename(FromUtf8(text)));
    return true;
  case ElementType::kBaseTime: {
    double seconds = 0;
    if (!CheckedNumber(parameter, 0, text, "a number of seconds", &seconds, error)) return false;
    value->SetBaseTime(BaseTime(seconds));
    return true;
  }
  case ElementType::kButton:
    *error = "a button has no value";
    return false;
  default:
    *error = "this kind of parameter cannot be set from text";
    return false;
  }
}

} // namespace host
