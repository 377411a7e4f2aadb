#ifndef _WIN32
#include "cli/system/child_process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace cli {

namespace {

/** The child's three streams. */
class Streams {
public:
  Streams(const std::string& out, const std::string& err) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    const int flags = O_WRONLY | O_CREAT | O_APPEND;
    if (!out.empty()) posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, out.c_str(), flags, 0666);
    if (!err.empty()) posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, err.c_str(), flags, 0666);
  }
  ~Streams() { posix_spawn_file_actions_destroy(&actions_); }
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;
  const posix_spawn_file_actions_t* Get() const { return &actions_; }

private:
  posix_spawn_file_actions_t actions_;
};

int StatusOf(int state) {
  return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words, const std::string& out,
                           const std::string& err, Group group)
    : ownGroup_(group == Group::Own) {
  std::vector<char*> values;
  for (const std::string& word : words) values.push_back(const_cast<char*>(word.c_str()));
  values.push_back(nullptr);
  const Streams streams(out, err);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  if (ownGroup_) posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  const int failed = posix_spawnp(&process_, values[0], streams.Get(), &attributes, values.data(), environ);
  posix_spawnattr_destroy(&attributes);
  if (failed) throw std::runtime_error(words[0] + ": cannot be started: " + std::strerror(failed));
}

ChildProcess::~ChildProcess() {
  if (Ended()) return;
  kill(ownGroup_ ? -process_ : process_, SIGTERM);
  Status();
}

bool ChildProcess::Ended() {
  int state = 0;
  if (!ended_ && waitpid(process_, &state, WNOHANG) == process_) {
    ended_ = true;
    status_ = StatusOf(state);
  }
  return ended_;
}

int ChildProcess::Status() {
  int state = 0;
  while (!ended_) {
    const pid_t waited = waitpid(process_, &state, 0);
    if (waited < 0 && errno == EINTR) continue;
    ended_ = true;
    status_ = waited == process_ ? StatusOf(state) : 127;
  }
  return status_;
}

int RunShell(const std::string& command, std::string* printed) {
  printed->clear();
  std::FILE* pipe = popen(("trap '' INT; { " + command + "; } 2>&1").c_str(), "r");
  if (!pipe) throw std::runtime_error(command + ": cannot be started: " + std::strerror(errno));
  char part[4096];
  while (const std::size_t got = std::fread(part, 1, sizeof part, pipe)) printed->append(part, got);
  const int state = pclose(pipe);
  return state < 0 ? 127 : StatusOf(state);
}

std::string ShellWord(const std::string& word) {
  const char* const plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=:,./@%";
  if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) return word;
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

} // namespace cli
#endif
