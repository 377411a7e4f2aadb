// A table as a text file that the module can read.
#pragma once

#include <filesystem>
#include <string>

namespace cli {

/** Lies in a temporary folder of its own, which goes with this object. */
class TextOfTable {
public:
  /** Throws std::runtime_error with what is wrong with the table, or why the text could not be written. */
  explicit TextOfTable(const std::string& tablePath);
  ~TextOfTable();
  TextOfTable(const TextOfTable&) = delete;
  TextOfTable& operator=(const TextOfTable&) = delete;
  std::string Path() const;

  /** By its suffix. */
  static bool IsTable(const std::string& path);
  /** How a text that is not a table by its suffix would load as one; empty where it would not. */
  static std::string WayToLoad(const std::string& path);

private:
  void Fill(const std::string& tablePath) const;

  std::filesystem::path folder_;
};

} // namespace cli
