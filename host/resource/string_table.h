// The texts of one language, by identifier.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host::resource {

/** UTF-8; the short text equals the long one where the file gives none. */
struct Texts {
  std::string longText;
  std::string shortText;
};

struct StringTable {
  std::string name; // empty in c4d_strings.str
  std::map<std::string, Texts> texts;
};

/**
 * Reads `STRINGTABLE [Name] { IDENTIFIER "long text" ["short text"]; ... }`. An identifier may be given once.
 * Returns false with "file:line:column: ..." in `error`.
 */
bool ParseStringTable(std::string_view text, const std::string& file, StringTable* table, std::string* error);

/** The first of `tables` (preferred language first) that has `identifier`, or null. */
const Texts* FindTexts(const std::vector<StringTable>& tables, const std::string& identifier);

} // namespace host::resource
