// Every command of the manual, run in its order in one folder as a reader would run it.
#include "manual/manual_text.h"
#include "support/program_run.h"

#include <sys/wait.h>

#include <regex>

namespace manual_test {
namespace {

namespace fs = std::filesystem;

/** Names behind the options that write files. */
std::vector<std::string> Outputs(const std::string& line) {
  std::vector<std::string> outputs;
  std::istringstream words(line);
  for (std::string word; words >> word;)
    if (word == "-o" || word == "--output" || word == "--scene") {
      words >> word;
      outputs.push_back(word);
    }
  return outputs;
}

/** A run of # stands for any frame number. */
bool WasWritten(const std::string& folder, const std::string& name) {
  const std::regex form(
      std::regex_replace(std::regex_replace(name, std::regex("[.]"), "[.]"), std::regex("#+"), "[0-9]+"));
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    if (std::regex_match(entry.path().filename().string(), form) && entry.is_regular_file() &&
        entry.file_size() > 0)
      return true;
  return false;
}

class ManualCommands : public testing::Test {
protected:
  /** The clouds under the names that the manual uses. */
  void MakeClouds() {
    fs::create_directories(folder_ / "survey");
    fs::create_directories(folder_ / "frames");
    for (const char* name :
         {"scan.laz", "scan.las", "street.xyz", "tower.pts", "survey/north.laz", "survey/south.laz"})
      ASSERT_EQ(cli_test::RunProgram("make_cloud", {folder_ / name, "--points", "4000"}).status, 0) << name;
    const std::string whole = TempFolder::Read(folder_ / "scan.las");
    folder_.Write("damaged.las", whole.substr(0, whole.size() / 2));
  }

  int Run(const std::string& line) {
    const std::string folder = folder_.Name();
    const std::string whole = "cd '" + folder + "' && export PATH='" + KELVRA_BIN_DIR +
                              "':\"$PATH\" XDG_CONFIG_HOME='" + folder +
                              "/config' && unset KELVRA_GEOMETRY_SERVICE KELVRA_UPDATE_SERVER && { " + line +
                              "\n} >printed 2>&1 </dev/null";
    const int status = std::system(whole.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  TempFolder folder_;
  ManualText manual_;
};

TEST_F(ManualCommands, DoWhatTheManualSays) {
#if !KELVRA_HAVE_LASLIB
  GTEST_SKIP() << "without LASlib the manual's LAZ files cannot be made";
#endif
  MakeClouds();
  int ran = 0;
  for (const Block& block : manual_.Blocks()) {
    if (block.kind != "sh") continue;
    for (const std::string& line : block.lines) {
      SCOPED_TRACE(line);
      ASSERT_EQ(line.rfind("kelvra ", 0), 0u) << "only the program's own commands can be tested";
      // A comment at its end tells the exit status, if it is not 0.
      std::smatch status;
      const bool told = std::regex_search(line, status, std::regex(" +# status ([0-9])$"));
      for (const std::string& output : Outputs(line)) fs::remove(folder_ / output);
      EXPECT_EQ(Run(line), told ? std::stoi(status[1]) : 0) << TempFolder::Read(folder_ / "printed");
      for (const std::string& output : Outputs(line))
        EXPECT_TRUE(WasWritten(folder_.Name(), output)) << output;
      ++ran;
    }
  }
  EXPECT_GT(ran, 20);
}

TEST_F(ManualCommands, EveryCommandAndOptionOfTheProgramIsDescribed) {
  const Section* reference = manual_.Find("Command reference");
  ASSERT_TRUE(reference);
  std::string text;
  for (const std::string& line : reference->lines) text += line + "\n";
  const std::string help = cli_test::Kelvra({"--help"}).out;
  const std::string list = help.substr(help.find("Commands:"));
  const std::regex commandForm("\n +([a-z-]+) "), optionForm("(--[a-z-]+)");
  int commands = 0;
  for (std::sregex_iterator c(list.begin(), list.end(), commandForm), end; c != end; ++c, ++commands) {
    const std::string command = (*c)[1];
    EXPECT_NE(text.find("`" + command), std::string::npos) << command;
    const std::string options = cli_test::Kelvra({command, "--help"}).out;
    for (std::sregex_iterator o(options.begin(), options.end(), optionForm); o != end; ++o)
      EXPECT_NE(text.find((*o)[1].str()), std::string::npos) << command << " " << (*o)[1];
  }
  EXPECT_GE(commands, 10);
}

} // namespace
} // namespace manual_test
