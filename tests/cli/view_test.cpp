// The window, in a virtual display and with the input that a user's hands would send.
#include "host/picture/image.h"
#include "support/program_run.h"

namespace cli_test {
namespace {

using host::gl::Image;

/** A square of red points, with a green one in the east. */
std::string TwoSquares() {
  std::string text;
  for (int i = -15; i <= 15; ++i)
    for (int j = -15; j <= 15; ++j) {
      const std::string y = std::to_string(j * 0.5);
      text += std::to_string(i * 0.5) + " " + y + " 0 255 0 0\n";
      text += std::to_string(i * 0.5 + 40) + " " + y + " 0 0 255 0\n";
    }
  return text;
}

/** Pixels whose chosen channel stands out, and their mean x. */
struct Patch {
  int count = 0;
  double x = 0;
};
Patch Find(const Image& image, int channel) {
  Patch patch;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const std::uint8_t* pixel = image.At(x, y);
      if (pixel[channel] < 200 || std::max(pixel[(channel + 1) % 3], pixel[(channel + 2) % 3]) > 60) continue;
      patch.x += x;
      ++patch.count;
    }
  if (patch.count > 0) patch.x /= patch.count;
  return patch;
}

class Window : public testing::Test {
protected:
  void SetUp() override {
    if (std::system("command -v Xvfb xdotool >/dev/null 2>&1") != 0) GTEST_SKIP() << "no Xvfb, no xdotool";
    folder_.Write("squares.xyz", TwoSquares());
  }

  /** Runs the window with a script of hands; $w is the window, and `wait_for FILE` waits until it is there.
   */
  int Run(const std::string& arguments, const std::string& hands) {
    const std::string script = folder_.Write(
        "run.sh",
        "cd \"$(dirname \"$0\")\" || exit 99\nexport XDG_CONFIG_HOME=$PWD/config\n"
        "wait_for() { for i in $(seq 600); do [ -s \"$1\" ] && sleep 0.5 && return; sleep 0.1; done; }\n"
        "Xvfb -displayfd 7 -screen 0 1000x700x24 7>display >/dev/null 2>&1 & server=$!\n"
        "wait_for display; export DISPLAY=:$(cat display)\n'" +
            std::string(KELVRA_BIN_DIR) + "/kelvra' view " + arguments +
            " >printed 2>errors & program=$!\n"
            "w=$(timeout 20 xdotool search --sync --onlyvisible --name '^Kelvra$' | tail -1)\n"
            "[ -n \"$w\" ] && xdotool windowfocus $w\nkey() { xdotool key --window $w \"$@\"; sleep 0.3; "
            "}\n" +
            hands + "\nwait $program; status=$?; kill $server; exit $status\n");
    const int status = std::system(("bash '" + script + "'").c_str());
    return WEXITSTATUS(status);
  }

  Image Picture(const std::string& name) {
    Image image;
    std::string error;
    EXPECT_TRUE(host::gl::ReadPng(folder_ / name, &image, &error))
        << error << TempFolder::Read(folder_ / "errors");
    return image;
  }

  TempFolder folder_;
};

TEST_F(Window, ShowsTheFilesThatItIsGivenAndTurnsThem) {
  ASSERT_EQ(Run("squares.xyz --size 900x600 --no-panels --screenshot end.png --exit-after 20",
                "key F12; wait_for kelvra_0001.png\n"
                "key 3; key F12; wait_for kelvra_0002.png\n"
                "xdotool mousemove --window $w 400 300; sleep 0.3; xdotool mousedown 1; sleep 0.3\n"
                "for i in 1 2 3 4; do xdotool mousemove_relative 30 40; sleep 0.2; done\n"
                "xdotool mouseup 1; sleep 0.3"),
            0)
      << TempFolder::Read(folder_ / "errors");
  const Image first = Picture("kelvra_0001.png"), back = Picture("kelvra_0002.png"), end = Picture("end.png");
  ASSERT_EQ(first.width, 900);
  EXPECT_GT(Find(first, 0).count, 500);
  EXPECT_LT(Find(first, 0).x, Find(first, 1).x) << "the green square lies in the east";
  EXPECT_GT(Find(back, 0).x, Find(back, 1).x) << "seen from the north";
  EXPECT_NE(Find(end, 0).count, Find(back, 0).count) << "dragged";
}

TEST_F(Window, RendersExplainsSavesAndUndoes) {
  ASSERT_EQ(Run("squares.xyz --size 900x600",
                "key F12; wait_for kelvra_0001.png\n"
                "key Delete; key F12; wait_for kelvra_0002.png\n"
                "key ctrl+z; key F12; wait_for kelvra_0003.png\n"
                "key ctrl+s; xdotool type --window $w kept; sleep 0.5; key Return; wait_for kept.scene\n"
                "key ctrl+r; for i in $(seq 20); do sleep 3; key F12; [ -s kelvra_0004.png ] && break; done\n"
                "key ctrl+q"),
            0)
      << TempFolder::Read(folder_ / "errors");
  EXPECT_GT(Find(Picture("kelvra_0001.png"), 0).count, 300);
  EXPECT_EQ(Find(Picture("kelvra_0002.png"), 0).count, 0);
  EXPECT_GT(Find(Picture("kelvra_0003.png"), 0).count, 300);
  EXPECT_GT(Find(Picture("kelvra_0004.png"), 1).count, 100) << "lit green points in the rendered picture";
  EXPECT_TRUE(Holds(Kelvra({"info", folder_ / "kept.scene"}).out, "1,922 points"));
}

TEST_F(Window, NeedsADisplayAndReportsWhatCannotBeLoaded) {
  const int status = std::system(("env -u DISPLAY -u WAYLAND_DISPLAY XDG_CONFIG_HOME='" + (folder_ / "c") +
                                  "' '" + KELVRA_BIN_DIR + "/kelvra' view 2>'" + (folder_ / "said") + "'")
                                     .c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
  const std::string said = TempFolder::Read(folder_ / "said");
  EXPECT_TRUE(Holds(said, "no window can be opened")) << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  EXPECT_EQ(Run("missing.laz --exit-after 0.2", ""), 1);
  EXPECT_TRUE(Holds(TempFolder::Read(folder_ / "errors"), "missing.laz: no such file or folder"));
}

} // namespace
} // namespace cli_test
