// Numbers as people read them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kelvra {

/** 1234567 as "1,234,567". */
inline std::string Grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
  return digits;
}

/** "1 point", "2,500 points". */
inline std::string Counted(std::uint64_t number, const char* noun) {
  return Grouped(number) + " " + noun + (number == 1 ? "" : "s");
}

} // namespace kelvra
