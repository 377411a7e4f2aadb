#include "point_store.h"

namespace kelvra {

namespace {

const LReal kFullChannel = 65535.0;

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
    if (!elements.ReSize(i + 1) || !elements[i].Read(hf, level)) return FALSE;
  return TRUE;
}

template <class T>
Bool CopyAll(const GeDynamicArray<T>& from, GeDynamicArray<T>& to) {
  if (!to.ReScope(from.GetCount())) return FALSE;
  for (VLONG i = 0; i < from.GetCount(); ++i)
    if (!from[i].CopyTo(to[i])) return FALSE;
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
  return CopyAll(blocks, dest.blocks);
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
  return &dest == this || CopyAll(groups, dest.groups);
}

void GrowingBox::Add(const Vector& p) {
  for (LONG axis = 0; axis < 3; ++axis) {
    if (p[axis] < min[axis]) min[axis] = p[axis];
    if (p[axis] > max[axis]) max[axis] = p[axis];
  }
  valid = 1;
}

Bool PointStore::Merge(PointGroup& group) {
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
  box->Reset();
  return ForEachBlock(count, [&](const PointBlock& block, LONG taken, LONG first) {
    const PointMapping mapping(HeaderFor(block), size);
    for (LONG i = 0; i < taken; ++i) {
      const Vector p = mapping.Map(block.positions + (VLONG)i * 3);
      dest[(VLONG)first + i] = p;
      box->Add(p);
    }
  });
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

LONG PointStore::FillVertices(SReal* dest, LONG count, GrowingBox* box, LReal size) const {
  box->Reset();
  return ForEachBlock(count, [&](const PointBlock& block, LONG taken, LONG first) {
    const PointMapping mapping(HeaderFor(block), size);
    SReal low[3] = {MAXREALs, MAXREALs, MAXREALs}, high[3] = {MINREALs, MINREALs, MINREALs};
    SReal* record = dest + (VLONG)first * 6;
    for (LONG i = 0; i < taken; ++i, record += 6) {
      const SReal* stored = block.positions + (VLONG)i * 3;
      const UWORD* c = block.attrib3 + (VLONG)i * 3;
      if (mapping.IsIdentity()) {
        record[0] = stored[0];
        record[1] = stored[1];
        record[2] = stored[2];
      } else {
        const Vector p = mapping.Map(stored);
        record[0] = (SReal)p.x;
        record[1] = (SReal)p.y;
        record[2] = (SReal)p.z;
      }
      for (LONG axis = 0; axis < 3; ++axis) {
        record[3 + axis] = (SReal)(c[axis] / kFullChannel);
        low[axis] = record[axis] < low[axis] ? record[axis] : low[axis];
        high[axis] = record[axis] > high[axis] ? record[axis] : high[axis];
      }
    }
    if (taken > 0) {
      box->Add(Vector(low[0], low[1], low[2]));
      box->Add(Vector(high[0], high[1], high[2]));
    }
  });
}

} // namespace kelvra
