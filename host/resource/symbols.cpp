#include "host/resource/symbols.h"

#include "host/resource/lexer.h"

#include <limits>

namespace host::resource {
namespace {

std::int64_t ParseEnumerator(Lexer* lexer, const SymbolTable& symbols, std::int64_t next) {
  if (!lexer->TakeIf('=')) return next;
  if (lexer->Peek().kind != TokenKind::kName)
    return lexer->ExpectInteger("a whole number or an earlier name").integer;
  const Token name = lexer->Take();
  const auto value = symbols.Find(name.text);
  if (!value) lexer->FailAt(name.place, "'" + name.text + "' is not defined before this line");
  return *value;
}

void ParseEnum(Lexer* lexer, SymbolTable* symbols) {
  lexer->ExpectKeyword("enum");
  if (lexer->Peek().kind == TokenKind::kName) lexer->Take();
  lexer->Expect('{');
  for (std::int64_t next = 0; !lexer->Peek().IsMark('}');) {
    const Token name = lexer->ExpectName("a name or '}'");
    const std::int64_t value = ParseEnumerator(lexer, *symbols, next);
    using Limits = std::numeric_limits<std::int32_t>;
    if (value < Limits::min() || value > Limits::max()) {
      lexer->FailAt(name.place,
                    "'" + name.text + "' = " + std::to_string(value) + " does not fit in 32 bits");
    }
    if (!symbols->Add(name.text, std::int32_t(value))) {
      lexer->FailAt(name.place, "'" + name.text + "' is defined twice");
    }
    next = value + 1;
    if (!lexer->TakeIf(',') && !lexer->Peek().IsMark('}')) lexer->FailExpected("',' or '}'");
  }
  lexer->Expect('}');
  lexer->Expect(';');
  lexer->ExpectEnd();
}

} // namespace

bool SymbolTable::Add(const std::string& name, std::int32_t value) {
  if (!values_.emplace(name, value).second) return false;
  entries_.emplace_back(name, value);
  return true;
}

void SymbolTable::Merge(const SymbolTable& other) {
  for (const auto& [name, value] : other.entries_) Add(name, value);
}

std::optional<std::int32_t> SymbolTable::Find(const std::string& name) const {
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

bool ParseSymbols(std::string_view text, const std::string& file, SymbolTable* symbols, std::string* error) {
  return CatchParseError(error, [&] {
    Lexer lexer(text, file);
    ParseEnum(&lexer, symbols);
  });
}

} // namespace host::resource
