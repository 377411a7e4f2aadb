#include "c4d_render.h"

#include "c4d_os.h"

VolumeData* VolumeData::Alloc() {
  return C4DOS.Vd->Alloc();
}
void VolumeData::Free(VolumeData*& vd) {
  if (vd) C4DOS.Vd->Free(vd);
  vd = NULL;
}
LONG VolumeData::GetCurrentCPU() const {
  return C4DOS.Vd->GetCurrentCPU(this);
}
LONG VolumeData::GetCPUCount() const {
  return C4DOS.Vd->GetCPUCount(this);
}
Bool VolumeData::TestBreak() {
  return C4DOS.Vd->TestBreak(this);
}
LONG VolumeData::GetLightCount() const {
  return C4DOS.Vd->GetLightCount(this);
}
RayLight* VolumeData::GetLight(LONG index) {
  return C4DOS.Vd->GetLight(this, index);
}
const RayParameter* VolumeData::GetRayParameter() const {
  return C4DOS.Vd->GetRayParameter(this);
}
const RayCamera* VolumeData::GetRayCamera() const {
  return C4DOS.Vd->GetRayCamera(this);
}
void VolumeData::IlluminanceSurfacePoint(IlluminanceSurfacePointData* f, Vector* diffuse, Vector* specular) {
  C4DOS.Vd->IlluminanceSurfacePoint(this, f, diffuse, specular);
}
Vector VolumeData::IlluminanceAnyPoint(const LVector& place, ILLUMINATEFLAGS flags, RAYBIT bits) {
  Vector light;
  C4DOS.Vd->IlluminanceAnyPoint(this, place, flags, bits, &light);
  return light;
}

LONG VPBuffer::GetInfo(VPGETINFO type) const {
  return C4DOS.Vd->GetBufferInfo(this, type);
}
Bool VPBuffer::GetLine(LONG x, LONG y, LONG cnt, void* data, LONG bitdepth, Bool dithering) const {
  return C4DOS.Vd->GetBufferLine(this, x, y, cnt, data, bitdepth, dithering);
}
Bool VPBuffer::SetLine(LONG x, LONG y, LONG cnt, void* data, LONG bitdepth, Bool dithering) {
  return C4DOS.Vd->SetBufferLine(this, x, y, cnt, data, bitdepth, dithering);
}

VPBuffer* Render::GetBuffer(LONG id, LONG subid) const {
  return C4DOS.Vd->GetBuffer(this, id, subid);
}
