#ifndef _WIN32
#include "cli/system/standard_streams.h"

#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace cli {

namespace {

bool outputClosed = false;

} // namespace

void FillClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free number is this one.
    const int opened = open("/dev/null", O_RDONLY);
    outputClosed = outputClosed || (opened == STDOUT_FILENO && stream == STDOUT_FILENO);
  }
}

bool IsOutputClosed() {
  return outputClosed;
}

} // namespace cli
#endif
