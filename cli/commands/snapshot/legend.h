// The colours of a picture and what they stand for, drawn into the picture.
#pragma once

#include "cli/session/cloud_session.h"
#include "host/picture/image.h"
#include "kelvra_messages.h"

namespace cli {

/**
 * What the colours of the first cloud stand for that has such colours: values in file units, classes or
 * returns. Heights as the viewport's colour mode shows them count too. False when there is none.
 */
bool FindLegend(const CloudSession& session, KelvraLegend* legend);

/** At the right edge. A ramp becomes a scale, classes and returns a list. */
void DrawLegend(const KelvraLegend& legend, host::gl::Image* image);

} // namespace cli
