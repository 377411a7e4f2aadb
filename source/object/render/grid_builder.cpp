// Building the grid: one pass over the items counts what each cell gets, a second one puts it there, and a
// third one, over the cells, groups what they got. All lists lie in one block, in the order of their places.
#include "object/render/cell_search.h"
#include "object/render/voxel_grid.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace kelvra {

namespace {

/** Items ahead whose places are fetched. */
constexpr LLONG kAhead = 16;
/** Cells with as many items or fewer are not grouped. */
constexpr ULONG kLeastGrouped = 16;

struct CellRange {
  LONG first[3], last[3];
};

class Builder {
public:
  explicit Builder(VoxelData& data) : data_(data) {}
  ~Builder() { GeFree(counts_); }
  Builder(const Builder&) = delete;
  Builder& operator=(const Builder&) = delete;

  Bool Build() {
    const GridPlan plan = PlanGrid(data_.itemBox, data_.radiusBox);
    const LLONG nodes = ((LLONG)plan.count[0] + 1) * ((LLONG)plan.count[1] + 1) * ((LLONG)plan.count[2] + 1);
    if (!data_.nodes.ResizeCleared(nodes) || !CreateRoot(plan)) return FALSE;
    counts_ = GeAllocType(ULONG, grid_->TableSize());
    if (!counts_) return FALSE;
    CountItems();
    grouped_ = ShouldGroup();
    if (!MakeLeaves()) return FALSE;
    GeFree(counts_);
    FillCells();
    if (data_.packed.numbers) GroupCells();
    return TRUE;
  }

private:
  Bool CreateRoot(const GridPlan& plan) {
    GridNode& root = data_.nodes.data[0];
    root.content = gNew NodeContent;
    if (!root.content) return FALSE;
    const LVector low = data_.itemBox.Min(), high = data_.itemBox.Max();
    grid_ = root.content->grid = gNew CellGrid;
    if (!grid_) return FALSE;
    grid_->nx = plan.count[0];
    grid_->ny = plan.count[1];
    grid_->nz = plan.count[2];
    for (LONG axis = 0; axis < 3; ++axis) {
      root.boxMin[axis] = low[axis];
      root.boxMax[axis] = high[axis];
      grid_->extent[axis] = high[axis] - low[axis];
      grid_->cellSize[axis] = grid_->extent[axis] / plan.count[axis];
      grid_->cellsPerUnit[axis] = plan.count[axis] / grid_->extent[axis];
    }
    const LLONG size = grid_->TableSize();
    grid_->cells = GeAllocTypeNC(ULONG, size);
    if (!grid_->cells) return FALSE;
    std::memset(grid_->cells, 0xFF, (std::size_t)size * sizeof(ULONG));
    root_ = &root;
    return TRUE;
  }

  /**
   * Cell number of a coordinate: truncated, at most the spare layer's whatever rounding does. 0 on an axis
   * without extent, where the place is not a number.
   */
  LONG Cell(LReal v, LONG axis) const {
    const LReal place = (v - root_->boxMin[axis]) * grid_->cellsPerUnit[axis];
    return place > 0.0 ? (LONG)std::min(place, (LReal)grid_->Count(axis)) : 0;
  }
  CellRange RangeOf(const RenderItem& item) const {
    CellRange range;
    for (LONG axis = 0; axis < 3; ++axis) {
      range.first[axis] = Cell(item.boxMin[axis], axis);
      range.last[axis] = Cell(item.boxMax[axis], axis);
    }
    return range;
  }

  /** Numbers the leaves in the order in which their cells get a first item. */
  void CountItems() {
    for (LLONG i = 0; i < data_.items.size; ++i) {
      if (i + kAhead < data_.items.size) Prefetch(&counts_[FirstPlace(data_.items.data[i + kAhead])], 1);
      const CellRange range = RangeOf(data_.items.data[i]);
      for (LONG z = range.first[2]; z <= range.last[2]; ++z)
        for (LONG y = range.first[1]; y <= range.last[1]; ++y)
          for (LONG x = range.first[0]; x <= range.last[0]; ++x) {
            const LLONG place = grid_->IndexOf(x, y, z);
            if (counts_[place]++ == 0) PlaceLeaf(place, x, y, z);
          }
    }
  }
  void PlaceLeaf(LLONG place, LONG x, LONG y, LONG z) {
    grid_->cells[place] = ++leafCount_;
    GridNode& leaf = data_.nodes.data[leafCount_];
    const LONG at[3] = {x, y, z};
    for (LONG axis = 0; axis < 3; ++axis) {
      leaf.boxMin[axis] = root_->boxMin[axis] + at[axis] * grid_->cellSize[axis];
      leaf.boxMax[axis] = leaf.boxMin[axis] + grid_->cellSize[axis];
    }
  }

  /**
   * Makes all leaves with room for what was counted. The lists get the capacities that appending item after
   * item would have led to.
   */
  Bool MakeLeaves() {
    const LLONG places = grid_->TableSize(), walked = (LLONG)grid_->nx * grid_->ny * grid_->nz;
    LeafPools& leaves = data_.leaves;
    PackedCells& packed = data_.packed;
    // Allocate what the leaves are made of.
    leaves.contents = GeAllocType(NodeContent, (LLONG)leafCount_ + 1);
    leaves.lists = GeAllocType(AutoBuffer<ULONG>, (LLONG)leafCount_ + 1);
    packed.spans = GeAllocTypeNC(CellSpan, places);
    packed.filled = GeAllocType(LULONG, places / 64 + 1);
    if (!leaves.contents || !leaves.lists || !packed.spans || !packed.filled) return FALSE;

    // Lay out the lists, place by place. Packed groups of four begin with each cell and exist only for places
    // that rays visit.
    LULONG numbers = 0, fours = 0;
    for (LLONG place = 0; place < places; ++place) {
      const ULONG count = counts_[place];
      CellSpan& span = packed.spans[place];
      span = {fours, numbers, count, 0};
      if (count == 0) continue;
      packed.filled[place >> 6] |= (LULONG)1 << (place & 63);
      LLONG capacity = kCellListGrowth;
      while (capacity < (LLONG)count) capacity *= 2;
      AutoBuffer<ULONG>& list = leaves.lists[grid_->cells[place]];
      list.capacity = capacity;
      list.growth = capacity * 2;
      list.count = list.size = count;
      numbers += (LULONG)capacity;
      if (place >= walked) continue;
      if (grouped_ && count > kLeastGrouped) {
        span.bounds = (span.Groups() + 7) / 8 * 2;
        mostGrouped_ = std::max(mostGrouped_, count);
      }
      fours += (LULONG)span.bounds + span.ItemFours();
    }

    // Allocate what the lists hold. Without room for the packed items rays do without them.
    leaves.numbers = GeAllocTypeNC(ULONG, numbers);
    if (!leaves.numbers) return FALSE;
    if (fours > 0 && fours <= packed.mostBytes / sizeof(PackedFour) && packed.AllocateFours(fours) &&
        mostGrouped_ > 0) {
      packed.numbers = GeAllocTypeNC(ULONG, fours * 4);
      if (!packed.numbers || !grouping_.Prepare(mostGrouped_)) packed.ClearFours();
    }
    Connect(places, walked);
    return TRUE;
  }
  /** Points leaves and nodes at their parts of the pools. */
  void Connect(LLONG places, LLONG walked) {
    LeafPools& leaves = data_.leaves;
    for (LLONG place = 0; place < places; ++place) {
      const ULONG leaf = grid_->cells[place];
      if (leaf == kNoNode) continue;
      const CellSpan& span = data_.packed.spans[place];
      leaves.lists[leaf].data = leaves.numbers + span.firstNumber;
      leaves.contents[leaf].items = &leaves.lists[leaf];
      data_.nodes.data[leaf].content = &leaves.contents[leaf];
      // The last four of a cell may have lanes that no item fills. Groups get theirs later.
      if (place < walked && data_.packed.fours && span.bounds == 0)
        MarkUnused(data_.packed.fours[span.firstFour + (span.count - 1) / 4]);
    }
  }

  /** Puts each item into the lists of all cells that its box overlaps, and packs it there for the walk. */
  void FillCells() {
    // Count again, from 0: now as the number of items that each list holds so far.
    PackedCells& packed = data_.packed;
    for (LLONG place = 0; place < grid_->TableSize(); ++place) packed.spans[place].count = 0;
    walked_ = (LLONG)grid_->nx * grid_->ny * grid_->nz;

    // Find how exact the centres of cells are: they are rounded like numbers of the size of the box's
    // coordinates.
    LReal farthest = 0.0;
    for (LONG axis = 0; axis < 3; ++axis)
      farthest = std::max(
          {farthest, std::abs(root_->boxMin[axis]), std::abs(root_->boxMin[axis] + grid_->extent[axis])});
    error_ = farthest * std::numeric_limits<LReal>::epsilon();

    // Find how large errors of items are that lie with their cell and whose radius is below 1. Where a hard
    // edge shows whatever is met, there is room for everything.
    packed.showing = data_.AnyHardEdge() ? kAllShow : (SReal)(CellErrors(1.0) * 1.00001);
    const LReal most = data_.LargestRadius();
    packed.mostReach = PackedReach(most, CellErrors(most) * 1.00001, kAllShow);

    const LLONG count = data_.items.size;
    for (LLONG i = 0; i < count; ++i) {
      // Neighbours in the file need not be neighbours in space: fetch what the next items go to.
      if (i + kAhead < count) Prefetch(&packed.spans[FirstPlace(data_.items.data[i + kAhead])], 1);
      if (i + kAhead / 2 < count) PrefetchLists(packed.spans[FirstPlace(data_.items.data[i + kAhead / 2])]);
      FillCellsOf((ULONG)i);
    }
  }
  void FillCellsOf(ULONG number) {
    const RenderItem& item = data_.items.data[number];
    const LVector centre = CentreOf(item);
    const CellRange range = RangeOf(item);
    if (range.last[0] >= grid_->nx || range.last[1] >= grid_->ny)
      AddFolded(number, data_.packed.foldedBoxes[range.last[0] >= grid_->nx ? 0 : 1]);
    const SReal reach = PackedReach(item.radius, CellErrors(item.radius), data_.packed.showing);
    for (LONG z = range.first[2]; z <= range.last[2]; ++z)
      for (LONG y = range.first[1]; y <= range.last[1]; ++y)
        for (LONG x = range.first[0]; x <= range.last[0]; ++x) {
          // Append the item's number to the cell's list. Rays visit no cell of the spare layer.
          const LLONG place = grid_->IndexOf(x, y, z);
          CellSpan& span = data_.packed.spans[place];
          const ULONG nth = span.count++;
          // The lanes behind it in its four get the number too: in a cell larger than any sensible cloud 32
          // bits cannot keep unused lanes from being met, and they must lead to an item then.
          ULONG* const numbers = data_.leaves.numbers + span.firstNumber;
          for (ULONG lane = nth; lane <= (nth | 3); ++lane) numbers[lane] = number;
          if (place >= walked_ || !data_.packed.fours) continue;

          // Pack it relative to the centre of the cell that rays know the place as: an item of a far face
          // lies with the cell that its own one shares the place with.
          if (x < grid_->nx && y < grid_->ny) {
            Pack(span, nth, centre - CentreOfCell(x, y, z), reach);
          } else {
            const LVector offset =
                centre - CentreOfCell((LONG)(place % grid_->nx), (LONG)(place / grid_->nx % grid_->ny),
                                      (LONG)(place / grid_->nx / grid_->ny));
            Pack(span, nth, offset,
                 PackedReach(item.radius, ReachErrors(offset, item.radius, error_), data_.packed.showing));
          }
        }
  }
  void Pack(const CellSpan& span, ULONG nth, const LVector& offset, SReal reach) {
    PackedFour& four = data_.packed.fours[span.firstFour + span.bounds + nth / 4];
    four.x[nth % 4] = (SReal)offset.x;
    four.y[nth % 4] = (SReal)offset.y;
    four.z[nth % 4] = (SReal)offset.z;
    four.reach[nth % 4] = reach;
  }
  /** At least the errors of an item that lies with its cell. */
  LReal CellErrors(LReal radius) const { return ReachErrors(HalfCell() + LVector(radius), radius, error_); }

  LLONG FirstPlace(const RenderItem& item) const {
    return grid_->IndexOf(Cell(item.boxMin[0], 0), Cell(item.boxMin[1], 1), Cell(item.boxMin[2], 2));
  }
  void PrefetchLists(const CellSpan& span) const {
    Prefetch(data_.leaves.numbers + span.firstNumber + span.count, 1);
    if (data_.packed.fours) Prefetch(data_.packed.fours + span.firstFour + span.bounds + span.count / 4, 1);
  }

  /** Notes an item that a cell far from it lists too. */
  void AddFolded(ULONG number, GrowingBox<LVector>& box) {
    PackedCells& packed = data_.packed;
    const RenderItem& item = data_.items.data[number];
    box.Add(LVector(item.boxMin[0], item.boxMin[1], item.boxMin[2]));
    box.Add(LVector(item.boxMax[0], item.boxMax[1], item.boxMax[2]));
    if (packed.foldedCount < PackedCells::kMostFolded) packed.folded[packed.foldedCount] = number;
    if (packed.foldedCount <= PackedCells::kMostFolded) ++packed.foldedCount;
  }

  /** Does a ray through a cell pass most of what it lists? Not where points are as large as cells. */
  Bool ShouldGroup() const {
    const LVector half = HalfCell();
    return std::sqrt(data_.LargestRadius()) < std::min({half.x, half.y, half.z});
  }
  void GroupCells() {
    const LVector half = HalfCell();
    const LLONG walked = (LLONG)grid_->nx * grid_->ny * grid_->nz;
    for (LLONG place = 0; place < walked; ++place) {
      const CellSpan& span = data_.packed.spans[place];
      if (span.bounds > 0) grouping_.Group(data_.packed, span, data_.leaves.numbers + span.firstNumber, half);
    }
  }
  LVector HalfCell() const {
    return LVector(grid_->cellSize[0], grid_->cellSize[1], grid_->cellSize[2]) * 0.5;
  }
  LVector CentreOfCell(LONG x, LONG y, LONG z) const {
    return LVector(root_->boxMin[0] + (x + 0.5) * grid_->cellSize[0],
                   root_->boxMin[1] + (y + 0.5) * grid_->cellSize[1],
                   root_->boxMin[2] + (z + 0.5) * grid_->cellSize[2]);
  }

  VoxelData& data_;
  const GridNode* root_ = NULL;
  CellGrid* grid_ = NULL;
  ULONG* counts_ = NULL; ///< by place: items so far
  ULONG leafCount_ = 0;
  LLONG walked_ = 0;  ///< places of cells that rays visit
  LReal error_ = 0.0; ///< of the centre of a cell
  Bool grouped_ = FALSE;
  ULONG mostGrouped_ = 0; ///< items in a cell with groups
  CellGrouping grouping_;
};

} // namespace

Bool BuildGrid(VoxelData& data) {
  data.ClearGrid();
  if (data.items.size == 0) return TRUE;
  for (LLONG i = 0; i < data.records.size; ++i) BoundFalloff(data.records.data[i]);
  if (Builder(data).Build()) return TRUE;
  data.packed.Clear(); // rays look here first: to them a grid without it is not there
  return FALSE;
}

} // namespace kelvra
