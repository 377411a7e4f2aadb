// The point that is seen at a place of the picture.
#pragma once

#include "cli/session/cloud_session.h"
#include "cli/view/camera_moves.h"

#include <optional>

namespace cli {

struct PickedPoint {
  Vector world;
  LVector file;       ///< coordinates in its file
  Vector color;       ///< 0 to 1
  LONG index = 0;     ///< in its file, from 0
  std::string source; ///< path of the file; empty for points from elsewhere
  std::string Text() const;
};

/** The nearest point to the viewer among those within `reach`, in halves of the picture's height. */
std::optional<PickedPoint> PickPoint(const CloudSession& session, const host::ViewCamera& camera,
                                     double aspect, const PicturePlace& at, double reach);

} // namespace cli
