// The store as text, one point a line.
#pragma once

#include "c4d.h"
#include "point_store.h"

namespace kelvra {

struct TextExportOptions {
  LReal size = 200.0; ///< object size that georeferenced blocks are fitted to
  LONG everyNth = 1;  ///< of the points in store order, the first one written
  COLORSPACETRANSFORMATION transformation = COLORSPACETRANSFORMATION_NONE;
};

/**
 * Writes every group and block in order: x, y and z in the order of the file's axes, then the colour as three
 * integers 0 to 255, separated by single blanks. Blocks with a key are written in fitted coordinates, the
 * others as they were read; numbers are the shortest that read back to the same 32-bit float. FALSE when a
 * write fails.
 */
Bool ExportText(const PointStore& store, const TextExportOptions& options, BaseFile* file);

/** The save button: asks for a file, writes it, says where. A failure is one dialog that names the file. */
void SaveAsText(BaseObject* op);

} // namespace kelvra
