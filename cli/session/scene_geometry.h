// What stands in a scene for clouds that were converted: the application's own geometry, and the parameters
// with which it is rendered.
#pragma once

#include "host/application.h"
#include "host/base/box.h"

#include <string>
#include <vector>

namespace cli {

/** Video posts that render a point object or a spline; a cloud that one links has parameters of its own. */
std::vector<BaseVideoPost*> PostsOfGeometry(BaseDocument* doc);

/** Hair of one object, or particles of one emitter or group, which the host draws without a video post. */
struct SceneElements {
  BaseContainer* data; ///< holds host::kPointRadius
  const char* name;    ///< of one of them
  LONG count;
  host::Box box; ///< in world space
};

/** Those that the document holds, without empty ones. */
std::vector<SceneElements> ElementsOf(BaseDocument* doc);

/** Number of a video post's parameter from its name, with or without "render_", or number; -1 for others. */
LONG GeometryParameter(const host::Application& application, const std::string& name);

/**
 * Sets one of these parameters for all geometry of a document; hair and particles have the radius only.
 * *used says whether there was any. False with what is expected instead.
 */
bool SetOfGeometry(host::Application& application, BaseDocument* doc, LONG id, const std::string& value,
                   bool* used, std::string* error);

} // namespace cli
