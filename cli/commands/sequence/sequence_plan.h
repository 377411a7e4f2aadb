// What kelvra sequence is asked to do: its options, parsed and compared with each other.
#pragma once

#include "cli/commands/render/render_plan.h"

#include <optional>

namespace cli {

struct SequencePlan {
  RenderPlan render;     ///< the frames; only its files and its output count with `each`
  int turntable = 0;     ///< frames of a whole turn, 0 for none
  std::string each;      ///< folder of which every cloud is a run of `command`
  std::string command;   ///< of this program, with its options
  bool local = false;    ///< on this computer, which is the default
  bool slurm = false;    ///< on a cluster
  int nodes = 0;         ///< parts at a time; 0: one here, as many as there is room for on a cluster
  int chunk = 10;        ///< items a part
  std::string partition; ///< of the cluster
  std::vector<std::string> sbatch; ///< more options of Slurm's sbatch
  std::optional<int> part;         ///< makes this part in this process and follows nothing
};

/** The command's options; the plan outlives parsing. */
void AddSequenceOptions(CLI::App& command, SequencePlan& plan);

/** As CheckPlan of kelvra render. */
void CheckSequence(SequencePlan& plan);

} // namespace cli
