#include "cli/commands/info/file_facts.h"

#include "cli/text/format.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace cli {

namespace {

const char* Name(FileOutcome outcome) {
  switch (outcome) {
  case FileOutcome::Whole:
    return "whole";
  case FileOutcome::Partial:
    return "partial";
  case FileOutcome::Empty:
    return "empty";
  case FileOutcome::Refused:
    return "refused";
  case FileOutcome::Stopped:
    return "stopped";
  }
  return "";
}

/** What each point of a LAS point format has beside its position. */
std::vector<std::string> AttributesOf(LONG format, const BlockStats* points) {
  std::vector<std::string> names = {"intensity", "returns", "class"};
  const auto add = [&](std::initializer_list<LONG> formats, const char* name) {
    if (std::find(formats.begin(), formats.end(), format) != formats.end()) names.push_back(name);
  };
  add({1, 3, 4, 5, 6, 7, 8, 9, 10}, "GPS time");
  // Many writers have fields for colours and none to put into them.
  if (points && points->hasColor) add({2, 3, 5, 7, 8, 10}, "colour");
  add({8, 10}, "near infrared");
  add({4, 5, 9, 10}, "waveforms");
  return names;
}

/** Of the classes that the format gives one. */
constexpr const char* kClassNames[] = {"never classified",  "unclassified",    "ground",    "low vegetation",
                                       "medium vegetation", "high vegetation", "building",  "low noise",
                                       "key point",         "water",           "rail",      "road",
                                       "overlap",           "wire guard",      "wire",      "tower",
                                       "wire connector",    "bridge deck",     "high noise"};

/** "2 ground", "64" */
std::string ClassText(std::size_t number) {
  return std::to_string(number) +
         (number < std::size(kClassNames) ? std::string(" ") + kClassNames[number] : std::string());
}

bool IsLas(const FileFacts& facts) {
  return facts.reader == KELVRA_READER_LAS || facts.reader == KELVRA_READER_LAS_BY_CLASS;
}

std::string VersionText(const FileFacts& facts) {
  return std::to_string(facts.versionMajor) + "." + std::to_string(facts.versionMinor);
}

/** Mean distance of neighbours, as if the points covered the largest face of their box: most scans are
 * surfaces.
 */
double SpacingOf(const FileReport& report) {
  if (report.points < 1) return 0.0;
  const Vector size = report.facts.box.Size();
  return std::sqrt(std::max({size.x * size.y, size.x * size.z, size.y * size.z}) / (double)report.points);
}

/** The sum of a float and its origin, without the digits that neither had. */
double Kept(double value, double step) {
  const int most = 9;
  const int decimals = step > 0 ? std::clamp((int)std::ceil(-std::log10(step)), 0, most) : most;
  const double rounded = std::strtod(Fixed(value, decimals).c_str(), nullptr);
  return std::abs(rounded - value) < step ? rounded : value;
}

std::string Joined(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

std::string KindLine(const FileReport& report, const BlockStats* points) {
  const FileFacts& facts = report.facts;
  std::vector<std::string> parts;
  if (IsLas(facts)) {
    parts.push_back("LAS " + VersionText(facts) + ", point format " + std::to_string(facts.pointFormat) +
                    ": " + Joined(AttributesOf(facts.pointFormat, points), ", "));
    if (!points || !points->hasColor) parts.push_back("no colours");
    const std::string system = SystemName(facts), unit = UnitName(facts.unit);
    parts.push_back(system.empty() ? "no coordinate system" : system);
    parts.push_back(unit.empty() ? "no unit named" : "unit " + unit);
  }
  const std::string unit = UnitName(facts.unit);
  parts.push_back("spacing about " + TwoDigits(SpacingOf(report)) + (unit.empty() ? "" : " " + unit));
  return Joined(parts, "; ");
}

SceneBox SceneOf(const BlockStats* points) {
  return points ? points->shown : SceneBox();
}

} // namespace

std::string Coordinate(double value, double step) {
  const int most = 9;
  const int decimals = step > 0 ? std::clamp((int)std::floor(-std::log10(step)), 0, most) : most;
  std::string text = Fixed(value, decimals);
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string BoxText(const host::Box& box, double step) {
  std::string text;
  for (int axis = 0; axis < 3; ++axis)
    text += std::string(axis ? ", " : "") + "xyz"[axis] + " " + Coordinate(box.low[axis], step) + ".." +
            Coordinate(box.high[axis], step);
  return text;
}

nlohmann::json BoxJson(const host::Box& box, double step) {
  if (box.IsEmpty()) return nullptr;
  nlohmann::json corners;
  for (int axis = 0; axis < 3; ++axis) {
    corners["min"].push_back(Kept(box.low[axis], step));
    corners["max"].push_back(Kept(box.high[axis], step));
  }
  return corners;
}

std::vector<std::string> FactLines(const FileReport& report, const BlockStats* points) {
  const SceneBox scene = SceneOf(points);
  const FileFacts& facts = report.facts;
  std::vector<std::string> lines;
  if (facts.box.IsEmpty()) return lines;
  lines.push_back(KindLine(report, points));
  lines.push_back("box " + BoxText(facts.box, facts.step) +
                  (!scene.IsEmpty() ? "; in the scene " + BoxText(scene, kSceneStep) : ""));
  std::vector<std::string> classes;
  for (std::size_t i = 0; i < facts.classes.size(); ++i)
    if (facts.classes[i] > 0) classes.push_back(ClassText(i) + ": " + Grouped(facts.classes[i]));
  if (!classes.empty()) lines.push_back("points by class " + Joined(classes, ", "));
  return lines;
}

nlohmann::json FactsJson(const FileReport& report, const BlockStats* points) {
  const SceneBox scene = SceneOf(points);
  const FileFacts& facts = report.facts;
  const std::string unit = UnitName(facts.unit), system = SystemName(facts);
  nlohmann::json json = {{"path", report.path},
                         {"points", report.points},
                         {"outcome", Name(report.outcome)},
                         {"status", Name(report.outcome)},
                         {"message", report.message},
                         {"details", report.details},
                         {"box", BoxJson(facts.box, facts.step)},
                         {"scene_box", BoxJson(scene, kSceneStep)},
                         {"step", facts.step},
                         {"spacing", SpacingOf(report)},
                         {"unit", unit.empty() ? nlohmann::json() : nlohmann::json(unit)},
                         {"crs", system.empty() ? nlohmann::json() : nlohmann::json(system)}};
  if (IsLas(facts)) {
    json["version"] = VersionText(facts);
    json["point_format"] = facts.pointFormat;
    json["attributes"] = AttributesOf(facts.pointFormat, points);
  }
  if (!facts.classes.empty()) json["classes"] = nlohmann::json::object();
  for (std::size_t i = 0; i < facts.classes.size(); ++i)
    if (facts.classes[i] > 0) json["classes"][std::to_string(i)] = facts.classes[i];
  return json;
}

} // namespace cli
