// Loading of files into a store.
#pragma once

#include "cloud/point_store.h"
#include "object/load/loaded_file.h"

#include <functional>
#include <vector>

namespace kelvra {

struct NamedFile {
  Filename name;
  std::string path; ///< UTF-8
};

/** Files of a folder by name in byte order: no folders, no hidden files, no index or waveform companions. */
std::vector<NamedFile> FilesOf(const Filename& folder);

/** What a load command needs of the object that it loads for. */
struct LoadTarget {
  PointStore& store;
  LoadOptions options;
  /** Counts the stored points; changes with the first file when the options ask for a local origin. */
  LVector& origin;
  /** Values that the colours of loaded points stand for; a later file keeps those of the first. */
  RampRange& rampRange;
  /** Called once before the store changes; the object records its undo step here. */
  std::function<void()> beforeChange;
};

/**
 * Loads the files: each becomes one block, and the command's blocks one group. Prints one line a file, which
 * starts with its path. What is loaded stays when a later file fails. When the user stops, nothing of the
 * current file is loaded, and the files after it are left out. Returns a report for each file up to there.
 */
std::vector<LoadReport> LoadFiles(const std::vector<NamedFile>& files, const LoadTarget& target);

/** Prints "path: text". */
void PrintLine(const std::string& path, const std::string& text);

/**
 * Looks at points that a scene brought. A box that its points contradict is made from them again. Prints and
 * returns a report for each block in which something was wrong.
 */
std::vector<LoadReport> CheckStored(PointStore& store);

} // namespace kelvra
