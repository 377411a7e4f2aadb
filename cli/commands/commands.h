// The commands of the program. Each prints its result to standard output and returns the exit status.
#pragma once

#include <string>
#include <vector>

namespace cli {

/** What most commands take. */
struct InputOptions {
  std::vector<std::string> files;
  std::vector<std::string> settings; ///< ID=VALUE
  std::vector<std::string> faults;   ///< KIND=N
  std::string output;
  bool json = false;
  bool verbose = false; ///< print what the lines about files leave out
};

struct SnapshotOptions : InputOptions {
  int width = 1280, height = 720;
  std::vector<double> camera, target; ///< three numbers each, or empty
  double fieldOfView = 45.0;
  std::string clones; ///< NXxNYxNZ:SPACING
};

struct RenderCommandOptions : SnapshotOptions {
  std::vector<std::string> lights; ///< see scene_light.h
  bool ground = false;
  double groundMirror = 0.0;        ///< share that the ground mirrors
  std::vector<double> groundHeight; ///< world units, or empty: below the lowest point
  int supersample = 2;              ///< rays a pixel and axis
  int depth = 0;                    ///< bits a sample, 0 for the format's usual
  std::string frames;               ///< FIRST-LAST
  double turn = 0.0;                ///< degrees that the camera turns over the frames
  std::string record;               ///< folder
  int threads = 0;
  std::string background = "#c3d2e2";
  std::vector<int> pixel; ///< two numbers, or empty
  bool progress = false;
};

int RunInfo(const InputOptions& options);
int RunSnapshot(const SnapshotOptions& options);
int RunRender(const RenderCommandOptions& options);
int RunSave(const InputOptions& options);
int RunExport(const InputOptions& options);
int RunScene(const InputOptions& options);

} // namespace cli
