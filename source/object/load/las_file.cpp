// LAS and LAZ files through the reader, into a block.
#include "cloud/block_fill.h"
#include "object/las/records.h"
#include "object/load/loaded_file.h"

namespace kelvra {

namespace {

/** Records live in the host's memory for the time of one file. */
class HostRecords : public RecordMemory {
public:
  void* Allocate(std::size_t bytes) override { return GeAllocNC(bytes); }
  void Free(void* memory) override { GeFree(memory); }
};

LVector Corner(const double* c) {
  return LVector(c[0], c[1], c[2]);
}

/** Lines of the reader start with the file's name; the console's start with its path. */
std::string WithoutName(const std::string& line, const std::string& path) {
  const std::string name = path.substr(path.find_last_of("/\\") + 1);
  for (const std::string& start : {path + ": ", name + ": "})
    if (line.rfind(start, 0) == 0) return line.substr(start.size());
  return line;
}

/** The reader's lines that the loader's own do not say: its findings, and what the library printed. */
std::vector<std::string> Findings(const LasCloud& cloud, const std::string& path) {
  static const char* const kSaidByLoader[] = {"loaded ", "EPSG ", "the bounds in the header ",
                                              " points without finite coordinates dropped"};
  std::vector<std::string> findings;
  for (const std::string& message : cloud.messages) {
    const std::string line = WithoutName(message, path);
    bool said = false;
    for (const char* known : kSaidByLoader) {
      const std::size_t at = line.find(known);
      said |= at == 0 || (known[0] == ' ' && at != std::string::npos);
    }
    if (!said) findings.push_back(line);
  }
  return findings;
}

/** Why a file gave no records. */
std::string Refusal(const LasCloud& cloud, const std::string& path) {
  if (cloud.outcome == LasOutcome::kOutOfMemory) return kNoMemory;
  if (cloud.outcome == LasOutcome::kEmpty && cloud.dropped > 0)
    return "none of its points has finite coordinates";
  std::string reason;
  for (const std::string& message : cloud.messages)
    reason += (reason.empty() ? "" : "; ") + WithoutName(message, path);
  return reason.empty() ? "gave no point" : reason;
}

void FillHeader(const LasCloud& cloud, const LoadOptions& options, PointBlock& block) {
  const LasBox& box = cloud.headerBoxHolds ? cloud.headerBox : cloud.pointBox;
  block.header.SetBounds(Corner(box.minimum), Corner(box.maximum));
  block.header.key = (UWORD)cloud.key;
  const LReal width = box.maximum[0] - box.minimum[0], depth = box.maximum[1] - box.minimum[1];
  block.reals[0] = FitScale(block.header, options.size);
  block.reals[1] = width != 0.0 && depth / width < 1e300 ? depth / width : 0.0;
  block.reals[2] = options.size;
  block.reals[3] = 0.0;
  block.settings.boxMin = Corner(box.minimum);
  block.settings.boxMax = Corner(box.maximum);
}

void FillSettings(const std::string& path, const LasCloud& cloud, const LoadOptions& options,
                  LoaderSettings& settings) {
  settings.name = String(path.c_str(), STRINGENCODING_UTF8);
  settings.reader.kind = cloud.hasColor ? kReaderLas : kReaderLasByClass;
  settings.reader.everyNth = options.everyNth;
  settings.reader.budget = options.budget;
  settings.reader.colorMultiplier = 1;
  settings.counts.read = cloud.available;
  settings.counts.kept = cloud.kept;
  settings.counts.dropped = cloud.dropped;
}

} // namespace

void LoadLasFile(const std::string& path, const LoadOptions& options, LoadedFile& loaded) {
  HostRecords memory;
  LasReadOptions read;
  read.limit = options.limit;
  read.step = options.everyNth;
  const LasCloud cloud = ReadLas(path, read, memory, [](std::int64_t kept, std::int64_t total, int percent) {
    ShowLoading(kept, total, percent);
    return !UserStopped();
  });
  loaded.announced = cloud.announced;
  loaded.partial = cloud.outcome == LasOutcome::kPartial;
  loaded.stopped = cloud.outcome == LasOutcome::kStopped;
  loaded.geoKeyCode = (LONG)cloud.geoKeyCode;
  SourceRecord* records = cloud.records;
  if (!records || cloud.kept < 1) {
    if (!loaded.stopped) loaded.refusal = Refusal(cloud, path);
    if (records) memory.Free(records);
    return;
  }
  const Bool filled = FillBlock(records, (LONG)cloud.kept, 1, loaded.block);
  memory.Free(records);
  if (!filled) {
    loaded.refusal = kNoMemory;
    return;
  }
  loaded.notes = Findings(cloud, path);
  FillHeader(cloud, options, loaded.block);
  FillSettings(path, cloud, options, loaded.block.settings);
  if (cloud.dropped > 0)
    loaded.detail = Grouped(cloud.dropped) + " points without finite coordinates dropped";
  if (!cloud.headerBoxHolds)
    loaded.notes.push_back("the header's bounds do not enclose the points; the points' own are used");
}

} // namespace kelvra
