// One line of each form, and the estimates.
#include "support/common.h"
#include "text/text_loader.h"

#include <cstdio>

namespace {

using kelvra::TextLoader;
using kelvra::TextPoint;

const kelvra::TextLoader_XYZ kXyz;
const kelvra::TextLoader_PTS kPts;

TEST(TextLoader, LinesSetTheFieldsBeforeTheFirstThatFails) {
  struct Case {
    const TextLoader& loader;
    bool (TextLoader::*parse)(const char*, std::int32_t, TextPoint&) const;
    const char* line;
    bool accepted;
    const char* fields; // of a record that held 9 everywhere
  };
  const auto colored = &TextLoader::ParseColored, extended = &TextLoader::ParseExtended,
             plain = &TextLoader::ParsePlain;
  const Case cases[] = {
      {kXyz, colored, "1 2 3 255 128 0", true, "1 2 3 | 9 9 9 | 9 | 255 128 0"},
      {kXyz, colored, "\t1\t2 3  4 5 6 7 x\r", true, "1 2 3 | 9 9 9 | 9 | 4 5 6"},
      {kXyz, colored, "1 2 3 65536 -1 99999999999", true, "1 2 3 | 9 9 9 | 9 | 0 65535 65535"},
      {kXyz, colored, "1 2 3 0.5 0.5 0.5 10 20 30", false, "1 2 3 | 9 9 9 | 9 | 0 9 9"},
      {kXyz, colored, "1,2,3", false, "1 9 9 | 9 9 9 | 9 | 9 9 9"},
      {kXyz, colored, "# comment", false, "0 9 9 | 9 9 9 | 9 | 9 9 9"}, // the first field may be empty
      {kXyz, extended, "1 2 3 0.5 -0.5 1e1 10 20 30", true, "1 2 3 | 0.5 -0.5 10 | 9 | 10 20 30"},
      {kXyz, plain, "1 2 3", true, "1 2 3 | 9 9 9 | 9 | 1 1 1"},
      {kPts, colored, "1.0 2.0 3.0 150", true, "1 2 3 | 9 9 9 | 150 | 150 150 150"},
      {kPts, colored, "1 2 3 -2 10 20 30", true, "1 2 3 | 9 9 9 | 4294967294 | 10 20 30"},
      {kPts, colored, "1 2 3 65537 none", true, "1 2 3 | 9 9 9 | 65537 | 1 1 1"},
      {kPts, colored, "1 2 3 150 10 20", false, "1 2 3 | 9 9 9 | 150 | 10 20 9"},
      {kPts, plain, "1 2 3", false, "9 9 9 | 9 9 9 | 9 | 9 9 9"},
  };
  for (const Case& c : cases) {
    TextPoint p{9, 9, 9, {9, 9, 9}, 9, 9, 9, 9, 9};
    EXPECT_EQ((c.loader.*c.parse)(c.line, (std::int32_t)std::strlen(c.line), p), c.accepted) << c.line;
    char fields[200];
    std::snprintf(fields, sizeof fields, "%g %g %g | %g %g %g | %u | %d %d %d", p.x, p.y, p.z, p.second[0],
                  p.second[1], p.second[2], p.intensity, p.r, p.g, p.b);
    EXPECT_STREQ(fields, c.fields) << c.line;
  }
}

TEST(TextLoader, PairCountSkipsThreeAfterAMatchAndLooksOneByteFurther) {
  EXPECT_EQ(kXyz.CountPairs("\r\n\r\n\r\n", 6, 6, "\r\n"), 2); // the second pair lies in the skipped part
  EXPECT_EQ(kXyz.CountPairs("ab\r\n", 3, 4, "\r\n"), 1);       // its second byte is behind the length
  EXPECT_EQ(kXyz.CountPairs("ab\r\n", 3, 3, "\r\n"), 0);
  EXPECT_EQ(kXyz.EstimatePointCount(379), 9);
  EXPECT_EQ(kPts.EstimatePointCount(-85), -2);
}

} // namespace
