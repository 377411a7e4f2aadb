// Runs the built program and keeps what it printed.
#pragma once

#include "support/folder.h"

#include <nlohmann/json.hpp>

namespace cli_test {

struct Result {
  int status = -1; ///< exit status, 128 + signal when it was killed
  std::string out, err;
  nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

/**
 * Program of the build's bin folder ("kelvra", "make_cloud") with arguments, passed as they are, and `input`
 * to read. Its preferences lie in `config`, which is a folder of this run alone when it is empty. The command
 * in KELVRA_TEST_PROGRAM of the environment takes the place of "kelvra": the same tests then drive another
 * system's program.
 */
Result RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                  const std::string& config = "", const std::string& input = "");
inline Result Kelvra(const std::vector<std::string>& arguments) {
  return RunProgram("kelvra", arguments);
}
inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

} // namespace cli_test
