#include "host/base/utf8.h"

#include <cstddef>

namespace host::resource {

void AppendUtf8(std::uint32_t codePoint, std::string* text) {
  const auto tail = [&](int shift) { text->push_back(char(0x80 | ((codePoint >> shift) & 0x3F))); };
  if (codePoint < 0x80) {
    text->push_back(char(codePoint));
  } else if (codePoint < 0x800) {
    text->push_back(char(0xC0 | (codePoint >> 6)));
    tail(0);
  } else if (codePoint < 0x10000) {
    text->push_back(char(0xE0 | (codePoint >> 12)));
    tail(6), tail(0);
  } else {
    text->push_back(char(0xF0 | (codePoint >> 18)));
    tail(12), tail(6), tail(0);
  }
}

bool IsUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = (unsigned char)text[i++];
    if (lead < 0x80) continue;
    const int tails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - i < std::size_t(tails)) return false;
    std::uint32_t codePoint = lead & (0x3Fu >> tails);
    for (int tail = 0; tail < tails; ++tail) {
      const auto byte = (unsigned char)text[i++];
      if ((byte & 0xC0) != 0x80) return false;
      codePoint = codePoint << 6 | (byte & 0x3Fu);
    }
    const std::uint32_t smallest = tails == 3 ? 0x10000 : tails == 2 ? 0x800 : 0x80;
    if (codePoint < smallest || codePoint > 0x10FFFF || (codePoint >> 11) == 0x1B) return false;
  }
  return true;
}

} // namespace host::resource
