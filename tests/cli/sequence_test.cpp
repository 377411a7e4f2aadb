// Sequences with processes of this computer: what is made, what is kept, and how failures end. The stage
// --cluster of test.sh does the same on a cluster.
#include "support/render_command.h"

namespace cli_test {
namespace {

namespace fs = std::filesystem;

class Sequence : public RenderCommand {
protected:
  Result Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"sequence", Cloud()});
    return Kelvra(arguments);
  }
  /** Five frames of a turn, in three parts. */
  Result Turn(const std::string& output, std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"--turntable", "5", "--chunk", "2", "-o", output, "--size", "40x30"});
    return Run(more);
  }
};

TEST_F(Sequence, FramesAreThoseOfOneRenderWhoeverMadeThem) {
  const std::string out = Sub("out");
  Result result = Turn(out + "/a_#.png", {"--nodes", "2"});
  ASSERT_EQ(result.status, 0) << result.err;
  ASSERT_EQ(Turn(out + "/b_#.png", {"--chunk", "5", "--threads", "1"}).status, 2) << "given twice";
  ASSERT_EQ(Run({"--turntable", "5", "-o", out + "/b_#.png", "--", "--size", "40x30"}).status, 0);
  ASSERT_EQ(Render({"--frames", "0-4", "--turn", "360", "-o", out + "/r_#.png", "--size", "40x30"}).status,
            0);
  for (const std::string n : {"0", "1", "2", "3", "4"}) {
    EXPECT_EQ(TempFolder::Read(out + "/a_" + n + ".png"), TempFolder::Read(out + "/b_" + n + ".png")) << n;
    EXPECT_EQ(Read(out + "/a_" + n + ".png").samples, Read(out + "/r_" + n + ".png").samples) << n;
  }
}

TEST_F(Sequence, ParametersMoveOverTheFrames) {
  const std::string out = Sub("out"), pattern = out + "/f_#.png";
  ASSERT_EQ(
      Run({"--frames", "3-5", "--chunk", "1", "--set", "point_radius=1..3", "-o", pattern, "--size", "40x30"})
          .status,
      0);
  for (const auto& [frame, radius] : {std::pair("3", "1"), {"4", "2"}, {"5", "3"}}) {
    ASSERT_EQ(
        Render({"--set", std::string("point_radius=") + radius, "-o", out + "/r.png", "--size", "40x30"})
            .status,
        0);
    EXPECT_EQ(Read(out + "/f_" + frame + ".png").samples, Read(out + "/r.png").samples) << frame;
  }
  EXPECT_EQ(Render({"--set", "point_radius=1..3", "-o", out + "/r.png"}).status, 2) << "without frames";
}

TEST_F(Sequence, OnlyFramesThatDoNotFitAreMadeAgain) {
  const std::string pattern = Sub("out") + "/f_#.png", other = Sub("out") + "/f_3.png";
  ASSERT_EQ(Turn(pattern).status, 0);
  const std::string second = TempFolder::Read(folder_ / "out/f_2.png"), third = TempFolder::Read(other);
  const struct {
    const char* what;
    std::function<void()> change;
    std::vector<std::string> options;
    const char* made;
  } cases[] = {
      {"nothing", [] {}, {"--nodes", "2", "--force"}, " 0 of them"},
      {"missing", [&] { fs::remove(other); }, {}, " 1 of them"},
      {"cut", [&] { fs::resize_file(other, third.size() / 2); }, {}, " 1 of them"},
      {"another frame",
       [&] { fs::copy_file(folder_ / "out/f_2.png", other, fs::copy_options::overwrite_existing); },
       {},
       " 1 of them"},
      {"a picture of another program",
       [&] {
         ASSERT_EQ(Render({"-o", other, "--size", "8x8"}).status, 0);
       },
       {},
       " 1 of them"},
      {"another option", [] {}, {"--ground"}, " 5 of them"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    c.change();
    const Result result = Turn(pattern, c.options);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find(c.made), std::string::npos) << result.out;
    EXPECT_EQ(TempFolder::Read(other) == third, c.options.empty() || c.made[1] == '0');
  }
  EXPECT_NE(TempFolder::Read(folder_ / "out/f_2.png"), second);
  // The files count by what they hold.
  std::ofstream(folder_ / "cloud2.xyz") << TempFolder::Read(Cloud()) << "30 30 0 0 0 255\n";
  const Result result =
      Kelvra({"sequence", folder_ / "cloud2.xyz", "--turntable", "5", "-o", pattern, "--size", "40x30"});
  EXPECT_NE(result.out.find(" 5 of them"), std::string::npos) << result.out;
}

TEST_F(Sequence, PartsThatFailAreTriedThreeTimesAndNamed) {
  const std::string out = Sub("out");
  const Result result = Turn(out + "/f_#.png", {"--fault", "allocation=60:100000"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("frames 2-3: not made in 3 tries on this computer; the last line was: kelvra: "),
            std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("part_1.log"), std::string::npos) << result.err;
  EXPECT_EQ(Files(out), std::vector<std::string>{"f.sequence"});
}

TEST_F(Sequence, CloudsThatLoadInPartAreReportedEachTime) {
  const std::string bad = folder_.Write("bad.las", "not a cloud");
  for (const char* made : {" 1 of them", " 0 of them"}) {
    const Result result = Run({bad, "--frames", "7", "-o", folder_ / "f.png", "--size", "8x8"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.out.find(made), std::string::npos) << result.out;
    EXPECT_NE(result.err.find("frame 7: rendered, but not everything was loaded: " + bad + ": "),
              std::string::npos)
        << result.err;
  }
}

TEST_F(Sequence, OneCommandAFileGivesOneJson) {
  const std::string survey = Sub("survey");
  for (const char* name : {"a", "b c", "d"})
    folder_.Write("survey/" + std::string(name) + ".xyz", TempFolder::Read(Cloud()));
  folder_.Write("survey/e.las", "not a cloud");
  folder_.Write("survey/f.txt", TempFolder::Read(Cloud()));
  folder_.Write("survey/notes.txt", "nothing here");
  const Result result = Kelvra(
      {"sequence", "--each", survey, "--do", "info --json", "-o", folder_ / "all.json", "--chunk", "3"});
  EXPECT_EQ(result.status, 1) << "one file is not a cloud";
  EXPECT_TRUE(Holds(result.err, "file e.las: the command reported a failure")) << result.err;
  EXPECT_TRUE(Holds(result.err, ": 1 file is not a point cloud: notes.txt\n")) << result.err;
  const nlohmann::json all = nlohmann::json::parse(TempFolder::Read(folder_ / "all.json"));
  ASSERT_EQ(all["files"].size(), 5u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(all["files"][i]["output"]["points"], 400) << i;
  EXPECT_EQ(all["files"][3]["status"], 1);
  EXPECT_EQ(all["files"][4]["output"]["points"], 400);
  ASSERT_EQ(Kelvra({"sequence", "--each", survey, "--do", "export {} -o '" + folder_ / "{name}.txt" + "'",
                    "-o", folder_ / "exports.json"})
                .status,
            1);
  EXPECT_EQ(TempFolder::Read(folder_ / "b c.txt"), TempFolder::Read(folder_ / "a.txt"));
}

TEST_F(Sequence, WrongUseIsOneLineBeforeAnythingIsDone) {
  const std::string out = Sub("out"), frames = out + "/f_#.png", json = out + "/all.json";
  const std::vector<std::string> cases[] = {{Cloud(), "-o", frames},
                                            {"--turntable", "3", "-o", frames},
                                            {Cloud(), "--turntable", "3", "-o", "-"},
                                            {Cloud(), "--turntable", "3", "-o", out + "/f.png"},
                                            {Cloud(), "--turntable", "3", "-o", out + "/f_#.tif"},
                                            {Cloud(), "--turntable", "3", "--frames", "0-2", "-o", frames},
                                            {Cloud(), "--turntable", "3", "-o", frames, "--partition", "p"},
                                            {Cloud(), "--turntable", "3", "-o", frames, "--do", "info"},
                                            {Cloud(), "--turntable", "3", "-o", frames, "--part", "1"},
                                            {"--each", out, "-o", json},
                                            {"--each", "--do", "info", "-o", json},
                                            {"--each", out, "--do", "sequence", "-o", json},
                                            {"--each", out, "--do", "info", "-o", out + "/all.png"},
                                            {"--each", out, "--do", "info 'x", "-o", json},
                                            {"--each", out + "/missing", "--do", "info", "-o", json},
                                            {Cloud(), "--each", out, "--do", "info", "-o", json}};
  for (std::vector<std::string> c : cases) {
    c.insert(c.begin(), "sequence");
    const Result result = Kelvra(c);
    SCOPED_TRACE(result.err);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(LinesOf(result.err), 1);
  }
  EXPECT_EQ(Files(out), std::vector<std::string>());
}

} // namespace
} // namespace cli_test
