#include "cli/commands/sequence/sequence_plan.h"

#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/output_file.h"
#include "cli/session/file_kinds.h"
#include "host/base/replacing_file.h"

namespace cli {

namespace {

constexpr int kMostItems = 1000000, kMostParts = 10000;

void CheckCluster(const SequencePlan& plan) {
#ifdef _WIN32
  if (plan.slurm) throw UsageError{"--slurm: Slurm does not run on Windows; use --local"};
#endif
  if (plan.slurm) return;
  if (!plan.partition.empty()) throw UsageError{"--partition has no effect without --slurm"};
  if (!plan.sbatch.empty()) throw UsageError{"--sbatch has no effect without --slurm"};
}

void CheckFiles(const SequencePlan& plan) {
  if (plan.each.compare(0, 2, "--") == 0 && !IsFolder(plan.each))
    throw UsageError{"--each " + plan.each + ": expected a folder"};
  if (plan.command.empty()) throw UsageError{"--each needs --do, the command to run on each file"};
  if (!plan.render.input.files.empty())
    throw UsageError{plan.render.input.files[0] + ": --each takes no other files"};
  if (plan.render.frames || plan.turntable)
    throw UsageError{"--frames and --turntable have no effect with --each"};
  if (!HasSuffix(plan.render.output, ".json"))
    throw UsageError{"--output " + plan.render.output +
                     ": expected a name that ends in .json, as --each puts results "
                     "together as JSON"};
  RequireWritable(plan.render.output, FilesToRead({plan.each}));
}

void CheckFrames(SequencePlan& plan) {
  RenderPlan& render = plan.render;
  if (!plan.command.empty()) throw UsageError{"--do has no effect without --each, the folder of the files"};
  if (render.input.files.empty()) throw CLI::RequiredError("FILE");
  if (plan.turntable) {
    render.frames = FrameRange{0, plan.turntable - 1};
    render.turn = 360.0;
  }
  if (!render.frames) throw UsageError{"a sequence needs --frames FIRST-LAST or --turntable COUNT"};
  if (!HasSuffix(render.output, ".png"))
    throw UsageError{"--output " + render.output +
                     ": expected a name that ends in .png, as frames keep what they were made from"};
  CheckPlan(render);
}

} // namespace

void AddSequenceOptions(CLI::App& command, SequencePlan& plan) {
  AddPictureOptions(command, plan.render, "PNG");
  command.get_option("FILE")->required(false);
  command.get_option("--output")
      ->description("PNG to write, #### is the frame number; with --each the JSON file of the results");
  CLI::Option* turntable =
      AddWhole(command, "--turntable", plan.turntable, 1, kMostItems, "Frames 0 to COUNT - 1 of a whole turn")
          ->type_name("COUNT");
  for (const char* other : {"--frames", "--turn"}) turntable->excludes(command.get_option(other));
  AddPath(command, "--each", plan.each,
          "Run --do on each cloud of this folder, put the results together as JSON")
      ->type_name("FOLDER");
  command.add_option("--do", plan.command, "Command for each file, as in \"info --json\"")
      ->type_name("COMMAND");
  CLI::Option* local =
      command.add_flag("--local", plan.local, "Use processes of this computer (the default)");
  command.add_flag("--slurm", plan.slurm, "Use a Slurm cluster")->excludes(local);
  AddWhole(command, "--nodes", plan.nodes, 1, kMostParts,
           "Parts at a time: 1 with --local, all there is room for with --slurm");
  AddWhole(command, "--chunk", plan.chunk, 1, kMostItems, "Frames or files a part, 10");
  command.add_option("--partition", plan.partition, "Partition of the cluster")->type_name("NAME");
  OneValueEach(
      command.add_option("--sbatch", plan.sbatch, "Another option of Slurm's sbatch, with its dashes")
          ->type_name("OPTION"));
  // No group: help does not list it. Job scripts and this program use it.
  AddWhole(command, "--part", plan.part, 0, kMostItems, "Make this part alone")->group("");
}

void CheckSequence(SequencePlan& plan) {
  CheckCluster(plan);
  if (plan.render.output.empty()) throw CLI::RequiredError("--output");
  if (host::IsStandardOutput(plan.render.output)) throw UsageError{"-o -: a sequence writes files"};
  if (plan.each.empty())
    CheckFrames(plan);
  else
    CheckFiles(plan);
}

} // namespace cli
