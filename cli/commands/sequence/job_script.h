// The script of a Slurm array job, one task a part, for people to read and to submit again.
#pragma once

#include "cli/commands/sequence/work_folder.h"

#include <string>
#include <vector>

namespace cli {

struct JobScript {
  std::string what; ///< a line for people: what the job makes
  int parts = 0;
  std::string partition;          ///< of the cluster; empty for its default
  std::vector<std::string> extra; ///< more options of sbatch
  std::vector<std::string> words; ///< the command that makes a part, to which the part's number is added
};

std::string ScriptText(const JobScript& script, const WorkFolder& folder);

} // namespace cli
