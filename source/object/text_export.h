// The button that saves the store as text.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * The save button: asks for a file, writes it, says where. A failure is one dialog that names file and
 * reason; an earlier file of that name stays.
 */
void SaveAsText(BaseObject* op);

} // namespace kelvra
