// One file on its way from disk to block.
#pragma once

#include "c4d.h"
#include "cloud/load_report.h"
#include "cloud/point_block.h"

#include <string>

namespace kelvra {

/** Settings of the object that a load reads. */
struct LoadOptions {
  LReal size = 200.0;     ///< object size
  LLONG limit = 60000000; ///< point budget; LAS and LAZ only
  LONG budget = 60;       ///< the same in millions, as set
  LONG everyNth = 1;      ///< at least 1; LAS and LAZ
  LONG everyNthLine = 1;  ///< the same of text
};

struct LoadedFile {
  PointBlock block;  ///< clear when nothing was loaded
  LoadReport report; ///< all but the seconds
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
