#include "c4d_render.h"

#include "c4d_os.h"

VolumeData* VolumeData::Alloc() {
  return C4DOS.volume->Alloc();
}
void VolumeData::Free(VolumeData*& vd) {
  if (vd) C4DOS.volume->Free(vd);
  vd = NULL;
}
LONG VolumeData::GetCurrentCPU() {
  return C4DOS.volume->GetCurrentCPU(this);
}
LONG VolumeData::GetCPUCount() {
  return C4DOS.volume->GetCPUCount(this);
}
Bool VolumeData::TestBreak() {
  return C4DOS.volume->TestBreak(this);
}
LONG VolumeData::GetLightCount() {
  return C4DOS.volume->GetLightCount(this);
}
RayLight* VolumeData::GetLight(LONG index) {
  return C4DOS.volume->GetLight(this, index);
}
RayParameter* VolumeData::GetRayParameter() {
  return const_cast<RayParameter*>(C4DOS.volume->GetRayParameter(this));
}
RayCamera* VolumeData::GetRayCamera() {
  return const_cast<RayCamera*>(C4DOS.volume->GetRayCamera(this));
}
void VolumeData::IlluminanceSurfacePoint(IlluminanceSurfacePointData* f, Vector* diffuse, Vector* specular) {
  C4DOS.volume->IlluminanceSurfacePoint(this, f, diffuse, specular);
}
Vector VolumeData::IlluminanceAnyPoint(const LVector& place, ILLUMINATEFLAGS flags, RAYBIT bits) {
  Vector light;
  C4DOS.volume->IlluminanceAnyPoint(this, place, flags, bits, &light);
  return light;
}

LONG VPBuffer::GetInfo(VPGETINFO type) {
  return C4DOS.volume->GetBufferInfo(this, type);
}
Bool VPBuffer::GetLine(LONG x, LONG y, LONG cnt, void* data, LONG bitdepth, Bool dithering) {
  return C4DOS.volume->GetBufferLine(this, x, y, cnt, data, bitdepth, dithering);
}
Bool VPBuffer::SetLine(LONG x, LONG y, LONG cnt, void* data, LONG bitdepth, Bool dithering) {
  return C4DOS.volume->SetBufferLine(this, x, y, cnt, data, bitdepth, dithering);
}

VPBuffer* Render::GetBuffer(LONG id, LONG subid) {
  return C4DOS.volume->GetBuffer(this, id, subid);
}
