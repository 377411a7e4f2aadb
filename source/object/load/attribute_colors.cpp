#include "object/load/attribute_colors.h"

#include "cloud/percentiles.h"
#include "object/las/palette.h"
#include "otallyframe.h"

#include <new>

namespace kelvra {

namespace {

/** Text files give intensities below 0 too. */
SReal Intensity(const SourceRecord& record) {
  return (SReal)(std::int32_t)record.intensity;
}

RampRange RangeOf(const SourceRecord* records, LONG count, const RampSettings& settings) {
  const FloatRange values = RangeOfShares(settings.lowShare, settings.highShare, [=](auto visit) {
    for (LONG i = 0; i < count; ++i) visit(Intensity(records[i]));
  });
  RampRange range;
  range.from = values.low;
  range.to = values.high;
  range.valid = TRUE;
  return range;
}

StoredColor Stored(const LasColor& color) {
  return {{color.r, color.g, color.b}};
}

/** Says so when the colours show nothing, as every point has the same value. */
void NoteOneValue(const SourceRecord* records, const char* what, LoadedFile& loaded) {
  for (LONG i = 1; i < loaded.block.count; ++i)
    if (records[i].intensity != records[0].intensity) return;
  if (loaded.block.count > 1)
    loaded.report.Note(NoteSeverity::kWarning, std::string("all points have the same ") + what +
                                                   ", so that Color at Load gives them one colour");
}

/** colorOf gives a record's colour. */
template <class ColorOf>
void Paint(const SourceRecord* records, PointBlock& block, ColorOf colorOf) {
  UWORD* channel = block.attrib3;
  for (LONG i = 0; i < block.count; ++i, channel += 3) {
    const StoredColor color = colorOf(records[i]);
    for (LONG c = 0; c < 3; ++c) channel[c] = color.rgb[c];
  }
}

} // namespace

LasAttribute AttributeFor(LONG colorBy) {
  switch (colorBy) {
  case KELVRA_LOAD_COLOR_INTENSITY:
    return LasAttribute::kIntensity;
  case KELVRA_LOAD_COLOR_CLASS:
    return LasAttribute::kClass;
  case KELVRA_LOAD_COLOR_RETURN:
    return LasAttribute::kReturnNumber;
  default:
    return LasAttribute::kNone;
  }
}

void ColorByAttribute(const SourceRecord* records, LasAttribute attribute, const LoadOptions& options,
                      LoadedFile& loaded) {
  switch (attribute) {
  case LasAttribute::kIntensity: {
    try {
      loaded.rampRange =
          options.rampRange.valid ? options.rampRange : RangeOf(records, loaded.block.count, options.ramp);
    } catch (const std::bad_alloc&) {
      return; // the records are the caller's, who still frees them; the colours stay those of the file
    }
    const RampTable table(options.ramp.ramp, loaded.rampRange);
    Paint(records, loaded.block, [&](const SourceRecord& record) { return table.At(Intensity(record)); });
    NoteOneValue(records, "intensity", loaded);
    break;
  }
  case LasAttribute::kClass:
    Paint(records, loaded.block,
          [](const SourceRecord& record) { return Stored(ColorOfAnyClass(record.intensity)); });
    NoteOneValue(records, "class", loaded);
    break;
  case LasAttribute::kReturnNumber:
    Paint(records, loaded.block,
          [](const SourceRecord& record) { return Stored(ColorOfReturn(record.intensity)); });
    NoteOneValue(records, "return number", loaded);
    break;
  case LasAttribute::kNone:
    break;
  }
}

} // namespace kelvra
