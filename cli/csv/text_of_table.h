// A table as a text file that the module can read.
#pragma once

#include "host/base/temporary_file.h"

#include <string>

namespace cli {

/** A temporary file that only its owner may read, whatever the rights of the table. */
class TextOfTable {
public:
  /** Throws std::runtime_error with what is wrong with the table, or why the text could not be written. */
  explicit TextOfTable(const std::string& tablePath);
  std::string Path() const { return text_.Name(); }

  /** By its suffix. */
  static bool IsTable(const std::string& path);
  /** How a text that is not a table by its suffix would load as one; empty where it would not. */
  static std::string WayToLoad(const std::string& path);

private:
  host::TemporaryFile text_;
};

} // namespace cli
