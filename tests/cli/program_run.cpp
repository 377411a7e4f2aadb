#include "cli/program_run.h"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace cli_test {

namespace fs = std::filesystem;

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

TempFolder::TempFolder() {
  std::string pattern = (fs::temp_directory_path() / "kelvra-cli-XXXXXX").string();
  if (!mkdtemp(&pattern[0])) std::abort();
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TempFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream file(*this / name, std::ios::binary);
  file << content;
  return *this / name;
}

std::string TempFolder::Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

} // namespace cli_test
