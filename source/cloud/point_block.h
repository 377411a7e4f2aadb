// One run of points and everything needed to draw, render and persist them.
#pragma once

#include "c4d.h"
#include "cloud/growing_box.h"
#include "cloud/loader_settings.h"
#include "cloud/point_header.h"
#include "cloud/source_record.h"

namespace kelvra {

/** Bits of PointBlock::Finish. */
enum { kFinishRecomputeBox = 2 };

/**
 * Owns its four arrays, which are all there with `count` points or all missing. Positions are x, height, y of
 * the file (the host's axes: y up), as 32-bit floats. Main thread; render threads may read. No member may
 * hold an address inside the block: the host's arrays move blocks byte by byte.
 */
struct PointBlock {
  PointBlock() { Clear(); }
  ~PointBlock() { Clear(); }
  PointBlock(const PointBlock& src) : PointBlock() { src.CopyTo(*this); }
  PointBlock& operator=(const PointBlock& src) {
    if (this != &src) src.CopyTo(*this);
    return *this;
  }
  /** Exchanges everything, the arrays without a copy. */
  void Swap(PointBlock& other) noexcept;
  friend void swap(PointBlock& a, PointBlock& b) noexcept { a.Swap(b); }

  /** Frees the arrays and resets everything else. Returns 0. */
  LONG Clear();
  /** Arrays for n points, contents undefined; FALSE, with the block clear, when any of the four is refused.
   */
  Bool Allocate(LONG n);
  /** Deep copy; FALSE, with dest clear, when memory is refused. A clear block copies too. */
  Bool CopyTo(PointBlock& dest) const;

  /** Shrinks the arrays to `count`; kFinishRecomputeBox makes the box from the points again. */
  void Finish(LONG flags);

  /** An empty block writes its count and then fails: it must never be left in a store that is saved. */
  Bool Write(HyperFile* hf) const;
  Bool Read(HyperFile* hf, LONG level);

  PointHeader header;
  /** Fit scale, aspect, object size at load, 0. */
  LReal reals[4];
  LoaderSettings settings;
  GrowingBox box; ///< of the stored positions
  LONG count;
  SReal* positions = NULL; ///< 3 a point
  SReal* colors = NULL;    ///< 3 a point: second triple of the source
  UWORD* attrib3 = NULL;   ///< 3 a point: red, green, blue, 0 to 65535
  UWORD* attrib1 = NULL;   ///< 1 a point: flag of the source
};

} // namespace kelvra
