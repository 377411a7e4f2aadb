// Building the grid: one pass over the items counts what each cell gets, a second one puts it there, and a
// third one, over the cells, groups what they got. All lists lie in one block, in the order of their places.
// Where items overlap many cells, both passes go slab by slab.
#include "object/render/cell_search.h"
#include "object/render/grid_slabs.h"

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

/** Cells of an item from which on slabs are worth their lists. */
constexpr LReal kManyCells = 6.0;
/** Bytes of a slab's lists: a part of the processor's second cache. */
constexpr LReal kSlabBytes = 1 << 19;

class Builder {
public:
  explicit Builder(VoxelData& data) : data_(data) {}
  ~Builder() {
    GeFree(counts_);
    GeFree(firstItems_);
  }
  Builder(const Builder&) = delete;
  Builder& operator=(const Builder&) = delete;

  Bool Build() {
    const GridPlan plan = PlanGrid(data_.itemBox, data_.radiusBox);
    const LLONG nodes = ((LLONG)plan.count[0] + 1) * ((LLONG)plan.count[1] + 1) * ((LLONG)plan.count[2] + 1);
    if (!data_.nodes.ResizeCleared(nodes) || !CreateRoot(plan)) return FALSE;
    counts_ = GeAllocType(ULONG, grid_->TableSize());
    firstItems_ = GeAllocTypeNC(ULONG, grid_->TableSize());
    if (!counts_ || !firstItems_) return FALSE;
    GridSlabs slabs(*grid_, data_.items.size);
    Divide(slabs);
    for (LLONG slab = 0; slab < slabs.Count(); ++slab) CountItems(slabs.At(slab));
    if (!NumberLeaves()) return FALSE;
    GeFree(firstItems_);
    grouped_ = ShouldGroup();
    if (!MakeLeaves()) return FALSE;
    GeFree(counts_);
    PrepareCells();
    for (LLONG slab = 0; slab < slabs.Count(); ++slab) FillCells(slabs.At(slab));
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

  void Divide(GridSlabs& slabs) const {
    LReal cells = 1.0, places = 1.0; // of an item, and of the grid
    for (LONG axis = 0; axis < 3; ++axis) {
      cells *= 1.0 + 2.0 * data_.LargestRadius() * grid_->cellsPerUnit[axis];
      places *= grid_->Count(axis);
    }
    if (!(cells >= kManyCells)) return;
    const LReal inCell = cells * data_.items.size / places;
    const LReal rowBytes = grid_->nx * (inCell * (sizeof(PackedFour) / 4 + sizeof(ULONG)) + sizeof(CellSpan));
    slabs.Divide((LONG)FCut(kSlabBytes / rowBytes, 0.0, (LReal)grid_->ny),
                 [this](LLONG i) { return RangeOf(data_.items.data[i]); });
  }

  /** Counts the items of each place, and notes the first of them. */
  void CountItems(const GridSlab& slab) {
    ULONG *const counts = counts_, *const firstItems = firstItems_;
    for (LLONG i = 0; i < slab.count; ++i) {
      if (i + kAhead < slab.count) PrefetchFor(slab, i + kAhead);
      const ULONG number = slab.Item(i);
      slab.VisitRows(*grid_, RangeOf(data_.items.data[number]),
                     [=](LLONG row, LONG x, LONG lastX, LONG, LONG) {
                       for (LLONG place = row + x; place <= row + lastX; ++place)
                         if (counts[place]++ == 0) firstItems[place] = number;
                     });
    }
  }
  /** Fetches what counting will need: an item of a slab, or where the next item of all goes to. */
  void PrefetchFor(const GridSlab& slab, LLONG i) const {
    const RenderItem& item = data_.items.data[slab.Item(i)];
    if (slab.items)
      Prefetch(&item, 2);
    else
      Prefetch(&counts_[FirstPlace(item)], 1);
  }

  /**
   * Numbers the leaves in the order in which items take first places, and those of one item by place. FALSE
   * when memory is refused.
   */
  Bool NumberLeaves() {
    const LLONG places = grid_->TableSize(), items = data_.items.size;
    ULONG* before = GeAllocType(ULONG, items + 1); // leaves whose first items come before an item
    if (!before) return FALSE;
    for (LLONG place = 0; place < places; ++place)
      if (counts_[place] > 0) ++before[firstItems_[place] + 1];
    for (LLONG i = 0; i < items; ++i) before[i + 1] += before[i];
    leafCount_ = before[items];
    for (LLONG place = 0; place < places; ++place)
      if (counts_[place] > 0) PlaceLeaf(place, ++before[firstItems_[place]]);
    GeFree(before);
    return TRUE;
  }
  void PlaceLeaf(LLONG place, ULONG number) {
    grid_->cells[place] = number;
    // A place that two cells share is where its first item found it first.
    const LONG row = (LONG)(place / grid_->nx % grid_->ny);
    const GridSlab alone = {place, place + 1, (LONG)(place / grid_->nx / grid_->ny), row, row + 1, NULL, 0};
    LONG at[3] = {-1, 0, 0};
    alone.VisitRows(*grid_, RangeOf(data_.items.data[firstItems_[place]]),
                    [&at](LLONG, LONG x, LONG, LONG y, LONG z) {
                      if (at[0] >= 0) return;
                      at[0] = x;
                      at[1] = y;
                      at[2] = z;
                    });
    GridNode& leaf = data_.nodes.data[number];
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

  /** Before the first cell is filled. */
  void PrepareCells() {
    // Count again, from 0: now as the number of items that each list holds so far.
    PackedCells& packed = data_.packed;
    for (LLONG place = 0; place < grid_->TableSize(); ++place) packed.spans[place].count = 0;
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
  }
  /** Puts each item into the lists of all cells that its box overlaps, and packs it there for the walk. */
  void FillCells(const GridSlab& slab) {
    for (LLONG i = 0; i < slab.count; ++i) {
      if (slab.items) {
        if (i + kAhead < slab.count) Prefetch(&data_.items.data[slab.items[i + kAhead]], 2);
      } else {
        // Neighbours in the file need not be neighbours in space: fetch what the next items go to.
        if (i + kAhead < slab.count)
          Prefetch(&data_.packed.spans[FirstPlace(data_.items.data[i + kAhead])], 1);
        if (i + kAhead / 2 < slab.count)
          PrefetchLists(data_.packed.spans[FirstPlace(data_.items.data[i + kAhead / 2])]);
      }
      FillCellsOf(slab.Item(i), slab);
    }
  }
  void FillCellsOf(ULONG number, const GridSlab& slab) {
    const RenderItem& item = data_.items.data[number];
    const LVector centre = CentreOf(item);
    const CellRange range = RangeOf(item);
    if ((range.last[0] >= grid_->nx || range.last[1] >= grid_->ny) && slab.Contains(FirstPlace(item)))
      AddFolded(number, data_.packed.foldedBoxes[range.last[0] >= grid_->nx ? 0 : 1]);
    const SReal reach = PackedReach(item.radius, CellErrors(item.radius), data_.packed.showing);
    slab.VisitRows(*grid_, range, [&](LLONG row, LONG x, LONG lastX, LONG y, LONG z) {
      const LONG lastInside = y < grid_->ny ? LMin(lastX, grid_->nx - 1) : x - 1;
      const LVector offset = centre - CentreOfCell(x, y, z);
      AppendInside(number, row, x, lastInside, z < grid_->nz, centre.x, offset, reach);
      for (x = lastInside + 1; x <= lastX; ++x) AppendFolded(number, row + x, centre, item.radius);
    });
  }
  /**
   * Appends an item to the lists of cells in a row. Where rays visit them, packs it relative to their
   * centres: at `centreX` in space, and as far from the first of them as `offset` on the other axes.
   */
  void AppendInside(ULONG number, LLONG row, LONG x, LONG lastX, Bool walked, LReal centreX,
                    const LVector& offset, SReal reach) {
    CellSpan* const spans = data_.packed.spans + row;
    ULONG* const numbers = data_.leaves.numbers;
    PackedFour* const fours = walked ? data_.packed.fours : NULL;
    const LReal size = grid_->cellSize[0], low = root_->boxMin[0];
    const SReal offsetY = (SReal)offset.y, offsetZ = (SReal)offset.z;
    for (; x <= lastX; ++x) {
      CellSpan& span = spans[x];
      const ULONG nth = span.count++;
      numbers[span.firstNumber + nth] = number;
      if (fours)
        Pack(fours[span.firstFour + span.bounds + nth / 4], nth % 4,
             (SReal)(centreX - (low + (x + 0.5) * size)), offsetY, offsetZ, reach);
    }
  }
  /** The same for a cell of a far face: the item lies with the cell that shares its place. */
  void AppendFolded(ULONG number, LLONG place, const LVector& centre, LReal radius) {
    CellSpan& span = data_.packed.spans[place];
    const ULONG nth = span.count++;
    data_.leaves.numbers[span.firstNumber + nth] = number;
    if (place >= (LLONG)grid_->nx * grid_->ny * grid_->nz || !data_.packed.fours) return;
    const LVector offset =
        centre - CentreOfCell((LONG)(place % grid_->nx), (LONG)(place / grid_->nx % grid_->ny),
                              (LONG)(place / grid_->nx / grid_->ny));
    Pack(data_.packed.fours[span.firstFour + span.bounds + nth / 4], nth % 4, (SReal)offset.x,
         (SReal)offset.y, (SReal)offset.z,
         PackedReach(radius, ReachErrors(offset, radius, error_), data_.packed.showing));
  }
  static void Pack(PackedFour& four, ULONG lane, SReal x, SReal y, SReal z, SReal reach) {
    four.x[lane] = x;
    four.y[lane] = y;
    four.z[lane] = z;
    four.reach[lane] = reach;
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
  ULONG* counts_ = NULL;     ///< by place: items so far
  ULONG* firstItems_ = NULL; ///< by place, where there are any
  ULONG leafCount_ = 0;
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
