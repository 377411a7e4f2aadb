// A module's "res" folder: its texts and descriptions in one language.
#pragma once

#include "host/resource/description.h"
#include "host/resource/string_table.h"
#include "host/resource/symbols.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host::resource {

/** Descriptions may include each other this deep. */
constexpr std::size_t kMaxIncludeDepth = 16;

/** The language that every folder has, and whose texts stand in for those that another lacks. */
constexpr const char* kFallbackLanguage = "us";

/** One thread at a time. What it returns stays valid as long as the folder. */
class ResourceFolder {
public:
  /**
   * Reads c4d_symbols.h and c4d_strings.str of `language` ("us", "de", ...) and of the fallback language.
   * Returns false with one line in `error` when the symbols or the fallback's texts are missing, or a file is
   * wrong.
   */
  bool Open(const std::filesystem::path& path, const std::string& language, std::string* error);

  /** The text that c4d_symbols.h numbers `id`, else null. */
  const std::string* FindString(std::int32_t id) const;
  /** The same, with a placeholder that shows the number where there is none. */
  std::string LoadString(std::int32_t id) const;

  /**
   * The description `name`, spelled as after CONTAINER; its files are named in lower case. The application's
   * own base descriptions are found too. Read once, then kept; null with one line in `error` when a file is
   * missing or wrong.
   */
  const Description* LoadDescription(const std::string& name, std::string* error);

  const SymbolTable& Symbols() const { return symbols_; }

private:
  struct Sources;

  bool ReadSources(const std::string& name, Sources* sources, std::string* error) const;
  bool ReadBuiltin(const std::string& name, Sources* sources, std::string* error) const;
  bool ReadFiles(const std::string& name, Sources* sources, std::string* error) const;
  bool ReadTables(const std::string& relative, std::vector<StringTable>* tables, std::string* error) const;

  std::filesystem::path path_;
  std::vector<std::string> languages_; // preferred first
  SymbolTable symbols_;
  std::vector<StringTable> strings_;
  std::map<std::int32_t, std::string> identifiers_; // by number
  std::map<std::string, std::unique_ptr<Description>> descriptions_;
  std::vector<std::string> loading_; // the chain of includes being read
};

/** The name of a description's files without suffix: `name` in lower case; empty when `name` is no
 * identifier. */
std::string DescriptionFileStem(const std::string& name);

} // namespace host::resource
