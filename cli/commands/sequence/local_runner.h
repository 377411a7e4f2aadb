// Parts as processes of this computer.
#pragma once

#include "cli/commands/sequence/runner.h"
#include "cli/commands/sequence/work_folder.h"
#include "cli/system/child_process.h"

#include <deque>
#include <map>
#include <memory>

namespace cli {

class LocalRunner : public Runner {
public:
  /** `words` is the command that makes a part, to which the part's number is added; `most` run at once. */
  LocalRunner(const WorkFolder& folder, const std::vector<std::string>& words, int most)
      : folder_(folder), words_(words), most_((std::size_t)most) {}

  std::set<int> Alive() override;
  int Running() const override { return (int)running_.size(); }
  void Start(const std::vector<int>& parts) override;
  void Cancel() override;
  double SlowestPoll() const override { return 0.5; }

private:
  void StartWaiting();

  const WorkFolder& folder_;
  std::vector<std::string> words_;
  std::size_t most_;
  std::deque<int> waiting_;
  std::map<int, std::unique_ptr<ChildProcess>> running_;
};

} // namespace cli
