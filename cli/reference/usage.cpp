#include "cli/reference/usage.h"

#include "cli/text/format.h"
#include "cli/text/nearest.h"

#include <regex>
#include <vector>

namespace cli {

namespace {

/** The command that was begun; the program itself where none was. */
const CLI::App& Begun(const CLI::App& app) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  return commands.empty() ? app : *commands.front();
}

/** How the command is used, or where the commands are listed. */
std::string UsageOf(const CLI::App& app) {
  const CLI::App& command = Begun(app);
  if (&command == &app) return "kelvra --help lists the commands";
  std::string usage = "usage: kelvra " + command.get_name();
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_positional())
      usage += " " + option->get_name() + (option->get_items_expected_max() > 1 ? "..." : "");
    if (!option->get_positional() && option->get_required())
      usage += " " + option->get_name() + " " + option->get_type_name();
  }
  return usage + " [OPTIONS]; kelvra " + command.get_name() + " --help lists them";
}

/** Names the first word that looks like an option and is none; empty where there is no such word. */
std::string UnknownOption(const CLI::App& command) {
  for (const std::string& word : command.remaining()) {
    if (word.size() < 2 || word[0] != '-') continue;
    const std::string name = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options())
      for (const std::string& known : option->get_lnames()) names.push_back("--" + known);
    return "there is no option " + name + DidYouMean(name, names);
  }
  return std::string();
}

/** The parser counts values in words of its own. */
std::string InOurWords(const std::string& text) {
  static const std::regex extra("The following arguments? (?:was|were) not expected: (.*)"),
      excluded("(.*) excludes (.*)"), needed("(.*) requires (.*)"),
      count("(.*): At (?:Most|least) ([0-9]+) required but received ([0-9]+)"),
      none("(.*): [0-9]+ required (.*) missing");
  std::smatch match;
  if (text == "A subcommand is required") return "a command is required";
  if (std::regex_match(text, match, count))
    return match[1].str() + ": expected " + Counted(std::stoll(match[2]), "value") + ", found " +
           match[3].str();
  if (std::regex_match(text, match, extra)) return match[1].str() + ": not expected here";
  if (std::regex_match(text, match, excluded))
    return match[1].str() + " cannot be given together with " + match[2].str();
  if (std::regex_match(text, match, needed)) return match[1].str() + " needs " + match[2].str();
  if (!std::regex_match(text, match, none)) return text;
  const std::string type = match[2];
  const bool isColor = type.find('#') != std::string::npos;
  return match[1].str() + ": expected " + type + ", found nothing" +
         (isColor ? "; put it in quotes, as shells take # for the beginning of a comment" : "");
}

} // namespace

std::string Complaint(const CLI::App& app, const CLI::ParseError& error) {
  // A misspelt option is often why another one seems to be missing.
  const std::string unknown = UnknownOption(Begun(app));
  return (unknown.empty() ? InOurWords(error.what()) : unknown) + " (" + UsageOf(app) + ")";
}

} // namespace cli
