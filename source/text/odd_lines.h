// Lines whose author meant something else than the readers take from them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvra {

struct LineCount {
  std::int64_t count = 0, first = 0; ///< number of the first one, from 1
  void Add(std::int64_t line) {
    if (count++ == 0) first = line;
  }
};

struct OddLines {
  LineCount colors;      ///< colours with decimals, "0.52" or "255.0", which count as no colours
  LineCount intensities; ///< of PTS, with decimals: the colours behind them are not read
  LineCount commas, semicolons, decimalCommas;
  const char* content = nullptr; ///< what the header's words announce, for people: "an Esri grid"; or nothing
  std::int64_t contentLine = 0;  ///< the line that has the word
};

/** Sees lines that the forms rejected, or took without all that they hold. */
class OddLineFinder {
public:
  explicit OddLineFinder(bool pts);
  /** `line` ends with a NUL at `length`; `number` counts from 1. */
  void Rejected(const char* line, std::size_t length, std::int64_t number);
  /** A line that gave a point without a colour of its own. */
  void Colorless(const char* line, std::size_t length, std::int64_t number);
  OddLines Take();

private:
  bool FindSeparators(const char* line, std::size_t length, std::int64_t number);
  void FindDecimals(const char* line, std::size_t length, std::int64_t number);
  void FindContent(const char* line, std::size_t length, std::int64_t number);

  const bool pts_;
  OddLines found_;
  bool normals_ = false; ///< a column of what could be colours is negative
  std::int64_t plain_ = 0;
  std::size_t contentRank_;
};

} // namespace kelvra
