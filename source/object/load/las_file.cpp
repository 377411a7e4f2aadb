// LAS and LAZ files through the reader, into a block.
#include "cloud/block_fill.h"
#include "cloud/file_coordinates.h"
#include "cloud/local_origin.h"
#include "host_text.h"
#include "object/las/records.h"
#include "object/load/attribute_colors.h"
#include "object/load/loaded_file.h"

#include <algorithm>
#include <cmath>

namespace kelvra {

namespace {

/** Records live in the host's memory while one file is loaded. */
class HostRecords : public RecordMemory {
public:
  void* Allocate(std::size_t bytes) override { return GeAllocNC(bytes); }
  void Free(void* memory) override { GeFree(memory); }
};

const SourceBox& Bounds(const LasCloud& cloud) {
  return cloud.headerBoxHolds ? cloud.headerBox : cloud.pointBox;
}

void FillHeader(const LasCloud& cloud, const LoadOptions& options, const LVector& origin, PointBlock& block) {
  const SourceBox& box = Bounds(cloud);
  block.header.SetBounds(VectorOf(box.min) - origin, VectorOf(box.max) - origin);
  block.header.key = (UWORD)cloud.key;
  const LReal width = box.max[0] - box.min[0], depth = box.max[1] - box.min[1];
  block.reals[0] = FitScale(block.header, options.size);
  block.reals[1] = width != 0.0 && depth / width < 1e300 ? depth / width : 0.0;
  block.reals[2] = options.size;
  if (options.localOrigin) {
    block.header.slots[kSlotStepX] = WritingStep(cloud.scale[0], cloud.offset[0]);
    block.header.slots[kSlotStepY] = WritingStep(cloud.scale[1], cloud.offset[1]);
    block.reals[kRealStepZ] = WritingStep(cloud.scale[2], cloud.offset[2]);
  }
  block.settings.boxMin = VectorOf(box.min);
  block.settings.boxMax = VectorOf(box.max);
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
  read.attribute = AttributeFor(options.colorBy);
  read.countClasses = options.countClasses != FALSE;
  read.refuseDoubtful = options.refuseDoubtful != FALSE;
  LasCloud cloud = ReadLas(path, read, memory, [](std::int64_t kept, std::int64_t total, int percent) {
    ShowLoading(kept, total, percent);
    return true;
  });
  loaded.report = std::move(cloud.report);
  if (!cloud.records) return;
  loaded.origin =
      options.choosesOrigin ? ChooseOrigin(Bounds(cloud), cloud.pointBox, cloud.scale) : options.origin;
  loaded.fileStep = std::max({std::abs(cloud.scale[0]), std::abs(cloud.scale[1]), std::abs(cloud.scale[2])});
  const LONG kept = (LONG)loaded.report.kept;
  Bool filled;
  if (read.attribute == LasAttribute::kNone) {
    filled = FillBlockAndFree(cloud.records, kept, 1, loaded.origin, loaded.block);
  } else { // the colours come from the records, which stay until they are made
    filled = FillBlock(cloud.records, kept, 1, loaded.origin, loaded.block);
    if (filled) ColorByAttribute(cloud.records, read.attribute, options, loaded);
    memory.Free(cloud.records);
  }
  if (!filled) {
    RefuseForMemory(loaded);
    return;
  }
  FillHeader(cloud, options, loaded.origin, loaded.block);
  FillSettings(loaded.report, options, loaded.block.settings);
}

} // namespace kelvra
