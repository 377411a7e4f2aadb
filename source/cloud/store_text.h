// The store as text, one point a line.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"

namespace kelvra {

struct TextExportOptions {
  LReal size = 200.0;  ///< object size that georeferenced blocks are fitted to
  LONG everyNth = 1;   ///< of the points in store order, the first one written
  LVector origin;      ///< that stored positions are counted from, file axes
  Bool survey = FALSE; ///< every block in the coordinates of its file
  COLORSPACETRANSFORMATION transformation = COLORSPACETRANSFORMATION_NONE;
};

/**
 * Writes every group and block in order: x, y and z in the order of the file's axes, then the colour as three
 * integers 0 to 255, separated by single blanks, each line ended by '\n'. Blocks with a key are written in
 * fitted coordinates, the others as they were read; numbers are the shortest that give the same 32-bit float
 * when they are read and stored again. A survey writes all blocks in file coordinates, see FileCoordinates. A
 * block whose key is that of the first block with a key uses that block's header, any other one its own.
 * Drawing shares headers among the blocks of every key; the text keeps to one, as the files that were
 * exported before do. FALSE when memory or a write is refused.
 */
Bool ExportText(const PointStore& store, const TextExportOptions& options, BaseFile* file);

} // namespace kelvra
