#include "object/render/render_item.h"

#include <cmath>

namespace kelvra {

LReal HeightCurve::At(LReal height) const {
  if (!values) return 1.0;
  const LReal range = high - low;
  // A range without width has one step, at its height.
  const LReal share = range != 0.0 ? (height - low) / range : (height < low ? 0.0 : 1.0);
  const LReal place = share > 0.0 ? (share < 1.0 ? share * kSteps : (LReal)kSteps) : 0.0;
  const LONG step = place < kSteps ? (LONG)place : kSteps - 1;
  const LReal part = place - step;
  return values[step] * (1.0 - part) + values[step + 1] * part;
}

void BoundFalloff(RenderObjectRecord& record) {
  // bias ^ (log x / log 0.5) = x ^ (log bias / log 0.5). Bounds of opacities leave room for the rounding.
  record.falloffPower = (LONG)std::ceil(std::log(record.falloffBias) / std::log(0.5) - 1.0e-9);
}

void FreeRecord(RenderObjectRecord& record) {
  GeFree(record.radiusCurve.values);
  GeFree(record.opacityCurve.values);
}

} // namespace kelvra
