// Where a sequence keeps what it needs besides the results: logs, the job script, what was submitted.
#pragma once

#include "cli/commands/sequence/part.h"

#include <string>
#include <vector>

namespace cli {

/** Attempts at a part before it is given up. */
constexpr int kMostTries = 3;

class WorkFolder {
public:
  /** Beside the output: "out/frame_####.png" has "out/frame.sequence". Makes no folder yet. */
  explicit WorkFolder(const std::string& output);

  /** Throws std::runtime_error. */
  void Make() const;
  std::string Path(const std::string& name) const;
  /** What the attempts at a part printed. */
  std::string Log(int part) const { return Path("part_" + std::to_string(part) + ".log"); }

  /** Names of the nodes on which the part was begun, one an attempt, as its log has them; of one job alone
   * if it is named. */
  std::vector<std::string> Starts(int part, const std::string& job = "") const;
  /** The last line of the log; empty without one. */
  std::string LastLine(int part) const;
  /** Attempts of an earlier run no longer count. */
  void Forget(int part) const;

private:
  std::string folder_;
};

/** "job 12_3", the task of a cluster that this process is; empty for none. */
std::string ThisJob();

/** The line with which a process begins a part in its log. */
std::string StartLine();

} // namespace cli
