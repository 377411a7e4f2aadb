// How a block came to be: its file, the reader's settings and what the reader made of the file.
#pragma once

#include "c4d.h"
#include "cloud/reader_kind.h"

namespace kelvra {

/** Saved with its block, as one version number and the fields in this order. */
struct LoaderSettings {
  String name;            ///< path of the source file
  LVector boxMin, boxMax; ///< source box, file axes, file units
  struct Reader {
    LONG kind = kReaderNone; ///< a ReaderKind
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
