#include "cloud/point_block.h"

#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace kelvra {

void PointBlock::Swap(PointBlock& other) noexcept {
  std::swap(header, other.header);
  std::swap(reals, other.reals);
  std::swap(settings, other.settings);
  std::swap(box, other.box);
  std::swap(count, other.count);
  std::swap(positions, other.positions);
  std::swap(colors, other.colors);
  std::swap(attrib3, other.attrib3);
  std::swap(attrib1, other.attrib1);
  std::swap(owners_, other.owners_);
}

void PointBlock::FreeArrays() {
  if (owners_ && --*owners_ > 0) {
    positions = colors = NULL;
    attrib3 = attrib1 = NULL;
    owners_ = NULL;
    return;
  }
  GeFree(owners_);
  GeFree(positions);
  GeFree(colors);
  GeFree(attrib3);
  GeFree(attrib1);
}

LONG PointBlock::Clear() {
  FreeArrays();
  box.Reset();
  count = 0;
  header.Clear();
  for (LReal& real : reals) real = 0.0;
  settings = LoaderSettings();
  return 0;
}

Bool PointBlock::IsWhole() const {
  return count >= 1 && count <= kMostBlockPoints && positions && colors && attrib3 && attrib1;
}

Bool PointBlock::Allocate(LONG n) {
  if (n < 1 || n > kMostBlockPoints) return FALSE;
  FreeArrays();
  positions = GeAllocTypeNC(SReal, (VLONG)n * 3);
  colors = GeAllocTypeNC(SReal, (VLONG)n * 3);
  attrib3 = GeAllocTypeNC(UWORD, (VLONG)n * 3);
  attrib1 = GeAllocTypeNC(UWORD, (VLONG)n);
  if (!positions || !colors || !attrib3 || !attrib1) {
    Clear();
    return FALSE;
  }
  count = n;
  return TRUE;
}

Bool PointBlock::CopyTo(PointBlock& dest) const {
  if (&dest == this) return TRUE;
  dest.Clear();
  if (count > 0) {
    if (!dest.Allocate(count)) return FALSE;
    CopyMem(positions, dest.positions, (VLONG)count * 3 * (VLONG)sizeof(SReal));
    CopyMem(colors, dest.colors, (VLONG)count * 3 * (VLONG)sizeof(SReal));
    CopyMem(attrib3, dest.attrib3, (VLONG)count * 3 * (VLONG)sizeof(UWORD));
    CopyMem(attrib1, dest.attrib1, (VLONG)count * (VLONG)sizeof(UWORD));
  }
  CopyDescription(dest);
  return TRUE;
}

Bool PointBlock::ShareTo(PointBlock& dest) const {
  if (&dest == this) return TRUE;
  dest.Clear();
  if (count > 0) {
    if (!owners_) {
      void* memory = GeAlloc(sizeof *owners_);
      if (!memory) return FALSE;
      owners_ = new (memory) std::atomic<LONG>(1);
    }
    ++*owners_;
    dest.owners_ = owners_;
    dest.positions = positions;
    dest.colors = colors;
    dest.attrib3 = attrib3;
    dest.attrib1 = attrib1;
    dest.count = count;
  }
  CopyDescription(dest);
  return TRUE;
}

Bool PointBlock::OwnArrays() {
  if (!owners_ || *owners_ == 1) return TRUE;
  PointBlock own;
  if (!CopyTo(own)) return FALSE;
  Swap(own);
  return TRUE;
}

void PointBlock::CopyDescription(PointBlock& dest) const {
  dest.header = header;
  CopyMem(reals, dest.reals, sizeof reals);
  dest.settings = settings;
  dest.box = box;
}

namespace {

/** A refused shrink keeps the larger array: it still holds all points. */
template <class T>
void Shrink(T*& array, VLONG elements) {
  T* shrunk = array ? GeReallocTypeNC(T, array, elements) : NULL;
  if (shrunk) array = shrunk;
}

} // namespace

LONG PointBlock::CountNotFinite() const {
  LONG found = 0;
  for (const SReal *p = positions, *end = p + (VLONG)count * 3; p < end; p += 3) found += !IsFinitePoint(p);
  return found;
}

Bool PointBlock::HasUsableBox() const {
  constexpr LReal most = std::numeric_limits<SReal>::max();
  for (LONG axis = 0; axis < 3; ++axis)
    if (!(std::abs(box.min[axis]) <= most) || !(std::abs(box.max[axis]) <= most)) return FALSE;
  return TRUE;
}

Bool PointBlock::BoxHoldsPoints() const {
  if (!HasUsableBox()) return FALSE;
  for (const SReal *p = positions, *end = p + (VLONG)count * 3; p < end; p += 3)
    for (LONG axis = 0; axis < 3; ++axis)
      if ((p[axis] < box.min[axis] || p[axis] > box.max[axis]) && IsFinitePoint(p)) return FALSE;
  return TRUE;
}

void PointBlock::Finish(LONG flags) {
  if (count <= 0) return;
  if (!owners_) {
    Shrink(positions, (VLONG)count * 3);
    Shrink(colors, (VLONG)count * 3);
    Shrink(attrib3, (VLONG)count * 3);
    Shrink(attrib1, (VLONG)count);
  }
  if (!(flags & kFinishRecomputeBox)) return;
  box.Reset();
  const SReal *p = positions, *const end = p + (VLONG)count * 3;
  while (p < end && !IsFinitePoint(p)) p += 3;
  if (p == end) return;
  GrowingRange x(p[0]), y(p[1]), z(p[2]);
  for (; p < end; p += 3) {
    if (!IsFinitePoint(p)) continue;
    x.Add(p[0]);
    y.Add(p[1]);
    z.Add(p[2]);
  }
  box.Add(Vector(x.low, y.low, z.low));
  box.Add(Vector(x.high, y.high, z.high));
}

void PointBlock::MoveTo(const LVector& origin) {
  for (SReal *p = positions, *end = p + (VLONG)count * 3; p < end; p += 3) {
    p[0] = (SReal)(p[0] - origin.x);
    p[1] = (SReal)(p[1] - origin.z);
    p[2] = (SReal)(p[2] - origin.y);
  }
  LReal* s = header.slots;
  header.SetBounds(LVector(s[kSlotMinX], s[kSlotMinY], s[kSlotMinHeight]) - origin,
                   LVector(s[kSlotMaxX], s[kSlotMaxY], s[kSlotMaxHeight]) - origin);
  Finish(kFinishRecomputeBox);
}

Bool PointBlock::Write(HyperFile* hf) const {
  if (!hf->WriteLong(count) || count < 1) return FALSE;
  if (!hf->WriteArray(positions, HYPERFILEARRAY_SREAL, sizeof(SReal), count * 3) ||
      !hf->WriteArray(colors, HYPERFILEARRAY_SREAL, sizeof(SReal), count * 3) ||
      !hf->WriteArray(attrib3, HYPERFILEARRAY_WORD, sizeof(UWORD), count * 3) ||
      !hf->WriteArray(attrib1, HYPERFILEARRAY_WORD, sizeof(UWORD), count))
    return FALSE;
  if (!hf->WriteLVector(box.Min()) || !hf->WriteLVector(box.Max())) return FALSE;
  // First, third, second, fourth: saved scenes hold them in this order.
  if (!hf->WriteLReal(reals[0]) || !hf->WriteLReal(reals[2]) || !hf->WriteLReal(reals[1]) ||
      !hf->WriteLReal(reals[3]))
    return FALSE;
  for (LONG slot = kFirstSavedSlot; slot <= kLastSavedSlot; ++slot)
    if (!hf->WriteLReal(header.slots[slot])) return FALSE;
  return hf->WriteUWord(header.key) && settings.Write(hf);
}

Bool PointBlock::Read(HyperFile* hf, LONG) {
  Clear();
  LONG n = 0;
  if (!hf->ReadLong(&n)) return FALSE;
  if (n < 1 || n > kMostBlockPoints) {
    GePrint("the scene has a block of " + LongToString(n) + " points, expected 1 to " +
            LongToString(kMostBlockPoints));
    return FALSE;
  }
  if (!Allocate(n)) return FALSE;
  if (!hf->ReadArray(positions, HYPERFILEARRAY_SREAL, sizeof(SReal), n * 3) ||
      !hf->ReadArray(colors, HYPERFILEARRAY_SREAL, sizeof(SReal), n * 3) ||
      !hf->ReadArray(attrib3, HYPERFILEARRAY_WORD, sizeof(UWORD), n * 3) ||
      !hf->ReadArray(attrib1, HYPERFILEARRAY_WORD, sizeof(UWORD), n))
    return FALSE;
  LVector corner;
  if (!hf->ReadLVector(&corner)) return FALSE;
  box.min = box.max = corner;
  if (!hf->ReadLVector(&corner)) return FALSE;
  box.Add(corner);
  if (!hf->ReadLReal(&reals[0]) || !hf->ReadLReal(&reals[2]) || !hf->ReadLReal(&reals[1]) ||
      !hf->ReadLReal(&reals[3]))
    return FALSE;
  for (LONG slot = kFirstSavedSlot; slot <= kLastSavedSlot; ++slot)
    if (!hf->ReadLReal(&header.slots[slot])) return FALSE;
  return hf->ReadUWord(&header.key) && settings.Read(hf);
}

} // namespace kelvra
