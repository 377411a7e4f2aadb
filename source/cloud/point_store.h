// The in-memory cloud of one object: groups of blocks of points.
#pragma once

#include "c4d.h"
#include "cloud/host_array.h"
#include "cloud/point_block.h"

namespace kelvra {

/** Blocks that one load command brought. */
struct PointGroup {
  GeDynamicArray<PointBlock> blocks;
  void Swap(PointGroup& other) noexcept { Exchange(blocks, other.blocks); }
  friend void swap(PointGroup& a, PointGroup& b) noexcept { a.Swap(b); }
  Bool Read(HyperFile* hf, LONG level);
  Bool Write(HyperFile* hf) const;
  Bool CopyTo(PointGroup& dest) const;
  Bool ShareTo(PointGroup& dest) const;
};

/** Owned by value by its object; holds no lock: the rules of the host for object data apply. */
class PointStore {
public:
  /** 1: the copy on the graphics card must be built again. */
  LONG uploadFlag = 0;
  GeDynamicArray<PointGroup> groups;

  Bool Read(HyperFile* hf, LONG level);
  Bool Write(HyperFile* hf) const;
  /** FALSE when a resize or an element fails; the blocks copied so far stay in dest, no empty one does. */
  Bool CopyTo(PointStore& dest) const;
  /** As CopyTo, but the blocks share the points; for copies that are kept on the main thread. */
  Bool ShareTo(PointStore& dest) const;

  /**
   * Takes the blocks of a group, not copies of them, as one new group at the end; empty blocks are dropped, a
   * store that holds one cannot be saved. FALSE when memory is refused: the points stay with the group.
   */
  Bool Merge(PointGroup& group);
  /** Takes one more block into the last group. FALSE when memory is refused: the points stay with the block.
   */
  Bool AddToLastGroup(PointBlock& block);

  /** Calls visit(block, number of its group) for each block in store order, until it returns FALSE. */
  template <class Visit>
  void VisitBlocks(Visit visit) const {
    for (VLONG g = 0; g < groups.GetCount(); ++g)
      for (VLONG b = 0; b < groups[g].blocks.GetCount(); ++b)
        if (!visit(groups[g].blocks[b], g)) return;
  }
  /**
   * Calls visit(block, points to take of it, points taken before it) for each block in store order, until
   * count points are taken. Returns the number taken.
   */
  template <class Visit>
  LONG VisitFirst(LONG count, Visit visit) const {
    LONG done = 0;
    VisitBlocks([&](const PointBlock& block, VLONG) {
      const LONG taken = LMin(block.count, count - done);
      if (taken > 0) {
        visit(block, taken, done);
        done += taken;
      }
      return done < count;
    });
    return done;
  }

  VLONG CountBlocks() const;
  /** Points in all blocks, at most 2^31 - 1. */
  LONG GetPointCount() const;
  /** First block in store order, NULL without one. */
  const PointBlock* GetFirstBlock() const;
  /** Header of the first block with this key: the rule of drawing, messages, conversion and rendering. */
  const PointHeader& HeaderFor(const PointBlock& block) const;

  /**
   * Writes up to count positions in display coordinates, in store order, and sets the box to theirs. Returns
   * the number written.
   */
  LONG ExportPositions(Vector* dest, LONG count, GrowingBox<Vector>* box, LReal size) const;
  /** Adds the box of all points in display coordinates; the mapping keeps corners corners. */
  void AddDisplayBox(GrowingBox<Vector>* box, LReal size) const;
  /**
   * Calls visit(position in display coordinates, red-green-blue as 16-bit values, number in the store) for up
   * to count points in store order, until it returns false.
   */
  template <class Visit>
  void VisitPoints(LONG count, LReal size, Visit visit) const {
    LONG number = 0;
    VisitBlocks([&](const PointBlock& block, VLONG) {
      const PointMapping mapping(HeaderFor(block), size);
      for (LONG i = 0; i < block.count && number < count; ++i, ++number)
        if (!visit(mapping.Map(block.positions + (VLONG)i * 3), block.attrib3 + (VLONG)i * 3, number))
          return false;
      return number < count;
    });
  }
  /** Writes up to count colours, each component 0 to 1. Returns the number written. */
  LONG ExportColors(Vector* dest, LONG count) const;
  /** Writes up to count records of six floats: position in display coordinates, colour 0 to 1. */
  LONG FillVertices(SReal* dest, LONG count, GrowingBox<Vector>* box, LReal size) const;
};

} // namespace kelvra
