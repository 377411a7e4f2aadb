#include "cli/csv/text_of_table.h"

#include "cli/csv/csv_text.h"

#include <fstream>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

TextOfTable::TextOfTable(const std::string& tablePath) {
  std::random_device random;
  folder_ = fs::temp_directory_path() / ("kelvra-" + std::to_string(random()) + std::to_string(random()));
  fs::create_directory(folder_);
  try {
    Fill(tablePath);
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
    throw;
  }
}

TextOfTable::~TextOfTable() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string TextOfTable::Path() const {
  return (folder_ / "table.xyz").u8string();
}

bool TextOfTable::IsTable(const std::string& path) {
  const std::string suffix = fs::u8path(path).extension().u8string();
  return suffix == ".csv" || suffix == ".CSV";
}

std::string TextOfTable::WayToLoad(const std::string& path) {
  std::error_code ignored;
  if (IsTable(path) || !fs::is_regular_file(fs::u8path(path), ignored)) return std::string();
  std::ifstream text(fs::u8path(path), std::ios::binary);
  return WayToLoadAsTable(text);
}

void TextOfTable::Fill(const std::string& tablePath) const {
  std::ifstream table(fs::u8path(tablePath), std::ios::binary);
  std::ofstream text(fs::u8path(Path()), std::ios::binary);
  std::string error;
  if (!ConvertTable(table, text, &error)) throw std::runtime_error(error);
  if (!text.flush())
    throw std::runtime_error("its text does not fit into the temporary folder " +
                             folder_.parent_path().u8string());
}

} // namespace cli
