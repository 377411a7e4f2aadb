// What a point cloud object says that it holds.
#pragma once

#include "c4d.h"
#include "host/base/box.h"

#include <string>
#include <vector>

namespace cli {

/** The points of one file. */
struct BlockStats {
  LONG points = 0;
  host::Box box;         ///< stored coordinates, file axes: x east, y north, z up
  std::string source;    ///< path of the file; empty for points of another plug-in
  host::Box shown;       ///< in the object's coordinates and axes
  bool fitted = false;   ///< to the object's size
  bool hasColor = false; ///< from the file, and more than one grey
  bool isBlack = false;  ///< all points, or as dark as those without colours
};

struct CloudStats {
  LONG groups = 0;
  Vector origin; ///< stored coordinates plus this are those of the files
  std::vector<BlockStats> blocks;
  long long Points() const;
  host::Box Bounds() const;
  host::Box FileBounds() const { return Bounds().Moved(origin); }
  /** Distance of neighbouring stored coordinates where it is largest. */
  double Step() const;
  bool HasColor() const;
  bool IsBlack() const;
};

/** How loading a file turned out. Empty, Refused and Stopped gave no points. */
enum class FileOutcome { Whole, Partial, Empty, Refused, Stopped };

/** What a file says about itself. */
struct FileFacts {
  LONG reader = 0;                         ///< KELVRA_READER_...
  LONG versionMajor = 0, versionMinor = 0; ///< of LAS
  LONG pointFormat = -1;                   ///< of LAS
  std::string crs;
  LONG epsg = 0, unit = 0;        ///< KELVRA_UNIT_...
  host::Box box;                  ///< of the loaded points, the file's coordinates
  double step = 0;                ///< of stored coordinates
  std::vector<long long> classes; ///< empty unless they were counted
};

struct FileReport {
  std::string path;
  long long points = 0;
  std::string message; ///< the line printed for it, without the path
  FileOutcome outcome = FileOutcome::Refused;
  std::vector<std::string> details; ///< findings that the line leaves out
  LONG cut = 0;                     ///< KELVRA_CUT_...: why points are missing
  FileFacts facts;
  bool doubtful = false; ///< loaded, but with a warning that a user should not miss
  std::string strayIn;   ///< the folder that was loaded, for a file in it that is no point cloud
};

/** Of KELVRA_UNIT_...; empty where the file names none. */
std::string UnitName(LONG unit);

/** The coordinate system as the file names it, with its number; empty where it names none. */
std::string SystemName(const FileFacts& facts);

/** Asks an object of any kind. False when it is not a point cloud or could not answer. */
bool ReadCloudStats(BaseList2D* object, CloudStats* stats);

/** The files of a point cloud's last load command, in the order in which they were loaded. */
std::vector<FileReport> ReadFileReports(BaseList2D* cloud);

} // namespace cli
