// Loading of files and folders into an object.
#pragma once

#include "cloud/point_store.h"

namespace kelvra {

/**
 * Asks for a file, or for a folder of which every file is loaded, and loads into the object's store. Each
 * file becomes one block, the command's blocks one group. Prints one line a file, which starts with its path:
 * a whole load says "N points", one that is cut short "loaded N of M points". What is loaded stays when a
 * later file fails or the user stops.
 */
void LoadFiles(BaseObject* op, PointStore& store, Bool folderMode);

/** Keeps the object as it is now as one step that the user can undo; nothing without a document. */
void RecordUndo(BaseObject* op);

} // namespace kelvra
