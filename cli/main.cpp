// kelvra: point clouds without the application. Parses the command line and runs one command.
#include "cli/commands/commands.h"
#include "cli/commands/convert_command.h"
#include "cli/commands/options/input_options.h"
#include "cli/commands/service_commands.h"
#include "cli/session/cloud_session.h"
#include "cli/system/program_arguments.h"
#include "host/application.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <regex>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

namespace {

/** Most pixels on a side of a picture. */
const int kMostPixels = 16384;

/** Coordinates far beyond any cloud, still far from overflow. */
const double kFarthest = 1e12;

void CheckCamera(const cli::SnapshotOptions& options) {
  for (const std::vector<double>* point : {&options.camera, &options.target})
    for (const double c : *point)
      if (!(std::abs(c) <= kFarthest)) throw CLI::ValidationError("--camera", "expected finite coordinates");
  if (!options.camera.empty() && options.camera == options.target)
    throw CLI::ValidationError("--camera", "the camera stands where it looks (--target)");
  if (!(options.fieldOfView >= 1.0 && options.fieldOfView <= 170.0))
    throw CLI::ValidationError("--fov", "expected 1 to 170 degrees");
}

/** "WxH" within what a picture may have. */
void ParseSize(const std::string& text, cli::SnapshotOptions& options) {
  std::smatch match;
  if (!std::regex_match(text, match, std::regex("([0-9]{1,5})x([0-9]{1,5})")))
    throw CLI::ValidationError("--size", "expected WIDTHxHEIGHT in pixels, found " + text);
  options.width = std::stoi(match[1]);
  options.height = std::stoi(match[2]);
  if (options.width < 1 || options.height < 1 || options.width > kMostPixels || options.height > kMostPixels)
    throw CLI::ValidationError("--size", "expected 1 to " + std::to_string(kMostPixels) +
                                             " pixels a side, found " + text);
}

CLI::Option* AddOutput(CLI::App* command, cli::InputOptions& options, const char* what) {
  return command->add_option("-o,--output", options.output, what)->required();
}

void AddCamera(CLI::App* command, cli::SnapshotOptions& options, std::string& size) {
  command->add_option("--size", size, "WIDTHxHEIGHT in pixels, 1280x720");
  CLI::Option* camera =
      command->add_option("--camera", options.camera, "X,Y,Z in world space: left-handed, y up, north +z")
          ->delimiter(',')
          ->expected(3);
  CLI::Option* target = command->add_option("--target", options.target, "X,Y,Z that the camera looks at")
                            ->delimiter(',')
                            ->expected(3);
  camera->needs(target);
  target->needs(camera);
  command->add_option("--fov", options.fieldOfView, "Vertical field of view in degrees");
}

void AddSnapshot(CLI::App& app, cli::SnapshotOptions& options, std::string& size, int& status) {
  CLI::App* command = app.add_subcommand("snapshot", "Draw one viewport picture");
  cli::AddInput(command, options, true);
  AddOutput(command, options, "PNG to write");
  AddCamera(command, options, size);
  command->add_option("--clones", options.clones, "NXxNYxNZ:SPACING, copies on a grid");
  command->callback([&] {
    if (!size.empty()) ParseSize(size, options);
    CheckCamera(options);
    cli::CheckOutput(options.output, options.files);
    status = cli::RunSnapshot(options);
  });
}

/** A flag or a list takes one value each time it is given. */
CLI::Option* OnePerFlag(CLI::Option* option) {
  return option->take_all()->expected(1)->allow_extra_args(false);
}

void AddRender(CLI::App& app, cli::RenderCommandOptions& options, std::string& size, int& status) {
  CLI::App* command = app.add_subcommand("render", "Render a picture with light and shadow");
  cli::AddInput(command, options, true);
  CLI::Option* output = command->add_option("-o,--output", options.output,
                                            "PNG, TIFF or EXR to write; #### is the frame number");
  AddCamera(command, options, size);
  OnePerFlag(
      command->add_option("--light", options.lights,
                          "sun:AZIMUTH,ELEVATION, point:X,Y,Z or ambient, then :BRIGHTNESS and :#RRGGBB"));
  command->add_flag("--ground", options.ground, "Put a ground below the points");
  command->add_option("--ground-height", options.groundHeight, "Height of the ground, in world units")
      ->expected(1)
      ->check(CLI::Range(-1e9, 1e9));
  command
      ->add_option("--ground-mirror", options.groundMirror, "Share of light that the ground mirrors, 0 to 1")
      ->check(CLI::Range(0.0, 1.0));
  command->add_option("--supersample", options.supersample, "N x N rays a pixel, 2")
      ->check(CLI::Range(1, 16));
  command->add_option("--depth", options.depth, "Bits a sample: 8, 16 or 32")
      ->check(CLI::IsMember({8, 16, 32}));
  command->add_option("--frames", options.frames, "FIRST-LAST, frames of an animation");
  command->add_option("--turn", options.turn,
                      "Degrees that the camera turns around its target over the frames");
  command->add_option("--record", options.record,
                      "Folder in which the recorder stores each frame with 16 bits");
  command->add_option("--threads", options.threads, "Render threads, all cores")->check(CLI::Range(1, 64));
  command->add_option("--background", options.background, "#RRGGBB");
  CLI::Option* pixel =
      command->add_option("--pixel", options.pixel, "X,Y: print what the ray through this pixel does instead")
          ->delimiter(',')
          ->expected(2);
  output->excludes(pixel);
  command->callback([&, output] {
    if (!size.empty()) ParseSize(size, options);
    CheckCamera(options);
    if (options.pixel.empty() && !*output) throw CLI::RequiredError("--output");
    if (!options.pixel.empty() && (options.pixel[0] < 0 || options.pixel[0] >= options.width ||
                                   options.pixel[1] < 0 || options.pixel[1] >= options.height))
      throw CLI::ValidationError("--pixel", "expected a pixel of the picture, X,Y from 0,0");
    if (options.pixel.empty()) cli::CheckOutput(options.output);
    options.progress = isatty(2) != 0;
    status = cli::RunRender(options);
  });
}

bool HasCommand(CLI::App& app, const std::string& name) {
  for (const CLI::App* command : app.get_subcommands([](CLI::App*) { return true; }))
    if (command->get_name() == name) return true;
  return false;
}

int Run(int argc, char** argv) {
  CLI::App app("Kelvra: laser-scan point clouds");
  app.allow_windows_style_options(false); // a path may begin with a slash anywhere
  app.require_subcommand(1);
  app.set_version_flag("--version", "kelvra 1.44");
  int status = 0;
  cli::InputOptions info, save, text, scene;
  cli::SnapshotOptions snapshot;
  cli::RenderCommandOptions render;
  std::string size, renderSize;

  CLI::App* command = app.add_subcommand("info", "Points, box, speed and memory of files");
  cli::AddInput(command, info, true);
  command->add_flag("--json", info.json, "Print JSON");
  command->callback([&] { status = cli::RunInfo(info); });

  AddSnapshot(app, snapshot, size, status);
  AddRender(app, render, renderSize, status);

  command = app.add_subcommand("save", "Save a scene that holds the points");
  cli::AddInput(command, save, true);
  AddOutput(command, save, "Scene to write");
  command->callback([&] {
    // A scene may be saved where it came from.
    const bool own = save.files.size() == 1 && host::IsSceneFile(save.files[0]);
    cli::CheckOutput(save.output, own ? std::vector<std::string>() : save.files);
    status = cli::RunSave(save);
  });

  command = app.add_subcommand("export", "Write the points as text, one a line");
  cli::AddInput(command, text, true);
  AddOutput(command, text, "Text file to write");
  command->callback([&] {
    cli::CheckOutput(text.output, text.files);
    status = cli::RunExport(text);
  });

  command = app.add_subcommand("scene", "Print every node and value of a scene file");
  command->add_option("SCENE", scene.files, "Scene file")->required()->expected(1);
  command->add_flag("--json", scene.json, "Print JSON");
  command->callback([&] { status = cli::RunScene(scene); });

  cli::AddConvertCommand(app, status);
  cli::AddServiceCommands(app, status);

  if (argc > 1 && argv[1][0] != '-' && !HasCommand(app, argv[1])) {
    std::cerr << "kelvra: there is no command \"" << argv[1]
              << "\", expected info, snapshot, render, save, export, scene, "
                 "convert, reproject, prefs or update-check\n";
    return cli::kExitUsage;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == 0) return app.exit(e);
    std::cerr << "kelvra: " << e.what() << " (kelvra --help lists the commands)\n";
    return cli::kExitUsage;
  }
  return status;
}

} // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a failed write, not the end
#endif
  try {
    const cli::ProgramArguments arguments(argc, argv);
    const int status = Run(arguments.Count(), arguments.Values());
    if (std::cout.flush()) return status;
    std::cerr << "kelvra: standard output could not be written\n";
    return cli::kExitIncomplete;
  } catch (const cli::UsageError& e) {
    std::cerr << "kelvra: " << e.text << "\n";
    return cli::kExitUsage;
  } catch (const std::exception& e) {
    std::cerr << "kelvra: " << e.what() << "\n";
    return cli::kExitIncomplete;
  }
}
