#include "object/load/load_command.h"

#include "cloud/local_origin.h"
#include "grouped_number.h"
#include "host_text.h"
#include "object/load/load_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <new>

namespace kelvra {

namespace {

/** How much higher than wide a cloud in degrees is at least. */
constexpr LReal kDegreeRatio = 20.0;
/** A cloud as wide as this and yet so high is no building. */
constexpr LReal kManyDegrees = 10.0;

/** Compares a path's suffix without regard to the case of ASCII letters; needs no memory of the host. */
bool HasSuffix(const std::string& path, const std::string& suffix) {
  if (path.size() <= suffix.size() || path[path.size() - suffix.size() - 1] != '.') return false;
  return std::equal(suffix.begin(), suffix.end(), path.end() - (std::ptrdiff_t)suffix.size(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? (char)(b + 32) : b); });
}

void LoadFile(const NamedFile& file, const LoadOptions& options, LoadedFile& loaded) {
  const bool las = HasSuffix(file.path, "las") || HasSuffix(file.path, "laz");
  const LONG bySuffix = las ? kReaderLas : HasSuffix(file.path, "pts") ? kReaderPts : kReaderXyz;
  const LONG reader = options.reader != kReaderNone ? options.reader : bySuffix;
  if (reader == kReaderLas)
    LoadLasFile(file.path, options, loaded);
  else
    LoadTextFile(file.name, file.path, reader == kReaderPts, options, loaded);
}

/** Distance between neighbouring stored coordinates where the cloud is farthest from its origin. */
double StoredStep(const PointBlock& block) {
  double farthest = 0.0;
  for (LONG axis = 0; axis < 3; ++axis)
    farthest = std::max({farthest, std::abs(block.box.min[axis]), std::abs(block.box.max[axis])});
  return FloatStep(farthest);
}

/** Says when storing costs more than the file's own step, and what to do about it. */
void NoteCoarseStep(const LoadedFile& loaded, Bool localOrigin, LoadReport& report) {
  if (report.step <= loaded.fileStep || loaded.choseOrigin) return;
  report.Note(NoteSeverity::kWarning,
              localOrigin
                  ? "the file lies far from the object's local origin and is stored coarsely: load it "
                    "separately, into an object of its own"
                  : "the file lies far from 0 and is stored coarsely: set Local Origin to Automatic "
                    "before the first load");
}

/** Horizontal degrees look like this: within their bounds, and far narrower than the heights in metres. */
bool LooksLikeDegrees(const LVector& low, const LVector& high) {
  if (low.x < -180.0 || high.x > 180.0 || low.y < -90.0 || high.y > 90.0) return false;
  const LReal width = std::max(high.x - low.x, high.y - low.y), height = high.z - low.z;
  if (width == 0.0 || height <= width * kDegreeRatio) return false;
  // A mast in coordinates of its own is as slender, but stands near their zero.
  const LReal distance = std::max(std::abs(low.x + high.x), std::abs(low.y + high.y)) / 2.0;
  return distance > width * kDegreeRatio || width > kManyDegrees;
}

void NoteDegrees(const LoaderSettings& settings, LoadReport& report) {
  if (LooksLikeDegrees(settings.boxMin, settings.boxMax))
    report.Note(NoteSeverity::kWarning,
                "x and y look like degrees beside heights in metres, so that the cloud "
                "stands like a wall: reproject it first");
}

/** A float holds such coordinates, but no view, renderer or survey has use for them. */
constexpr double kFarthestSensible = 1e15;

/** Says when coordinates are too large to be any. */
void NoteAbsurdExtent(const PointBlock& block, const LVector& origin, LoadReport& report) {
  const double zero[3] = {origin.x, origin.z, origin.y};
  for (LONG axis = 0; axis < 3; ++axis) {
    const double farthest =
        std::max(std::abs(block.box.min[axis] + zero[axis]), std::abs(block.box.max[axis] + zero[axis]));
    if (!(farthest > kFarthestSensible)) continue;
    char text[120];
    std::snprintf(text, sizeof text,
                  "coordinates reach %.3g, expected at most %.0g: look for a wrong column or line", farthest,
                  kFarthestSensible);
    report.Note(NoteSeverity::kError, text);
    report.outcome = LoadOutcome::kPartial;
    return;
  }
}

/** Loads the files of one command: the first block opens the command's group. */
class LoadCommand {
public:
  explicit LoadCommand(const LoadTarget& target) : target_(target) {}

  LoadReport Load(const NamedFile& file) {
    const LReal start = GeGetMilliSeconds();
    LoadedFile loaded;
    LoadOptions options = target_.options;
    options.choosesOrigin = options.localOrigin && target_.store.CountBlocks() == 0;
    options.origin = target_.origin;
    options.rampRange = target_.rampRange;
    loaded.choseOrigin = options.choosesOrigin;
    try {
      LoadFile(file, options, loaded);
    } catch (const std::bad_alloc&) {
      RefuseForMemory(loaded);
    }
    loaded.report.seconds = (GeGetMilliSeconds() - start) / 1000.0;
    if (loaded.block.count > 0) Take(loaded);
    return std::move(loaded.report);
  }

private:
  /** Moves the block to the end of the store. */
  void Take(LoadedFile& loaded) {
    PointBlock& block = loaded.block;
    loaded.report.step = StoredStep(block);
    NoteCoarseStep(loaded, target_.options.localOrigin, loaded.report);
    NoteDegrees(block.settings, loaded.report);
    NoteAbsurdExtent(block, loaded.origin, loaded.report);
    block.Finish(kFinishRecomputeBox);
    if (block.header.key > 1) block.Finish(kFinishRecomputeBox);
    if (!Merge(block)) return RefuseForMemory(loaded);
    target_.origin = loaded.origin;
    if (loaded.rampRange.valid) target_.rampRange = loaded.rampRange;
  }

  Bool Merge(PointBlock& block) {
    PointStore& store = target_.store;
    if (!recorded_) {
      target_.beforeChange();
      recorded_ = TRUE;
    }
    if (!opened_) {
      PointGroup group;
      if (!store.Merge(group)) return FALSE;
      opened_ = TRUE;
    }
    if (store.AddToLastGroup(block)) return TRUE;
    if (store.groups[store.groups.GetCount() - 1].blocks.GetCount() == 0) CloseEmptyGroup();
    return FALSE;
  }

  void CloseEmptyGroup() {
    target_.store.groups.Remove(target_.store.groups.GetCount() - 1);
    opened_ = FALSE;
  }

  const LoadTarget& target_;
  Bool recorded_ = FALSE; ///< beforeChange was called
  Bool opened_ = FALSE;   ///< the store's last group is this command's
};

void NoteFilesLeftOut(std::size_t count, LoadReport& report) {
  if (count == 0) return;
  report.Note(NoteSeverity::kWarning, count == 1 ? std::string("1 more file was not loaded")
                                                 : Grouped(count) + " more files were not loaded");
}

} // namespace

Bool UserStopped() {
  BaseThread* work = GeGetCurrentThread();
  return work && work->TestBreak();
}

void RefuseForMemory(LoadedFile& loaded) {
  loaded.block.Clear();
  loaded.report.kept = 0;
  loaded.report.outcome = LoadOutcome::kRefused;
  loaded.report.cut = LoadCut::kNoMemory;
}

void PrintLine(const std::string& path, const std::string& text) {
  GePrint(FromUtf8(path + ": " + text));
}

std::vector<NamedFile> FilesOf(const Filename& folder) {
  std::vector<NamedFile> files;
  AutoAlloc<BrowseFiles> browse;
  if (!browse) return files;
  browse->Init(folder, 0);
  while (browse->GetNext()) {
    const Filename name = browse->GetFilename();
    if (browse->IsDir() || browse->IsHidden() || name.CheckSuffix("lax") || name.CheckSuffix("wdp")) continue;
    const Filename full = folder + name;
    files.push_back({full, Utf8(full.GetString())});
  }
  std::sort(files.begin(), files.end(),
            [](const NamedFile& a, const NamedFile& b) { return a.path < b.path; });
  return files;
}

std::vector<LoadReport> LoadFiles(const std::vector<NamedFile>& files, const LoadTarget& target) {
  std::vector<LoadReport> reports;
  LoadCommand command(target);
  for (std::size_t i = 0; i < files.size(); ++i) {
    LoadReport report;
    if (UserStopped())
      report.Stop();
    else
      report = command.Load(files[i]);
    report.path = files[i].path;
    const bool stopped = report.outcome == LoadOutcome::kStopped;
    if (stopped) NoteFilesLeftOut(files.size() - i - 1, report);
    PrintLine(report.path, LoadLine(report));
    reports.push_back(std::move(report));
    if (stopped) break;
  }
  return reports;
}

namespace {

/** Can the cloud be placed by its bounds? Without a key it is not. */
Bool HasUsableBounds(const PointHeader& header) {
  return header.key == 0 ||
         std::all_of(header.slots + kSlotMaxY, header.slots + kSlotMaxHeight + 1,
                     [](LReal bound) { return std::abs(bound) <= std::numeric_limits<SReal>::max(); });
}

/** Makes the box again; says so when it has become another one. */
void RemakeBox(PointBlock& block, const char* finding, LoadReport& report) {
  const Vector low = block.box.Min(), high = block.box.Max();
  block.Finish(kFinishRecomputeBox);
  if (low != block.box.Min() || high != block.box.Max()) report.Note(NoteSeverity::kError, finding);
}

/** Checks one block of a scene. TRUE when something was wrong, which the report says then. */
Bool CheckBlock(PointBlock& block, LoadReport& report) {
  const LONG notFinite = block.CountNotFinite();
  if (notFinite > 0)
    report.Note(NoteSeverity::kError,
                Counted((std::uint64_t)notFinite, "point") + " without finite coordinates: never shown");
  if (!block.BoxHoldsPoints())
    RemakeBox(block, "the stored box does not hold the points and was made again", report);
  else if (notFinite > 0)
    RemakeBox(block, "the stored box is larger than the points and was made again", report);
  if (!HasUsableBounds(block.header)) {
    const Vector low = block.box.Min(), high = block.box.Max();
    block.header.SetBounds(LVector(low.x, low.z, low.y), LVector(high.x, high.z, high.y));
    report.Note(NoteSeverity::kError,
                "the stored bounds are not numbers and were made again from the points");
  }
  if (report.notes.empty()) return FALSE;
  report.path = Utf8(block.settings.name);
  report.fromScene = true;
  report.kept = report.read = block.count;
  report.outcome = LoadOutcome::kPartial;
  return TRUE;
}

} // namespace

std::vector<LoadReport> CheckStored(PointStore& store) {
  std::vector<LoadReport> reports;
  for (VLONG g = 0; g < store.groups.GetCount(); ++g)
    for (VLONG b = 0; b < store.groups[g].blocks.GetCount(); ++b) {
      LoadReport report;
      if (!CheckBlock(store.groups[g].blocks[b], report)) continue;
      PrintLine(report.path, LoadLine(report));
      reports.push_back(std::move(report));
    }
  return reports;
}

} // namespace kelvra
