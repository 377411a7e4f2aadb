// Text of files, servers and libraries as it may appear on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/**
 * One line in which nothing commands the terminal or fakes another line: control characters, line breaks,
 * marks that turn the direction of writing and bytes that are not UTF-8 become "\x1b" and "\u202e". Other
 * text stays.
 */
std::string Printable(std::string_view text);

/** The same for JSON, where such characters stand inside of texts only; line breaks between values stay. */
std::string PrintableJson(std::string_view json);

/** At most that many characters from the start, "..." if some are left out. A character is never cut. */
std::string Shortened(std::string_view text, std::size_t characters);

} // namespace host
