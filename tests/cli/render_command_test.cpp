// The render command as a user runs it: pictures, frames, what is refused, and how it ends when it must.
#include "cli/program_run.h"
#include "host/picture/picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <sys/wait.h>

namespace cli_test {
namespace {

namespace fs = std::filesystem;

class RenderCommand : public testing::Test {
protected:
  /** A red patch with a green one to its east, file axes. */
  std::string Cloud() {
    std::string text;
    for (int i = 0; i < 20; ++i)
      for (int j = 0; j < 20; ++j)
        text += std::to_string(i) + " " + std::to_string(j) + " 0 " + (i < 10 ? "255 0 0\n" : "0 255 0\n");
    return folder_.Write("cloud.xyz", text);
  }
  Result Render(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"render", Cloud()});
    return Kelvra(arguments);
  }
  static host::Picture Read(const std::string& path) {
    host::Picture picture;
    std::string error;
    EXPECT_TRUE(host::LoadPicture(path, &picture, &error)) << error;
    return picture;
  }
  std::vector<std::string> Files(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  std::string Sub(const std::string& name) {
    fs::create_directories(folder_ / name);
    return folder_ / name;
  }
  static long LinesOf(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

  TempFolder folder_;
};

/** 8 or 16: all samples are multiples of one over the depth's largest value; 32 otherwise. */
int DepthOf(const host::Picture& picture) {
  for (const int depth : {8, 16}) {
    const double most = (1 << depth) - 1;
    if (std::all_of(picture.samples.begin(), picture.samples.end(),
                    [most](float v) { return std::abs(v * most - std::round(v * most)) < 1e-2; }))
      return depth;
  }
  return 32;
}

TEST_F(RenderCommand, WritesThePictureInTheSizeFormatAndDepthAskedFor) {
  const struct {
    const char* name;
    const char* depth;
    const char* magic;
    int bits;
  } cases[] = {{"a.png", "", "\x89PNG", 8}, {"b.png", "16", "\x89PNG", 16},
               {"c.tif", "", "II*", 8},     {"d.TIFF", "16", "II*", 16},
               {"e.tif", "32", "II*", 32},  {"f.exr", "", "\x76\x2f\x31\x01", 32}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    if (std::string(c.name) == "f.exr" && !host::CanSavePicture(host::PictureFormat::Exr)) continue;
    std::vector<std::string> arguments = {"-o", folder_ / c.name, "--size", "48x36"};
    if (*c.depth) arguments.insert(arguments.end(), {"--depth", c.depth});
    const Result result = Render(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(TempFolder::Read(folder_ / c.name).compare(0, std::string(c.magic).size(), c.magic), 0);
    const host::Picture picture = Read(folder_ / c.name);
    ASSERT_EQ(picture.width, 48);
    ASSERT_EQ(picture.height, 36);
    EXPECT_EQ(DepthOf(picture), c.bits);
    const float *west = picture.At(16, 18), *east = picture.At(32, 18);
    EXPECT_GT(west[0], west[1] + 0.3f);
    EXPECT_GT(east[1], east[0] + 0.3f);
    EXPECT_NEAR(picture.At(0, 0)[0], 0xc3 / 255.0, 0.01) << "the background";
  }
}

TEST_F(RenderCommand, FramesAreNumberedAndTurned) {
  const std::string out = Sub("out");
  const Result result = Render({"-o", out + "/v##_####.png", "--frames", "8-10", "--turn", "360", "--size",
                                "32x24", "--light", "ambient"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Files(out), (std::vector<std::string>{"v##_0008.png", "v##_0009.png", "v##_0010.png"}));
  // The whole turn goes over the frames without showing the first view twice.
  EXPECT_GT(Read(out + "/v##_0008.png").At(10, 12)[0], 0.5f);
  EXPECT_NE(Read(out + "/v##_0009.png").samples, Read(out + "/v##_0008.png").samples);
  EXPECT_NE(Read(out + "/v##_0010.png").samples, Read(out + "/v##_0008.png").samples);
}

TEST_F(RenderCommand, TheRecorderStoresEachFrameWithSixteenBits) {
  const std::string record = Sub("record");
  const Result result = Render({"-o", folder_ / "f####.tif", "--depth", "32", "--frames", "0-1", "--size",
                                "24x16", "--record", record});
  ASSERT_EQ(result.status, 0) << result.err;
  ASSERT_EQ(Files(record), (std::vector<std::string>{"frame_0000.png", "frame_0001.png"}));
  const host::Picture recorded = Read(record + "/frame_0000.png"), exact = Read(folder_ / "f0000.tif");
  EXPECT_EQ(DepthOf(recorded), 16);
  ASSERT_EQ(recorded.samples.size(), exact.samples.size());
  for (std::size_t i = 0; i < exact.samples.size(); ++i)
    ASSERT_NEAR(recorded.samples[i], std::min(exact.samples[i], 1.0f), 1.0 / 65535);
}

TEST_F(RenderCommand, AFullDiskKeepsEarlierFramesAndIsToldOnce) {
  // How often a frame is written to the disk is the formats' matter: the second frame fails in some case.
  bool between = false;
  for (int n = 1; n < 400 && !between; n += 4) {
    const std::string out = Sub("out" + std::to_string(n));
    const Result result = Render({"-o", out + "/f#.png", "--frames", "0-1", "--size", "24x16", "--fault",
                                  "write=" + std::to_string(n) + ":100000"});
    const std::vector<std::string> files = Files(out);
    if (result.status == 0) break;
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(LinesOf(result.err), 1) << result.err;
    EXPECT_NE(result.err.find("f" + std::to_string(files.size()) + ".png"), std::string::npos) << result.err;
    between = files == std::vector<std::string>{"f0.png"};
    if (between) {
      EXPECT_EQ(Read(out + "/f0.png").width, 24);
    }
  }
  EXPECT_TRUE(between);
}

TEST_F(RenderCommand, AnUnfinishedFrameLeavesTheOldFileAsItWas) {
  const std::string picture = folder_.Write("old.png", "something else");
  EXPECT_EQ(Render({"-o", picture, "--size", "8x8", "--fault", "write=3:100"}).status, 1);
  EXPECT_EQ(TempFolder::Read(picture), "something else");
  EXPECT_EQ(Render({"-o", picture, "--size", "8x8"}).status, 0);
  EXPECT_EQ(Read(picture).width, 8);
}

TEST_F(RenderCommand, ARecorderThatCannotStoreIsToldOnceAndThePicturesStay) {
  const std::string record = Sub("record"), out = Sub("out");
  for (const std::vector<std::string>& way : {std::vector<std::string>{record, "--fault", "write=1:1"},
                                              std::vector<std::string>{folder_ / "missing"}}) {
    std::vector<std::string> arguments = {"-o",     out + "/f#.png", "--frames", "0-1",
                                          "--size", "8x8",           "--record"};
    arguments.insert(arguments.end(), way.begin(), way.end());
    const Result result = Render(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(LinesOf(result.err), 1) << result.err;
    EXPECT_NE(result.err.find("frame_0000.png"), std::string::npos) << result.err;
    EXPECT_EQ(Files(out), (std::vector<std::string>{"f0.png", "f1.png"}));
  }
  EXPECT_EQ(Files(record), std::vector<std::string>{"frame_0001.png"});
}

TEST_F(RenderCommand, OnePixelIsExplained) {
  const Result hit = Render({"--size", "33x33", "--pixel", "16,16"});
  ASSERT_EQ(hit.status, 0) << hit.err;
  for (const char* part : {"pixel 16,16 of 33x33", "cells with points", "weight", "blend: colour"})
    EXPECT_NE(hit.out.find(part), std::string::npos) << part << "\n" << hit.out;
  const Result miss = Render({"--size", "33x33", "--pixel", "0,0"});
  EXPECT_NE(miss.out.find("misses the points' box"), std::string::npos) << miss.out;
  EXPECT_NE(Render({"--pixel", "0,0", "--set", "1000=0"}).out.find("no points are rendered"),
            std::string::npos);
}

TEST_F(RenderCommand, WrongUseIsOneLineBeforeAnythingIsLoaded) {
  std::istringstream cases(
      "--size 0x5;--size 20000x1;--depth 7;--depth 32;--frames 5-2;--frames 0-1;--frames x;"
      "--frames 1-9999999;--light moon;--light sun:1;--light sun:1,2:-1;--light point:1,2,x;"
      "--light point:1,2,inf;--light ambient:1:red;--light sun:1,2:1:#ffffff:9;--light ;"
      "--background blue;--pixel 1,1;--threads 0;--threads 65;--supersample 0;--turn x;--turn inf;"
      "--ground-mirror 2;--ground-mirror nan;--ground-height nan;--camera 1,2,3;--fov 0;");
  const std::string none = folder_ / "none.png";
  for (std::string c; std::getline(cases, c, ';');) {
    const std::size_t space = c.find(' ');
    const Result result = Render({"-o", none, c.substr(0, space), c.substr(space + 1)});
    SCOPED_TRACE(c);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(LinesOf(result.err), 1) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(fs::exists(none));
  }
  EXPECT_EQ(Render({}).status, 2) << "no output";
  EXPECT_EQ(Render({"-o", folder_ / "none.bmp"}).status, 2);
  EXPECT_EQ(Render({"--pixel", "10,0", "--size", "10x10"}).status, 2);
}

TEST_F(RenderCommand, WithoutAPointNothingIsWritten) {
  for (const std::string& file : {folder_.Write("empty.xyz", ""), folder_ / "missing.xyz"}) {
    const Result result = Kelvra({"render", file, "-o", folder_ / "none.png"});
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(fs::exists(folder_ / "none.png"));
    EXPECT_NE(result.err.find("nothing is written"), std::string::npos) << result.err;
  }
  EXPECT_EQ(Render({"-o", folder_ / "missing/none.png", "--size", "8x8"}).status, 1);
}

TEST_F(RenderCommand, WhatCannotBeRenderedLeavesNoFile) {
  for (const std::string fault : {"largeblock=1:1000", "allocation=60:100000", "userbreak=1"}) {
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

TEST_F(RenderCommand, AnInterruptEndsItSoonAndLeavesNoFile) {
  // Minutes of work, if it were not stopped after two seconds.
  const std::string out = Sub("out");
  const std::string command =
      "XDG_CONFIG_HOME='" + folder_ / "config" + "' timeout --foreground --preserve-status -s INT -k 60 2 '" +
      KELVRA_BIN_DIR "/kelvra' render '" + Cloud() + "' -o '" + out +
      "/long.png' --size 2000x2000 --supersample 16 >/dev/null 2>'" + folder_ / "err" + "'";
  const auto start = std::chrono::steady_clock::now();
  const int status = std::system(command.c_str());
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_LT(seconds.count(), 20.0);
  const std::string err = TempFolder::Read(folder_ / "err");
  EXPECT_NE(err.find("stopped by the user"), std::string::npos) << err;
  EXPECT_EQ(LinesOf(err), 1) << err;
  EXPECT_EQ(Files(out), std::vector<std::string>());
}

} // namespace
} // namespace cli_test
