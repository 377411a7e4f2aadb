// File coordinates come out as they went in, wherever on earth the file lies.
#include "support/program_run.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace cli_test {
namespace {

using Numbers = std::vector<double>;

class SurveyTest : public testing::Test {
protected:
  std::string Make(const std::string& name, const char* east = "691000") const {
    const Result made = RunProgram("make_cloud", {folder_ / name, "--points", "3000", "--scale", "0.001",
                                                  "--east", east, "--north", "5570000"});
    EXPECT_EQ(made.status, 0) << made.err;
    return folder_ / name;
  }
  /** Coordinates of a text file of six columns. */
  static Numbers Coordinates(const std::string& text) {
    std::istringstream lines(text);
    Numbers numbers;
    for (double x, y, z, r, g, b; lines >> x >> y >> z >> r >> g >> b;)
      numbers.insert(numbers.end(), {x, y, z});
    return numbers;
  }
  Numbers Survey(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "export");
    arguments.insert(arguments.end(), {"-o", folder_ / "out.txt", "--survey"});
    const Result result = Kelvra(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return Coordinates(TempFolder::Read(folder_ / "out.txt"));
  }
  TempFolder folder_;
};

TEST_F(SurveyTest, TextComesOutAsItWentInAndStaysSoTheNextTime) {
  const std::string text = Make("cloud.xyz");
  const Numbers source = Coordinates(TempFolder::Read(text));
  ASSERT_EQ(source.size(), 9000u);
  EXPECT_EQ(Survey({text}), source);
  const std::string again = folder_.Write("again.xyz", TempFolder::Read(folder_ / "out.txt"));
  EXPECT_EQ(Survey({again, "--set", "fit_text=on"}), source) << "fitted";
  // What a scene holds is enough.
  ASSERT_EQ(Kelvra({"save", text, "-o", folder_ / "a.scene"}).status, 0);
  EXPECT_EQ(Survey({folder_ / "a.scene"}), source);
}

TEST_F(SurveyTest, FloatsOfAbsoluteCoordinatesLoseWhatTheOriginKeeps) {
  const std::string text = Make("cloud.xyz");
  const Numbers source = Coordinates(TempFolder::Read(text)),
                off = Survey({text, "--set", "local_origin=off"});
  ASSERT_EQ(off.size(), source.size());
  double worst = 0;
  for (std::size_t i = 0; i < off.size(); ++i) worst = std::max(worst, std::abs(off[i] - source[i]));
  EXPECT_GT(worst, 0.2);
  const nlohmann::json info = Kelvra({"info", "--json", text}).Json();
  EXPECT_EQ(info["origin"], nlohmann::json({691200.0, 5570200.0, 0.0}));
  EXPECT_LE(info["step"].get<double>(), 0.0001);
  const double east = info["bbox"]["max"][0];
  EXPECT_EQ(east, std::round(east * 1e5) / 1e5) << "no digits that nobody kept";
}

} // namespace
} // namespace cli_test
