// Follows a sequence from its first part to its last.
#pragma once

#include "cli/commands/sequence/part.h"
#include "cli/commands/sequence/runner.h"
#include "cli/commands/sequence/sequence_work.h"
#include "cli/commands/sequence/work_folder.h"

namespace cli {

/**
 * Has the runner make what is missing, shows progress and the expected end, hands parts that ended too early
 * over again, up to kMostTries in all, and reports what is there and what is not. Ctrl-C ends the parts, or
 * leaves them to the cluster if the user wants that. Returns the exit status.
 */
int FollowSequence(SequenceWork& work, Runner& runner, const std::vector<Part>& parts,
                   const WorkFolder& folder);

} // namespace cli
