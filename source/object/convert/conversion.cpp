#include "object/convert/conversion.h"

#include "otallyframe.h"

namespace kelvra {

namespace {

BaseObject* Convert(const ConversionRequest& request, LONG mode) {
  switch (mode) {
  case KELVRA_CONVERT_MODE_POINTS:
    return ConvertToPoints(request);
  case KELVRA_CONVERT_MODE_HAIR:
    return ConvertToHair(request);
  case KELVRA_CONVERT_MODE_THINKING_PARTICLES:
    return ConvertToParticles(request);
  case KELVRA_CONVERT_MODE_EMITTER:
    return ConvertToEmitter(request);
  case KELVRA_CONVERT_MODE_SPLINE:
    return ConvertToSpline(request);
  default:
    return NULL;
  }
}

} // namespace

BaseObject* BuildConversion(const ConversionRequest& request, LONG mode) {
  BaseObject* built = Convert(request, mode);
  return built ? built : BaseObject::Alloc(Onull);
}

} // namespace kelvra
