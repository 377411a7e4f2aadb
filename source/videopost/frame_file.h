// One rendered frame into one file.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * Saves a rendered picture, every line taken as it was rendered, at 16 bits a channel. The file appears under
 * its name only when it is whole; an older one of that name is replaced then. FALSE with one line naming file
 * and reason (an empty one when there is no memory for it); nothing new is left in the folder then.
 */
Bool SaveFrame(const VPBuffer& rendered, const Filename& file, String* problem);

} // namespace kelvra
