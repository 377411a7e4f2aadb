// One file on its way from disk to block.
#pragma once

#include "c4d.h"
#include "cloud/point_block.h"

#include <string>
#include <vector>

namespace kelvra {

/** The object's settings that a load reads. */
struct LoadOptions {
  LReal size = 200.0;     ///< object size
  LLONG limit = 60000000; ///< point budget; LAS and LAZ only
  LONG budget = 60;       ///< the same in millions, as set
  LONG everyNth = 1;
};

/** What became of a file. */
struct LoadedFile {
  PointBlock block;               ///< clear when nothing was loaded
  std::vector<std::string> notes; ///< lines for the console after the file's own, in order
  std::string refusal;  ///< why nothing was loaded, after the path; empty when something was, or stopped
  std::string detail;   ///< added to the summary line: rejected lines, dropped points
  LLONG announced = 0;  ///< points that the file promises; 0 where it does not say
  bool partial = false; ///< fewer points than announced
  bool stopped = false; ///< by the user
  LONG geoKeyCode = 0;  ///< coordinate system found, 0 for none
};

/** The refusal of a file that the host has no memory for. */
const char* const kNoMemory = "not enough memory for its points; nothing of it was loaded";

/** Both fill the block and its header; neither throws. `path` is UTF-8. */
void LoadLasFile(const std::string& path, const LoadOptions& options, LoadedFile& loaded);
void LoadTextFile(const Filename& name, const std::string& path, Bool pts, const LoadOptions& options,
                  LoadedFile& loaded);

/** True once the user asked to stop. */
bool UserStopped();
/** "Loading : 5 of 10" and the bar. */
void ShowLoading(LLONG index, LLONG total, LONG percent);
/** 1234567 as "1,234,567". */
std::string Grouped(LLONG number);

} // namespace kelvra
