#include "host/resource/lexer.h"

#include "host/base/utf8.h"

#include <charconv>
#include <utility>

namespace host::resource {
namespace {

// The C library's classification depends on the locale; resource text does not.
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsNamePart(char c) {
  return IsNameStart(c) || IsDigit(c);
}
bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string Describe(const Token& token) {
  constexpr std::size_t kShown = 40;
  const std::string shown = token.text.substr(0, kShown) + (token.text.size() > kShown ? "..." : "");
  switch (token.kind) {
  case TokenKind::kEnd:
    return "the end of the file";
  case TokenKind::kText:
    return "the text \"" + shown + "\"";
  default:
    return "'" + shown + "'";
  }
}

std::string DescribeByte(char c) {
  static constexpr char kDigits[] = "0123456789abcdef";
  const auto byte = (unsigned char)c;
  if (byte > 0x20 && byte < 0x7F) return std::string("'") + c + "'";
  return std::string("byte 0x") + kDigits[byte >> 4] + kDigits[byte & 15];
}

} // namespace

Lexer::Lexer(std::string_view text, std::string file) : text_(text), file_(std::move(file)) {
  if (text_.substr(0, 3) == "\xEF\xBB\xBF") text_.remove_prefix(3);
  next_ = Scan();
}

Token Lexer::Take() {
  Token taken = std::move(next_);
  next_ = Scan();
  return taken;
}

bool Lexer::TakeIf(char mark) {
  if (!next_.IsMark(mark)) return false;
  Take();
  return true;
}

void Lexer::Expect(char mark) {
  if (!TakeIf(mark)) FailExpected(std::string("'") + mark + "'");
}

Token Lexer::ExpectName(const char* what) {
  if (next_.kind != TokenKind::kName) FailExpected(what);
  return Take();
}

Token Lexer::ExpectInteger(const char* what) {
  if (next_.kind != TokenKind::kNumber || !next_.isInteger) FailExpected(what);
  return Take();
}

void Lexer::ExpectKeyword(const char* keyword) {
  if (!next_.IsName(keyword)) FailExpected(std::string("'") + keyword + "'");
  Take();
}

void Lexer::ExpectEnd() {
  if (next_.kind != TokenKind::kEnd) FailExpected("the end of the file");
}

void Lexer::FailExpected(const std::string& what) const {
  FailAt(next_.place, "expected " + what + ", found " + Describe(next_));
}

void Lexer::FailAt(Place place, const std::string& message) const {
  throw ParseError(file_, place, message);
}

char Lexer::At(std::size_t ahead) const {
  return position_ + ahead < text_.size() ? text_[position_ + ahead] : '\0';
}

void Lexer::Step() {
  const char c = text_[position_++];
  if (c == '\n') {
    ++place_.line;
    place_.column = 1;
    lineStart_ = true;
  } else {
    ++place_.column;
    if (!IsBlank(c)) lineStart_ = false;
  }
}

void Lexer::SkipLine() {
  while (position_ < text_.size() && text_[position_] != '\n') Step();
}

void Lexer::SkipBlockComment() {
  const Place start = place_;
  Step(), Step();
  while (position_ < text_.size()) {
    if (At() == '*' && At(1) == '/') {
      Step(), Step();
      return;
    }
    Step();
  }
  FailAt(start, "this comment is not closed");
}

void Lexer::SkipBlanks() {
  while (position_ < text_.size()) {
    if (IsBlank(At())) {
      Step();
    } else if ((At() == '#' && lineStart_) || (At() == '/' && At(1) == '/')) {
      SkipLine();
    } else if (At() == '/' && At(1) == '*') {
      SkipBlockComment();
    } else {
      return;
    }
  }
}

Token Lexer::Scan() {
  SkipBlanks();
  Token token;
  token.place = place_;
  if (position_ >= text_.size()) return token;
  const char c = At();
  const bool sign = c == '-' || c == '+';
  if (IsNameStart(c)) {
    token.kind = TokenKind::kName;
    while (IsNamePart(At())) {
      token.text.push_back(At());
      Step();
    }
  } else if (IsDigit(At(sign)) || (At(sign) == '.' && IsDigit(At(sign + 1)))) {
    ScanNumber(&token);
  } else if (c == '"') {
    ScanText(&token);
  } else if (std::string_view("{};,=~").find(c) != std::string_view::npos) {
    token.kind = TokenKind::kMark;
    token.text = c;
    Step();
  } else {
    FailAt(place_, "unexpected " + DescribeByte(c));
  }
  return token;
}

void Lexer::ScanNumber(Token* token) {
  token->kind = TokenKind::kNumber;
  const std::size_t start = position_;
  const bool negative = At() == '-';
  if (negative || At() == '+') Step();
  const bool hexadecimal = At() == '0' && (At(1) == 'x' || At(1) == 'X');
  if (hexadecimal) Step(), Step();
  // Take the longest run that a number could be, so that "12ab" is one wrong number and not two tokens.
  const std::size_t digits = position_;
  while (IsNamePart(At()) || At() == '.' ||
         (!hexadecimal && (At() == '-' || At() == '+') && position_ > start &&
          (text_[position_ - 1] | 32) == 'e')) {
    Step();
  }
  token->text = text_.substr(start, position_ - start);
  const char* first = text_.data() + digits;
  const char* last = text_.data() + position_;

  std::uint64_t magnitude = 0;
  const auto whole = std::from_chars(first, last, magnitude, hexadecimal ? 16 : 10);
  if (whole.ec == std::errc() && whole.ptr == last && magnitude <= std::uint64_t(INT64_MAX)) {
    token->isInteger = true;
    token->integer = negative ? -std::int64_t(magnitude) : std::int64_t(magnitude);
    token->number = double(token->integer);
    return;
  }
  double real = 0.0;
  const auto parsed = std::from_chars(first, last, real, std::chars_format::general);
  if (hexadecimal || parsed.ec != std::errc() || parsed.ptr != last) {
    FailAt(token->place, "'" + token->text.substr(0, 40) + "' is not a number, or out of range");
  }
  token->number = negative ? -real : real;
}

void Lexer::ScanText(Token* token) {
  token->kind = TokenKind::kText;
  Step();
  while (At() != '"') {
    if (position_ >= text_.size() || At() == '\n')
      FailAt(token->place, "this text is not closed on its line");
    if (At() == '\0') FailAt(place_, "unexpected byte 0x00 in a text");
    if (At() == '\\') {
      ScanEscape(&token->text);
    } else {
      token->text.push_back(At());
      Step();
    }
  }
  Step();
  if (!IsUtf8(token->text)) FailAt(token->place, "this text is not valid UTF-8");
}

void Lexer::ScanEscape(std::string* text) {
  const Place escape = place_;
  Step();
  const char kind = At();
  if (position_ < text_.size() && kind != '\n') Step();
  switch (kind) {
  case 'n':
    text->push_back('\n');
    return;
  case 't':
    text->push_back('\t');
    return;
  case 'r':
    text->push_back('\r');
    return;
  case '"':
  case '\'':
  case '\\':
    text->push_back(kind);
    return;
  case 'u':
    break;
  default:
    FailAt(escape, "unknown escape: expected one of \\n \\t \\r \\\" \\' \\\\ \\uXXXX");
  }
  // Code points above 0xFFFF are written as two units, as UTF-16 has them.
  std::uint32_t codePoint = ScanHexUnit(escape);
  if (codePoint >= 0xD800 && codePoint < 0xDC00 && At() == '\\' && At(1) == 'u') {
    Step(), Step();
    const std::uint32_t low = ScanHexUnit(escape);
    if (low < 0xDC00 || low > 0xDFFF) FailAt(escape, "\\u escapes form no pair");
    codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (low - 0xDC00);
  }
  if (codePoint == 0 || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
    FailAt(escape, "\\u escape is not a character");
  AppendUtf8(codePoint, text);
}

std::uint32_t Lexer::ScanHexUnit(Place escape) {
  const std::string_view digits = text_.substr(position_, 4);
  std::uint32_t unit = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
  if (digits.size() != 4 || parsed.ptr != digits.data() + 4)
    FailAt(escape, "expected four hex digits after \\u");
  for (int digit = 0; digit < 4; ++digit) Step();
  return unit;
}

} // namespace host::resource
