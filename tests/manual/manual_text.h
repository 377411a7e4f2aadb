// The manual as the tests see it: its fenced blocks, and its tables by heading.
#include "support/common.h"

#pragma once

namespace manual_test {

struct Block {
  std::string kind; ///< word after the fence, empty without one
  std::vector<std::string> lines;
};

/** Parts by the manual's headings of any level; a part ends where the next one begins. */
struct Section {
  std::string heading; ///< without the #
  std::vector<std::string> lines;
};

class ManualText {
public:
  /** docs/manual.md of the sources; empty when it cannot be read. */
  ManualText();
  bool Has(const std::string& text) const { return whole_.find(text) != std::string::npos; }
  std::vector<Block> Blocks() const;
  /** NULL when no heading is exactly that. */
  const Section* Find(const std::string& heading) const;

private:
  std::string whole_;
  std::vector<Section> sections_;
};

/** The cells of a table's row without the blanks around them; empty for other lines. */
std::vector<std::string> Cells(const std::string& line);

/** Whole file as text, with lines that end in a line feed alone. */
std::string ReadText(const std::string& path);

} // namespace manual_test
