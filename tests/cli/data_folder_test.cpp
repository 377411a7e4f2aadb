// Every real cloud of the data folder, as the program reports it.
#include "cli/program_run.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace cli_test {
namespace {

namespace fs = std::filesystem;

[[maybe_unused]] bool NeedsLasReader(const std::string& name) {
  const std::string suffix = fs::path(name).extension().string();
  return suffix == ".las" || suffix == ".laz";
}

TEST(DataFolder, EveryFileGivesItsPointsOrItsRefusal) {
  if (!fs::is_directory(KELVRA_DATA_DIR)) GTEST_SKIP() << "the data folder is not there";
  int checked = 0;
  for (const auto& entry : fs::directory_iterator(KELVRA_DATA_DIR)) {
    if (entry.path().extension() != ".json") continue;
    const std::string cloud = entry.path().string().substr(0, entry.path().string().size() - 5);
#ifndef KELVRA_HAVE_LASLIB
    if (NeedsLasReader(cloud)) continue;
#endif
    const nlohmann::json outcome = nlohmann::json::parse(TempFolder::Read(entry.path().string()))["outcome"];
    const Result result = Kelvra({"info", "--json", cloud});
    const nlohmann::json info = result.Json();
    EXPECT_EQ(info["points"], outcome["points"]) << cloud;
    const bool whole = outcome["points"] != 0 && !outcome.contains("partial");
    EXPECT_EQ(result.status, whole ? 0 : 1) << cloud;
    EXPECT_FALSE(info["files"][0]["message"].get<std::string>().empty()) << cloud;
    ++checked;
  }
  EXPECT_GT(checked, 10);
}

} // namespace
} // namespace cli_test
