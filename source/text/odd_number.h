// Numbers other than plain decimals, read as the C library of any system with C99 reads them: not every
// system's does.
#pragma once

namespace kelvra {

/**
 * Hexadecimal numbers, "inf", "infinity", "nan" and "nan(...)" in any case, after white space and a sign.
 * What follows "nan" in brackets is taken but changes nothing. *end is text when there is no number: the
 * value is then 0. The text must end with a byte that cannot belong to a number, a zero for example.
 */
double ParseOddReal(const char* text, const char** end);

} // namespace kelvra
