#include "object/render/grid_slabs.h"

namespace kelvra {

GridSlabs::~GridSlabs() {
  StayWhole();
}

void GridSlabs::StayWhole() {
  GeFree(ends_);
  GeFree(numbers_);
  count_ = 1;
}

Bool GridSlabs::Begin(LONG rows) {
  // The far faces reach two rows into the layer after the spare one.
  rows_ = LMax(rows, 2);
  perLayer_ = (grid_.ny + rows_ - 1) / rows_;
  count_ = ((LLONG)grid_.nz + 2) * perLayer_;
  ends_ = GeAllocType(LULONG, count_ + 1);
  if (!ends_) StayWhole();
  return ends_ != NULL;
}

Bool GridSlabs::MakeLists() {
  LULONG total = 0;
  for (LLONG slab = 0; slab < count_; ++slab) {
    const LULONG size = ends_[slab];
    ends_[slab] = total;
    total += size;
  }
  numbers_ = GeAllocTypeNC(ULONG, total);
  if (!numbers_) StayWhole();
  return numbers_ != NULL;
}

GridSlab GridSlabs::At(LLONG slab) const {
  if (!numbers_) return {0, grid_.TableSize(), GridSlab::kAllLayers, 0, grid_.ny + 1, NULL, items_};
  GridSlab found;
  found.layer = (LONG)(slab / perLayer_);
  found.firstRow = (LONG)(slab % perLayer_) * rows_;
  found.endRow = LMin(found.firstRow + rows_, grid_.ny);
  const LLONG layerPlace = grid_.IndexOf(0, 0, found.layer);
  found.firstPlace = layerPlace + (LLONG)grid_.nx * found.firstRow;
  found.endPlace = std::min(layerPlace + (LLONG)grid_.nx * found.endRow, grid_.TableSize());
  const LULONG begin = slab > 0 ? ends_[slab - 1] : 0;
  found.items = numbers_ + begin;
  found.count = (LLONG)(ends_[slab] - begin);
  return found;
}

} // namespace kelvra
