#include "cloud/height_colors.h"

#include "cloud/percentiles.h"

namespace kelvra {

namespace {

void ColorBlock(PointBlock& block, const RampTable& table, LONG heightAxis) {
  const SReal* position = block.positions;
  UWORD* channel = block.attrib3;
  for (LONG i = 0; i < block.count; ++i, position += 3, channel += 3) {
    const StoredColor& color = table.At(position[heightAxis]);
    channel[0] = color.rgb[0];
    channel[1] = color.rgb[1];
    channel[2] = color.rgb[2];
  }
}

} // namespace

RampRange ColorByHeight(PointStore& store, const RampSettings& settings, Bool* whole) {
  RampRange range;
  if (store.CountBlocks() == 0) return range;
  const FloatRange heights = RangeOfShares(settings.lowShare, settings.highShare, [&](auto visit) {
    store.VisitBlocks([&](const PointBlock& block, VLONG) {
      for (LONG i = 0; i < block.count; ++i) visit(block.positions[(VLONG)i * 3 + settings.heightAxis]);
      return true;
    });
  });
  range.from = heights.low;
  range.to = heights.high;
  range.valid = TRUE;

  const RampTable table(settings.ramp, range);
  for (VLONG g = 0; g < store.groups.GetCount(); ++g)
    for (VLONG b = 0; b < store.groups[g].blocks.GetCount(); ++b) {
      PointBlock& block = store.groups[g].blocks[b];
      if (block.OwnArrays())
        ColorBlock(block, table, settings.heightAxis);
      else
        *whole = FALSE;
    }
  store.uploadFlag = 1;
  return range;
}

} // namespace kelvra
