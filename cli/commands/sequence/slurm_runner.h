// Parts as tasks of array jobs of a Slurm cluster, through its own commands.
#pragma once

#include "cli/commands/sequence/job_script.h"
#include "cli/commands/sequence/runner.h"

#include <map>

namespace cli {

class SlurmRunner : public Runner {
public:
  /**
   * Finds the jobs of an earlier run, which go on being followed. Throws std::runtime_error if these make
   * something else at the same place, which `identity` tells, or if there is no Slurm.
   */
  SlurmRunner(const WorkFolder& folder, const JobScript& script, const std::string& identity, int mostNodes);

  std::set<int> Alive() override;
  int Running() const override { return running_; }
  void Start(const std::vector<int>& parts) override;
  void Cancel() override;
  std::string Outlives() const override;
  double SlowestPoll() const override { return 10.0; }

private:
  void ReadState(const std::string& identity);
  void WriteState() const;

  const WorkFolder& folder_;
  JobScript script_;
  std::string identity_;
  int mostNodes_;
  std::vector<long long> jobs_;
  std::set<int> alive_; ///< at the last answer
  int running_ = 0;
};

} // namespace cli
