// Lines of a picture as video posts read and write them.
#include "host/render/render_buffer.h"
#include "support/common.h"

namespace {

TEST(Buffer, LinesKeepTheirValuesAtEveryDepth) {
  host::RenderBuffer buffer(4, 3);
  const float pixels[8] = {0.0f, 0.2f, 0.4f, 1.0f, 0.6f, 0.8f, 1.0f, 0.0f};
  ASSERT_TRUE(buffer.SetLine(1, 2, 2, pixels, 32));
  UCHAR bytes[8];
  UWORD words[8];
  float floats[8];
  ASSERT_TRUE(buffer.GetLine(1, 2, 2, bytes, 8));
  ASSERT_TRUE(buffer.GetLine(1, 2, 2, words, 16));
  ASSERT_TRUE(buffer.GetLine(1, 2, 2, floats, 32));
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(bytes[i], std::lround(pixels[i] * 255));
    EXPECT_EQ(words[i], std::lround(pixels[i] * 65535));
    EXPECT_EQ(floats[i], pixels[i]);
  }
  for (const auto& [line, depth] : {std::pair<const void*, LONG>{bytes, 8}, {words, 16}}) {
    UCHAR back[16];
    ASSERT_TRUE(buffer.SetLine(0, 0, 2, line, depth) && buffer.GetLine(0, 0, 2, back, depth));
    EXPECT_EQ(std::memcmp(back, line, (std::size_t)depth), 0);
  }
}

TEST(Buffer, WrongLinesAreRefusedAndTouchNothing) {
  host::RenderBuffer buffer(4, 3);
  const LONG most = std::numeric_limits<LONG>::max(), least = std::numeric_limits<LONG>::min();
  const struct {
    LONG x, y, count, depth;
  } cases[] = {{-1, 0, 1, 32},  {0, -1, 1, 32},   {0, 3, 1, 32},       {4, 0, 1, 32},    {0, 0, 5, 32},
               {3, 0, 2, 32},   {0, 0, -1, 32},   {0, 0, 1, 24},       {0, 0, 1, 0},     {most, 0, 1, 32},
               {0, 0, most, 8}, {1, 0, most, 16}, {least, 0, most, 8}, {0, least, 1, 16}};
  const std::vector<float> before = buffer.Samples();
  float line[32];
  std::fill(line, line + 32, 5.0f);
  for (const auto& c : cases) {
    EXPECT_FALSE(buffer.GetLine(c.x, c.y, c.count, line, c.depth)) << c.x << " " << c.y << " " << c.count;
    EXPECT_FALSE(buffer.SetLine(c.x, c.y, c.count, line, c.depth)) << c.x << " " << c.y << " " << c.count;
  }
  EXPECT_FALSE(buffer.GetLine(0, 0, 1, nullptr, 32));
  EXPECT_FALSE(buffer.SetLine(0, 0, 1, nullptr, 32));
  EXPECT_EQ(buffer.Samples(), before);
  EXPECT_EQ(line[0], 5.0f);
  EXPECT_TRUE(buffer.GetLine(4, 2, 0, line, 32)) << "nothing, at the end of the line";
}

} // namespace
