// A description: the parameters of one kind of node, with their texts and limits, ready for a user interface.
#pragma once

#include "host/resource/keywords.h"
#include "host/resource/symbols.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::resource {

/** One value for each axis; plain numbers use the first and repeat it. */
using Numbers = std::array<double, 3>;

enum class Unit { kReal, kLong, kPercent, kDegree, kMeter, kTime };
enum class Animate { kOff, kOn, kMix };

struct CycleEntry {
  std::int32_t id = 0;
  std::string identifier; // the number as text where the file gives no name
  std::string text;
  std::int32_t icon = 0;
  bool isDivider = false; // a line between entries; no value
};

/**
 * One element other than a group. All numbers are in stored units: the percent and degrees in which the file
 * writes limits, steps and defaults have become fractions and radians.
 */
struct Parameter {
  std::int32_t id = 0; // 0 for separators and static texts without one
  std::string identifier;
  ElementType type = ElementType::kReal;
  std::string longName, shortName; // UTF-8
  std::string origin;              // the description that declares it
  std::int32_t groupId = 0;        // 0 for the top level
  int order = 0;                   // place among the parameters and groups of the description
  std::int32_t parentId = 0;       // the parameter below which it is shown; 0 for none

  std::optional<Numbers> min, max, step, sliderMin, sliderMax;
  bool minExclusive = false, maxExclusive = false;
  std::optional<Numbers> defaultNumbers; // LONG and BOOL too
  std::optional<std::string> defaultText;
  Unit unit = Unit::kReal;
  std::string customGui; // empty for the type's own
  std::vector<CycleEntry> cycle;
  std::vector<std::int32_t> accept, refuse; // type numbers; empty for no restriction
  Animate animate = Animate::kOn;
  bool hidden = false;
  bool isDirectory = false, isSave = false; // of a file name
  std::vector<std::string> layout;          // words that only the layout reads, as written
};

struct Group {
  std::int32_t id = 0; // below 0 for groups without one; unique in its description
  std::string identifier;
  std::string name;
  std::int32_t parentId = 0; // 0 for the top level
  int order = 0;
  std::int32_t columns = 1;
  bool isOpen = false;
  bool hidden = false;
  std::vector<std::string> layout;
};

struct Description {
  std::string name;
  std::string title;
  std::vector<Parameter> parameters; // in order of appearance, included ones where they are included
  std::vector<Group> groups;
  SymbolTable symbols;                   // its own and those of what it includes
  std::vector<std::string> missingTexts; // own identifiers that no language has a text for

  const Parameter* FindParameter(std::int32_t id) const;
  const Parameter* FindParameter(std::string_view identifier) const;
  const Group* FindGroup(std::int32_t id) const;
};

/** What is shown in place of a text that no language has. */
std::string PlaceholderText(const std::string& identifier);

} // namespace host::resource
