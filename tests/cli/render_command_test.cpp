// The render command as a user runs it: what is refused, and how it ends when it must.
#include "support/render_command.h"

#include <chrono>
#include <sys/wait.h>

namespace cli_test {
namespace {

namespace fs = std::filesystem;

TEST_F(RenderCommand, ItSaysThatAllIsWellOnlyWhenEveryFileIsThere) {
  const std::string out = Sub("out");
  int withoutRecord = 0;
  // Memory that is used up from the n-th block on takes a recorder's words too. True when all went well.
  const auto goesWell = [&](int n) {
    const std::string fault = "allocation=" + std::to_string(n) + ":1000000";
    fs::remove_all(out);
    Sub("out/record");
    const Result result =
        Render({"-o", out + "/f.png", "--size", "8x8", "--record", out + "/record", "--fault", fault});
    SCOPED_TRACE(fault + "\n" + result.err);
    const bool picture = fs::exists(out + "/f.png"), recorded = fs::exists(out + "/record/frame_0000.png");
    EXPECT_LE(result.status, 1);
    EXPECT_EQ(result.status == 0, picture && recorded);
    EXPECT_EQ(result.err.empty(), result.status == 0);
    EXPECT_EQ(Files(out).size() + Files(out + "/record").size(), 1u + picture + recorded)
        << "something is left";
    withoutRecord += picture && !recorded;
    return result.status == 0;
  };
  int bad = 1, well = 2;
  while (well < 100000 && !goesWell(well)) well *= 2;
  ASSERT_LT(well, 100000);
  while (well - bad > 1) (goesWell((bad + well) / 2) ? well : bad) = (bad + well) / 2;
  for (int n = std::max(1, well - 90); n < well; n += 3) goesWell(n);
  EXPECT_GT(withoutRecord, 0);
}

TEST_F(RenderCommand, WrongUseIsOneLineBeforeAnythingIsLoaded) {
  std::istringstream cases(
      "--size 0x5;--size 20000x1;--depth 7;--depth 32;--frames 5-2;--frames 0-1;--frames x;"
      "--frames 1-9999999;--light moon;--light sun:1;--light sun:1,91;--light sun:1,2:-1;--light point:1,2,x;"
      "--light point:1,2,inf;--light ambient:1:red;--light sun:1,2:1:#ffffff:9;--light ;"
      "--background blue;--pixel 1,1;--threads 0;--threads 65;--supersample 0;--turn x;--turn inf;"
      "--ground-mirror 2;--ground-mirror nan;--ground-height nan;--camera 1,2,3;--fov 0;--record nowhere;"
      "--turn 90;--ground-mirror 0.5;");
  const std::string none = folder_ / "none.png";
  const auto expectRefused = [&](const std::vector<std::string>& arguments) {
    const Result result = Render(arguments);
    SCOPED_TRACE(arguments.empty() ? "" : arguments[arguments.size() - 2] + " " + arguments.back());
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(LinesOf(result.err), 1) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(fs::exists(none));
  };
  for (std::string c; std::getline(cases, c, ';');) {
    const std::size_t space = c.find(' ');
    expectRefused({"-o", none, c.substr(0, space), c.substr(space + 1)});
  }
  expectRefused({});
  expectRefused({"-o", folder_ / "none.bmp"});
  expectRefused({"--pixel", "10,0", "--size", "10x10"});
  const std::string record = Sub("record");
  for (const std::vector<std::string>& picture : std::vector<std::vector<std::string>>{
           {"--record", record}, {"--frames", "0"}, {"--turn", "90"}, {"--depth", "16"}})
    expectRefused({"--pixel", "1,1", picture[0], picture[1]});
  // The recorder's second frame would be lost under the picture of that name.
  expectRefused({"-o", record + "/../record/frame_0##1.png", "--frames", "0-11", "--record", record});
  EXPECT_EQ(Files(record), std::vector<std::string>());
}

TEST_F(RenderCommand, APictureSaysHowItWasMadeSoThatItsPixelsCanBeExplained) {
  const std::string cloud =
      folder_.Write("turned.xyz", "0 0 0 250 10 10\n3 1 2 10 250 10\n1 4 1 10 10 250\n");
  ASSERT_EQ(Kelvra({"render", cloud, "-o", folder_ / "t_#.png", "--frames", "0-2", "--turn", "80", "--size",
                    "24x16", "--light", "sun:10,40", "--light", "ambient:0.5", "--set", "point_radius=0.3"})
                .status,
            0);
  const Result last = Kelvra({"render", cloud, "--pixel-of", folder_ / "t_2.png", "--pixel", "12,8"});
  EXPECT_EQ(last.status, 0);
  EXPECT_EQ(last.err, "");
  EXPECT_TRUE(Holds(last.out, "pixel 12,8 of 24x16: 4 rays") && Holds(last.out, "t_2.png: holds ") &&
              Holds(last.out, ", the same"))
      << last.out;
  folder_.Write("turned.xyz", "0 0 0 250 10 10\n3 1 2 10 250 10\n1 4 1.5 10 10 250\n");
  EXPECT_TRUE(Holds(Kelvra({"render", cloud, "--pixel-of", folder_ / "t_2.png", "--pixel", "12,8"}).err,
                    "was made from other files than these"));
  const Result both =
      Kelvra({"render", cloud, "--pixel-of", folder_ / "t_2.png", "--pixel", "12,8", "--size", "9x9"});
  EXPECT_EQ(both.status, 2) << both.err;
  EXPECT_TRUE(Holds(Kelvra({"render", "--pixel-of", folder_ / "t_2.png", "--pixel", "12,8"}).err,
                    "expected the files that it was made from, too"));
}

TEST_F(RenderCommand, APictureWithoutPointsSaysWhy) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"--set", "point_radius=0"}, "point_radius is 0: "},
      {{"--set", "point_radius=1e30"}, "point_radius makes each point much larger than the whole cloud"},
      {{"--set", "transparency=100%"}, "transparency is 100%: "},
      {{"--camera", "5,5,-50", "--target", "5,5,-99"}, "the points lie behind the camera"},
      {{"--camera", "5,5,-50", "--target", "90,5,-40"}, "the points lie beside what the camera looks at"},
      {{"--camera", "5,5,-50", "--target", "5,5,0"}, ""}};
  const std::string cloud = folder_.Write("two.xyz", "0 0 0\n10 10 10\n");
  for (const auto& [options, reason] : cases) {
    std::vector<std::string> arguments = {"render", cloud, "-o", folder_ / "x.png", "--size", "8x8"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Result result = Kelvra(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(*reason ? Holds(result.err, reason) : result.err.empty()) << reason << "\n" << result.err;
  }
}

TEST_F(RenderCommand, AnOutputThatCannotBeWrittenIsReportedBeforeAnythingIsLoaded) {
  const std::string out = Sub("out");
  Sub("out/f1.png");
  for (const std::string& output : {folder_ / "missing/none.png", out + "/" + std::string(300, 'x') + ".png",
                                    out + "/f#.png", out + "/f1.png"}) {
    SCOPED_TRACE(output);
    const Result result = Render({"-o", output, "--frames", output.find('#') < output.size() ? "0-2" : "0"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(LinesOf(result.err), 1) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(Files(out), std::vector<std::string>{"f1.png"});
  }
}

TEST_F(RenderCommand, WhatCannotBeRenderedLeavesNoFile) {
  for (const std::string fault : {"allocation=60:100000", "userbreak=1"}) {
    const Result result = Render({"-o", folder_ / "none.png", "--size", "64x64", "--fault", fault});
    SCOPED_TRACE(fault + "\n" + result.out + result.err);
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(fs::exists(folder_ / "none.png"));
    EXPECT_NE(result.err, "");
  }
}

TEST_F(RenderCommand, RefusedThreadsAreDoneWithout) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers need more address space than there is";
#endif
  const std::string scene = folder_ / "cloud.scene", picture = folder_ / "view.png";
  ASSERT_EQ(Kelvra({"save", Cloud(), "-o", scene}).status, 0);
  int rendered = 0;
  // Kilobytes of address space: enough to render, too little for the stacks of all threads.
  for (const char* limit : {"4900000", "5100000", "5300000"}) {
    SCOPED_TRACE(limit);
    fs::remove(picture);
    const std::string command = std::string("ulimit -v ") + limit + "; '" +
                                KELVRA_BIN_DIR "/kelvra' render '" + scene + "' -o '" + picture +
                                "' --size 64x48 --threads 64 >/dev/null 2>'" + folder_ / "err" + "'";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_LE(WEXITSTATUS(status), 1) << TempFolder::Read(folder_ / "err");
    EXPECT_EQ(fs::exists(picture), WEXITSTATUS(status) == 0);
    rendered += fs::exists(picture);
  }
  EXPECT_GT(rendered, 0);
}

TEST_F(RenderCommand, AnInterruptEndsItSoonAndLeavesWholeFilesAlone) {
  // Minutes of work, if it were not stopped: within a frame, and somewhere in a long row of small ones.
  const struct {
    const char *signal, *options;
    bool frames;
  } cases[] = {{"INT", "--size 2000x2000 --supersample 16", false},
               {"HUP", "--size 2000x2000 --supersample 16", false},
               {"TERM", "--size 64x64 --frames 0-99999", true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.signal);
    const std::string out = Sub(c.signal), record = Sub(std::string(c.signal) + "/r");
    // Once it listens, or some frames are there.
    const std::string cue =
        c.frames ? "[ -e '" + out + "/f5.png' ]" : "grep -q 'SigCgt:.*[2367abef]$' /proc/$!/status";
    const std::string command =
        "XDG_CONFIG_HOME='" + folder_ / "config" + "' '" + KELVRA_BIN_DIR "/kelvra' render '" + Cloud() +
        "' -o '" + out + "/f#.png' --record '" + record + "' " + c.options + " >/dev/null 2>'" +
        folder_ / "err" + "' & for i in $(seq 600); do if " + cue +
        "; then break; fi; sleep 0.05; done; sleep 0.5; kill -" + c.signal + " $!; wait $!";
    const auto start = std::chrono::steady_clock::now();
    const int status = std::system(command.c_str());
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_LT(seconds.count(), 30.0);
    const std::string err = TempFolder::Read(folder_ / "err");
    EXPECT_NE(err.find("stopped by the user"), std::string::npos) << err;
    EXPECT_EQ(LinesOf(err), 1) << err;
    const std::size_t frames = Files(out).size() - 1; // less the folder of the recorder
    EXPECT_EQ(frames > 5, c.frames);
    EXPECT_EQ(Files(record).size(), frames);
    for (std::size_t i = 0; i < frames; ++i)
      EXPECT_EQ(Read(out + "/f" + std::to_string(i) + ".png").width, 64);
    for (const std::string& name : Files(record)) EXPECT_EQ(Read(record + "/" + name).height, 64);
  }
}

} // namespace
} // namespace cli_test
