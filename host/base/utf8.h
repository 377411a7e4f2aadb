// The little of UTF-8 that resource texts need.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host::resource {

/** Appends a code point up to 0x10FFFF, surrogates excluded. */
void AppendUtf8(std::uint32_t codePoint, std::string* text);

/** True when `text` is well-formed: no overlong forms, no surrogates, nothing above 0x10FFFF. */
bool IsUtf8(std::string_view text);

} // namespace host::resource
