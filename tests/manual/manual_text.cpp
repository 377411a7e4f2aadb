#include "manual/manual_text.h"

namespace manual_test {

namespace {

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool IsFence(const std::string& line) {
  return line.rfind("```", 0) == 0;
}

} // namespace

std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text, line;
  while (std::getline(file, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    text += line + "\n";
  }
  return text;
}

ManualText::ManualText() : whole_(ReadText(std::string(KELVRA_SOURCE_DIR) + "/docs/manual.md")) {
  std::istringstream in(whole_);
  bool fenced = false;
  sections_.emplace_back();
  for (std::string line; std::getline(in, line);) {
    fenced = fenced != IsFence(line);
    if (!fenced && line.rfind("#", 0) == 0)
      sections_.push_back({Trimmed(line.substr(line.find_first_not_of('#'))), {}});
    else
      sections_.back().lines.push_back(line);
  }
}

std::vector<Block> ManualText::Blocks() const {
  std::vector<Block> blocks;
  bool inside = false;
  for (const Section& section : sections_)
    for (const std::string& line : section.lines) {
      if (IsFence(line)) {
        inside = !inside;
        if (inside) blocks.push_back({line.substr(3), {}});
      } else if (inside) {
        blocks.back().lines.push_back(line);
      }
    }
  return blocks;
}

const Section* ManualText::Find(const std::string& heading) const {
  for (const Section& section : sections_)
    if (section.heading == heading) return &section;
  return nullptr;
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  if (line.size() < 2 || line.front() != '|' || line.back() != '|') return cells;
  std::istringstream in(line.substr(1));
  for (std::string cell; std::getline(in, cell, '|');) cells.push_back(Trimmed(cell));
  return cells;
}

} // namespace manual_test
