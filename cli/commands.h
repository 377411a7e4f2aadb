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
};

struct SnapshotOptions : InputOptions {
  int width = 1280, height = 720;
  std::vector<double> camera, target; ///< three numbers each, or empty
  double fieldOfView = 45.0;
  std::string clones; ///< NXxNYxNZ:SPACING
};

int RunInfo(const InputOptions& options);
int RunSnapshot(const SnapshotOptions& options);
int RunSave(const InputOptions& options);
int RunExport(const InputOptions& options);
int RunScene(const InputOptions& options);

} // namespace cli
