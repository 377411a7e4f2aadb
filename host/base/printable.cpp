#include "host/base/printable.h"

#include "host/base/utf8.h"

#include <cstdint>
#include <cstdio>

namespace host {

namespace {

/** One character, or one byte that begins none. */
struct Character {
  std::string_view bytes;
  std::uint32_t codePoint;
  bool valid;
};

Character FirstOf(std::string_view text) {
  const auto lead = (unsigned char)text[0];
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const std::string_view bytes = text.substr(0, length);
  if (bytes.size() < length || !resource::IsUtf8(bytes)) return {text.substr(0, 1), lead, false};
  std::uint32_t codePoint = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) codePoint = codePoint << 6 | ((unsigned char)bytes[i] & 0x3Fu);
  return {bytes, codePoint, true};
}

bool IsControl(std::uint32_t c) {
  const bool command = c < 0x20 || (c >= 0x7F && c <= 0x9F);
  const bool lineBreak = c == 0x2028 || c == 0x2029;
  const bool direction = c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
                         (c >= 0x2066 && c <= 0x2069);
  return command || lineBreak || direction;
}

std::string Escaped(const char* format, std::uint32_t code) {
  char text[12];
  std::snprintf(text, sizeof text, format, (unsigned)code);
  return text;
}

} // namespace

std::string Printable(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    const Character c = FirstOf(text);
    if (c.valid && !IsControl(c.codePoint))
      printable += c.bytes;
    else
      printable += Escaped(c.valid && c.codePoint >= 0x80 ? "\\u%04x" : "\\x%02x", c.codePoint);
    text.remove_prefix(c.bytes.size());
  }
  return printable;
}

std::string PrintableJson(std::string_view json) {
  std::string printable;
  printable.reserve(json.size());
  while (!json.empty()) {
    const Character c = FirstOf(json);
    if (c.codePoint != '\n' && IsControl(c.codePoint))
      printable += Escaped("\\u%04x", c.codePoint);
    else
      printable += c.bytes;
    json.remove_prefix(c.bytes.size());
  }
  return printable;
}

std::string Shortened(std::string_view text, std::size_t characters) {
  std::string_view rest = text;
  while (!rest.empty() && characters-- > 0) rest.remove_prefix(FirstOf(rest).bytes.size());
  std::string kept(text.substr(0, text.size() - rest.size()));
  return rest.empty() ? kept : kept + "...";
}

} // namespace host
