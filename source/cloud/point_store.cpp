#include "cloud/point_store.h"

namespace kelvra {

namespace {

constexpr LReal kFullChannel = 65535.0;
/** Narrowed to 32 bits, a 16-bit channel times this is the channel divided by kFullChannel, for all 65,536.
 */
constexpr LReal kPerFullChannel = 1.0 / kFullChannel;
constexpr LONG kVertexFloats = 6;

LReal LesserOf(LReal v, LReal low) {
  return v < low ? v : low;
}
LReal GreaterOf(LReal v, LReal high) {
  return v > high ? v : high;
}

template <class T>
Bool WriteAll(const GeDynamicArray<T>& elements, HyperFile* hf) {
  if (!hf->WriteLong((LONG)elements.GetCount())) return FALSE;
  for (VLONG i = 0; i < elements.GetCount(); ++i)
    if (!elements[i].Write(hf)) return FALSE;
  return TRUE;
}

/** Elements are appended as they are read: a count from a file never sizes an allocation. */
template <class T>
Bool ReadAll(GeDynamicArray<T>& elements, HyperFile* hf, LONG level) {
  LONG count = 0;
  elements.FreeArray();
  if (!hf->ReadLong(&count) || count < 0) return FALSE;
  for (LONG i = 0; i < count; ++i)
    if (!AppendEmpty(elements) || !elements[i].Read(hf, level)) return FALSE;
  return TRUE;
}

/**
 * When an element fails, the elements before it stay, and so does the failed one if it can hold part of its
 * own: no empty block is left behind, which could never be saved.
 */
template <class T>
Bool CopyAll(const GeDynamicArray<T>& from, GeDynamicArray<T>& to, Bool (T::*copy)(T&) const,
             Bool keepFailed) {
  to.FreeArray();
  for (VLONG i = 0; i < from.GetCount(); ++i) {
    if (!AppendEmpty(to)) return FALSE;
    if ((from[i].*copy)(to[i])) continue;
    if (!keepFailed) to.Remove(i);
    return FALSE;
  }
  return TRUE;
}

} // namespace

Bool PointGroup::Read(HyperFile* hf, LONG level) {
  return ReadAll(blocks, hf, level);
}
Bool PointGroup::Write(HyperFile* hf) const {
  return WriteAll(blocks, hf);
}
Bool PointGroup::CopyTo(PointGroup& dest) const {
  return &dest == this || CopyAll(blocks, dest.blocks, &PointBlock::CopyTo, FALSE);
}
Bool PointGroup::ShareTo(PointGroup& dest) const {
  return &dest == this || CopyAll(blocks, dest.blocks, &PointBlock::ShareTo, FALSE);
}

Bool PointStore::Read(HyperFile* hf, LONG level) {
  uploadFlag = 1;
  return ReadAll(groups, hf, level);
}
Bool PointStore::Write(HyperFile* hf) const {
  return WriteAll(groups, hf);
}
Bool PointStore::CopyTo(PointStore& dest) const {
  dest.uploadFlag = 1;
  return &dest == this || CopyAll(groups, dest.groups, &PointGroup::CopyTo, TRUE);
}
Bool PointStore::ShareTo(PointStore& dest) const {
  dest.uploadFlag = 1;
  return &dest == this || CopyAll(groups, dest.groups, &PointGroup::ShareTo, TRUE);
}

Bool PointStore::Merge(PointGroup& group) {
  for (VLONG b = group.blocks.GetCount() - 1; b >= 0; --b)
    if (group.blocks[b].count < 1) group.blocks.Remove(b);
  if (!AppendEmpty(groups)) return FALSE;
  groups[groups.GetCount() - 1].Swap(group);
  uploadFlag = 1;
  return TRUE;
}

Bool PointStore::AddToLastGroup(PointBlock& block) {
  GeDynamicArray<PointBlock>& blocks = groups[groups.GetCount() - 1].blocks;
  if (!AppendEmpty(blocks)) return FALSE;
  blocks[blocks.GetCount() - 1].Swap(block);
  uploadFlag = 1;
  return TRUE;
}

LONG PointStore::GetPointCount() const {
  LLONG total = 0;
  VisitBlocks([&total](const PointBlock& block, VLONG) {
    total += block.count;
    return true;
  });
  return (LONG)(total > MAXLONGl ? MAXLONGl : total);
}

VLONG PointStore::CountBlocks() const {
  VLONG count = 0;
  for (VLONG g = 0; g < groups.GetCount(); ++g) count += groups[g].blocks.GetCount();
  return count;
}

const PointBlock* PointStore::GetFirstBlock() const {
  const PointBlock* first = NULL;
  VisitBlocks([&first](const PointBlock& block, VLONG) {
    first = &block;
    return false;
  });
  return first;
}

const PointHeader& PointStore::HeaderFor(const PointBlock& block) const {
  const PointHeader* found = &block.header;
  VisitBlocks([&](const PointBlock& candidate, VLONG) {
    const Bool same = candidate.header.key == block.header.key;
    if (same) found = &candidate.header;
    return !same;
  });
  return *found;
}

LONG PointStore::ExportPositions(Vector* dest, LONG count, GrowingBox<Vector>* box, LReal size) const {
  Vector low = GrowingBox<Vector>().min, high = GrowingBox<Vector>().max; // in registers while the loop runs
  const LONG written = VisitFirst(count, [&](const PointBlock& block, LONG taken, LONG first) {
    const PointMapping mapping(HeaderFor(block), size);
    for (LONG i = 0; i < taken; ++i) {
      const Vector p = mapping.Map(block.positions + (VLONG)i * 3);
      dest[(VLONG)first + i] = p;
      low = Vector(LesserOf(p.x, low.x), LesserOf(p.y, low.y), LesserOf(p.z, low.z));
      high = Vector(GreaterOf(p.x, high.x), GreaterOf(p.y, high.y), GreaterOf(p.z, high.z));
    }
  });
  box->min = low;
  box->max = high;
  box->valid = written > 0;
  return written;
}

void PointStore::AddDisplayBox(GrowingBox<Vector>* box, LReal size) const {
  VisitBlocks([&](const PointBlock& block, VLONG) {
    if (!block.box.valid) return true;
    const PointMapping mapping(HeaderFor(block), size);
    for (const Vector& corner : {block.box.min, block.box.max}) {
      const SReal stored[3] = {(SReal)corner.x, (SReal)corner.y, (SReal)corner.z};
      box->Add(mapping.Map(stored));
    }
    return true;
  });
}

LONG PointStore::ExportColors(Vector* dest, LONG count) const {
  return VisitFirst(count, [&](const PointBlock& block, LONG taken, LONG first) {
    for (LONG i = 0; i < taken; ++i) {
      const UWORD* c = block.attrib3 + (VLONG)i * 3;
      dest[(VLONG)first + i] = Vector(c[0] / kFullChannel, c[1] / kFullChannel, c[2] / kFullChannel);
    }
  });
}

namespace {

/** Writes the records of one run of points, at least one; place gives a stored position's x, y and z. */
template <class Place>
void FillRun(const PointBlock& block, LONG count, SReal* record, GrowingBox<Vector>* box, Place place) {
  const SReal* stored = block.positions;
  const UWORD* channel = block.attrib3;
  place(stored, record);
  GrowingRange x(record[0]), y(record[1]), z(record[2]);
  for (LONG i = 0; i < count; ++i, stored += 3, channel += 3, record += kVertexFloats) {
    SReal p[3];
    place(stored, p);
    x.Add(p[0]);
    y.Add(p[1]);
    z.Add(p[2]);
    record[0] = p[0];
    record[1] = p[1];
    record[2] = p[2];
    record[3] = (SReal)(channel[0] * kPerFullChannel);
    record[4] = (SReal)(channel[1] * kPerFullChannel);
    record[5] = (SReal)(channel[2] * kPerFullChannel);
  }
  box->Add(Vector(x.low, y.low, z.low));
  box->Add(Vector(x.high, y.high, z.high));
}

} // namespace

LONG PointStore::FillVertices(SReal* dest, LONG count, GrowingBox<Vector>* box, LReal size) const {
  box->Reset();
  return VisitFirst(count, [&](const PointBlock& block, LONG taken, LONG first) {
    const PointMapping mapping(HeaderFor(block), size);
    SReal* record = dest + (VLONG)first * kVertexFloats;
    if (mapping.IsIdentity())
      FillRun(block, taken, record, box, [](const SReal* stored, SReal* p) {
        p[0] = stored[0];
        p[1] = stored[1];
        p[2] = stored[2];
      });
    else
      FillRun(block, taken, record, box, [mapping](const SReal* stored, SReal* p) {
        const Vector shown = mapping.MapFitted(stored);
        p[0] = (SReal)shown.x;
        p[1] = (SReal)shown.y;
        p[2] = (SReal)shown.z;
      });
  });
}

} // namespace kelvra
