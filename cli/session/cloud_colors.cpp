#include "cli/session/cloud_colors.h"

#include "cli/session/cloud_parameters.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

namespace cli {

namespace {

std::string RampWithoutEffect(const CloudSession& session) {
  for (const CloudSession::Setting& setting : session.Settings())
    if (setting.id == KELVRA_RAMP || setting.id == KELVRA_RAMP_LOW || setting.id == KELVRA_RAMP_HIGH)
      return "--set " + setting.name +
             ": has no effect: the cloud keeps the colours of its files (--set load_color=height or "
             "load_color=intensity replaces them)";
  return std::string();
}

} // namespace

std::string ColorIfPlain(CloudSession& session, BaseObject* cloud, bool upIsY) {
  BaseContainer* data = cloud->GetDataInstance();
  const LONG chosen = data->GetLong(KELVRA_LOAD_COLOR);
  CloudStats stats;
  if (!ReadCloudStats(cloud, &stats) || stats.Points() == 0) return std::string();
  if (upIsY) data->SetBool(KELVRA_COLOR_UP_IS_Y, TRUE);
  // Coloured as it was loaded, when z was up.
  if (upIsY && chosen == KELVRA_LOAD_COLOR_HEIGHT) session.App().PressButton(cloud, KELVRA_COLOR_AGAIN);
  // Colours that a file has no values for stay as they were, and some have none either.
  const bool missing =
      chosen != KELVRA_LOAD_COLOR_FILE && chosen != KELVRA_LOAD_COLOR_HEIGHT && stats.IsBlack();
  if (chosen != KELVRA_LOAD_COLOR_FILE && !missing) return std::string();
  // Present although it says what is usual: somebody wants it so.
  if (!missing && (data->FindIndex(KELVRA_LOAD_COLOR) != NOTOK || stats.HasColor()))
    return RampWithoutEffect(session);
  session.App().PressButton(cloud, KELVRA_COLOR_AGAIN);
  const double from = RealParameter(cloud, KELVRA_RAMP_FROM), to = RealParameter(cloud, KELVRA_RAMP_TO);
  const int decimals = DecimalsFor(to - from);
  return "shown by height, " + Fixed(from, decimals) + " to " + Fixed(to, decimals) +
         ": the cloud has no colours (--set load_color=... to choose)";
}

} // namespace cli
