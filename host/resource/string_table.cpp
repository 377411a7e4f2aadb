#include "host/resource/string_table.h"

#include "host/resource/lexer.h"

namespace host::resource {
namespace {

Token ExpectText(Lexer* lexer) {
  if (lexer->Peek().kind != TokenKind::kText) lexer->FailExpected("a text in quotes");
  return lexer->Take();
}

void ParseTable(Lexer* lexer, StringTable* table) {
  lexer->ExpectKeyword("STRINGTABLE");
  if (lexer->Peek().kind == TokenKind::kName) table->name = lexer->Take().text;
  lexer->Expect('{');
  while (!lexer->Peek().IsMark('}')) {
    const Token identifier = lexer->ExpectName("an identifier or '}'");
    const std::string longText = ExpectText(lexer).text;
    const bool hasShort = lexer->Peek().kind == TokenKind::kText;
    const std::string shortText = hasShort ? lexer->Take().text : longText;
    lexer->Expect(';');
    if (!table->texts.emplace(identifier.text, Texts{longText, shortText}).second) {
      lexer->FailAt(identifier.place, "'" + identifier.text + "' has a text already");
    }
  }
  lexer->Expect('}');
  lexer->ExpectEnd();
}

} // namespace

bool ParseStringTable(std::string_view text, const std::string& file, StringTable* table,
                      std::string* error) {
  return CatchParseError(error, [&] {
    Lexer lexer(text, file);
    ParseTable(&lexer, table);
  });
}

const Texts* FindTexts(const std::vector<StringTable>& tables, const std::string& identifier) {
  for (const StringTable& table : tables) {
    const auto found = table.texts.find(identifier);
    if (found != table.texts.end()) return &found->second;
  }
  return nullptr;
}

} // namespace host::resource
