#include "support/program_run.h"

#include <sys/wait.h>

namespace cli_test {
namespace {

std::string Quoted(const std::string& argument) {
  std::string quoted = "'";
  for (const char c : argument) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

} // namespace

Result RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                  const std::string& config, const std::string& input) {
  const TempFolder folder;
  const char* other = std::getenv("KELVRA_TEST_PROGRAM");
  std::string command = "XDG_CONFIG_HOME=" + Quoted(config.empty() ? folder / "config" : config) + " ";
  command += other && program == "kelvra" ? other : Quoted(std::string(KELVRA_BIN_DIR) + "/" + program);
  for (const std::string& argument : arguments) command += " " + Quoted(argument);
  command += " >" + Quoted(folder / "out") + " 2>" + Quoted(folder / "err") + " <" +
             Quoted(folder.Write("in", input));
  const int status = std::system(command.c_str());
  Result result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = TempFolder::Read(folder / "out");
  result.err = TempFolder::Read(folder / "err");
  return result;
}

} // namespace cli_test
