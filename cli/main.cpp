// kelvra: point clouds without the application. Parses the command line and runs one command.
#include "cli/commands/commands.h"
#include "cli/reference/reference.h"
#include "cli/reference/usage.h"
#include "cli/system/exit_status.h"
#include "cli/system/program_arguments.h"
#include "cli/system/standard_streams.h"
#include "cli/text/line.h"
#include "cli/text/nearest.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>

namespace {

/** "; did you mean render?", or all commands where none is near. */
std::string Suggestion(const std::string& word) {
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::u8path(word), ignored))
    return "; the command comes before the file, as in kelvra info " + word;
  std::vector<std::string> names;
  for (const cli::Command& command : cli::Commands()) names.push_back(command.name);
  std::vector<std::string> words = names;
  words.push_back("--help");
  std::string near = cli::DidYouMean(word, words);
  if (!near.empty()) return near;
  std::string all;
  for (std::size_t i = 0; i < names.size(); ++i)
    all += (i == 0 ? "; expected " : i + 1 < names.size() ? ", " : " or ") + names[i];
  return all;
}

const cli::Command* FindCommand(const std::string& name) {
  for (const cli::Command& command : cli::Commands())
    if (command.name == name) return &command;
  return nullptr;
}

int Run(int argc, char** argv) {
  CLI::App app("Kelvra: laser-scan point clouds", "kelvra");
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Excludes", "Not with");
  app.allow_windows_style_options(false); // a path may begin with a slash anywhere
  app.require_subcommand(1);
  app.set_version_flag("--version", "kelvra " KELVRA_VERSION);
  int status = cli::kExitWhole;
  for (const cli::Command& command : cli::Commands()) {
    CLI::App* parser = app.add_subcommand(command.name, command.summary)->group("Commands");
    const cli::Run run = command.add(*parser);
    parser->callback([run, &status] { status = run(); });
  }
  // Not earlier, as commands take over what the program has.
  app.footer("kelvra COMMAND --help lists the options of a command.");
  // Without a group: the help does not list it, as it is for those who package the program.
  app.add_option_function<std::string>(
         "--reference",
         [&app](const std::string& form) {
           cli::WriteReference(app, form, std::cout);
           throw CLI::Success();
         },
         "Print the options as a manual page (man) or for completion (bash, zsh)")
      ->group("")
      ->trigger_on_parse();
  const cli::Command* command = argc > 1 ? FindCommand(argv[1]) : nullptr;
  if (argc > 1 && argv[1][0] != '-' && !command)
    throw cli::UsageError{"there is no command \"" + std::string(argv[1]) + "\"" + Suggestion(argv[1])};
  try {
    std::vector<char*> words(argv, argv + argc);
    if (command && command->dashesOnlySeparate)
      words.erase(std::remove(words.begin(), words.end(), std::string("--")), words.end());
    app.parse((int)words.size(), words.data());
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == 0) return app.exit(e); // help or version
    throw cli::UsageError{cli::Complaint(app, e)};
  }
  return status;
}

} // namespace

int main(int argc, char** argv) {
  cli::FillClosedStreams();
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a failed write, not the end
#endif
  try {
    const cli::ProgramArguments arguments(argc, argv);
    const int status = Run(arguments.Count(), arguments.Values());
    if (std::cout.flush()) return status;
    cli::Line(std::cerr) << "kelvra: standard output could not be written";
    return cli::kExitIncomplete;
  } catch (const cli::UsageError& e) {
    cli::Line(std::cerr) << "kelvra: " << e.text;
    return cli::kExitUsage;
  } catch (const std::exception& e) {
    cli::Line(std::cerr) << "kelvra: " << e.what();
    return cli::kExitIncomplete;
  }
}
