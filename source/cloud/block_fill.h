// Turns source records into a block.
#pragma once

#include "cloud/point_block.h"
#include "cloud/source_record.h"

namespace kelvra {

/**
 * Fills a block from `count` finite records, at least one: attrib3 = r, g, b times the multiplier, modulo
 * 65536, positions (x, z, y) counted from `origin` (file axes) and then narrowed to 32 bits, the second
 * triple as colors, the flag as attrib1, the box from the first point on. FALSE, with the block clear, when
 * memory is refused or count is out of bounds.
 *
 * The wrap is harmless: text colours are 8-bit and times 256 always fits; of a value above 255 the low
 * 8 bits are shown.
 */
Bool FillBlock(const SourceRecord* records, LONG count, LONG colorMultiplier, const LVector& origin,
               PointBlock& block);

/**
 * The same for records in the host's memory, which are freed: converted from the last one on, they are given
 * back part by part, so that a point takes little more than its record at any time.
 */
Bool FillBlockAndFree(SourceRecord* records, LONG count, LONG colorMultiplier, const LVector& origin,
                      PointBlock& block);

} // namespace kelvra
