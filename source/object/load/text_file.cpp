// XYZ and PTS text files through the driver, into a block.
#include "cloud/block_fill.h"
#include "cloud/file_coordinates.h"
#include "cloud/local_origin.h"
#include "grouped_number.h"
#include "host_text.h"
#include "object/load/attribute_colors.h"
#include "object/load/loaded_file.h"
#include "otallyframe.h"
#include "text/text_driver.h"

#include <algorithm>

namespace kelvra {

namespace {

/** Makes 16-bit colours of the 8-bit ones of text files. Scenes hold the products, so the factor must stay.
 */
constexpr LONG kTextColorMultiplier = 256;

/** "line 3 has", "12 lines (the first is line 3) have" */
std::string Have(const LineCount& lines) {
  const std::string first = "line " + std::to_string(lines.first);
  return lines.count == 1
             ? first + " has"
             : Counted((std::uint64_t)lines.count, "line") + " (the first is " + first + ") have";
}

/** Which separators were found where; empty without any. */
std::string SeparatorText(const OddLines& odd) {
  std::string text;
  const auto add = [&text](const LineCount& lines, const char* what) {
    if (lines.count > 0) text += (text.empty() ? "" : "; ") + Have(lines) + what;
  };
  add(odd.semicolons, " semicolons between the numbers, where blanks or tabs are expected");
  add(odd.commas, " commas between the numbers, where blanks or tabs are expected");
  add(odd.decimalCommas, " decimal commas, where decimal points are expected");
  return text;
}

/** What the reader takes otherwise than its author meant. */
void NoteOddLines(const OddLines& odd, LoadReport& report) {
  const auto note = [&report](std::string text) { report.Note(NoteSeverity::kWarning, std::move(text)); };
  if (odd.content)
    note("line " + std::to_string(odd.contentLine) + " announces " + odd.content +
         "; the first three numbers of each line are taken as x, y and z");
  if (odd.colors.count > 0)
    note(Have(odd.colors) +
         " colours with decimals, which are not read: whole numbers from 0 to 255 are expected");
  if (odd.intensities.count > 0)
    note(Have(odd.intensities) + " intensities with decimals, which are not read, nor are the colours behind "
                                 "them: whole numbers are expected");
  const std::string separators = SeparatorText(odd);
  if (report.kept > 0 && !separators.empty()) note(separators);
}

/** Why a file without points gave none. */
void Refuse(const TextResult& text, Bool pts, LoadReport& report) {
  const std::string first = text.firstLine.empty() ? "" : " (first line: \"" + text.firstLine + "\")";
  if (report.cut == LoadCut::kReadError) {
    report.Refuse("the file could not be read to its end");
  } else if (text.lines == 0) {
    report.Refuse("the file is empty");
    report.outcome = LoadOutcome::kEmpty;
  } else if (text.looksUtf16) {
    report.Refuse("no line holds a point: this looks like UTF-16 text, plain text is expected");
  } else if (text.noMemory > 0) {
    report.Refuse(std::string());
    report.cut = LoadCut::kNoMemory;
  } else if (text.noData + text.notFinite > 0 && text.rejected == 0) {
    report.Refuse("every point is marked as no data or is not a number");
    report.outcome = LoadOutcome::kEmpty;
  } else if (const std::string separators = SeparatorText(text.odd); !separators.empty()) {
    report.Refuse("no line holds a point: " + separators + first);
  } else {
    report.Refuse(std::string("no line holds a point: expected x y z") + (pts ? " intensity" : "") +
                  " in each line, then r g b where there is colour" + first);
  }
}

void FillReport(const TextResult& text, LoadReport& report) {
  report.available = report.read = text.lines;
  report.kept = text.count;
  report.box = text.box;
  report.thinned = text.thinned;
  report.rejected = text.rejected;
  report.firstRejected = text.firstRejected;
  report.dropped.noData = text.noData;
  report.dropped.notFinite = text.notFinite;
  report.dropped.noMemory = text.noMemory;
  if (text.full) report.cut = LoadCut::kBlockCap;
}

/** A cloud this many times as wide as the object is large counts as large. */
constexpr LReal kLargeFactor = 10.0;

bool Fits(const LoadOptions& options, const LVector& extent) {
  if (!options.localOrigin || options.fitText == KELVRA_FIT_TEXT_OFF) return false;
  return options.fitText == KELVRA_FIT_TEXT_ON || std::max(extent.x, extent.y) > options.size * kLargeFactor;
}

void FillDescription(const LoadOptions& options, const TextResult& text, const LoadReport& report,
                     PointBlock& block) {
  // The box of the text's points is also the header's. Without a key they are drawn as stored.
  const LVector low(block.box.min.x, block.box.min.z, block.box.min.y),
      high(block.box.max.x, block.box.max.z, block.box.max.y);
  block.header.SetBounds(low, high);
  // With a key the mapping fits the points, beside LAS clouds by the header of the object's first block.
  if (Fits(options, high - low)) block.header.key = 1;
  block.reals[0] = FitScale(block.header, options.size);
  block.reals[1] = high.x > low.x ? (high.y - low.y) / (high.x - low.x) : 0.0;
  block.reals[2] = options.size;
  LoaderSettings& settings = block.settings;
  settings.name = FromUtf8(report.path);
  settings.boxMin = VectorOf(text.box.min);
  settings.boxMax = VectorOf(text.box.max);
  settings.reader.kind = report.reader;
  settings.reader.everyNth = options.everyNthLine;
  settings.reader.colorMultiplier = kTextColorMultiplier;
  settings.counts.read = report.read;
  settings.counts.kept = report.kept;
  settings.counts.rejected = report.rejected;
  settings.counts.dropped = report.dropped.noData + report.dropped.notFinite + report.dropped.noMemory;
}

/** Takes the points from the result. */
void FillPoints(TextResult& text, const LoadOptions& options, LoadedFile& loaded) {
  const LReal step[3] = {kTextStep, kTextStep, kTextStep};
  loaded.origin = options.choosesOrigin ? ChooseOrigin(text.box, text.box, step) : options.origin;
  loaded.fileStep = kTextStep;
  const LasAttribute attribute = AttributeFor(options.colorBy);
  if (attribute == LasAttribute::kIntensity && loaded.report.reader == kReaderPts) {
    // The colours come from the records, which stay until they are made.
    if (!FillBlock(text.points, text.count, kTextColorMultiplier, loaded.origin, loaded.block))
      return RefuseForMemory(loaded);
    return ColorByAttribute(text.points, attribute, options, loaded);
  }
  const Bool filled =
      FillBlockAndFree(text.points, text.count, kTextColorMultiplier, loaded.origin, loaded.block);
  text.points = NULL;
  if (!filled) return RefuseForMemory(loaded);
  if (attribute != LasAttribute::kNone)
    loaded.report.Note(
        NoteSeverity::kWarning,
        "the file has no column that Color at Load asks for: its points keep the colours that it gives");
}

TextResult ReadText(BaseFile* file, Bool pts, const LoadOptions& options) {
  const TextLoader_XYZ xyz;
  const TextLoader_PTS ptsLoader;
  const TextLoader& loader = pts ? static_cast<const TextLoader&>(ptsLoader) : xyz;
  TextInput input;
  input.read = [file](char* buffer, std::size_t size) {
    const VLONG got = file->TryReadBytes(buffer, (VLONG)size);
    return got > 0 ? (std::size_t)got : 0;
  };
  input.fileSize = file->GetLength();
  input.everyNth = options.everyNthLine;
  input.reallocate = [](void* array, std::size_t bytes) -> void* {
    return array ? GeReallocNC(array, bytes) : GeAllocNC(bytes);
  };
  input.progress = [](int thousandths) {
    StatusSetBar(thousandths / 10);
    return UserStopped() == FALSE;
  };
  return LoadText(loader, input);
}

/** Frees the points of a result that nobody took, also when an exception ends the work. */
class PointsOwner {
public:
  explicit PointsOwner(TextResult& text) : text_(text) {}
  PointsOwner(const PointsOwner&) = delete;
  PointsOwner& operator=(const PointsOwner&) = delete;
  ~PointsOwner() { Free(); }

  void Free() const { GeFree(text_.points); }

private:
  TextResult& text_;
};

} // namespace

void LoadTextFile(const Filename& name, const std::string& path, Bool pts, const LoadOptions& options,
                  LoadedFile& loaded) {
  LoadReport& report = loaded.report;
  report.path = path;
  report.reader = pts ? kReaderPts : kReaderXyz;
  report.everyNth = options.everyNthLine;
  AutoAlloc<BaseFile> file;
  if (!file || !file->Open(name, FILEOPEN_READ, FILEDIALOG_NONE)) {
    report.Refuse("the file could not be opened");
    return;
  }
  TextResult text = ReadText(file, pts, options);
  const PointsOwner owner(text);
  const Bool readFailed = file->GetError() != FILEERROR_NONE;
  file->Close();
  StatusClear();

  FillReport(text, report);
  if (readFailed) report.cut = LoadCut::kReadError;
  if (text.stopped)
    report.Stop();
  else if (text.count < 1)
    Refuse(text, pts, report);
  else
    FillPoints(text, options, loaded);
  owner.Free();
  NoteOddLines(text.odd, report);
  if (loaded.block.count < 1) {
    report.kept = 0;
    return;
  }
  FillDescription(options, text, report, loaded.block);
  report.Conclude();
}

} // namespace kelvra
