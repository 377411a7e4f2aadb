#include "cli/commands/sequence/local_runner.h"

namespace cli {

std::set<int> LocalRunner::Alive() {
  for (auto part = running_.begin(); part != running_.end();)
    part = part->second->Ended() ? running_.erase(part) : std::next(part);
  StartWaiting();
  std::set<int> alive(waiting_.begin(), waiting_.end());
  for (const auto& part : running_) alive.insert(part.first);
  return alive;
}

void LocalRunner::Start(const std::vector<int>& parts) {
  waiting_.insert(waiting_.end(), parts.begin(), parts.end());
  StartWaiting();
}

void LocalRunner::StartWaiting() {
  while (!waiting_.empty() && running_.size() < most_) {
    const int part = waiting_.front();
    waiting_.pop_front();
    std::vector<std::string> words = words_;
    words.push_back(std::to_string(part));
    const std::string log = folder_.Log(part);
    running_[part] = std::make_unique<ChildProcess>(words, log, log, ChildProcess::Group::Own);
  }
}

void LocalRunner::Cancel() {
  waiting_.clear();
  running_.clear();
}

} // namespace cli
