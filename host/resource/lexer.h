// Splits resource text (symbols, string tables, descriptions) into tokens.
#pragma once

#include "host/resource/parse_error.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace host::resource {

enum class TokenKind { kEnd, kName, kNumber, kText, kMark };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  Place place;
  std::string text;         // the name, the decoded text (UTF-8), the mark, or the number as written
  double number = 0.0;      // of a kNumber
  std::int64_t integer = 0; // of a kNumber with isInteger
  bool isInteger = false;

  bool IsMark(char mark) const { return kind == TokenKind::kMark && text[0] == mark; }
  bool IsName(std::string_view name) const { return kind == TokenKind::kName && text == name; }
};

/**
 * A token stream with one token of look-ahead. White space, both comment styles, lines that start with '#'
 * and a byte-order mark are skipped. Every operation throws ParseError on bytes that form no token.
 */
class Lexer {
public:
  /** `text` must outlive the lexer; `file` only names it in messages. */
  Lexer(std::string_view text, std::string file);

  const Token& Peek() const { return next_; }
  Token Take();
  /** Takes the next token when it is `mark`. */
  bool TakeIf(char mark);

  // Each takes the next token or fails with "expected WHAT, found ...".
  void Expect(char mark);
  Token ExpectName(const char* what);
  Token ExpectInteger(const char* what);
  void ExpectKeyword(const char* keyword);
  void ExpectEnd();

  [[noreturn]] void FailExpected(const std::string& what) const;
  [[noreturn]] void FailAt(Place place, const std::string& message) const;

private:
  Token Scan();
  void SkipBlanks();
  void SkipBlockComment();
  void SkipLine();
  void Step();
  void ScanNumber(Token* token);
  void ScanText(Token* token);
  void ScanEscape(std::string* text);
  std::uint32_t ScanHexUnit(Place escape);
  char At(std::size_t ahead = 0) const;

  std::string_view text_;
  std::string file_;
  std::size_t position_ = 0;
  Place place_;
  bool lineStart_ = true;
  Token next_;
};

} // namespace host::resource
