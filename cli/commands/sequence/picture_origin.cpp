#include "cli/commands/sequence/picture_origin.h"

#include "cli/commands/options/typed_option.h"

#include <algorithm>
#include <stdexcept>

namespace cli {

namespace {

constexpr const char* kFrame = "Kelvra-Frame";
constexpr const char* kFrames = "Kelvra-Frames";
constexpr const char* kOptions = "Kelvra-Options";
constexpr const char* kFiles = "Kelvra-Files";

std::string TextOf(const host::PictureTexts& texts, const std::string& key) {
  for (const host::PictureText& entry : texts)
    if (entry.key == key) return entry.text;
  return "";
}

/** The command line's words for an option and its values. */
std::vector<std::string> WordsOf(const CLI::App& command, const std::string& name,
                                 const nlohmann::json& values) {
  const CLI::Option* option = command.get_option(name);
  std::vector<std::string> words;
  if (option->get_items_expected_max() == 0) return {name};
  std::string joined;
  for (const nlohmann::json& value : values) {
    const std::string text = value.get<std::string>();
    if (option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll)
      words.push_back(name + "=" + text);
    else
      joined += (joined.empty() ? "" : ",") + text;
  }
  if (words.empty()) words.push_back(name + "=" + joined);
  return words;
}

} // namespace

host::PictureTexts TextsOf(const PictureOrigin& origin) {
  return {{"Software", "kelvra " KELVRA_VERSION},
          {kFiles, origin.files},
          {kFrame, std::to_string(origin.frame)},
          {kFrames, std::to_string(origin.frames.first) + "-" + std::to_string(origin.frames.last)},
          {kOptions, origin.options.dump(-1, ' ', true)}};
}

PictureOrigin OriginOf(const std::string& path) {
  host::PictureTexts texts;
  std::string error;
  if (!host::ReadPictureTexts(path, &texts, &error)) throw std::runtime_error(error);
  PictureOrigin origin;
  try {
    origin.options = nlohmann::json::parse(TextOf(texts, kOptions));
    origin.frames = ParseFrames(TextOf(texts, kFrames));
    origin.frame = ParseFrames(TextOf(texts, kFrame)).first;
    origin.files = TextOf(texts, kFiles);
    return origin;
  } catch (const nlohmann::json::exception&) {
  } catch (const UsageError&) {
  }
  throw std::runtime_error(path +
                           ": it does not say how it was made; expected a PNG of kelvra render or sequence");
}

RenderPlan PlanOfPicture(const RenderPlan& asked, const PictureOrigin& origin, const nlohmann::json& given) {
  if (!given.empty())
    throw UsageError{given.begin().key() + ": has no effect with --pixel-of, whose picture says it"};
  RenderPlan plan;
  CLI::App command;
  command.allow_windows_style_options(false); // a path may begin with a slash
  AddPictureOptions(command, plan, "PNG");
  std::vector<std::string> words = asked.input.files;
  for (const auto& [name, values] : origin.options.items()) {
    if (name == "--turntable" || !command.get_option_no_throw(name)) continue;
    for (const std::string& word : WordsOf(command, name, values)) words.push_back(word);
  }
  std::reverse(words.begin(), words.end()); // as the parser wants them
  try {
    command.parse(std::move(words));
  } catch (const CLI::ParseError& e) {
    throw std::runtime_error(asked.pixelOf + ": its options are not those of this program: " + e.what());
  }
  if (origin.options.contains("--turntable")) plan.turn = 360.0;
  plan.input.faults = asked.input.faults;
  plan.input.verbose = asked.input.verbose;
  plan.threads = asked.threads;
  plan.depth = 0;
  plan.pixel = asked.pixel;
  plan.pixelOf = asked.pixelOf;
  plan.frames = origin.frames;
  plan.shownFrame = origin.frame;
  return plan;
}

} // namespace cli
