// One rendered frame into one file.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * Saves a rendered picture, every line taken as it was rendered, at 16 bits a channel. The file appears under
 * its name only when it is whole; an older one of that name is replaced then. Empty text on success, else one
 * line naming file and reason; nothing new is left in the folder then.
 */
String SaveFrame(const VPBuffer& rendered, const Filename& file);

} // namespace kelvra
