#include "cli/system/program_arguments.h"

#ifdef _WIN32
#include "cli/system/utf8_windows.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#endif

namespace cli {

namespace {

const ProgramArguments* ofThisRun = nullptr;

} // namespace

std::vector<std::string> ProgramArguments::All() {
  if (!ofThisRun || ofThisRun->texts_.empty()) return {};
  return std::vector<std::string>(ofThisRun->texts_.begin() + 1, ofThisRun->texts_.end());
}

#ifdef _WIN32
ProgramArguments::ProgramArguments(int argc, char** argv) {
  // What main is handed has lost every letter that the system's code page lacks.
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 0; wide && i < count; ++i) texts_.push_back(Utf8(wide[i]));
  if (!wide) texts_.assign(argv, argv + argc);
  LocalFree(wide);
  for (std::string& text : texts_) values_.push_back(text.data());
  values_.push_back(nullptr);
  ofThisRun = this;
  // What is printed is the same on every system: scripts compare it.
  for (std::FILE* stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  consolePage_ = GetConsoleOutputCP();
  if (consolePage_) SetConsoleOutputCP(CP_UTF8);
}

ProgramArguments::~ProgramArguments() {
  ofThisRun = nullptr;
  if (consolePage_) SetConsoleOutputCP(consolePage_);
}
#else
ProgramArguments::ProgramArguments(int argc, char** argv) : texts_(argv, argv + argc) {
  for (std::string& text : texts_) values_.push_back(text.data());
  values_.push_back(nullptr);
  ofThisRun = this;
}

ProgramArguments::~ProgramArguments() {
  ofThisRun = nullptr;
}
#endif

} // namespace cli
