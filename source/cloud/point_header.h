// The georeference header of a block, and how it maps stored positions to where they are shown.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Numbers of the header's slots. Persisted are 7 to 14; the display extents are computed where they are
 * used. */
enum HeaderSlot {
  kSlotOffsetX = 1,
  kSlotOffsetZ = 3,
  kSlotExtentX = 4,
  kSlotExtentZ = 5,
  kSlotMaxY = 7, ///< source y, which is the host's z
  kSlotMinX = 8,
  kSlotMinY = 9,
  kSlotMaxX = 10,
  kSlotMinHeight = 11, ///< source z, which is the host's y
  kSlotMaxHeight = 12,
  kSlotStepX = 13, ///< step of the file's x, 0 where it is not known; only in clouds with a local origin
  kSlotStepY = 14,
  kSlotScaleHeight = 15,
  kFirstSavedSlot = 7,
  kLastSavedSlot = 14,
  kHeaderSlots = 16
};

/** Sixteen slots and the key; key 0 means that positions are shown as they are stored. */
struct PointHeader {
  LReal slots[kHeaderSlots];
  UWORD key;
  PointHeader() { Clear(); }
  void Clear();
  /** Bounds of the source in file axes, counted from the local origin like the stored positions. */
  void SetBounds(const LVector& low, const LVector& high);
};

/**
 * Size of the display per unit of the source: size / width in x; where that is 0, in y; then in z; then 1.
 * Always finite.
 */
LReal FitScale(const PointHeader& header, LReal size);

/**
 * One axis: (v - low) / (high - low) * extent + offset, computed in this order so that every part of the
 * system gets the same bits. A source range without width maps every 32-bit float to the middle.
 */
struct AxisMap {
  LReal low = 0.0, range = 1.0, extent = 0.0, offset = 0.0;
  AxisMap() {}
  AxisMap(LReal lowest, LReal width, LReal displayExtent, LReal displayOffset);
  LReal Map(LReal v) const { return (v - low) / range * extent + offset; }
};

/**
 * The mapping of one block at one object size, prepared once per block. Height maps with the fit scale from
 * the lowest point up: y' = (y - slot 11) * slot 15. Finite positions map to finite ones, whatever
 * the header holds.
 */
class PointMapping {
public:
  /** Without a key every position stays as it is. */
  PointMapping(const PointHeader& header, LReal size);
  /** Stored (x, height, y) to display coordinates (x, up, north). */
  Vector Map(const SReal* p) const { return mapped_ ? MapFitted(p) : Vector(p[0], p[1], p[2]); }
  /** The same for loops that asked IsIdentity before. */
  Vector MapFitted(const SReal* p) const {
    return Vector(x_.Map(p[0]), ((LReal)p[1] - lowest_) * scale_, z_.Map(p[2]));
  }
  bool IsIdentity() const { return !mapped_; }
  /** Header with the computed slots filled in. */
  static PointHeader Fitted(const PointHeader& header, LReal size);

private:
  bool mapped_;
  AxisMap x_, z_;
  LReal lowest_, scale_;
};

} // namespace kelvra
