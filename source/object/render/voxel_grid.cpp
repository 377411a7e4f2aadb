#include "object/render/voxel_grid.h"

#include <algorithm>
#include <cmath>

namespace kelvra {

namespace {

/** Bounds of the mean radius that decides how many cells an axis gets. */
constexpr LReal kLeastRadius = 1.0, kMostRadius = 48.0;
/** Most cells of an axis at a mean radius of 1. */
constexpr LReal kCellsAtLeastRadius = 256.0;
constexpr LONG kLeastCells = 2;

constexpr LLONG kMostRecords = 65535;

Bool IsFinite(const LVector& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/** Truncates toward zero within what 32 bits hold. */
LONG Truncate(LReal v) {
  return v == v ? (LONG)FCut(v, -(LReal)MAXLONGl, (LReal)MAXLONGl) : 0;
}

} // namespace

Bool VoxelData::AddItem(const LVector& centre, LReal radius, UWORD recordIndex, const SReal color[3],
                        LLONG most) {
  if (!IsFinite(centre) || !std::isfinite(radius)) return TRUE;
  if (items.size >= MAXLONGl) return FALSE;
  const RenderItem item = MakeItem(centre, radius, recordIndex, color);
  const LVector low(item.boxMin[0], item.boxMin[1], item.boxMin[2]);
  const LVector high(item.boxMax[0], item.boxMax[1], item.boxMax[2]);
  if (!IsFinite(low) || !IsFinite(high)) return TRUE;
  if (!items.Append(item, most)) return FALSE;
  itemBox.Add(low);
  itemBox.Add(high);
  radiusBox.Add(LVector(radius));
  return TRUE;
}

Bool VoxelData::AddRecord(const RenderObjectRecord& record, UWORD* index) {
  if (records.size >= kMostRecords || !records.Append(record)) return FALSE;
  *index = (UWORD)(records.size - 1);
  return TRUE;
}

void VoxelData::RemoveLastRecord() {
  if (records.size < 1) return;
  FreeRecord(records.data[--records.size]);
  records.count = records.size;
}

Bool VoxelData::AnyHardEdge() const {
  for (LLONG i = 0; i < records.size; ++i)
    if (records.data[i].falloffBias == 1.0) return TRUE;
  return FALSE;
}

void LeafPools::Clear() {
  GeFree(contents);
  GeFree(lists);
  GeFree(numbers);
}

void VoxelData::ClearGrid() {
  packed.Clear();
  leaves.Clear();
  // Only the root's content is a block of its own.
  if (nodes.data && nodes.data[0].content) {
    NodeContent*& content = nodes.data[0].content;
    if (content->grid) GeFree(content->grid->cells);
    gDelete(content->grid);
    gDelete(content);
  }
  nodes.Clear();
}

void VoxelData::Clear() {
  ClearGrid();
  itemBox.Reset();
  while (records.size > 0) RemoveLastRecord();
  records.Clear();
  items.Clear();
  // The next frame starts with the same small steps as the first one did. Clearing a buffer keeps its growth,
  // which has doubled with each step: without this every frame of a long sequence would begin with more
  // memory than the one before asked for last, until the host refuses.
  items.growth = kItemGrowth;
  records.growth = kRecordGrowth;
}

GridPlan PlanGrid(const GrowingBox<LVector>& itemBox, const GrowingBox<LVector>& radiusBox) {
  // Large points overlap many cells: the larger they are, the fewer cells.
  GridPlan plan;
  const LReal middle = (radiusBox.Min().x + radiusBox.Max().x) * 0.5;
  const LReal s = FCut(middle, kLeastRadius, kMostRadius);
  plan.maxCells = (LONG)(kCellsAtLeastRadius / s);

  // One cell for every two units of the box.
  const LVector extent = itemBox.Max() - itemBox.Min();
  for (LONG axis = 0; axis < 3; ++axis) {
    const LONG m = Truncate(extent[axis] * 0.5);
    plan.count[axis] = m < kLeastCells ? kLeastCells : LMin(plan.maxCells, m);
  }
  return plan;
}

} // namespace kelvra
