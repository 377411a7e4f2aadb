// Identifiers with their numbers, as c4d_symbols.h and the description headers define them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::resource {

class SymbolTable {
public:
  /** Returns false and changes nothing when `name` is there already. */
  bool Add(const std::string& name, std::int32_t value);
  /** Takes what `other` has and this table has not. */
  void Merge(const SymbolTable& other);

  std::optional<std::int32_t> Find(const std::string& name) const;
  /** In order of definition. */
  const std::vector<std::pair<std::string, std::int32_t>>& Entries() const { return entries_; }

private:
  std::map<std::string, std::int32_t> values_;
  std::vector<std::pair<std::string, std::int32_t>> entries_;
};

/**
 * Reads one plain enum: `enum [Name] { A = 1000, B, C = 0x10, D = A };`. Lines that start with '#' and
 * comments are skipped, and nothing may follow the enum. Values are 32-bit; a name may be defined once.
 * Returns false with "file:line:column: ..." in `error`.
 */
bool ParseSymbols(std::string_view text, const std::string& file, SymbolTable* symbols, std::string* error);

} // namespace host::resource
