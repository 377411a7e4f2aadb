#include "cli/commands/commands.h"

#include "cli/commands/output/json_text.h"
#include "cli/commands/params/parameter_search.h"
#include "cli/session/cloud_session.h"
#include "cli/session/parameter_list.h"
#include "cli/session/preferences_page.h"
#include "cli/text/line.h"
#include "host/parameters/parameter_text.h"
#include "otallyframe.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

using host::resource::ElementType;
using host::resource::Parameter;
using host::resource::Unit;

struct ParamsOptions {
  std::vector<std::string> words;
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

/** Everything that is said about a parameter. */
std::string TextOf(const Place& place, const Parameter& parameter) {
  std::string text = NameIn(place, parameter) + "\n" + std::to_string(parameter.id) + "\n" +
                     parameter.longName + "\n" + parameter.help + "\n" + OwnChoice(place, parameter);
  for (const host::resource::CycleEntry& entry : parameter.cycle)
    if (!entry.isDivider) text += "\n" + host::EntryName(parameter, entry) + "\n" + entry.text;
  return text;
}

void PrintParameter(const Place& place, const Parameter& parameter) {
  const std::string unit = parameter.unit == Unit::kMeter ? ", in scene units" : "";
  Line(std::cout) << "  " << NameIn(place, parameter) << " (" << parameter.id << "): " << RangeOf(parameter)
                  << unit << "; default " << DefaultText(parameter) << OwnChoice(place, parameter);
  Line(std::cout) << "      " << parameter.help;
}

/** A parameter that answers a search. */
struct Found {
  const Place* place;
  const Parameter* parameter;
  Match match;
};

/** The best of each place first. Parts of words count only where nothing else was found. */
std::vector<Found> Find(const std::vector<Place>& places, const ParameterSearch& search) {
  std::vector<Found> all;
  Match best = Match::None;
  for (const Place& place : places)
    for (const Parameter* parameter : SettableParameters(*place.description)) {
      const Match match = search.Of(NameIn(place, *parameter), TextOf(place, *parameter));
      if (match != Match::None) all.push_back({&place, parameter, match});
      best = std::min(best, match);
    }
  if (best != Match::Part)
    all.erase(
        std::remove_if(all.begin(), all.end(), [](const Found& found) { return found.match == Match::Part; }),
        all.end());
  std::stable_sort(all.begin(), all.end(), [](const Found& a, const Found& b) {
    return a.place != b.place ? a.place < b.place : a.match < b.match;
  });
  return all;
}

/** Throws UsageError with the nearest names. */
[[noreturn]] void FailToFind(const std::vector<Place>& places, const ParamsOptions& options) {
  std::vector<std::string> names;
  for (const Place& place : places)
    for (const Parameter* parameter : SettableParameters(*place.description))
      names.push_back(NameIn(place, *parameter));
  std::string text;
  for (const std::string& word : options.words) text += " " + word;
  const std::string near = ParameterSearch(options.words).Nearest(names);
  throw UsageError{"params" + text + ": no name, number, value or sentence holds it" +
                   (near.empty() ? "; kelvra params lists all" : near)};
}

int RunParams(const ParamsOptions& options) {
  CloudSession session({});
  const std::vector<Place> places = PlacesOf(session);
  const std::vector<Found> all = Find(places, ParameterSearch(options.words));
  if (all.empty()) FailToFind(places, options);
  if (options.json) {
    nlohmann::json list = nlohmann::json::array();
    for (const Found& found : all) list.push_back(ParameterJson(*found.place, *found.parameter));
    std::cout << JsonText(list, 2) << "\n";
    return kExitWhole;
  }
  const Place* last = nullptr;
  for (const Found& found : all) {
    if (found.place != last) Line(std::cout) << found.place->heading;
    last = found.place;
    PrintParameter(*found.place, *found.parameter);
  }
  return kExitWhole;
}

} // namespace

Run AddParams(CLI::App& command) {
  const auto options = std::make_shared<ParamsOptions>();
  command
      .add_option("WORD", options->words,
                  "Of a name, a value or a sentence, or a number; several words must all fit")
      ->type_name("");
  command.add_flag("--json", options->json, "Print JSON");
  return [options] { return RunParams(*options); };
}

} // namespace cli
