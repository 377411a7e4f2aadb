#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/session/cloud_session.h"
#include "cli/text/line.h"
#include "host/application.h"
#include "otallyframe.h"

#include <iostream>

namespace cli {

namespace {

struct ReprojectOptions {
  InputOptions input;
  int reference = 0; ///< EPSG number of the cloud's coordinate system
};

const struct {
  LONG id;
  const char* name;
} kCorners[] = {{KELVRA_SOUTH_WEST_LONGITUDE, "south-west longitude"},
                {KELVRA_SOUTH_WEST_LATITUDE, "south-west latitude"},
                {KELVRA_NORTH_EAST_LONGITUDE, "north-east longitude"},
                {KELVRA_NORTH_EAST_LATITUDE, "north-east latitude"},
                {KELVRA_NORTH_WEST_LONGITUDE, "north-west longitude"},
                {KELVRA_NORTH_WEST_LATITUDE, "north-west latitude"}};

std::string Text(BaseObject* cloud, LONG id) {
  GeData value;
  return cloud->GetParameter(DescID(id), value, DESCFLAGS_GET_0) ? host::Utf8(value.GetString())
                                                                 : std::string();
}

/** What the module said about it, else what is known. */
std::string WhyNoAnswer(const ConsoleLines& console) {
  const std::string sender = "Kelvra: ";
  for (const std::string& line : console.Lines())
    if (line.compare(0, sender.size(), sender) == 0) return line.substr(sender.size());
  return "the geometry service gave no answer with both corners";
}

int RunReproject(const ReprojectOptions& options) {
  CloudSession session({});
  session.Open(options.input.files, {}, options.input.trust);
  PrintReports(session, options.input.verbose);
  session.RequirePoints();
  BaseObject* cloud = session.Cloud();
  // A scene may hold an earlier answer, which must not pass for this one.
  for (const auto& corner : kCorners)
    cloud->SetParameter(DescID(corner.id), GeData(String()), DESCFLAGS_SET_0);
  const ConsoleLines console(session.App().GetConsole());
  std::string error;
  if (!session.App().SetParameterFromText(cloud, KELVRA_EPSG, std::to_string(options.reference), &error))
    throw UsageError{"--sr " + std::to_string(options.reference) + ": " + error};
  if (Text(cloud, KELVRA_SOUTH_WEST_LONGITUDE).empty()) throw std::runtime_error(WhyNoAnswer(console));
  console.Print();
  for (const auto& corner : kCorners) Line(std::cout) << corner.name << " " << Text(cloud, corner.id);
  return session.ExitStatus();
}

} // namespace

Run AddReproject(CLI::App& command) {
  const auto options = std::make_shared<ReprojectOptions>();
  AddFiles(command, options->input);
  AddWhole(command, "--sr", options->reference, 1, 0x7fffffff,
           "Number (EPSG) of the spatial reference that the cloud is in")
      ->required();
  return [options] { return RunReproject(*options); };
}

} // namespace cli
