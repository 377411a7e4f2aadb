// LAS and LAZ files through the reader, into a block.
#include "cloud/block_fill.h"
#include "host_text.h"
#include "object/las/records.h"
#include "object/load/loaded_file.h"

namespace kelvra {

namespace {

/** Records live in the host's memory while one file is loaded. */
class HostRecords : public RecordMemory {
public:
  void* Allocate(std::size_t bytes) override { return GeAllocNC(bytes); }
  void Free(void* memory) override { GeFree(memory); }
};

LVector Corner(const double* c) {
  return LVector(c[0], c[1], c[2]);
}

void FillHeader(const LasCloud& cloud, const LoadOptions& options, PointBlock& block) {
  const SourceBox& box = cloud.headerBoxHolds ? cloud.headerBox : cloud.pointBox;
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

void FillSettings(const LoadReport& report, const LoadOptions& options, LoaderSettings& settings) {
  settings.name = FromUtf8(report.path);
  settings.reader.kind = report.reader;
  settings.reader.everyNth = options.everyNth;
  settings.reader.budget = options.budget;
  settings.reader.colorMultiplier = 1;
  settings.counts.read = report.available;
  settings.counts.kept = report.kept;
  settings.counts.dropped = report.dropped.notFinite;
}

/** "Loading : 5 of 10" and the bar. */
void ShowLoading(LLONG index, LLONG total, LONG percent) {
  StatusSetBar(percent);
  StatusSetText(String("Loading : ") + LLongToString(index) + " of " + LLongToString(total));
}

} // namespace

void LoadLasFile(const std::string& path, const LoadOptions& options, LoadedFile& loaded) {
  HostRecords memory;
  LasReadOptions read;
  read.limit = options.limit;
  read.step = options.everyNth;
  read.stopped = [] { return UserStopped() != FALSE; };
  LasCloud cloud = ReadLas(path, read, memory, [](std::int64_t kept, std::int64_t total, int percent) {
    ShowLoading(kept, total, percent);
    return true;
  });
  loaded.report = std::move(cloud.report);
  if (!cloud.records) return;
  const Bool filled = FillBlock(cloud.records, (LONG)loaded.report.kept, 1, loaded.block);
  memory.Free(cloud.records);
  if (!filled) {
    RefuseForMemory(loaded);
    return;
  }
  FillHeader(cloud, options, loaded.block);
  FillSettings(loaded.report, options, loaded.block.settings);
}

} // namespace kelvra
