// Turns source records into a block.
#pragma once

#include "object/source_record.h"
#include "point_block.h"

namespace kelvra {

/**
 * Fills a block from records: attrib3 = r, g, b times the multiplier in 16 bits (a text colour above 255
 * wraps, which is what the files of the field were written for), positions (x, z, y) narrowed to 32 bits, the
 * second triple as colors, the flag as attrib1, the box from the first point on. FALSE, with the block clear,
 * when memory is refused.
 */
Bool FillBlock(const SourceRecord* records, LONG count, LONG colorMultiplier, PointBlock& block);

} // namespace kelvra
