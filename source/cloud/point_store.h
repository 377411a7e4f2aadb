// The in-memory cloud of one object: groups of blocks of points.
#pragma once

#include "c4d.h"
#include "cloud/point_block.h"
#include "ge_dynamicarray.h"

namespace kelvra {

/** Blocks that one load command brought. */
struct PointGroup {
  GeDynamicArray<PointBlock> blocks;
  Bool Read(HyperFile* hf, LONG level);
  Bool Write(HyperFile* hf) const;
  Bool CopyTo(PointGroup& dest) const;
};

/** Box that grows point by point. */
struct GrowingBox {
  Vector min, max;
  LONG valid;
  GrowingBox() { Reset(); }
  void Reset() {
    min = Vector(1.0e308);
    max = Vector(-1.0e308);
    valid = 0;
  }
  void Add(const Vector& p);
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

  /**
   * Takes the blocks of a group as one new group at the end; empty blocks are dropped, a store that holds one
   * cannot be saved. FALSE when memory is refused: the points stay with the group.
   */
  Bool Merge(PointGroup& group);

  /** Points in all blocks, at most 2^31 - 1. */
  LONG GetPointCount() const;
  /** First block in store order, NULL without one. */
  const PointBlock* GetFirstBlock() const;
  /** Header of the first block with this key: the rule of drawing, messages, conversion and rendering. */
  const PointHeader& HeaderFor(const PointBlock& block) const;

  /**
   * Writes up to count positions in display coordinates, in store order, and makes the box anew from them.
   * Returns the number written.
   */
  LONG ExportPositions(Vector* dest, LONG count, GrowingBox* box, LReal size) const;
  /** Adds the box of all points in display coordinates; the mapping keeps corners corners. */
  void AddDisplayBox(GrowingBox* box, LReal size) const;
  /**
   * Calls visit(position in display coordinates, red-green-blue as 16-bit values, number in the store) for up
   * to count points in store order, until it returns false.
   */
  template <class Visit>
  void VisitPoints(LONG count, LReal size, Visit visit) const {
    LONG number = 0;
    for (VLONG g = 0; g < groups.GetCount(); ++g)
      for (VLONG b = 0; b < groups[g].blocks.GetCount(); ++b) {
        const PointBlock& block = groups[g].blocks[b];
        const PointMapping mapping(HeaderFor(block), size);
        for (LONG i = 0; i < block.count && number < count; ++i, ++number)
          if (!visit(mapping.Map(block.positions + (VLONG)i * 3), block.attrib3 + (VLONG)i * 3, number))
            return;
      }
  }
  /** Writes up to count colours, each component 0 to 1. Returns the number written. */
  LONG ExportColors(Vector* dest, LONG count) const;
  /** Writes up to count records of six floats: position in display coordinates, colour 0 to 1. */
  LONG FillVertices(SReal* dest, LONG count, GrowingBox* box, LReal size) const;

private:
  template <class Visit>
  LONG ForEachBlock(LONG count, Visit visit) const;
};

} // namespace kelvra
