// A place among points where a camera can stand.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/**
 * The place nearest to `wished` that is at least `clearance` away from every point, within a box of world
 * space; the freest place that was found where there is none.
 */
Vector FreePlace(const CloudSession& session, const Vector& wished, double clearance, const host::Box& box);

} // namespace cli
