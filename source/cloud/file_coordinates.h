// From stored positions back to the coordinates of the file.
#pragma once

#include "c4d.h"
#include "cloud/point_block.h"
#include "cloud/source_record.h"

namespace kelvra {

/** One axis of one block. */
class FileAxis {
public:
  FileAxis() {}
  /** step: of the file's coordinates; 0 where it is not known. */
  FileAxis(LReal origin, LReal step);
  /** The file's coordinate, rounded as Write writes it. */
  LReal At(SReal stored) const;
  /**
   * With a step: as many decimals as the step has. Without: the shortest decimal that would be stored as the
   * same float again. At most kMostNumberChars characters; returns the end.
   */
  CHAR* Write(CHAR* to, SReal stored) const;

private:
  LONG DecimalsFor(SReal stored) const;

  LReal origin_ = 0.0;
  LONG decimals_ = -1; ///< of every coordinate; -1: of each as many as it takes
};

inline LVector VectorOf(const SourcePoint& point) {
  return LVector(point[0], point[1], point[2]);
}

/** The three axes of one block, in the order of the file. */
struct FileCoordinates {
  /** useSteps: round to the steps that the block knows. */
  FileCoordinates(const PointBlock& block, const LVector& origin, Bool useSteps);
  LVector At(const SReal* stored) const { return LVector(x.At(stored[0]), y.At(stored[2]), z.At(stored[1])); }
  FileAxis x, y, z;
};

/**
 * The step to write a LAS file's coordinates with: that of the file, or a tenth of it where the offset is not
 * a multiple of the step, so that rounding never passes half a step.
 */
LReal WritingStep(LReal scale, LReal offset);

} // namespace kelvra
