#include "text/odd_lines.h"

#include "text/number_parse.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace kelvra {

namespace {

/** A file whose first lines hold nothing but their points goes on so: looking further would cost time. */
constexpr std::int64_t kPlainLines = 1000;
/** Lines at the start of a file in which words count. */
constexpr std::int64_t kHeaderLines = 20;
constexpr double kBrightest = 255.0;
/** x y z, three more of a normal, and three channels. */
constexpr std::size_t kMostFields = 9;

/** Words of headers by what they announce, the surest first. */
const struct {
  const char *word, *content;
} kWords[] = {{"ncols", "an Esri grid, which holds rows of heights"},
              {"longitude", "longitudes and latitudes"},
              {"latitude", "longitudes and latitudes"},
              {"lon", "longitudes and latitudes"},
              {"lat", "longitudes and latitudes"},
              {"waveform", "waveforms"}};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsLetter(char c) {
  const char lower = (char)(c | 0x20);
  return lower >= 'a' && lower <= 'z';
}

struct Field {
  const char *begin = NULL, *end = NULL;
  bool Holds(char c) const { return std::find(begin, end, c) != end; }
};

/** Splits at blanks; what lies behind the last field is left out. */
std::size_t SplitFields(const char* line, std::size_t length, Field* fields) {
  const char *p = line, *const end = line + length;
  std::size_t count = 0;
  while (count < kMostFields) {
    while (p < end && IsBlank(*p)) ++p;
    if (p == end) break;
    fields[count].begin = p;
    while (p < end && !IsBlank(*p)) ++p;
    fields[count++].end = p;
  }
  return count;
}

enum class Channels { kNone, kWhole, kDecimal, kNegative };

/** What three fields hold if they are the channels of a colour. */
Channels ChannelsIn(const Field* fields, const char* lineEnd) {
  bool decimal = false;
  for (int i = 0; i < 3; ++i) {
    const char* end = NULL;
    const double value = ParseReal(fields[i].begin, lineEnd, &end);
    if (end != fields[i].end || !(value <= kBrightest)) return Channels::kNone;
    if (value < 0.0) return Channels::kNegative;
    decimal = decimal || fields[i].Holds('.');
  }
  return decimal ? Channels::kDecimal : Channels::kWhole;
}

/** Commas between digits, in fields that blanks separate: "1,5 2,5 3,5". */
bool HasDecimalCommas(const Field* fields, std::size_t count) {
  bool any = false;
  for (std::size_t i = 0; i < count; ++i) {
    const char* const comma = std::find(fields[i].begin, fields[i].end, ',');
    if (comma == fields[i].end) continue;
    if (comma == fields[i].begin || !IsDigit(comma[-1]) || !IsDigit(comma[1])) return false;
    if (std::find(comma + 1, fields[i].end, ',') != fields[i].end) return false;
    any = true;
  }
  return any && count >= 3;
}

bool SameWord(const char* begin, const char* end, const char* word) {
  return (std::size_t)(end - begin) == std::strlen(word) &&
         std::equal(begin, end, word, [](char a, char b) { return (char)(a | 0x20) == b; });
}

} // namespace

OddLineFinder::OddLineFinder(bool pts) : pts_(pts), contentRank_(std::size(kWords)) {}

void OddLineFinder::Rejected(const char* line, std::size_t length, std::int64_t number) {
  if (number <= kHeaderLines) FindContent(line, length, number);
  if (!FindSeparators(line, length, number) && pts_) FindDecimals(line, length, number);
}

void OddLineFinder::Colorless(const char* line, std::size_t length, std::int64_t number) {
  if (plain_ >= kPlainLines) return;
  const std::int64_t before = found_.colors.count + found_.intensities.count;
  if (FindSeparators(line, length, number)) return;
  FindDecimals(line, length, number);
  if (found_.colors.count + found_.intensities.count == before) ++plain_;
}

OddLines OddLineFinder::Take() {
  if (normals_) found_.colors = LineCount();
  return found_;
}

bool OddLineFinder::FindSeparators(const char* line, std::size_t length, std::int64_t number) {
  const char* const end = line + length;
  const char* const mark = std::find_if(line, end, [](char c) { return c == ',' || c == ';'; });
  // A number comes first: words may have commas of their own.
  const char* last = mark;
  while (last > line && IsBlank(last[-1])) --last;
  if (mark == end || last == line || !(IsDigit(last[-1]) || last[-1] == '.')) return false;
  if (std::any_of(line, mark, [](char c) { return IsLetter(c) && (c | 0x20) != 'e'; })) return false;
  const bool semicolons = std::find(mark, end, ';') != end;
  if (semicolons) found_.semicolons.Add(number);
  Field fields[kMostFields];
  // Between semicolons a comma can only be that of a number.
  const bool decimal = semicolons ? std::find(line, end, ',') != end
                                  : HasDecimalCommas(fields, SplitFields(line, length, fields));
  if (decimal)
    found_.decimalCommas.Add(number);
  else if (!semicolons)
    found_.commas.Add(number);
  return true;
}

void OddLineFinder::FindDecimals(const char* line, std::size_t length, std::int64_t number) {
  Field fields[kMostFields];
  const std::size_t count = SplitFields(line, length, fields);
  const char* const end = line + length;
  const std::size_t first = pts_ ? 4 : count == 9 ? 6 : 3; // of the channels
  if (pts_ && count >= 4 && fields[3].Holds('.')) {
    found_.intensities.Add(number);
    return;
  }
  if (count < first + 3) return;
  const Channels channels = ChannelsIn(fields + first, end);
  if (channels == Channels::kDecimal) found_.colors.Add(number);
  // Normals have both signs; no colour is below 0.
  normals_ = normals_ || channels == Channels::kNegative;
}

void OddLineFinder::FindContent(const char* line, std::size_t length, std::int64_t number) {
  const char* const end = line + length;
  for (const char* p = line; p < end;) {
    const char* const word = p;
    while (p < end && IsLetter(*p)) ++p;
    for (std::size_t rank = 0; rank < contentRank_; ++rank)
      if (SameWord(word, p, kWords[rank].word)) {
        contentRank_ = rank;
        found_.content = kWords[rank].content;
        found_.contentLine = number;
      }
    if (p == word) ++p;
  }
}

} // namespace kelvra
