#include "cli/commands/commands.h"

#include "cli/commands/output/file_reports.h"
#include "cli/commands/sequence/file_work.h"
#include "cli/commands/sequence/fingerprint.h"
#include "cli/commands/sequence/follow.h"
#include "cli/commands/sequence/frame_work.h"
#include "cli/commands/sequence/local_runner.h"
#include "cli/commands/sequence/sequence_plan.h"
#include "cli/commands/sequence/slurm_runner.h"
#include "cli/session/file_kinds.h"
#include "cli/session/ignored_parameters.h"
#include "cli/system/exit_status.h"
#include "cli/system/program_arguments.h"
#include "cli/system/program_path.h"
#include "cli/text/format.h"
#include "cli/text/line.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace cli {

namespace {

std::unique_ptr<SequenceWork> WorkOf(const SequencePlan& plan, const CLI::App& command) {
  if (!plan.each.empty()) {
    if (!plan.part)
      for (const std::string& file : NotUtf8In(plan.each)) Line(std::cerr) << file << ": " << kNotUtf8;
    auto work = std::make_unique<FileWork>(plan.each, plan.command, plan.render.output);
    if (plan.part) return work;
    if (!work->Others().empty()) Line(std::cerr) << StrayLine(plan.each, work->Others());
    return work;
  }
  return std::make_unique<FrameWork>(plan.render, PictureOptions(command));
}

/** Makes one part here; what is printed goes to the part's log. */
int MakePart(SequenceWork& work, const std::vector<Part>& parts, int number, const WorkFolder& folder) {
  if (number >= (int)parts.size())
    throw UsageError{"--part " + std::to_string(number) + ": the last part is " +
                     std::to_string(parts.size() - 1)};
  // A cluster starts a task again whenever its node is lost, even if it is the task that brings nodes down.
  if (!ThisJob().empty() && (int)folder.Starts(number, ThisJob()).size() >= kMostTries)
    throw std::runtime_error("given up after " + std::to_string(kMostTries) + " tries");
  Line(std::cout) << StartLine();
  std::cout.flush();
  const Part& part = parts[(std::size_t)number];
  return work.Make(part.first, part.last);
}

/** The command line of this run again, for one part. */
std::vector<std::string> PartWords(const SequencePlan& plan, int threads) {
  std::vector<std::string> words = ProgramArguments::All();
  words.insert(words.begin(), ProgramPath());
  if (threads > 0 && plan.render.threads == 0)
    for (const std::string& word : {std::string("--threads"), std::to_string(threads)}) words.push_back(word);
  words.push_back("--part");
  return words;
}

int FollowLocally(const SequencePlan& plan, SequenceWork& work, const std::vector<Part>& parts,
                  const WorkFolder& folder) {
  const int most = std::max(1, plan.nodes);
  const int threads = std::max(1, (int)std::thread::hardware_concurrency() / most);
  LocalRunner runner(folder, PartWords(plan, threads), most);
  return FollowSequence(work, runner, parts, folder);
}

int FollowOnCluster(const SequencePlan& plan, SequenceWork& work, const std::vector<Part>& parts,
                    const WorkFolder& folder) {
  JobScript script;
  script.what = "kelvra " KELVRA_VERSION " wrote this: " + Counted(work.Count(), work.Unit()) + " in " +
                Counted((long long)parts.size(), "part");
  script.parts = (int)parts.size();
  script.partition = plan.partition;
  script.extra = plan.sbatch;
  script.words = PartWords(plan, 0);
  // Parts of another size are other parts.
  SlurmRunner runner(folder, script, work.Identity() + " " + std::to_string(plan.chunk), plan.nodes);
  return FollowSequence(work, runner, parts, folder);
}

/** Parts report a mistake in their logs, one after the other: settings are tried before the first begins. */
void TrySettings(const RenderPlan& plan) {
  if (plan.input.settings.empty()) return;
  CloudSession session({});
  session.Open({}, plan.input.settings, false);
  for (const MovingSetting& setting : plan.moving) session.ApplySetting(setting.At(1.0));
  WarnOfIgnored(session, Purpose::Render);
}

int RunSequence(const SequencePlan& plan, const CLI::App& command) {
  if (!plan.part && plan.each.empty()) TrySettings(plan.render);
  const std::unique_ptr<SequenceWork> work = WorkOf(plan, command);
  const std::vector<Part> parts = PartsOf(work->Count(), plan.chunk);
  const WorkFolder folder(plan.render.output);
  if (plan.part) return MakePart(*work, parts, *plan.part, folder);
  const int status =
      plan.slurm ? FollowOnCluster(plan, *work, parts, folder) : FollowLocally(plan, *work, parts, folder);
  const bool leftOut = !plan.each.empty() && !NotUtf8In(plan.each).empty();
  return status == kExitWhole && leftOut ? (int)kExitIncomplete : status;
}

} // namespace

Run AddSequence(CLI::App& command) {
  const auto plan = std::make_shared<SequencePlan>();
  AddSequenceOptions(command, *plan);
  return [plan, &command] {
    CheckSequence(*plan); // before anything is read, which may take long
    return RunSequence(*plan, command);
  };
}

} // namespace cli
