#include "cli/commands/sequence/slurm_runner.h"

#include "cli/commands/output/json_text.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/sequence/part.h"
#include "cli/system/child_process.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace cli {

namespace {

/** Lines of many users' jobs would take long to send: only our own. One line a task. */
constexpr const char* kQueue = "squeue --me --noheader --array --format='%F %K %T'";

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

} // namespace

SlurmRunner::SlurmRunner(const WorkFolder& folder, const JobScript& script, const std::string& identity,
                         int mostNodes)
    : folder_(folder), script_(script), identity_(identity), mostNodes_(mostNodes) {
  std::string printed;
  if (RunShell("command -v sbatch squeue scancel", &printed) != 0)
    throw std::runtime_error(
        "--slurm: the commands sbatch, squeue and scancel are not there; install Slurm's client, or "
        "use --local");
  if (RunShell(kQueue, &printed) != 0)
    throw std::runtime_error("--slurm: the cluster does not answer: " + FirstLine(printed));
  ReadState(identity);
}

void SlurmRunner::ReadState(const std::string& identity) {
  std::ifstream file(std::filesystem::u8path(folder_.Path("jobs.json")));
  const nlohmann::json state = nlohmann::json::parse(file, nullptr, false);
  if (!state.is_object()) return;
  jobs_ = state.value("jobs", jobs_);
  if (SlurmRunner::Alive().empty()) {
    jobs_.clear();
    return;
  }
  if (state.value("identity", "") == identity) return;
  const std::string job = SlurmRunner::Outlives();
  throw std::runtime_error(
      job + " still makes an earlier version of this sequence; wait for it, or end it with: scancel " +
      job.substr(4));
}

void SlurmRunner::WriteState() const {
  WriteText(folder_.Path("jobs.json"), JsonText({{"identity", identity_}, {"jobs", jobs_}}) + "\n");
}

std::set<int> SlurmRunner::Alive() {
  std::string printed;
  // A controller that is busy or restarts says nothing about the parts: they are where they were.
  if (RunShell(kQueue, &printed) != 0) return alive_;
  alive_.clear();
  running_ = 0;
  std::istringstream lines(printed);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    long long job = 0;
    int part = 0;
    std::string state;
    if (!(words >> job >> part >> state) || std::find(jobs_.begin(), jobs_.end(), job) == jobs_.end())
      continue;
    alive_.insert(part);
    if (state == "RUNNING") ++running_;
  }
  return alive_;
}

void SlurmRunner::Start(const std::vector<int>& parts) {
  const std::string path = folder_.Path("job.sh");
  WriteText(path, ScriptText(script_, folder_));
  std::string command = "sbatch --parsable --array=" + NumberList(parts);
  if (mostNodes_ > 0) command += "%" + std::to_string(mostNodes_);
  std::string printed;
  const int status = RunShell(command + " " + ShellWord(path), &printed);
  // "12" or "12;cluster", perhaps after warnings.
  std::istringstream lines(printed);
  long long job = 0;
  for (std::string line; std::getline(lines, line);)
    if (!line.empty() && line.find_first_not_of("0123456789") >= std::min(line.size(), line.find(';')))
      job = std::stoll(line);
  if (status != 0 || job == 0)
    throw std::runtime_error("sbatch: " + FirstLine(printed) +
                             " (--chunk makes fewer parts, --partition and --sbatch choose where they run)");
  jobs_.push_back(job);
  alive_.insert(parts.begin(), parts.end());
  WriteState();
}

void SlurmRunner::Cancel() {
  std::string command = "scancel", printed;
  for (const long long job : jobs_) command += " " + std::to_string(job);
  if (RunShell(command, &printed) != 0) throw std::runtime_error("scancel: " + FirstLine(printed));
}

std::string SlurmRunner::Outlives() const {
  std::string text = "job";
  for (const long long job : jobs_) text += " " + std::to_string(job);
  return text;
}

} // namespace cli
