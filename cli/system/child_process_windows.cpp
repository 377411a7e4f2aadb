#ifdef _WIN32
#include "cli/system/child_process.h"

#include "cli/system/utf8_windows.h"

#include <filesystem>
#include <stdexcept>

namespace cli {

namespace {

std::wstring Wide(const std::string& text) {
  return std::filesystem::u8path(text).wstring();
}

/** As programs take their command line apart: a backslash counts only in front of a quote. */
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L"\"";
}

/** A file to add to, or the stream of this process where the name is empty. */
class Stream {
public:
  Stream(const std::string& path, DWORD own) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    handle_ = path.empty()
                  ? GetStdHandle(own)
                  : CreateFileW(Wide(path).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                &inherited, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    opened_ = !path.empty() && handle_ != INVALID_HANDLE_VALUE;
  }
  ~Stream() {
    if (opened_) CloseHandle(handle_);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  HANDLE Get() const { return handle_; }

private:
  HANDLE handle_;
  bool opened_;
};

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words, const std::string& out,
                           const std::string& err, Group group) {
  std::wstring line;
  for (const std::string& word : words) line += (line.empty() ? L"" : L" ") + Quoted(Wide(word));
  const Stream outStream(out, STD_OUTPUT_HANDLE), errStream(err, STD_ERROR_HANDLE);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = INVALID_HANDLE_VALUE;
  start.hStdOutput = outStream.Get();
  start.hStdError = errStream.Get();
  PROCESS_INFORMATION made = {};
  const DWORD flags = group == Group::Own ? CREATE_NEW_PROCESS_GROUP : 0;
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &start, &made))
    throw std::runtime_error(words[0] + ": cannot be started: error " + std::to_string(GetLastError()));
  CloseHandle(made.hThread);
  process_ = made.hProcess;
}

ChildProcess::~ChildProcess() {
  if (!Ended()) {
    TerminateProcess(process_, 1);
    Status();
  }
  CloseHandle(process_);
}

bool ChildProcess::Ended() {
  return ended_ || WaitForSingleObject(process_, 0) == WAIT_OBJECT_0;
}

int ChildProcess::Status() {
  if (!ended_) {
    WaitForSingleObject(process_, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process_, &status);
    status_ = (int)status;
    ended_ = true;
  }
  return status_;
}

// What asks a POSIX shell is for clusters, which do not run on Windows.
int RunShell(const std::string&, std::string* printed) {
  *printed = "there is no POSIX shell";
  return 127;
}

std::string ShellWord(const std::string& word) {
  return word;
}

} // namespace cli
#endif
