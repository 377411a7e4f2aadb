// The frames of a rendered animation: what differs from one to the next, and their pictures.
#pragma once

#include "cli/commands/render/render_plan.h"
#include "cli/session/cloud_session.h"
#include "host/render.h"

namespace cli {

/**
 * Takes the document to the time of a frame and moving settings to their values, and returns the camera of
 * that frame. `camera` is that of the
 * first frame; the frame's place in the plan's whole range counts, so that it looks the same wherever, and
 * together with whichever others, it is rendered.
 */
host::ViewCamera GoToFrame(CloudSession& session, const RenderPlan& plan, const host::ViewCamera& camera,
                           int frame);

/** The colours of what was rendered. */
host::Picture PictureOf(const host::RenderBuffer& buffer);

void SaveFrame(CloudSession& session, const host::Picture& picture, const std::string& name,
               host::PictureFormat format);

} // namespace cli
