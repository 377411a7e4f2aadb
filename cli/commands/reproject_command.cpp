#include "cli/commands/service_commands.h"

#include "cli/commands/output/file_reports.h"
#include "cli/session/cloud_session.h"
#include "cli/session/preferences_page.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "otallyframe.h"

#include <iostream>

namespace cli {

namespace {

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

} // namespace

int RunReproject(const ReprojectOptions& options) {
  CloudSession session(options.faults);
  session.Open(options.files, options.settings);
  PrintReports(session, options.verbose);
  session.RequirePoints();
  BaseObject* cloud = session.Cloud();
  // A scene may hold an earlier answer, which must not pass for this one's.
  for (const auto& corner : kCorners)
    cloud->SetParameter(DescID(corner.id), GeData(String()), DESCFLAGS_SET_0);
  const std::size_t firstLine = session.App().GetConsole().Lines().size();
  std::string error;
  if (!session.App().SetParameterFromText(cloud, KELVRA_EPSG, std::to_string(options.reference), &error))
    throw UsageError{error};
  PrintConsole(session.App().GetConsole(), firstLine);
  if (Text(cloud, KELVRA_SOUTH_WEST_LONGITUDE).empty()) {
    std::cerr << "kelvra: the geometry service gave no answer with both corners\n";
    return kExitIncomplete;
  }
  for (const auto& corner : kCorners) std::cout << corner.name << " " << Text(cloud, corner.id) << "\n";
  return session.ExitStatus();
}

} // namespace cli
