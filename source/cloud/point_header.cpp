#include "cloud/point_header.h"

#include <cfloat>
#include <cmath>

namespace kelvra {

namespace {

/** Width of a source range; 0 where it is not a number. */
LReal Width(LReal low, LReal high) {
  const LReal width = high - low;
  return std::isfinite(width) ? width : 0.0;
}

/** Can every 32-bit float map to a finite value? Only bounds that no cloud has fail this. */
bool StaysFinite(LReal low, LReal factor, LReal offset) {
  return std::isfinite((FLT_MAX + std::fabs(low)) * std::fabs(factor) + std::fabs(offset));
}

LReal FiniteOr(LReal value, LReal other) {
  return std::isfinite(value) ? value : other;
}

} // namespace

void PointHeader::Clear() {
  for (LReal& slot : slots) slot = 0.0;
  key = 0;
}

void PointHeader::SetBounds(const LVector& low, const LVector& high) {
  slots[kSlotMinX] = low.x;
  slots[kSlotMaxX] = high.x;
  slots[kSlotMinY] = low.y;
  slots[kSlotMaxY] = high.y;
  slots[kSlotMinHeight] = low.z;
  slots[kSlotMaxHeight] = high.z;
}

LReal FitScale(const PointHeader& header, LReal size) {
  const LReal widths[3] = {Width(header.slots[kSlotMinX], header.slots[kSlotMaxX]),
                           Width(header.slots[kSlotMinY], header.slots[kSlotMaxY]),
                           Width(header.slots[kSlotMinHeight], header.slots[kSlotMaxHeight])};
  for (const LReal width : widths)
    if (width != 0.0 && std::isfinite(size / width)) return size / width;
  return 1.0;
}

PointHeader PointMapping::Fitted(const PointHeader& header, LReal size) {
  PointHeader fitted = header;
  const LReal finiteSize = FiniteOr(size, 0.0), scale = FitScale(header, finiteSize);
  const LReal depth = FiniteOr(Width(header.slots[kSlotMinY], header.slots[kSlotMaxY]) * scale, 0.0);
  const bool heightFits = StaysFinite(header.slots[kSlotMinHeight], scale, 0.0);
  fitted.slots[kSlotExtentX] = finiteSize;
  fitted.slots[kSlotOffsetX] = -finiteSize / 2.0;
  fitted.slots[kSlotExtentZ] = depth;
  fitted.slots[kSlotOffsetZ] = -depth / 2.0;
  fitted.slots[kSlotScaleHeight] = heightFits ? scale : 0.0;
  return fitted;
}

AxisMap::AxisMap(LReal lowest, LReal width, LReal displayExtent, LReal displayOffset) {
  if (width == 0.0 || !StaysFinite(lowest, 1.0 / width, 0.0) ||
      !StaysFinite(lowest, 1.0 / width * displayExtent, displayOffset)) {
    offset = displayOffset + displayExtent * 0.5;
    return;
  }
  low = lowest;
  range = width;
  extent = displayExtent;
  offset = displayOffset;
}

PointMapping::PointMapping(const PointHeader& header, LReal size) : mapped_(header.key != 0) {
  const PointHeader fitted = Fitted(header, size);
  const LReal* s = fitted.slots;
  x_ = AxisMap(s[kSlotMinX], Width(s[kSlotMinX], s[kSlotMaxX]), s[kSlotExtentX], s[kSlotOffsetX]);
  z_ = AxisMap(s[kSlotMinY], Width(s[kSlotMinY], s[kSlotMaxY]), s[kSlotExtentZ], s[kSlotOffsetZ]);
  lowest_ = FiniteOr(s[kSlotMinHeight], 0.0);
  scale_ = s[kSlotScaleHeight];
}

} // namespace kelvra
