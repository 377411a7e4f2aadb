// What became of one file: values that everyone can ask, from the readers to the command line. Sentences for
// people are made of it once, at the end, see object/load/load_lines.h.
#pragma once

#include "cloud/reader_kind.h"
#include "cloud/source_record.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kelvra {

enum class LoadOutcome {
  kWhole,   // every point that was asked for is there
  kPartial, // points were loaded, but some are missing, or have values that cannot be true
  kEmpty,   // the file is sound but holds no point
  kRefused, // nothing could be loaded
  kStopped, // by the user; nothing of the file was loaded
};

// Why a load ended before the last point.
enum class LoadCut {
  kNone,
  kFileEnd,   // the file is shorter than its header promises
  kDamage,    // compressed points that do not decode
  kBudget,    // the point budget of the object
  kBlockCap,  // kMostBlockPoints
  kReadError, // of the disk or the network
  kNoMemory,
  kStopped, // by the user
  kDoubt,   // more points are announced than the bytes are likely to hold
};

enum class NoteSeverity { kInfo, kWarning, kError };

// Of the coordinates of a file.
enum class LengthUnit { kUnknown, kMetre, kFoot, kUsFoot, kDegree };

// A finding about the file, a sentence without the file's name and without a full stop.
struct LoadNote {
  NoteSeverity severity;
  std::string text;
};

// Counts are in points; those of text files are in lines, one point each. Each line or point that was read is
// counted once: read = kept + thinned + rejected + the three kinds of dropped ones.
struct LoadReport {
  std::string path;       // UTF-8
  bool fromScene = false; // these points came with a scene, long after they were read
  ReaderKind reader = kReaderNone;
  LoadOutcome outcome = LoadOutcome::kRefused;
  std::string refusal; // why nothing was loaded: a sentence as in LoadNote; empty where something was

  std::int64_t announced = 0; // by the file; 0 where it does not say
  std::int64_t available = 0; // in the file, as far as its checks and its reading showed
  std::int64_t read = 0;
  std::int64_t kept = 0;
  std::int64_t thinned = 0;                     // passed over to keep every n-th only
  std::int64_t rejected = 0, firstRejected = 0; // lines that are not points; number of the first, from 1
  struct Dropped {
    std::int64_t noData = 0;    // marked as such by their height
    std::int64_t notFinite = 0; // coordinates that are not finite 32-bit floats
    std::int64_t noMemory = 0;
  } dropped;

  LoadCut cut = LoadCut::kNone;
  std::string cutPlace; // where the file breaks off, a sentence as in LoadNote; may be empty

  std::int64_t everyNth = 1; // of the points or lines; the first one is kept
  double step = 0.0;         // distance of neighbouring stored coordinates where it is largest, file units
  unsigned epsg = 0;         // code of the coordinate system that the file names; 0 for none
  std::string crs;           // name of that system, if the file has one
  LengthUnit unit = LengthUnit::kUnknown;
  unsigned versionMajor = 0, versionMinor = 0; // LAS and LAZ
  int pointFormat = -1;                        // LAS and LAZ
  SourceBox box;                               // of the kept points
  std::vector<std::int64_t> classes;           // kept points by class, when asked for; else empty
  double seconds = 0.0;
  std::vector<LoadNote> notes;

  void Note(NoteSeverity severity, std::string text) { notes.push_back({severity, std::move(text)}); }
  void Refuse(std::string reason) {
    outcome = LoadOutcome::kRefused;
    refusal = std::move(reason);
  }
  void Stop() {
    outcome = LoadOutcome::kStopped;
    cut = LoadCut::kStopped;
  }
  // How many points would have been kept of a file that holds what it promises and loses none.
  std::int64_t Expected() const {
    return announced > 0 ? (announced - 1) / everyNth + 1 : kept + dropped.notFinite + dropped.noMemory;
  }
  // For a load that kept points: whole, or partial.
  void Conclude() {
    const bool lost = cut != LoadCut::kNone || dropped.notFinite > 0 || dropped.noMemory > 0;
    outcome = lost ? LoadOutcome::kPartial : LoadOutcome::kWhole;
  }
};

} // namespace kelvra
