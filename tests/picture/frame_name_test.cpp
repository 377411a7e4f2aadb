#include "support/common.h"
#include "videopost/frame_name.h"

#include "host/base/text.h"

namespace kelvra {
namespace {

TEST(FrameName, NumberTakesThePlaceOfTheSigns) {
  const struct {
    const char* pattern;
    LONG frame;
    const char* name;
  } cases[] = {
      {"frame_####", 7, "frame_0007.png"},
      {"", 12, "frame_0012.png"},
      {"##.tif", 1234, "1234.tif"},
      {"a#b##c.EXR", 5, "a#b05c.EXR"},
      {"shot.png", 3, "shot0003.png"},
      {"shot", 12345, "shot12345.png"},
      {"take.v2_###", 0, "take.v2_000.png"},
      {"take.v2", 1, "take.v20001.png"},
      {"f_###.tiff", -4, "f_-004.tiff"},
      {"f_#", MINLONGl, "f_-2147483647.png"},
      {"../up/c:\\x_##", 1, ".._up_c__x_01.png"},
      {"ö点_##.png", 9, "ö点_09.png"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(host::Utf8(FrameFileName(String(c.pattern, STRINGENCODING_UTF8), c.frame)), c.name)
        << c.pattern;
}

} // namespace
} // namespace kelvra
