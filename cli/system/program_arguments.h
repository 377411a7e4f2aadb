// The command line as UTF-8, whatever the system hands to main.
#pragma once

#include <string>
#include <vector>

namespace cli {

/** On Windows also makes the console show UTF-8 while it lives, and lines end as they do elsewhere. */
class ProgramArguments {
public:
  ProgramArguments(int argc, char** argv);
  ~ProgramArguments();
  ProgramArguments(const ProgramArguments&) = delete;
  ProgramArguments& operator=(const ProgramArguments&) = delete;

  int Count() const { return (int)texts_.size(); }
  /** Those of this run, without the program's name. */
  static std::vector<std::string> All();
  /** Count() texts and a NULL. */
  char** Values() const { return const_cast<char**>(values_.data()); }

private:
  std::vector<std::string> texts_;
  std::vector<char*> values_;
  [[maybe_unused]] unsigned consolePage_ = 0; ///< what the console showed before; 0 = none
};

} // namespace cli
