// One rendered frame into one file.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * Saves a rendered picture at 16 bits a channel, unchanged. The file gets its name, and replaces an earlier
 * one, only when it is whole. FALSE with one line that names file and reason (an empty one when there is not
 * enough memory for it); the folder is then as it was, but for what the line says.
 */
Bool SaveFrame(VPBuffer& rendered, const Filename& file, String* problem);

} // namespace kelvra
