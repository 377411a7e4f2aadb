#include "cloud/block_fill.h"

namespace kelvra {

namespace {

/** Records that are converted before their memory is given back: 64 MiB of them. */
constexpr LONG kGivenBack = 1 << 20;

/** Converts records into the block, from the point `first` on. */
void Convert(const SourceRecord* records, LONG first, LONG end, LONG colorMultiplier, const LVector& origin,
             PointBlock& block) {
  SReal *position = block.positions + (VLONG)first * 3, *color = block.colors + (VLONG)first * 3;
  UWORD *channel = block.attrib3 + (VLONG)first * 3, *flag = block.attrib1;
  // The file's z is the host's y.
  const LReal ox = origin.x, oy = origin.z, oz = origin.y;
  for (LONG i = first; i < end; ++i, position += 3, color += 3, channel += 3) {
    const SourceRecord& record = records[i];
    position[0] = (SReal)(record.x - ox);
    position[1] = (SReal)(record.z - oy);
    position[2] = (SReal)(record.y - oz);
    color[0] = (SReal)record.second[0];
    color[1] = (SReal)record.second[1];
    color[2] = (SReal)record.second[2];
    channel[0] = (UWORD)((ULONG)record.r * (ULONG)colorMultiplier);
    channel[1] = (UWORD)((ULONG)record.g * (ULONG)colorMultiplier);
    channel[2] = (UWORD)((ULONG)record.b * (ULONG)colorMultiplier);
    flag[i] = record.flag;
  }
}

void FindBox(PointBlock& block) {
  const SReal* position = block.positions;
  GrowingRange x(position[0]), y(position[1]), z(position[2]);
  for (LONG i = 0; i < block.count; ++i, position += 3) {
    x.Add(position[0]);
    y.Add(position[1]);
    z.Add(position[2]);
  }
  block.box.Reset();
  block.box.Add(Vector(x.low, y.low, z.low));
  block.box.Add(Vector(x.high, y.high, z.high));
}

} // namespace

Bool FillBlock(const SourceRecord* records, LONG count, LONG colorMultiplier, const LVector& origin,
               PointBlock& block) {
  if (!block.Allocate(count)) return FALSE;
  Convert(records, 0, count, colorMultiplier, origin, block);
  FindBox(block);
  return TRUE;
}

Bool FillBlockAndFree(SourceRecord* records, LONG count, LONG colorMultiplier, const LVector& origin,
                      PointBlock& block) {
  const Bool allocated = block.Allocate(count);
  for (LONG end = count; allocated && end > 0;) {
    const LONG first = end > kGivenBack ? end - kGivenBack : 0;
    Convert(records, first, end, colorMultiplier, origin, block);
    end = first;
    // A host that refuses to make the array smaller leaves it as it is.
    SourceRecord* kept = end > 0 ? GeReallocTypeNC(SourceRecord, records, end) : NULL;
    if (kept) records = kept;
  }
  GeFree(records);
  if (allocated) FindBox(block);
  return allocated;
}

} // namespace kelvra
