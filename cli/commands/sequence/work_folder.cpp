#include "cli/commands/sequence/work_folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

const std::string kStart = "start on ";

} // namespace

WorkFolder::WorkFolder(const std::string& output) {
  const fs::path path = fs::u8path(output);
  std::string name = path.stem().u8string();
  name.erase(std::remove(name.begin(), name.end(), '#'), name.end());
  name.erase(name.find_last_not_of("_-. ") + 1);
  // Absolute: a job script runs wherever the cluster likes.
  folder_ = (fs::absolute(path).parent_path() / fs::u8path((name.empty() ? "frames" : name) + ".sequence"))
                .u8string();
}

void WorkFolder::Make() const {
  std::error_code failed;
  fs::create_directory(fs::u8path(folder_), failed);
  if (failed) throw std::runtime_error(folder_ + ": cannot be made: " + failed.message());
}

std::string WorkFolder::Path(const std::string& name) const {
  return (fs::u8path(folder_) / fs::u8path(name)).u8string();
}

std::vector<std::string> WorkFolder::Starts(int part, const std::string& job) const {
  std::vector<std::string> nodes;
  std::ifstream log(fs::u8path(Log(part)));
  for (std::string line; std::getline(log, line);) {
    const std::size_t comma = std::min(line.find(", "), line.size());
    if (line.compare(0, kStart.size(), kStart) != 0) continue;
    if (job.empty() || line.substr(comma) == ", " + job)
      nodes.push_back(line.substr(kStart.size(), comma - kStart.size()));
  }
  return nodes;
}

std::string WorkFolder::LastLine(int part) const {
  std::string last;
  std::ifstream log(fs::u8path(Log(part)));
  for (std::string line; std::getline(log, line);)
    if (!line.empty()) last = line;
  return last;
}

void WorkFolder::Forget(int part) const {
  std::error_code ignored;
  fs::remove(fs::u8path(Log(part)), ignored);
}

std::string ThisJob() {
  const char* const job = std::getenv("SLURM_ARRAY_JOB_ID");
  const char* const task = std::getenv("SLURM_ARRAY_TASK_ID");
  return job && task ? std::string("job ") + job + "_" + task : std::string();
}

std::string StartLine() {
  const char* const node = std::getenv("SLURMD_NODENAME");
  return kStart + (node ? node : "this computer") + (ThisJob().empty() ? "" : ", " + ThisJob());
}

} // namespace cli
