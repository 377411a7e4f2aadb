// Generators replaced by what they built. Main thread.
#pragma once

#include "c4d.h"

#include <string>

namespace host {

/**
 * Brings a generator of a document up to date and puts what it built in its place: same name, same place in
 * space and in the tree, with its children; links to the generator lead to the result. The generator is freed
 * and undo steps that name it are forgotten. NULL with one line when it builds nothing; nothing changes then.
 */
BaseObject* MakeEditable(BaseObject* generator, std::string* error);

} // namespace host
