#include "cli/csv/text_of_table.h"

#include "cli/csv/csv_text.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

TextOfTable::TextOfTable(const std::string& tablePath) {
  std::error_code failed;
  // Opening a pipe would wait for its writer.
  if (!fs::is_regular_file(fs::u8path(tablePath), failed)) throw std::runtime_error("not a regular file");
  const std::string folder = fs::temp_directory_path(failed).u8string();
  if (failed) throw std::runtime_error("there is no folder for its text: " + failed.message());
  std::string error;
  if (!text_.Make(folder, host::disk::kPrivate, &error)) throw std::runtime_error(error);
  std::ifstream table(fs::u8path(tablePath), std::ios::binary);
  std::ofstream text(fs::u8path(Path()), std::ios::binary);
  if (!ConvertTable(table, text, &error)) throw std::runtime_error(error);
  if (!text.flush()) throw std::runtime_error("its text does not fit into the temporary folder " + folder);
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

} // namespace cli
