// kelvra convert: points as the application's own geometry.
#pragma once

#include "cli/commands/commands.h"

#include <CLI/CLI.hpp>

namespace cli {

struct ConvertOptions : InputOptions {
  std::string mode;  ///< point, hair, particles, emitter or spline
  std::string ratio; ///< share of the points, as the parameter takes it; empty keeps it
  std::string step;  ///< longest step within a spline segment; empty keeps it
  std::string scene; ///< scene to write with the result in the cloud's place; empty for none
};

void AddConvertCommand(CLI::App& app, int& status);
int RunConvert(const ConvertOptions& options);

} // namespace cli
