// What a rendered PNG file says about how it was made, and the way back to the plan that made it.
#pragma once

#include "cli/commands/render/render_plan.h"

#include <nlohmann/json.hpp>

namespace cli {

struct PictureOrigin {
  nlohmann::json options = nlohmann::json::object(); ///< as PictureOptions gives them
  std::string files;                                 ///< fingerprint of what was loaded
  FrameRange frames;                                 ///< all that were asked for
  int frame = 0;                                     ///< this one
};

/** For the PNG file of that picture. */
host::PictureTexts TextsOf(const PictureOrigin& origin);

/** Throws std::runtime_error for a file that carries no such texts. */
PictureOrigin OriginOf(const std::string& path);

/**
 * The plan of that picture for the files of `asked` and the pixel that it names. `given` are the options
 * beside these: throws UsageError for any, as the picture says them all.
 */
RenderPlan PlanOfPicture(const RenderPlan& asked, const PictureOrigin& origin, const nlohmann::json& given);

} // namespace cli
