// Whole files: lines, thinning, the state of the format, filters, growth, progress.
#include "support/common.h"
#include "text/text_driver.h"

namespace {

using kelvra::TextPoint;
using Sizes = std::vector<std::size_t>;

/** A file in memory, read in parts, and the memory for its points, with refusals first. */
struct Loading : kelvra::TextResult {
  Loading(const std::string& text, std::int32_t everyNth = 1, bool pts = false, std::size_t part = 1u << 30,
          std::int64_t firstGrowth = kelvra::kFirstGrowth, std::size_t refusals = 0, int stopAt = 2000) {
    std::size_t at = 0;
    const auto read = [&](char* buffer, std::size_t most) {
      const std::size_t got = text.copy(buffer, std::min(part, most), at);
      at += got;
      return got;
    };
    const auto reallocate = [&](void* array, std::size_t bytes) -> void* {
      requests.push_back(bytes / sizeof(TextPoint));
      return requests.size() > refusals ? std::realloc(array, std::min(bytes, text.size() * 64)) : nullptr;
    };
    const auto progress = [&](int thousandths) {
      shown.push_back(thousandths);
      return thousandths < stopAt;
    };
    const kelvra::TextLoader_XYZ xyz;
    const kelvra::TextLoader_PTS ptsLoader;
    TextResult::operator=(
        kelvra::LoadText(pts ? (const kelvra::TextLoader&)ptsLoader : xyz,
                         {read, (std::int64_t)text.size(), everyNth, reallocate, firstGrowth, progress}));
    for (std::int32_t i = 0; i < count; ++i) xs += std::to_string((int)points[i].x) + " ";
  }
  ~Loading() { std::free(points); }
  Loading(const Loading&) = delete;

  std::string xs;
  Sizes requests;
  std::vector<int> shown;
};

TEST(TextDriver, LinesAreCountedAsTheyEnd) {
  struct Case {
    std::string text;
    std::int32_t everyNth;
    bool pts;
    const char* outcome; // x of the points | rejected, first rejected, without data, not finite
  };
  const std::string blanks(kelvra::kMostLineBytes, ' '), mark = "\xEF\xBB\xBF";
  const Case cases[] = {
      {"x y z\r\n1 0 0\r\n\r\n2 0 0", 1, false, "1 2 | 2 1 0 0"},
      {"1 2\n3 4 5\n", 1, false, "3 | 1 1 0 0"}, // a missing field is not the next line's
      {"2\n1 0 0 5\n2 0 0 5 1 2 3\n3 0 0\n", 1, true, "1 2 | 2 1 0 0"},
      {"1 0 0 .5 0 0 1 1 1\n2 0 0\n", 1, false, "1 | 1 2 0 0"}, // the state never goes back
      {"1 0 -9999\n2 0 -9998.9\n3 0 -inf\n", 1, false, "2 | 0 0 2 0"},
      {"nan 0 0\n1e39 0 0\n3 0 0\n4 inf 0\n", 1, false, "3 | 0 0 0 3"},
      {mark + "1 0 0\n" + mark + "2 0 0\n", 1, false, "1 | 1 2 0 0"},
      {std::string("1 0\0 0\n2 0 0\n", 13), 1, false, "2 | 1 1 0 0"},
      {"x\n1 0 0\n2 0 0\n3 0 0\n4 0 0\n5 0 0\n6 0 0\n", 3, false, "3 6 | 1 1 0 0"}, // headers count
      {blanks.substr(5) + "1 0 0\n2 0 0\n", 1, false, "1 2 | 0 0 0 0"},             // the longest line
      {blanks.substr(4) + "1 0 0\n2 0 0\n", 1, false, "2 | 1 1 0 0"},
      {blanks + blanks + blanks + "1 0 0\n2 0 0", 1, false, "2 | 1 1 0 0"},
      {"1 0 0" + blanks + blanks, 1, false, "| 1 1 0 0"},
  };
  for (const Case& c : cases)
    for (const std::size_t part : {1u << 30, 1u, 1000u}) {
      const Loading loaded(c.text, c.everyNth, c.pts, part);
      const auto number = [](std::int64_t value) { return " " + std::to_string(value); };
      EXPECT_EQ(loaded.xs + "|" + number(loaded.rejected) + number(loaded.firstRejected) +
                    number(loaded.noData) + number(loaded.notFinite),
                c.outcome)
          << c.text.substr(0, 80) << "read in parts of " << part;
    }
}

TEST(TextDriver, FieldsThatALineDoesNotWriteKeepTheirValue) {
  // The second line fails as nine columns after its reals, and is plain like the third.
  const Loading loaded("7 7 7 5 5 5\n1 2 3 .5 .25 .125\n4 5 6 1 2 3 4 5 6\n");
  ASSERT_EQ(loaded.count, 3);
  EXPECT_EQ(loaded.points[0].second[1], 0);
  EXPECT_EQ(loaded.points[2].second[1], .25);
  EXPECT_EQ(loaded.points[2].r, 1);
  EXPECT_EQ(loaded.box.max[1] - loaded.box.min[2], 7 - 3);
}

TEST(TextDriver, RequestsForMemoryDoubleWhetherTheySucceedOrNot) {
  const std::string text = "1 0 0\n2 0 0\n3 0 0\n4 0 0\n5 0 0\n6 0 0\n7 0 0\n8 0 0\n9 0 0\n";
  const Loading grown(text, 1, false, 100, 2);
  EXPECT_EQ(grown.requests, (Sizes{2, 4, 8, 16}));
  EXPECT_EQ(grown.xs, "1 2 3 4 5 6 7 8 9 ");
  // Refused: the shortest lines would make 9 points of the file and usual ones 2. Points are lost after both.
  const Loading fitted(text, 1, false, 100, kelvra::kFirstGrowth, 1);
  EXPECT_EQ(fitted.requests, (Sizes{0x10000000, 9}));
  EXPECT_EQ(fitted.xs, "1 2 3 4 5 6 7 8 9 ");
  const Loading refused(text, 1, false, 100, kelvra::kFirstGrowth, 7);
  EXPECT_EQ(refused.requests, (Sizes{0x10000000, 9, 2, 0x20000000, 8, 2, 0x40000000, 7}));
  EXPECT_EQ(refused.xs, "3 4 5 6 7 8 9 ");
  EXPECT_EQ(refused.noMemory, 2);
}

TEST(TextDriver, TheMostPointsEndTheReading) {
  for (const std::int32_t most : {2, 3}) {
    std::vector<TextPoint> store(4);
    bool read = false;
    const auto text = [&](char* buffer, std::size_t size) {
      return std::exchange(read, true) ? 0 : std::string("1 0 0\n2 0 0\nx\n3 0 0\n").copy(buffer, size);
    };
    const kelvra::TextResult result = kelvra::LoadText(
        kelvra::TextLoader_XYZ(),
        {text, 20, 1, [&](void*, std::size_t) { return (void*)store.data(); }, 4, nullptr, most});
    EXPECT_EQ(result.count, most);
    EXPECT_EQ(result.full, most == 2);
    EXPECT_EQ(result.lines, result.count + result.rejected);
  }
}

TEST(TextDriver, ProgressRisesByThousandthsAndCanStop) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "1 2 3\n";
  const Loading whole(text);
  EXPECT_EQ(whole.shown.size(), 1001u); // 0 to 1000, each once
  EXPECT_TRUE(std::is_sorted(whole.shown.begin(), whole.shown.end()));
  EXPECT_NEAR(Loading(text, 1, false, 100, 4, 0, 500).count, 2500, 3);
  EXPECT_TRUE(Loading(std::string(1 << 20, '1'), 1, false, 1 << 16, 4, 0, 500).stopped); // no line feed
}

TEST(TextDriver, TellsWhatAFileLooksLike) {
  EXPECT_EQ(Loading("\n \r\nX,Y,Z \r\n1,2,3\n").firstLine, "X,Y,Z");
  EXPECT_TRUE(Loading(std::string("1\0 \0002\0\n", 7), 1, false, 1).looksUtf16);
  EXPECT_TRUE(Loading("\xFF\xFE").looksUtf16);
  EXPECT_FALSE(Loading("1 2 3\n").looksUtf16);
}

} // namespace
