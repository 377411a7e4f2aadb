// What the viewport's parameters should be where nobody chose them.
#pragma once

#include "cli/commands/snapshot/snapshot_plan.h"
#include "cli/session/cloud_session.h"

namespace cli {

struct FirstLook {
  bool eyeDome = false;           ///< shade by depth
  std::vector<std::string> notes; ///< lines about what was chosen
};

/** Colours plain clouds and fits the heights of colour modes. What a scene or a setting chose stays. */
FirstLook PrepareClouds(CloudSession& session, const SnapshotPlan& plan);

/** Colour modes by height span most of the cloud's own heights, where nobody chose other ones. */
void FitHeights(CloudSession& session, BaseObject* cloud);

/** Points that are as large as they are apart, as this camera sees them. */
void FitPointSizes(CloudSession& session, const host::ViewCamera& camera, const ViewOptions& view,
                   std::vector<std::string>* notes);

} // namespace cli
