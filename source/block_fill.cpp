#include "block_fill.h"

namespace kelvra {

Bool FillBlock(const SourceRecord* records, LONG count, LONG colorMultiplier, PointBlock& block) {
  if (!block.Allocate(count)) return FALSE;
  SReal *position = block.positions, *color = block.colors;
  UWORD *channel = block.attrib3, *flag = block.attrib1;
  SReal low[3] = {(SReal)records[0].x, (SReal)records[0].z, (SReal)records[0].y};
  SReal high[3] = {low[0], low[1], low[2]};
  for (LONG i = 0; i < count; ++i, position += 3, color += 3, channel += 3) {
    const SourceRecord& record = records[i];
    position[0] = (SReal)record.x;
    position[1] = (SReal)record.z;
    position[2] = (SReal)record.y;
    for (LONG axis = 0; axis < 3; ++axis) {
      low[axis] = position[axis] < low[axis] ? position[axis] : low[axis];
      high[axis] = position[axis] > high[axis] ? position[axis] : high[axis];
      color[axis] = (SReal)record.second[axis];
    }
    channel[0] = (UWORD)(record.r * colorMultiplier);
    channel[1] = (UWORD)(record.g * colorMultiplier);
    channel[2] = (UWORD)(record.b * colorMultiplier);
    flag[i] = record.flag;
  }
  block.bboxMin = LVector(low[0], low[1], low[2]);
  block.bboxMax = LVector(high[0], high[1], high[2]);
  block.bboxValid = 1;
  return TRUE;
}

} // namespace kelvra
