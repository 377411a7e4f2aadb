// Parts of the cell table. A build that takes one after the other writes to lists that are in the processor's
// cache, where items in no order would fetch another place from memory for each of their cells.
#pragma once

#include "object/render/voxel_grid.h"

#include <algorithm>

namespace kelvra {

/** The cells that an item's box overlaps: first and last on each axis. */
struct CellRange {
  LONG first[3], last[3];
};

/** Neighbouring rows of one layer of the cell table, or the whole table. */
struct GridSlab {
  static constexpr LONG kAllLayers = -1;

  LLONG firstPlace, endPlace;
  LONG layer;            ///< z, or kAllLayers
  LONG firstRow, endRow; ///< y
  const ULONG* items;    ///< numbers of the items that overlap it, ascending; NULL: all
  LLONG count;           ///< of them

  ULONG Item(LLONG i) const { return items ? items[i] : (ULONG)i; }
  Bool Contains(LLONG place) const { return place >= firstPlace && place < endPlace; }

  /**
   * Calls visit(row, x, lastX, y, z) for the cells of a range that lie here, z by z and y by y: those from x
   * to lastX, at the places row + x.
   */
  template <class Visit>
  void VisitRows(const CellGrid& grid, const CellRange& range, Visit visit) const {
    // Cells of the far faces share the places of later cells: (nx, y) that of (0, y + 1), and row ny those of
    // row 0 in the next layer. So a row or a layer before this one's may reach into it; places tell which of
    // them do.
    const Bool whole = layer == kAllLayers;
    const LONG firstZ = whole ? range.first[2] : std::max(range.first[2], layer - 1);
    const LONG lastZ = whole ? range.last[2] : std::min(range.last[2], layer);
    for (LONG z = firstZ; z <= lastZ; ++z) {
      const LONG firstY = std::max(range.first[1], whole ? 0 : (z == layer ? firstRow : grid.ny) - 1);
      const LONG lastY = std::min(range.last[1], whole || z != layer ? grid.ny : endRow - 1);
      for (LONG y = firstY; y <= lastY; ++y) {
        const LLONG row = grid.IndexOf(0, y, z);
        const LONG lastX = (LONG)std::min((LLONG)range.last[0], endPlace - 1 - row);
        const LONG firstX = (LONG)std::max((LLONG)range.first[0], firstPlace - row);
        if (firstX <= lastX) visit(row, firstX, lastX, y, z);
      }
    }
  }
};

/** The slabs of a table, in the order of their places. Begins as a single one with all items. */
class GridSlabs {
public:
  GridSlabs(const CellGrid& grid, LLONG items) : grid_(grid), items_(items) {}
  ~GridSlabs();
  GridSlabs(const GridSlabs&) = delete;
  GridSlabs& operator=(const GridSlabs&) = delete;

  /**
   * Divides the table into slabs of so many rows. `rangeOf(i)` is the CellRange of item i. Without memory for
   * the lists, of 4 bytes for each slab that an item overlaps, the table stays whole.
   */
  template <class RangeOf>
  void Divide(LONG rows, RangeOf rangeOf) {
    if (!Begin(rows)) return;
    for (LLONG i = 0; i < items_; ++i) VisitSlabs(rangeOf(i), [this](LLONG slab) { ++ends_[slab]; });
    if (!MakeLists()) return;
    for (LLONG i = 0; i < items_; ++i)
      VisitSlabs(rangeOf(i), [this, i](LLONG slab) { numbers_[ends_[slab]++] = (ULONG)i; });
  }

  LLONG Count() const { return count_; }
  GridSlab At(LLONG slab) const;

private:
  Bool Begin(LONG rows);
  /** Makes room for the lists: from how many items a slab has to where its list begins. */
  Bool MakeLists();
  void StayWhole();

  LLONG SlabOf(LONG y, LONG z) const { return (LLONG)z * perLayer_ + y / rows_; }
  template <class Visit>
  void VisitSlabs(const CellRange& range, Visit visit) const {
    LLONG next = 0;
    for (LONG z = range.first[2]; z <= range.last[2]; ++z) {
      // The last cell may share the place of one in the next row, and that row may be the next layer's first.
      const LONG lastRow = range.last[1] + (range.last[0] >= grid_.nx);
      const LLONG last = lastRow < grid_.ny ? SlabOf(lastRow, z) : SlabOf(lastRow - grid_.ny, z + 1);
      for (next = std::max(next, SlabOf(LMin(range.first[1], grid_.ny - 1), z)); next <= last; ++next)
        visit(next);
    }
  }

  const CellGrid& grid_;
  LLONG items_;
  LLONG count_ = 1;
  LONG rows_ = 0, perLayer_ = 0;
  LULONG* ends_ = NULL; ///< by slab: where the part of its list ends that is there
  ULONG* numbers_ = NULL;
};

} // namespace kelvra
