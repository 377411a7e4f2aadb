// Lights that the command line puts into a scene.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace cli {

/**
 * Adds the lights that the texts describe; throws UsageError that names the text.
 *
 *     sun:AZIMUTH,ELEVATION[:BRIGHTNESS][:#RRGGBB]   from a compass direction (0 north, 90 east), degrees
 *     point:X,Y,Z[:BRIGHTNESS][:#RRGGBB]             at a place in world space
 *     ambient[:BRIGHTNESS][:#RRGGBB]                 everywhere
 */
void AddLights(BaseDocument* doc, const std::vector<std::string>& texts);

/** Throws as AddLights does. */
void CheckLights(const std::vector<std::string>& texts);

/** A sun from the north-west and light from the sky, for those who ask for nothing. */
extern const std::vector<std::string> kDefaultLights;

/** Three numbers from 0 to 1 out of "#RRGGBB"; false for other texts. */
bool ParseColor(const std::string& text, Vector* color);

} // namespace cli
