#include "cloud/point_store.h"

namespace kelvra {

namespace {

const LReal kFullChannel = 65535.0;
/** Narrowed to 32 bits, a 16-bit channel times this is the channel divided by kFullChannel, for all 65,536.
 */
const LReal kPerFullChannel = 1.0 / kFullChannel;
const LONG kVertexFloats = 6;

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

/**
 * Elements are appended as they are read: a count from a file never sizes an allocation. The array grows in
 * steps of half its length, so that many small elements cost no more than their reading.
 */
template <class T>
Bool ReadAll(GeDynamicArray<T>& elements, HyperFile* hf, LONG level) {
  LONG count = 0;
  const VLONG usualStep = elements.GetBlockSize();
  elements.FreeArray();
  if (!hf->ReadLong(&count) || count < 0) return FALSE;
  for (LONG i = 0; i < count; ++i) {
    elements.SetBlockSize(usualStep > i / 2 ? usualStep : i / 2);
    const Bool grown = elements.Push(T());
    elements.SetBlockSize(usualStep);
    if (!grown || !elements[i].Read(hf, level)) return FALSE;
  }
  return TRUE;
}

/**
 * When an element fails, the elements before it stay, and so does the failed one if it can hold part of its
 * own: no empty block is left behind, which could never be saved.
 */
template <class T>
Bool CopyAll(const GeDynamicArray<T>& from, GeDynamicArray<T>& to, Bool keepFailed) {
  if (!to.ReScope(from.GetCount())) return FALSE;
  for (VLONG i = 0; i < from.GetCount(); ++i)
    if (!from[i].CopyTo(to[i])) {
      to.ReSize(keepFailed ? i + 1 : i);
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
  return &dest == this || CopyAll(blocks, dest.blocks, FALSE);
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
  return &dest == this || CopyAll(groups, dest.groups, TRUE);
}

void GrowingBox::Add(const Vector& p) {
  for (LONG axis = 0; axis < 3; ++axis) {
    if (p[axis] < min[axis]) min[axis] = p[axis];
    if (p[axis] > max[axis]) max[axis] = p[axis];
  }
  valid = 1;
}

Bool PointStore::Merge(PointGroup& group) {
  for (VLONG b = group.blocks.GetCount() - 1; b >= 0; --b)
    if (group.blocks[b].count < 1) group.blocks.Remove(b);
  const VLONG last = groups.GetCount();
  if (!groups.ReSize(last + 1)) return FALSE;
  groups[last] = static_cast<PointGroup&&>(group);
  uploadFlag = 1;
  return TRUE;
}

LONG PointStore::GetPointCount() const {
  LLONG total = 0;
  for (VLONG g = 0; g < groups.GetCount(); ++g)
    for (VLONG b = 0; b < groups[g].blocks.GetCount(); ++b) total += groups[g].blocks[b].count;
  return (LONG)(total > MAXLONGl ? MAXLONGl : total);
}

const PointBlock* PointStore::GetFirstBlock() const {
  for (VLONG g = 0; g < groups.GetCount(); ++g)
    if (groups[g].blocks.GetCount() > 0) return &groups[g].blocks[0];
  return NULL;
}

const PointHeader& PointStore::HeaderFor(const PointBlock& block) const {
  for (VLONG g = 0; g < groups.GetCount(); ++g)
    for (VLONG b = 0; b < groups[g].blocks.GetCount(); ++b)
      if (groups[g].blocks[b].header.key == block.header.key) return groups[g].blocks[b].header;
  return block.header;
}

/** Visits blocks with the number of points to take of each, until count points are taken. */
template <class Visit>
LONG PointStore::ForEachBlock(LONG count, Visit visit) const {
  LONG done = 0;
  for (VLONG g = 0; g < groups.GetCount(); ++g)
    for (VLONG b = 0; b < groups[g].blocks.GetCount() && done < count; ++b) {
      const PointBlock& block = groups[g].blocks[b];
      const LONG taken = LMin(block.count, count - done);
      visit(block, taken, done);
      done += taken;
    }
  return done;
}

LONG PointStore::ExportPositions(Vector* dest, LONG count, GrowingBox* box, LReal size) const {
  Vector low = GrowingBox().min, high = GrowingBox().max; // in registers while the loop runs
  const LONG written = ForEachBlock(count, [&](const PointBlock& block, LONG taken, LONG first) {
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

void PointStore::AddDisplayBox(GrowingBox* box, LReal size) const {
  ForEachBlock(MAXLONGl, [&](const PointBlock& block, LONG, LONG) {
    if (!block.bboxValid) return;
    const PointMapping mapping(HeaderFor(block), size);
    const SReal low[3] = {(SReal)block.bboxMin.x, (SReal)block.bboxMin.y, (SReal)block.bboxMin.z};
    const SReal high[3] = {(SReal)block.bboxMax.x, (SReal)block.bboxMax.y, (SReal)block.bboxMax.z};
    box->Add(mapping.Map(low));
    box->Add(mapping.Map(high));
  });
}

LONG PointStore::ExportColors(Vector* dest, LONG count) const {
  return ForEachBlock(count, [&](const PointBlock& block, LONG taken, LONG first) {
    for (LONG i = 0; i < taken; ++i) {
      const UWORD* c = block.attrib3 + (VLONG)i * 3;
      dest[(VLONG)first + i] = Vector(c[0] / kFullChannel, c[1] / kFullChannel, c[2] / kFullChannel);
    }
  });
}

namespace {

/** Smallest and largest value so far; kept in registers by the loop that owns it. */
struct Range {
  SReal low, high;
  void Start(SReal v) { low = high = v; }
  void Add(SReal v) {
    low = v < low ? v : low;
    high = v > high ? v : high;
  }
};

/** The records of one run of points, at least one; place gives a stored position's x, y and z. */
template <class Place>
void FillRun(const PointBlock& block, LONG count, SReal* record, GrowingBox* box, Place place) {
  const SReal* stored = block.positions;
  const UWORD* channel = block.attrib3;
  Range x, y, z;
  place(stored, record);
  x.Start(record[0]);
  y.Start(record[1]);
  z.Start(record[2]);
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

LONG PointStore::FillVertices(SReal* dest, LONG count, GrowingBox* box, LReal size) const {
  box->Reset();
  return ForEachBlock(count, [&](const PointBlock& block, LONG taken, LONG first) {
    if (taken < 1) return;
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
