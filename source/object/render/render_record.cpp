#include "object/render/render_record.h"

#include "customgui_splinecontrol.h"
#include "otallyframe.h"

#include <cmath>

namespace kelvra {

namespace {

constexpr LReal kLeastRadius = 1.0e-6, kMostRadius = 1.0e15;
constexpr LReal kLeastBias = 1.0e-6;

LReal Finite(LReal v, LReal instead) {
  return std::isfinite(v) ? v : instead;
}

/** Makes a table of a curve between two heights; none where there is no curve. FALSE without memory. */
Bool FillCurve(const BaseContainer& settings, LONG id, LReal most, HeightCurve* curve) {
  const SplineData* spline =
      static_cast<const SplineData*>(settings.GetCustomDataType(id, CUSTOMDATATYPE_SPLINE));
  if (!spline || spline->GetKnotCount() < 1) return TRUE;
  curve->values = GeAllocTypeNC(SReal, HeightCurve::kSteps + 1);
  if (!curve->values) return FALSE;
  for (LONG i = 0; i <= HeightCurve::kSteps; ++i)
    curve->values[i] =
        (SReal)FCut(Finite(spline->GetPoint((Real)i / HeightCurve::kSteps).y, 1.0), (Real)0.0, most);
  curve->low = Finite(settings.GetReal(KELVRA_CURVE_MIN_HEIGHT, 0.0), 0.0);
  curve->high = Finite(settings.GetReal(KELVRA_CURVE_MAX_HEIGHT, 100.0), 100.0);
  return TRUE;
}

/** A number from 0 to 1 that depends on n only: the finaliser of the 32-bit MurmurHash3. */
LReal Scatter(ULONG n) {
  n ^= n >> 16;
  n *= 0x85EBCA6Bu;
  n ^= n >> 13;
  n *= 0xC2B2AE35u;
  n ^= n >> 16;
  return n / 4294967295.0;
}

} // namespace

Bool FillRecord(const BaseContainer& settings, const Matrix& global, RenderObjectRecord* record) {
  *record = RenderObjectRecord();
  record->seenSwitch = settings.GetBool(KELVRA_SEEN_SWITCH, TRUE);
  record->illuminateAlt = settings.GetBool(KELVRA_LIGHT_FLAT, TRUE);
  record->illuminate = settings.GetBool(KELVRA_LIGHT, TRUE);
  record->reflectionVisible = settings.GetBool(KELVRA_SEEN_REFLECTION, TRUE);
  record->transparencyVisible = settings.GetBool(KELVRA_SEEN_TRANSPARENCY, TRUE);
  record->refractionVisible = settings.GetBool(KELVRA_SEEN_REFRACTION, TRUE);
  record->softDepth = std::abs(Finite(settings.GetReal(KELVRA_SOFT_DEPTH, 0.0), 0.0));
  record->transparency = FCut01(Finite(settings.GetReal(KELVRA_TRANSPARENCY, 0.0), 0.0));
  record->falloffBias = FCut(Finite(settings.GetReal(KELVRA_EDGE_BIAS, 0.5), 0.5), kLeastBias, 1.0);
  record->pointRadius =
      FCut(Finite(settings.GetReal(KELVRA_POINT_RADIUS, 0.25), 0.25), kLeastRadius, kMostRadius);
  record->radiusVariation = FCut01(Finite(settings.GetReal(KELVRA_RADIUS_VARIATION, 0.0), 0.0));

  // Height in the object's own space is one row of the inverse matrix.
  const Matrix toObject = !global;
  record->upAxis = LVector(toObject.v1.y, toObject.v2.y, toObject.v3.y);
  record->upOffset = toObject.off.y;
  if (FillCurve(settings, KELVRA_RADIUS_CURVE, kMostRadius, &record->radiusCurve) &&
      FillCurve(settings, KELVRA_OPACITY_CURVE, 1.0, &record->opacityCurve))
    return TRUE;
  FreeRecord(*record);
  return FALSE;
}

LReal RadiusOf(const RenderObjectRecord& record, LReal height, LONG number) {
  LReal radius = record.pointRadius * record.radiusCurve.At(height);
  if (record.radiusVariation > 0.0)
    radius *= 1.0 + record.radiusVariation * (2.0 * Scatter((ULONG)number) - 1.0);
  return FCut(radius, kLeastRadius, kMostRadius);
}

} // namespace kelvra
