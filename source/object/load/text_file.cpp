// XYZ and PTS text files through the driver, into a block.
#include "cloud/block_fill.h"
#include "object/load/loaded_file.h"
#include "text/text_driver.h"

namespace kelvra {

namespace {

/** 8-bit colours of text files become 16-bit ones; LAS colours are widened by 255 instead, deliberately. */
const LONG kTextColorMultiplier = 256;

std::string Reason(const TextResult& text, Bool pts) {
  if (text.lines == 0) return "the file is empty";
  if (text.looksUtf16) return "no line holds a point: this looks like UTF-16 text, plain text is expected";
  if (text.noMemory > 0) return kNoMemory;
  if (text.noData + text.notFinite > 0 && text.rejected == 0)
    return "every point is marked as no data or is no number";
  const std::string first = text.firstLine.empty() ? "" : " (first line: \"" + text.firstLine + "\")";
  if (text.firstLine.find(',') != std::string::npos || text.firstLine.find(';') != std::string::npos)
    return "no line holds a point: fields are expected to be separated by blanks or tabs, not by commas" +
           first;
  return std::string("no line holds a point: expected x y z") + (pts ? " intensity" : "") +
         " in each line, then r g b where there is colour" + first;
}

std::string Detail(const TextResult& text) {
  std::string detail;
  const auto add = [&](LLONG count, const std::string& what) {
    if (count > 0) detail += (detail.empty() ? "" : ", ") + Grouped(count) + what;
  };
  add(text.rejected, text.rejected == 1
                         ? " line rejected (line " + std::to_string(text.firstRejected) + ")"
                         : " lines rejected (the first is line " + std::to_string(text.firstRejected) + ")");
  add(text.noData, " points without data dropped");
  add(text.notFinite, " points without finite coordinates dropped");
  add(text.noMemory, " points dropped for want of memory");
  return detail;
}

void FillDescription(const std::string& path, Bool pts, const LoadOptions& options, const TextResult& text,
                     PointBlock& block) {
  // The box of the text's points is also the header's: key 0, drawn as read.
  const LVector low(block.bboxMin.x, block.bboxMin.z, block.bboxMin.y),
      high(block.bboxMax.x, block.bboxMax.z, block.bboxMax.y);
  block.header.SetBounds(low, high);
  block.reals[0] = FitScale(block.header, options.size);
  block.reals[1] = high.x > low.x ? (high.y - low.y) / (high.x - low.x) : 0.0;
  block.reals[2] = options.size;
  LoaderSettings& settings = block.settings;
  settings.name = String(path.c_str(), STRINGENCODING_UTF8);
  settings.boxMin = LVector(text.min[0], text.min[1], text.min[2]);
  settings.boxMax = LVector(text.max[0], text.max[1], text.max[2]);
  settings.reader.kind = pts ? kReaderPts : kReaderXyz;
  settings.reader.everyNth = options.everyNth;
  settings.reader.colorMultiplier = kTextColorMultiplier;
  settings.counts.read = text.lines;
  settings.counts.kept = text.count;
  settings.counts.rejected = text.rejected;
  settings.counts.dropped = text.noData + text.notFinite + text.noMemory;
}

} // namespace

void LoadTextFile(const Filename& name, const std::string& path, Bool pts, const LoadOptions& options,
                  LoadedFile& loaded) {
  AutoAlloc<BaseFile> file;
  if (!file || !file->Open(name, FILEOPEN_READ, FILEDIALOG_NONE)) {
    loaded.refusal = "the file could not be opened";
    return;
  }
  const TextLoader_XYZ xyz;
  const TextLoader_PTS ptsLoader;
  const TextLoader& loader = pts ? (const TextLoader&)ptsLoader : (const TextLoader&)xyz;
  TextInput input;
  input.read = [&](char* buffer, std::size_t size) {
    return (std::size_t)file->TryReadBytes(buffer, (VLONG)size);
  };
  input.fileSize = file->GetLength();
  input.everyNth = options.everyNth;
  input.reallocate = [](void* array, std::size_t bytes) -> void* {
    return array ? GeReallocNC(array, bytes) : GeAllocNC(bytes);
  };
  input.progress = [](int thousandths) {
    StatusSetBar(thousandths / 10);
    return !UserStopped();
  };
  TextResult text = LoadText(loader, input);
  const Bool readFailed = file->GetError() != FILEERROR_NONE;
  file->Close();
  StatusClear();

  loaded.stopped = text.stopped;
  if (text.count < 1 || text.stopped) {
    if (!text.stopped) loaded.refusal = Reason(text, pts);
    GeFree(text.points);
    return;
  }
  const Bool filled = FillBlock(text.points, text.count, kTextColorMultiplier, loaded.block);
  GeFree(text.points);
  if (!filled) {
    loaded.refusal = kNoMemory;
    return;
  }
  FillDescription(path, pts, options, text, loaded.block);
  loaded.detail = Detail(text);
  loaded.partial = readFailed || text.noMemory > 0;
  loaded.announced = loaded.partial ? text.count + text.noMemory : 0;
  if (readFailed) loaded.notes.push_back("the file could not be read to its end");
}

} // namespace kelvra
