// How a finished file takes the place of an earlier one: at any moment one of the two is whole.
#pragma once

#include "c4d.h"

namespace kelvra {

/** A name to write under until the file is finished; free, and in the same folder: the host renames within
 * one. */
Filename PartNameOf(const Filename& name);

/**
 * Gives the finished file its name; an earlier file of that name goes. FALSE with the reason: the finished
 * file is deleted then, and the earlier one is as it was, or has the name that the reason gives.
 */
Bool ReplaceFile(const Filename& finished, const Filename& name, String* reason);

} // namespace kelvra
