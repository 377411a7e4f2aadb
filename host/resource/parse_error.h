// The failure that the resource parsers throw among themselves; their entry functions catch it.
#pragma once

#include <stdexcept>
#include <string>

namespace host::resource {

/** A place in a resource file; line and column count from 1, columns in bytes. */
struct Place {
  int line = 1;
  int column = 1;
};

/** what() reads "file:line:column: message". Never leaves host/resource. */
class ParseError : public std::runtime_error {
public:
  ParseError(const std::string& file, Place place, const std::string& message)
      : std::runtime_error(file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) +
                           ": " + message) {}
};

/** Runs `parse`; a ParseError becomes false and its text. */
template <typename Parse>
bool CatchParseError(std::string* error, Parse parse) {
  try {
    parse();
    return true;
  } catch (const ParseError& failure) {
    *error = failure.what();
    return false;
  }
}

} // namespace host::resource
