#include "cli/commands/sequence/job_script.h"

#include "cli/system/child_process.h"

#include <filesystem>
#include <sstream>

namespace cli {

namespace {

/** A file's name in an option of sbatch, which replaces what follows a percent sign. */
std::string DirectiveName(const std::string& path) {
  std::string text = "\"";
  for (const char c : path) {
    if (c == '"' || c == '\\') text += '\\';
    if (c == '%') text += '%';
    text += c;
  }
  return text;
}

} // namespace

std::string ScriptText(const JobScript& script, const WorkFolder& folder) {
  std::ostringstream text;
  text << "#!/bin/bash\n"
       << "# " << script.what << ", one part a task.\n"
       << "# Results that are there are not made again, so it does no harm to submit it once more:\n"
       << "#   sbatch --array=0-" << script.parts - 1 << " job.sh\n"
       << "#SBATCH --job-name=kelvra\n"
       << "#SBATCH --output=" << DirectiveName(folder.Path("part_")) << "%a.log\"\n"
       << "#SBATCH --open-mode=append\n"
       << "#SBATCH --nodes=1 --ntasks=1 --exclusive\n"
       << "#SBATCH --requeue\n";
  if (!script.partition.empty()) text << "#SBATCH --partition=" << script.partition << "\n";
  for (const std::string& option : script.extra) text << "#SBATCH " << option << "\n";
  text << "cd " << ShellWord(std::filesystem::current_path().u8string()) << " || exit\n"
       << "exec";
  for (const std::string& word : script.words) text << " " << ShellWord(word);
  text << " \"$SLURM_ARRAY_TASK_ID\"\n";
  return text.str();
}

} // namespace cli
