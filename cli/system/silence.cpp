#include "cli/system/silence.h"

#include <iostream>

namespace cli {

namespace {

/** Takes everything and keeps nothing. */
class NoBuffer : public std::streambuf {
  int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

/** Never freed: the stream is flushed once more after everything static is gone. */
NoBuffer& nothing = *new NoBuffer;

} // namespace

void Silence() {
  std::cout.rdbuf(&nothing);
}

bool IsSilent() {
  return std::cout.rdbuf() == &nothing;
}

} // namespace cli
