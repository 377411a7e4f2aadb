#include "cli/commands/commands.h"

#include "cli/commands/output/json_text.h"
#include "cli/session/cloud_session.h"
#include "cli/session/parameter_list.h"
#include "cli/session/preferences_page.h"
#include "cli/text/line.h"
#include "cli/text/nearest.h"
#include "host/parameters/parameter_text.h"
#include "otallyframe.h"

#include <cctype>
#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

using host::resource::ElementType;
using host::resource::Parameter;
using host::resource::Unit;

struct ParamsOptions {
  std::string word;
  bool json = false;
};

/** One of the places that have parameters. */
struct Place {
  const char *name, *heading;
  std::string prefix; ///< of the names, which users leave out
  const host::resource::Description* description;
};

std::vector<Place> PlacesOf(CloudSession& session) {
  const auto find = [&](const char* name) {
    const host::PluginInfo* plugin = session.App().FindByDescription(name);
    const host::resource::Description* description =
        plugin ? host::LoadDescription(plugin->id, std::string(), nullptr) : nullptr;
    if (!description) throw std::runtime_error(std::string("the module has no description of ") + name);
    return description;
  };
  BaseList2D* page = FindPreferencesPage(session.App());
  return {{"object", "Point cloud (--set NAME=VALUE)", "", find("Otallyframe")},
          {"video post", "Video post, for objects that are not clouds (--set in scenes without a cloud)", "",
           find("VPkelvrarender")},
          {"preferences", "Preferences (kelvra prefs set NAME VALUE)", "prefs_",
           host::FindDescription(*host::Impl(page))}};
}

std::string NameIn(const Place& place, const Parameter& parameter) {
  const std::string name = host::ParameterName(parameter);
  return name.compare(0, place.prefix.size(), place.prefix) == 0 ? name.substr(place.prefix.size()) : name;
}

std::string Number(double value) {
  return JsonText(nlohmann::json(value == (double)(long long)value ? nlohmann::json((long long)value)
                                                                   : nlohmann::json(value)));
}

const char* UnitOf(const Parameter& parameter) {
  return parameter.unit == Unit::kPercent ? "%" : parameter.unit == Unit::kMeter ? "scene units" : "";
}

/** As it is typed. */
std::string DefaultText(const Parameter& parameter) {
  if (parameter.type == ElementType::kLink || parameter.type == ElementType::kSpline) return "none";
  if (parameter.type == ElementType::kString || parameter.type == ElementType::kFilename)
    return parameter.defaultText.value_or("").empty() ? "empty" : *parameter.defaultText;
  const host::resource::Numbers numbers = parameter.defaultNumbers.value_or(host::resource::Numbers{});
  for (const host::resource::CycleEntry& entry : parameter.cycle)
    if (entry.id == (LONG)numbers[0]) return host::EntryName(parameter, entry);
  if (parameter.type == ElementType::kVector)
    return Number(numbers[0]) + "," + Number(numbers[1]) + "," + Number(numbers[2]);
  if (parameter.type == ElementType::kBool) return numbers[0] != 0.0 ? "on" : "off";
  return parameter.unit == Unit::kPercent ? Number(numbers[0] * 100.0) + "%" : Number(numbers[0]);
}

std::string RangeOf(const Parameter& parameter) {
  std::string entries;
  for (const host::resource::CycleEntry& entry : parameter.cycle)
    if (!entry.isDivider) entries += (entries.empty() ? "" : ", ") + host::EntryName(parameter, entry);
  if (!entries.empty()) return "one of " + entries;
  switch (parameter.type) {
  case ElementType::kBool:
    return "on or off";
  case ElementType::kString:
  case ElementType::kFilename:
    return "any text";
  case ElementType::kLink:
    return "name of an object";
  case ElementType::kSpline:
    return "knots x,y;x,y with x from 0 to 1";
  case ElementType::kVector:
    return "three numbers X,Y,Z";
  default:
    break;
  }
  const std::string range = host::RangeText(parameter);
  return range.empty() ? "any number" : range;
}

nlohmann::json ParameterJson(const Place& place, const Parameter& parameter) {
  nlohmann::json values = nlohmann::json::array();
  for (const host::resource::CycleEntry& entry : parameter.cycle)
    if (!entry.isDivider)
      values.push_back(
          {{"name", host::EntryName(parameter, entry)}, {"number", entry.id}, {"shown_as", entry.text}});
  const auto limit = [](const std::optional<host::resource::Numbers>& numbers) {
    return numbers ? nlohmann::json((*numbers)[0]) : nlohmann::json();
  };
  return {{"of", place.name},
          {"name", NameIn(place, parameter)},
          {"number", parameter.id},
          {"shown_as", parameter.longName},
          {"default", DefaultText(parameter)},
          {"range", RangeOf(parameter)},
          {"min", limit(parameter.min)},
          {"max", limit(parameter.max)},
          {"unit", UnitOf(parameter)},
          {"values", values},
          {"sentence", parameter.help}};
}

/** What this program takes where nobody chose a value, unlike the application; empty where that is the same.
 */
std::string OwnChoice(const Place& place, const Parameter& parameter) {
  if (place.name != std::string("object")) return std::string();
  switch (parameter.id) {
  case KELVRA_LOCAL_ORIGIN:
    return ", in kelvra automatic";
  case KELVRA_FIT_TEXT:
    return ", in kelvra large";
  case KELVRA_LOAD_COLOR:
    return ", in kelvra height where files have no colours";
  case KELVRA_POINT_SIZE:
  case KELVRA_POINT_RADIUS:
    return ", in kelvra by density";
  default:
    return std::string();
  }
}

/** How well a parameter answers a search: users look for words, and find parts of them behind those. */
enum class Match { Word, Part, None };

Match MatchOf(const Place& place, const Parameter& parameter, const std::string& word) {
  const auto lower = [](std::string text) {
    for (char& c : text)
      if (c >= 'A' && c <= 'Z') c = (char)(c - 'A' + 'a');
    return text;
  };
  if (word.empty() || word == std::to_string(parameter.id)) return Match::Word;
  std::string text = NameIn(place, parameter) + "\n" + parameter.longName + "\n" + parameter.help + "\n" +
                     OwnChoice(place, parameter);
  for (const host::resource::CycleEntry& entry : parameter.cycle)
    if (!entry.isDivider) text += "\n" + host::EntryName(parameter, entry) + "\n" + entry.text;
  text = "\n" + lower(text) + "\n";
  const auto isLetter = [&](std::size_t at) { return std::isalnum((unsigned char)text[at]) != 0; };
  const std::string wanted = lower(word);
  Match match = Match::None;
  for (std::size_t at = text.find(wanted); at != std::string::npos && match != Match::Word;
       at = text.find(wanted, at + 1)) {
    const std::size_t end = at + wanted.size();
    match = at > 0 && !isLetter(at - 1) && end < text.size() && !isLetter(end) ? Match::Word : Match::Part;
  }
  return match;
}

void PrintParameter(const Place& place, const Parameter& parameter) {
  const std::string unit = parameter.unit == Unit::kMeter ? ", in scene units" : "";
  Line(std::cout) << "  " << NameIn(place, parameter) << " (" << parameter.id << "): " << RangeOf(parameter)
                  << unit << "; default " << DefaultText(parameter) << OwnChoice(place, parameter);
  Line(std::cout) << "      " << parameter.help;
}

int RunParams(const ParamsOptions& options) {
  CloudSession session({});
  nlohmann::json found = nlohmann::json::array();
  std::vector<std::string> names;
  for (const Place& place : PlacesOf(session)) {
    bool headed = options.json;
    const std::vector<const Parameter*> parameters = SettableParameters(*place.description);
    for (const Parameter* parameter : parameters) names.push_back(NameIn(place, *parameter));
    for (const Match match : {Match::Word, Match::Part})
      for (const Parameter* parameter : parameters) {
        if (MatchOf(place, *parameter, options.word) != match) continue;
        found.push_back(ParameterJson(place, *parameter));
        if (!headed) Line(std::cout) << place.heading;
        headed = true;
        if (!options.json) PrintParameter(place, *parameter);
      }
  }
  if (found.empty())
    throw UsageError{"params " + options.word + ": no name, number, value or sentence holds it" +
                     DidYouMean(options.word, names)};
  if (options.json) std::cout << JsonText(found, 2) << "\n";
  return kExitWhole;
}

} // namespace

Run AddParams(CLI::App& command) {
  const auto options = std::make_shared<ParamsOptions>();
  command.add_option("WORD", options->word,
                     "Part of a name or of a value, a number, or a word of the sentence");
  command.add_flag("--json", options->json, "Print JSON");
  return [options] { return RunParams(*options); };
}

} // namespace cli
