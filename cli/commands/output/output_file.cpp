#include "cli/commands/output/output_file.h"

#include "cli/system/exit_status.h"
#include "cli/system/silence.h"
#include "cli/system/standard_streams.h"
#include "host/application.h"
#include "host/base/replacing_file.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace cli {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw std::runtime_error(OutputName(path) + ": " + why + "; nothing was written");
}

} // namespace

std::string OutputName(const std::string& path) {
  return host::OutputName(path);
}

void RequireNoTerminal(const std::string& path) {
  if (host::IsStandardOutput(path) && isatty(fileno(stdout)))
    throw UsageError{
        "standard output is a terminal, which cannot show this file; send it to a file or a pipe"};
}

void RequireReplaceable(const std::string& path, const FilesToRead& inputs) {
  const std::string obstacle = host::ReplacingFile(path).Obstacle();
  if (path == "/dev/stdout") Refuse(path, obstacle + " (-o - writes to standard output)");
  const bool forced = host::ReplacingFile(path, nullptr, host::ProtectedFiles::Replace).Obstacle().empty();
  if (!obstacle.empty()) Refuse(path, obstacle + (forced ? " (--force replaces it)" : ""));
  if (host::IsStandardOutput(path)) {
    if (!IsSilent()) std::cout.rdbuf(std::cerr.rdbuf());
    return;
  }
  if (inputs.Holds(path)) Refuse(path, "it is one of the files to read");
}

void RequireWritable(const std::string& path, const FilesToRead& inputs) {
  if (host::IsStandardOutput(path) && IsOutputClosed()) Refuse(path, "it is closed");
  RequireReplaceable(path, inputs);
  host::ReplacingFile file(path);
  std::string name, reason;
  // The name too: not every disk gives one to a file that had none.
  if (!file.Open(&reason) || !file.HandOver(&name, &reason)) Refuse(path, reason);
}

void RequireNotStopped(const std::string& path) {
  if (host::Interrupted()) Refuse(path, "stopped by the user");
}

void WriteText(const std::string& path, const std::string& text) {
  host::ReplacingFile file(path);
  std::string reason;
  if (!file.Open(&reason) || !file.File().Write(text.data(), text.size()) || !file.Commit(&reason))
    throw std::runtime_error(OutputName(path) +
                             ": cannot be written: " + (reason.empty() ? file.File().Error() : reason));
}

long long FileSize(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(fs::u8path(path), error);
  return error ? -1 : (long long)size;
}

} // namespace cli
