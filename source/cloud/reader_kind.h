// The readers that turn files into points.
#pragma once

namespace kelvra {

/** Saved with each block: the numbers must not change. */
enum ReaderKind {
  kReaderNone = 0,
  kReaderLas = 1,        ///< LAS or LAZ with colours in the file
  kReaderLasByClass = 2, ///< LAS or LAZ without: coloured by classification
  kReaderXyz = 3,
  kReaderPts = 4
};

} // namespace kelvra
