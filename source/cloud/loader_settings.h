// How a block came to be: its file, the reader's settings and what the reader made of the file.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Values of LoaderSettings::Reader::kind. */
enum ReaderKind {
  kReaderNone = 0,
  kReaderLas = 1,        ///< LAS or LAZ with colours in the file
  kReaderLasByClass = 2, ///< LAS or LAZ without: coloured by classification
  kReaderXyz = 3,
  kReaderPts = 4
};

/** Saved with its block, as one version number and the fields in this order. */
struct LoaderSettings {
  String name;            ///< path of the source file
  LVector boxMin, boxMax; ///< source box, file axes, file units
  struct Reader {
    LONG kind = kReaderNone;
    LONG everyNth = 1;
    LONG budget = 0; ///< most points to keep, in millions; 0 where the reader has none
    LONG colorMultiplier = 1;
  } reader;
  struct Counts {
    LLONG read = 0, kept = 0, rejected = 0, dropped = 0;
  } counts;

  Bool Write(HyperFile* hf) const;
  /** A newer version than this build knows fails. */
  Bool Read(HyperFile* hf);
};

} // namespace kelvra
