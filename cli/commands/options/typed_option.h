// Options whose text becomes a value while the command line is parsed.
#pragma once

#include "cli/commands/options/number.h"
#include "cli/system/exit_status.h"

#include <CLI/CLI.hpp>

namespace cli {

/** Parses one option's text; a UsageError gets the option and the text in front: "--size 0x5: expected ...".
 */
template <class Parse>
auto ParseOption(const std::string& option, const std::string& text, const Parse& parse) {
  try {
    return parse(text);
  } catch (const UsageError& e) {
    const std::string longName = option.substr(option.rfind(',') + 1); // of "-o,--output"
    throw UsageError{longName + " " + (text.empty() ? "\"\"" : text) + ": " + e.text};
  }
}

/** An option of one value. `parse` throws a UsageError that says what was expected; `value` outlives parsing.
 */
template <class Value, class Parse>
CLI::Option* AddTyped(CLI::App& command, const std::string& name, Value& value, Parse parse,
                      const std::string& help) {
  const auto take = [name, &value, parse](const CLI::results_t& texts) {
    // A value that was split at its commas is put together again.
    value = ParseOption(name, CLI::detail::join(texts, ","), parse);
    return true;
  };
  return command.add_option(name, take, help);
}

/** An option whose value is a whole number from `low` to `high`. */
template <class Value>
CLI::Option* AddWhole(CLI::App& command, const std::string& name, Value& value, int low, int high,
                      const std::string& help) {
  const auto parse = [low, high](const std::string& text) { return ParseWhole(text, low, high); };
  return AddTyped(command, name, value, parse, help)->type_name("NUMBER");
}

/** An option that may be given several times, with one value each time. */
inline CLI::Option* OneValueEach(CLI::Option* option) {
  return option->take_all()->expected(1)->allow_extra_args(false);
}

/** As AddTyped, for an option that may be given several times. */
template <class Value>
CLI::Option* AddTypedList(CLI::App& command, const std::string& name, std::vector<Value>& values,
                          Value (*parse)(const std::string&), const std::string& help) {
  const auto take = [name, &values, parse](const CLI::results_t& texts) {
    values.clear();
    for (const std::string& text : texts) values.push_back(ParseOption(name, text, parse));
    return true;
  };
  return OneValueEach(command.add_option(name, take, help));
}

} // namespace cli
