// Other programs, and other runs of this one.
#pragma once

#include <string>
#include <vector>

namespace cli {

class ChildProcess {
public:
  /** Group: a Ctrl-C at the terminal reaches the child, too, or only this process, which decides. */
  enum class Group { Shared, Own };

  /**
   * Starts a program, which reads nothing. What it prints is added to the files; where a name is empty it
   * goes where this process prints. Throws std::runtime_error.
   */
  ChildProcess(const std::vector<std::string>& words, const std::string& out, const std::string& err,
               Group group);
  /** Ends the child if it still runs. */
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  bool Ended();
  /** Waits for its end. The exit status; 128 and the signal for a child that was ended by one. */
  int Status();

private:
#ifdef _WIN32
  void* process_ = nullptr;
#else
  int process_ = 0;
  bool ownGroup_ = false;
#endif
  bool ended_ = false;
  int status_ = 0;
};

/** What a command of the system's shell prints to either stream, and its exit status. Ctrl-C does not reach
 * it. For POSIX systems. */
int RunShell(const std::string& command, std::string* printed);

/** A word as a POSIX shell takes it. */
std::string ShellWord(const std::string& word);

} // namespace cli
