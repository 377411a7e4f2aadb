// Uniform grid over the items of a frame: cells list the items whose boxes overlap them, so that a ray tests
// only what lies in the cells along its path.
//
// Built once per frame on one thread; read-only, from any number of threads, until it is cleared.
#pragma once

#include "cloud/growing_box.h"
#include "object/render/packed_cells.h"
#include "object/render/render_item.h"

namespace kelvra {

/** Entry of a cell table: the cell has no node. */
constexpr ULONG kNoNode = 0xFFFFFFFF;

/** A grid of cells over a box. Owns its table. */
struct CellGrid {
  LReal extent[3];       ///< size of the box
  LReal cellSize[3];     ///< extent / cells
  LReal cellsPerUnit[3]; ///< cells / extent
  LONG nx, ny, nz;
  /**
   * Node numbers, (nx + 1) * (ny + 1) * (nz + 1) of them. The spare layer takes items that touch the far face
   * of the box: their cell coordinate equals the count.
   */
  ULONG* cells;

  LONG Count(LONG axis) const { return axis == 0 ? nx : (axis == 1 ? ny : nz); }
  LLONG TableSize() const { return ((LLONG)nx + 1) * ((LLONG)ny + 1) * ((LLONG)nz + 1); }
  /**
   * Place of a cell in the table. The strides are the counts, though the table is larger by a
   * layer on each axis. A far-face cell shares the place of a cell on the near side of the next row, so the
   * list there holds items of both. Which items a ray meets first, and so what pictures of crowded places
   * show, depends on this order.
   */
  LLONG IndexOf(LONG x, LONG y, LONG z) const { return x + (LLONG)nx * (y + (LLONG)ny * z); }
};

/** What a node holds: a grid, or (a leaf) the numbers of the items that overlap it. */
struct NodeContent {
  CellGrid* grid = NULL;
  AutoBuffer<ULONG>* items = NULL; ///< NULL for a node without items
};

struct GridNode {
  LReal boxMin[3], boxMax[3];
  LULONG unused;
  NodeContent* content;
};
static_assert(sizeof(GridNode) == 64, "one node a cache line");

/** First growth of the list of a cell. */
constexpr LLONG kCellListGrowth = 8;

/**
 * Memory of all leaves: contents, lists and what the lists hold, in one block each. A grid has up to millions
 * of leaves, and allocating each of them would take longer than everything else.
 */
struct LeafPools {
  NodeContent* contents = NULL;
  AutoBuffer<ULONG>* lists = NULL;
  ULONG* numbers = NULL;
  void Clear();
};

/** Everything that one document's frame is rendered from. */
struct VoxelData {
  AutoBuffer<GridNode> nodes{4}; ///< 0 is the root, leaves follow in the order in which cells get items
  AutoBuffer<RenderItem> items{kItemGrowth};
  AutoBuffer<RenderObjectRecord> records{kRecordGrowth};
  GrowingBox<LVector> itemBox;
  /** Of (r, r, r) of every item: smallest and largest radius. Never reset, it widens from frame to frame. */
  GrowingBox<LVector> radiusBox;
  LeafPools leaves;
  /** The same lists, packed for the walk. */
  PackedCells packed;

  static constexpr LLONG kItemGrowth = 67108864, kRecordGrowth = 64;

  VoxelData() {}
  ~VoxelData() { Clear(); }
  VoxelData(const VoxelData&) = delete;
  VoxelData& operator=(const VoxelData&) = delete;

  /**
   * FALSE when memory is refused or there are 2^31 - 1 items. One that is not finite is left out: TRUE.
   * `most` is the number of items that there can be with those that follow, 0 if unknown.
   */
  Bool AddItem(const LVector& centre, LReal radius, UWORD recordIndex, const SReal color[3], LLONG most = 0);
  /** Adds a record; FALSE without memory or beyond 65,535 of them. The buffer owns it then. */
  Bool AddRecord(const RenderObjectRecord& record, UWORD* index);
  void RemoveLastRecord();

  /** Root grid, NULL before a build. */
  const CellGrid* Root() const {
    return nodes.data && nodes.data[0].content ? nodes.data[0].content->grid : NULL;
  }
  /** Largest radius of any item so far. */
  LReal LargestRadius() const { return radiusBox.valid ? radiusBox.max.x : 0.0; }
  /** Are there points that are opaque up to their rim, and beyond their radius? */
  Bool AnyHardEdge() const;

  /** Frees the nodes with all that they own. */
  void ClearGrid();
  /**
   * Frees items, records and grid and makes the item box invalid; the radius box stays. Items and records
   * grow again in the steps of a new hook.
   */
  void Clear();
};

/** How many cells a grid gets. */
struct GridPlan {
  LONG maxCells; ///< most of an axis
  LONG count[3]; ///< of each axis
};
GridPlan PlanGrid(const GrowingBox<LVector>& itemBox, const GrowingBox<LVector>& radiusBox);

/**
 * Builds the grid over data.items. FALSE when memory is refused: what was built stays attached until the next
 * clear. Without items nothing is built, TRUE.
 */
Bool BuildGrid(VoxelData& data);

} // namespace kelvra
