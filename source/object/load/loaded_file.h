// One file on its way from disk to block.
#pragma once

#include "c4d.h"
#include "cloud/height_colors.h"
#include "cloud/load_report.h"
#include "cloud/point_block.h"

#include <string>

namespace kelvra {

/** Settings of the object that a load reads. */
struct LoadOptions {
  LReal size = 200.0;       ///< object size
  LLONG limit = 60000000;   ///< point budget; LAS and LAZ only
  LONG budget = 60;         ///< the same in millions, as set
  LONG everyNth = 1;        ///< at least 1; LAS and LAZ
  LONG everyNthLine = 1;    ///< the same of text
  Bool localOrigin = FALSE; ///< the object takes an origin from the first file that is loaded into it
  /** The same, and there is no point yet: the file gives the origin. Otherwise it counts from `origin`. */
  Bool choosesOrigin = FALSE;
  LVector origin;   ///< file axes
  LONG fitText = 0; ///< KELVRA_FIT_TEXT_OFF and so on; without effect when localOrigin is off
  LONG colorBy = 0; ///< KELVRA_LOAD_COLOR_FILE and so on
  RampSettings ramp;
  RampRange rampRange;         ///< of the points that are there; invalid where the file gives its own
  LONG reader = kReaderNone;   ///< for all files; kReaderNone: by suffix
  Bool countClasses = FALSE;   ///< for the report
  Bool refuseDoubtful = FALSE; ///< files that announce more points than their bytes are likely to hold
};

struct LoadedFile {
  PointBlock block;         ///< clear when nothing was loaded
  LoadReport report;        ///< all but the seconds
  LVector origin;           ///< that the block counts from
  Bool choseOrigin = FALSE; ///< the origin is this file's own choice
  LReal fileStep = 0.0;     ///< coarsest step of the file's coordinates
  RampRange rampRange;      ///< of the values that its colours stand for
};

/** Both fill the block, its header and its settings. `path` is UTF-8. */
void LoadLasFile(const std::string& path, const LoadOptions& options, LoadedFile& loaded);
void LoadTextFile(const Filename& name, const std::string& path, Bool pts, const LoadOptions& options,
                  LoadedFile& loaded);

/** Nothing of the file is loaded: memory was refused. */
void RefuseForMemory(LoadedFile& loaded);

/** TRUE once the user asked to stop. */
Bool UserStopped();

} // namespace kelvra
