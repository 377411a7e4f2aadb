#include "host/render/render_buffer.h"

#include <cstring>

namespace host {

namespace {

/** 0 to most, to the nearest; not a number is 0. */
template <class Sample>
Sample ToSample(float v, float most) {
  return v > 0.0f ? (Sample)((v < 1.0f ? v : 1.0f) * most + 0.5f) : (Sample)0;
}

template <class Sample>
void Get(const float* from, LONG samples, Sample* to, float most) {
  for (LONG i = 0; i < samples; ++i) to[i] = ToSample<Sample>(from[i], most);
}
template <class Sample>
void Set(float* to, LONG samples, const Sample* from, float most) {
  for (LONG i = 0; i < samples; ++i) to[i] = from[i] / most;
}

} // namespace

LONG RenderBuffer::GetInfo(VPGETINFO type) const {
  switch (type) {
  case VPGETINFO_XRESOLUTION:
    return width_;
  case VPGETINFO_YRESOLUTION:
    return height_;
  case VPGETINFO_BITDEPTH:
    return 32;
  case VPGETINFO_CPP:
    return kComponents;
  case VPGETINFO_VISIBLE:
    return TRUE;
  default:
    return NOTOK;
  }
}

bool RenderBuffer::GetLine(LONG x, LONG y, LONG count, void* data, LONG bitDepth) const {
  if (!Holds(x, y, count) || !data) return false;
  const LONG samples = count * kComponents;
  switch (bitDepth) {
  case 8:
    Get(At(x, y), samples, (UCHAR*)data, 255.0f);
    return true;
  case 16:
    Get(At(x, y), samples, (UWORD*)data, 65535.0f);
    return true;
  case 32:
    std::memcpy(data, At(x, y), (std::size_t)samples * sizeof(float));
    return true;
  default:
    return false;
  }
}

bool RenderBuffer::SetLine(LONG x, LONG y, LONG count, const void* data, LONG bitDepth) {
  if (!Holds(x, y, count) || !data) return false;
  const LONG samples = count * kComponents;
  switch (bitDepth) {
  case 8:
    Set(At(x, y), samples, (const UCHAR*)data, 255.0f);
    return true;
  case 16:
    Set(At(x, y), samples, (const UWORD*)data, 65535.0f);
    return true;
  case 32:
    std::memcpy(At(x, y), data, (std::size_t)samples * sizeof(float));
    return true;
  default:
    return false;
  }
}

} // namespace host
