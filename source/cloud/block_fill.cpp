#include "cloud/block_fill.h"

namespace kelvra {

Bool FillBlock(const SourceRecord* records, LONG count, LONG colorMultiplier, const LVector& origin,
               PointBlock& block) {
  if (!block.Allocate(count)) return FALSE;
  SReal *position = block.positions, *color = block.colors;
  UWORD *channel = block.attrib3, *flag = block.attrib1;
  // The file's z is the host's y.
  const LReal ox = origin.x, oy = origin.z, oz = origin.y;
  GrowingRange x((SReal)(records[0].x - ox)), y((SReal)(records[0].z - oy)), z((SReal)(records[0].y - oz));
  for (LONG i = 0; i < count; ++i, position += 3, color += 3, channel += 3) {
    const SourceRecord& record = records[i];
    const SReal px = (SReal)(record.x - ox), py = (SReal)(record.z - oy), pz = (SReal)(record.y - oz);
    position[0] = px;
    position[1] = py;
    position[2] = pz;
    x.Add(px);
    y.Add(py);
    z.Add(pz);
    color[0] = (SReal)record.second[0];
    color[1] = (SReal)record.second[1];
    color[2] = (SReal)record.second[2];
    channel[0] = (UWORD)((ULONG)record.r * (ULONG)colorMultiplier);
    channel[1] = (UWORD)((ULONG)record.g * (ULONG)colorMultiplier);
    channel[2] = (UWORD)((ULONG)record.b * (ULONG)colorMultiplier);
    flag[i] = record.flag;
  }
  block.box.Reset();
  block.box.Add(Vector(x.low, y.low, z.low));
  block.box.Add(Vector(x.high, y.high, z.high));
  return TRUE;
}

} // namespace kelvra
