#include "cli/reference/reference.h"

#include "cli/system/exit_status.h"

#include <vector>

namespace cli {

namespace {

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

/** Those that the help shows. */
std::vector<const CLI::Option*> OptionsOf(const CLI::App& command) {
  return command.get_options([](const CLI::Option* option) { return !option->get_group().empty(); });
}

bool TakesValue(const CLI::Option& option) {
  return option.get_items_expected_max() > 0;
}

/** Text as troff prints it: a leading dot or quote would be a command, a hyphen a dash. */
std::string Roff(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else
      out += c;
  }
  if (!out.empty() && (out[0] == '.' || out[0] == '\'')) out.insert(0, "\\&");
  return out;
}

void WriteManualOptions(const CLI::App& command, std::ostream& out) {
  for (const CLI::Option* option : OptionsOf(command)) {
    out << ".TP\n\\fB" << Roff(option->get_name(false, true)) << "\\fR";
    if (TakesValue(*option) && !option->get_positional())
      out << " \\fI" << Roff(option->get_type_name()) << "\\fR";
    out << "\n" << Roff(option->get_description()) << "\n";
  }
}

void WriteManualPage(const CLI::App& app, std::ostream& out) {
  out << ".TH KELVRA 1\n.SH NAME\nkelvra \\- look at laser scans, render and convert them\n"
      << ".SH SYNOPSIS\n.B kelvra\n\\fICOMMAND\\fR [\\fIOPTIONS\\fR] [\\fIFILE\\fR...]\n"
      << ".SH DESCRIPTION\n"
      << Roff(app.get_description())
      << ". Reads LAS, LAZ, XYZ and PTS files, folders of them, and scenes that it saved.\n"
      << ".SH OPTIONS\n";
  WriteManualOptions(app, out);
  out << ".SH COMMANDS\n";
  for (const CLI::App* command : CommandsOf(app)) {
    out << ".SS kelvra " << Roff(command->get_name()) << "\n" << Roff(command->get_description()) << ".\n";
    WriteManualOptions(*command, out);
  }
  out << ".SH EXIT STATUS\n.TP\n.B 0\nEverything was loaded and written.\n.TP\n.B 1\nSomething was refused, "
         "cut or failed; a "
         "line says what.\n.TP\n.B 2\nA mistake in the command line.\n";
}

std::string LongNames(const CLI::App& command) {
  std::string names;
  for (const CLI::Option* option : OptionsOf(command))
    for (const std::string& name : option->get_lnames()) names += (names.empty() ? "--" : " --") + name;
  return names;
}

void WriteBash(const CLI::App& app, std::ostream& out) {
  std::string names;
  for (const CLI::App* command : CommandsOf(app)) names += (names.empty() ? "" : " ") + command->get_name();
  out << "_kelvra() {\n  local word=${COMP_WORDS[COMP_CWORD]}\n"
      << "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n    COMPREPLY=($(compgen -W \"" << names << " "
      << LongNames(app)
      << "\" -- \"$word\"))\n    return\n  fi\n  local options=\n  case ${COMP_WORDS[1]} in\n";
  for (const CLI::App* command : CommandsOf(app))
    out << "    " << command->get_name() << ") options=\"" << LongNames(*command) << "\" ;;\n";
  out << "  esac\n  case $word in\n    -*) COMPREPLY=($(compgen -W \"$options\" -- \"$word\")) ;;\n"
      << "    *) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;\n  esac\n}\n"
      << "complete -F _kelvra kelvra\n";
}

/** For the quotes and brackets around an option in zsh's _arguments. */
std::string Zsh(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c == '\'')
      out += "'\\''";
    else if (c == '[' || c == ']' || c == ':' || c == '\\')
      out += std::string("\\") + c;
    else
      out += c;
  }
  return out;
}

void WriteZsh(const CLI::App& app, std::ostream& out) {
  out << "#compdef kelvra\nlocal -a commands=(\n";
  for (const CLI::App* command : CommandsOf(app))
    out << "  '" << command->get_name() << ":" << Zsh(command->get_description()) << "'\n";
  out << ")\nif (( CURRENT == 2 )); then\n  _describe command commands\n  return\nfi\ncase $words[2] in\n";
  for (const CLI::App* command : CommandsOf(app)) {
    out << "  " << command->get_name() << ")\n    _arguments '*:file:_files'";
    for (const CLI::Option* option : OptionsOf(*command))
      for (const std::string& name : option->get_lnames())
        out << " \\\n      '--" << name << "[" << Zsh(option->get_description()) << "]"
            << (TakesValue(*option) ? ":value:_files" : "") << "'";
    out << "\n    ;;\n";
  }
  out << "esac\n";
}

} // namespace

void WriteReference(const CLI::App& app, const std::string& form, std::ostream& out) {
  if (form == "man")
    WriteManualPage(app, out);
  else if (form == "bash")
    WriteBash(app, out);
  else if (form == "zsh")
    WriteZsh(app, out);
  else
    throw UsageError{"--reference " + form + ": expected man, bash or zsh"};
}

} // namespace cli
