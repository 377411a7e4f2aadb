// One run of points and everything needed to draw, render and persist them.
#pragma once

#include "c4d.h"
#include "cloud/growing_box.h"
#include "cloud/loader_settings.h"
#include "cloud/point_header.h"
#include "cloud/source_record.h"

#include <atomic>
#include <cmath>

namespace kelvra {

/** Index into PointBlock::reals. */
enum { kRealStepZ = 3 };

/** Bits of PointBlock::Finish. */
enum { kFinishRecomputeBox = 2 };

/** Of stored coordinates. Others are kept, but never shown. */
inline Bool IsFinitePoint(const SReal* p) {
  return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
}

/**
 * Owns its four arrays, which are all there with `count` points or all missing. Blocks that share arrays own
 * them together, and may be freed on any thread: nothing writes into the arrays of a block that is in a
 * store. Positions are x, height, y of the file (the host's axes: y up), as 32-bit floats. Main thread;
 * render threads may read. No member may hold an address inside the block: the host's arrays move blocks byte
 * by byte.
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
  /** As CopyTo, but the arrays are the same ones. */
  Bool ShareTo(PointBlock& dest) const;

  /** Gives a block that shares its arrays copies of its own, which may be written; FALSE without memory. */
  Bool OwnArrays();

  /** A count that a block can have, with all arrays. */
  Bool IsWhole() const;

  /** Shrinks the arrays to `count`; kFinishRecomputeBox makes the box from the finite points again.
   */
  void Finish(LONG flags);

  /** Number of points whose coordinates are not all finite; block and box stay as they are. */
  LONG CountNotFinite() const;
  /** Are the box's corners numbers that points can have? */
  Bool HasUsableBox() const;
  /** FALSE when a finite point lies outside the box, or the box is not usable. */
  Bool BoxHoldsPoints() const;

  /** Counts positions and bounds, absolute so far, from an origin in file axes. */
  void MoveTo(const LVector& origin);

  /** An empty block writes its count and then fails: it must never be left in a store that is saved. */
  Bool Write(HyperFile* hf) const;
  Bool Read(HyperFile* hf, LONG level);

  PointHeader header;
  /** Fit scale, aspect, object size at load, step of the file's z as slots 13 and 14 have those of x and y.
   */
  LReal reals[4];
  LoaderSettings settings;
  GrowingBox<Vector> box; ///< of the stored positions
  LONG count;
  SReal* positions = NULL; ///< 3 a point
  SReal* colors = NULL;    ///< 3 a point: second triple of the source
  UWORD* attrib3 = NULL;   ///< 3 a point: red, green, blue, 0 to 65535
  UWORD* attrib1 = NULL;   ///< 1 a point: flag of the source

private:
  void FreeArrays();
  void CopyDescription(PointBlock& dest) const;
  /** Number of blocks that have these arrays; NULL for this one alone. */
  mutable std::atomic<LONG>* owners_ = NULL;
};

} // namespace kelvra
