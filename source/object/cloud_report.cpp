#include "object/cloud_report.h"

#include "cloud/file_coordinates.h"
#include "host_text.h"
#include "object/load/load_lines.h"

#include <algorithm>

namespace kelvra {

namespace {

constexpr LONG kReportVersion = 2;
/** Channel of points that the text readers give no colour: 1 of 255, stored with 16 bits. */
constexpr UWORD kDarkest = 257;

static_assert((LONG)LoadOutcome::kWhole == KELVRA_LOAD_WHOLE &&
                  (LONG)LoadOutcome::kPartial == KELVRA_LOAD_PARTIAL &&
                  (LONG)LoadOutcome::kEmpty == KELVRA_LOAD_EMPTY &&
                  (LONG)LoadOutcome::kRefused == KELVRA_LOAD_REFUSED &&
                  (LONG)LoadOutcome::kStopped == KELVRA_LOAD_STOPPED,
              "outcomes are handed out by number");
static_assert((LONG)LoadCut::kNone == KELVRA_CUT_NONE && (LONG)LoadCut::kFileEnd == KELVRA_CUT_FILE_END &&
                  (LONG)LoadCut::kDamage == KELVRA_CUT_DAMAGE &&
                  (LONG)LoadCut::kBudget == KELVRA_CUT_BUDGET && (LONG)LoadCut::kBlockCap == KELVRA_CUT_CAP &&
                  (LONG)LoadCut::kReadError == KELVRA_CUT_READ_ERROR &&
                  (LONG)LoadCut::kNoMemory == KELVRA_CUT_NO_MEMORY &&
                  (LONG)LoadCut::kStopped == KELVRA_CUT_STOPPED && (LONG)LoadCut::kDoubt == KELVRA_CUT_DOUBT,
              "reasons for a cut are handed out by number");
static_assert((LONG)LengthUnit::kUnknown == KELVRA_UNIT_UNKNOWN &&
                  (LONG)LengthUnit::kMetre == KELVRA_UNIT_METRE &&
                  (LONG)LengthUnit::kFoot == KELVRA_UNIT_FOOT &&
                  (LONG)LengthUnit::kUsFoot == KELVRA_UNIT_US_FOOT &&
                  (LONG)LengthUnit::kDegree == KELVRA_UNIT_DEGREE,
              "units are handed out by number");
static_assert((LONG)NoteSeverity::kInfo == KELVRA_NOTE_INFO &&
                  (LONG)NoteSeverity::kWarning == KELVRA_NOTE_WARNING &&
                  (LONG)NoteSeverity::kError == KELVRA_NOTE_ERROR,
              "severities are handed out by number");
static_assert((LONG)kReaderNone == KELVRA_READER_NONE && (LONG)kReaderLas == KELVRA_READER_LAS &&
                  (LONG)kReaderLasByClass == KELVRA_READER_LAS_BY_CLASS &&
                  (LONG)kReaderXyz == KELVRA_READER_XYZ && (LONG)kReaderPts == KELVRA_READER_PTS,
              "readers are handed out by number");

/** Do all points have the colour of the first one? */
bool HasOneColor(const PointBlock& block) {
  const UWORD* rgb = block.attrib3;
  for (VLONG i = 3; i < (VLONG)block.count * 3; ++i)
    if (rgb[i] != rgb[i - 3]) return false;
  return true;
}

/** Readers give points without colour a grey, and so does an intensity. */
bool IsGray(const UWORD* rgb) {
  return rgb[0] == rgb[1] && rgb[1] == rgb[2];
}

/** Stored order is x, height, y. */
LVector InFileAxes(const Vector& stored) {
  return LVector(stored.x, stored.z, stored.y);
}

} // namespace

const CHAR* CloudReporter::Keep(std::string text) {
  texts_.push_back(std::move(text));
  return texts_.back().c_str();
}

void CloudReporter::AddFile(const LoadReport& report) {
  std::vector<KelvraLoadNote> notes;
  for (const LoadNote& note : report.notes) notes.push_back({(LONG)note.severity, Keep(note.text)});
  notes_.push_back(std::move(notes));
  KelvraLoadReport file = {};
  file.path = Keep(report.path);
  file.line = Keep(LoadLine(report));
  file.reader = report.reader;
  file.outcome = (LONG)report.outcome;
  file.cut = (LONG)report.cut;
  file.announced = report.announced;
  file.available = report.available;
  file.read = report.read;
  file.kept = report.kept;
  file.thinned = report.thinned;
  file.rejected = report.rejected;
  file.firstRejected = report.firstRejected;
  file.noData = report.dropped.noData;
  file.notFinite = report.dropped.notFinite;
  file.noMemory = report.dropped.noMemory;
  file.everyNth = report.everyNth;
  file.step = report.step;
  file.epsg = (LONG)report.epsg;
  file.crs = Keep(report.crs);
  file.unit = (LONG)report.unit;
  file.versionMajor = (LONG)report.versionMajor;
  file.versionMinor = (LONG)report.versionMinor;
  file.pointFormat = report.pointFormat;
  file.min = VectorOf(report.box.min);
  file.max = VectorOf(report.box.max);
  classes_.emplace_back(report.classes.begin(), report.classes.end());
  file.classes = report.classes.empty() ? NULL : classes_.back().data();
  file.seconds = report.seconds;
  file.noteCount = (LONG)notes_.back().size();
  file.notes = notes_.back().data();
  files_.push_back(file);
}

void CloudReporter::AddBlock(const PointBlock& block, VLONG group, const PointMapping& mapping) {
  const bool oneColor = HasOneColor(block);
  KelvraBlockReport entry = {};
  entry.source = Keep(Utf8(block.settings.name));
  entry.group = (LONG)group;
  entry.points = block.count;
  entry.reader = block.settings.reader.kind;
  entry.hasBox = block.box.valid;
  entry.min = InFileAxes(block.box.min);
  entry.max = InFileAxes(block.box.max);
  GrowingBox<Vector> shown;
  for (const Vector& corner : {block.box.min, block.box.max}) {
    const SReal stored[3] = {(SReal)corner.x, (SReal)corner.y, (SReal)corner.z};
    shown.Add(mapping.Map(stored));
  }
  entry.shownMin = shown.min;
  entry.shownMax = shown.max;
  entry.fitted = !mapping.IsIdentity();
  entry.hasColor = (!oneColor || (block.count > 0 && !IsGray(block.attrib3))) &&
                   block.settings.reader.kind != kReaderLasByClass;
  entry.isBlack =
      oneColor && block.count > 0 && *std::max_element(block.attrib3, block.attrib3 + 3) <= kDarkest;
  blocks_.push_back(entry);
}

Bool CloudReporter::Fill(const PointStore& store, const std::vector<LoadReport>& reports, LReal size,
                         KelvraCloudReport& answer) {
  if (answer.version != kReportVersion) return FALSE;
  *this = CloudReporter();
  for (const LoadReport& report : reports) AddFile(report);
  if (!answer.filesOnly)
    store.VisitBlocks([&](const PointBlock& block, VLONG group) {
      AddBlock(block, group, PointMapping(store.HeaderFor(block), size));
      return true;
    });
  answer.fileCount = (LONG)files_.size();
  answer.files = files_.data();
  answer.groups = (LONG)store.groups.GetCount();
  answer.blockCount = (LONG)blocks_.size();
  answer.blocks = blocks_.data();
  return TRUE;
}

} // namespace kelvra
