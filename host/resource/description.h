// A description: the parameters of one kind of node, with their texts, limits and defaults.
#pragma once

#include "host/resource/keywords.h"
#include "host/resource/symbols.h"

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host::resource {

/** One value for each axis; plain numbers use the first and repeat it. */
using Numbers = std::array<double, 3>;

enum class Unit { kReal, kLong, kPercent, kDegree, kMeter, kTime };

struct CycleEntry {
  std::int32_t id = 0;
  std::string identifier; // the number as text where the file gives no name
  std::string text;
  bool isDivider = false; // a line between entries; no value
};

/**
 * One element other than a group. All numbers are in stored units: the percent and degrees in which the file
 * writes limits and defaults have become fractions and radians.
 */
struct Parameter {
  std::int32_t id = 0; // 0 for separators and static texts without one
  std::string identifier;
  ElementType type = ElementType::kReal;
  std::string longName, shortName; // UTF-8
  std::string help;                // one sentence; empty where no language has one
  std::string origin;              // the description that declares it

  std::optional<Numbers> min, max;
  bool minExclusive = false, maxExclusive = false;
  std::optional<Numbers> defaultNumbers; // LONG and BOOL too
  std::optional<std::string> defaultText;
  Unit unit = Unit::kReal; // in which the file writes the numbers
  std::vector<CycleEntry> cycle;
  std::vector<std::int32_t> accept; // numbers of types; empty for no restriction
  bool hidden = false;

  // What a user interface shows beyond the value.
  int group = -1; // place in Description::layout; -1 outside of groups
  std::optional<Numbers> sliderMin, sliderMax, step;
  bool isSlider = false;
};

/** A group of the user interface; groups nest. */
struct Group {
  std::int32_t id = 0; // 0 for one that only arranges its elements
  std::string title;
  int parent = -1; // place in Description::layout
  int columns = 1;
  bool isOpen = false; // at first
};

struct Description {
  std::string name;
  std::string title;
  std::vector<Parameter> parameters;     // in order of appearance, included ones where they are included
  std::set<std::int32_t> groups;         // those that have a number
  std::vector<Group> layout;             // parents before children
  SymbolTable symbols;                   // its own and those of what it includes
  std::vector<std::string> missingTexts; // own identifiers that no language has a text for

  const Parameter* FindParameter(std::int32_t id) const;
  const Parameter* FindParameter(std::string_view identifier) const;
};

/** What is shown in place of a text that no language has. */
std::string PlaceholderText(const std::string& identifier);

} // namespace host::resource
