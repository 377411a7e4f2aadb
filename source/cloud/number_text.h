// Numbers as text, without regard to any locale.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Most characters that WriteShortest writes. */
constexpr LONG kMostNumberChars = 48;

/**
 * Writes the shortest decimal that reads back to the same 32-bit float, and of those the one nearest to it;
 * no terminator. Magnitudes from 1e-5 to 1e9 are written without an exponent ("500000", not "5e+05": readers
 * of plain point files do not understand exponents), the others as the standard library does. Returns the
 * end.
 */
CHAR* WriteShortest(CHAR* to, SReal value);
/** The same of a 64-bit real. */
CHAR* WriteShortest(CHAR* to, LReal value);
/** With a fixed number of decimals; for magnitudes below 2 to the 53rd. */
CHAR* WriteDecimals(CHAR* to, LReal value, LONG decimals);
/** An integer; at most 11 characters. */
CHAR* WriteInteger(CHAR* to, LONG value);

} // namespace kelvra
