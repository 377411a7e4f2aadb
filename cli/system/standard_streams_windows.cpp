#ifdef _WIN32
#include "cli/system/standard_streams.h"

#include <cstdio>
#include <io.h>

namespace cli {

// Their numbers stay taken there.
void FillClosedStreams() {}

bool IsOutputClosed() {
  return _fileno(stdout) < 0;
}

} // namespace cli
#endif
