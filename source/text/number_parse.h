// Numbers out of text, as the C library reads them in the C locale, and fast for what files hold.
#pragma once

#include <cstdint>

namespace kelvra {

/**
 * Reads a real at text exactly as strtod does: white space is skipped, *end is text when there is no number.
 * textEnd is at or behind text and holds a NUL. Plain decimals take a fast path with the same result.
 */
double ParseReal(const char* text, const char* textEnd, const char** end);

/** Reads a decimal integer as strtol does where a long has 32 bits: values beyond saturate. */
std::int32_t ParseInteger(const char* text, const char** end);

} // namespace kelvra
