#ifndef _WIN32
#include "cli/system/separate_process.h"

#include "host/application.h"

#include <cerrno>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <string>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

namespace cli {

namespace {

/** First byte of what the child sends; text follows. */
enum End : char { kFalse = '0', kTrue = '1', kThrew = 'E' };

void SendAll(int pipe, const std::string& text) {
  for (std::size_t sent = 0; sent < text.size();) {
    const ssize_t part = write(pipe, text.data() + sent, text.size() - sent);
    if (part < 0 && errno != EINTR) return;
    if (part > 0) sent += (std::size_t)part;
  }
}

constexpr int kLookEvery = 50, kPatience = 1000; // ms

/** Passes on that the user wants to stop: once, so that the work may end, and then so that it does. */
class Stopper {
public:
  explicit Stopper(pid_t child) : child_(child) {}
  /** To be called every kLookEvery. */
  void Look() {
    if (!host::Interrupted()) return;
    if (waited_ == 0 || waited_ == kPatience) kill(child_, SIGTERM);
    waited_ += kLookEvery;
  }

private:
  pid_t child_;
  int waited_ = 0;
};

std::string ReceiveAll(int pipe, pid_t child) {
  std::string text;
  char buffer[4096];
  Stopper stopper(child);
  for (;;) {
    pollfd waiting = {pipe, POLLIN, 0};
    if (poll(&waiting, 1, kLookEvery) <= 0) {
      stopper.Look();
      continue;
    }
    const ssize_t part = read(pipe, buffer, sizeof buffer);
    if (part < 0 && errno == EINTR) continue;
    if (part <= 0) return text;
    text.append(buffer, (std::size_t)part);
  }
}

/** Destructors of static objects belong to the parent: the child leaves without them. */
[[noreturn]] void Child(const std::function<bool()>& work, int pipe) {
#ifdef __linux__
  prctl(PR_SET_PDEATHSIG, SIGTERM); // nobody waits for the work any more
#endif
  const int nothing = open("/dev/null", O_WRONLY);
  if (nothing >= 0) dup2(nothing, STDERR_FILENO);
  std::ostringstream lines;
  std::cerr.rdbuf(lines.rdbuf());
  std::string result;
  try {
    const char end = work() ? kTrue : kFalse;
    result = end + lines.str();
  } catch (const std::bad_alloc&) {
    result = (char)kThrew + std::string("drawing: not enough memory");
  } catch (const std::exception& e) {
    result = (char)kThrew + std::string(e.what());
  }
  SendAll(pipe, result);
  _exit(0);
}

std::string Death(int status) {
  if (WIFSIGNALED(status)) return "was ended by signal " + std::to_string(WTERMSIG(status));
  return "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

bool RunSeparately(const std::function<bool()>& work) {
  int ends[2];
  if (pipe(ends) != 0) return work();
  std::cout.flush();
  const pid_t child = fork();
  if (child < 0) {
    close(ends[0]);
    close(ends[1]);
    return work();
  }
  if (child == 0) {
    close(ends[0]);
    Child(work, ends[1]);
  }
  close(ends[1]);
  const std::string result = ReceiveAll(ends[0], child);
  close(ends[0]);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (result.empty() && host::Interrupted()) throw std::runtime_error("drawing: stopped by the user");
  if (result.empty())
    throw std::runtime_error("drawing: the graphics driver " + Death(status) +
                             ", probably for lack of memory; no picture was finished");
  if (result[0] == kThrew) throw std::runtime_error(result.substr(1));
  std::cerr << result.substr(1);
  return result[0] == kTrue;
}

} // namespace cli
#endif
