// Entries for rays and pictures while rendering.
#include "host/base/misbehaviour.h"
#include "host/render/ray_tracer.h"
#include "host/render/render_buffer.h"
#include "host/render/render_job.h"
#include "host/seam/os_tables.h"

#include <cmath>

namespace host {

namespace {

/** The tracer behind it; NULL, and a report, for volume data without a render. */
RayTracer* OwnerOf(const VolumeData* vd, const char* call) {
  RayTracer* tracer = vd ? RenderVolume::From(vd)->tracer : nullptr;
  if (!tracer) ReportCaller(std::string(call) + " with volume data that belongs to no render");
  return tracer;
}
/** The same for what may be asked only while there are rays. */
RayTracer* TracerOf(const VolumeData* vd, const char* call) {
  RayTracer* tracer = OwnerOf(vd, call);
  if (tracer && !tracer->IsUsable())
    ReportCaller(std::string(call) +
                 " before INNER opens or after it closed, when volume data is not usable");
  return tracer;
}

bool IsTruth(Bool b) {
  return b == FALSE || b == TRUE;
}

/** An application calls the model and looks into the other data: whoever has none must say so. */
bool IsFilled(const IlluminanceSurfacePointData& f) {
  return !f.local_mat && !f.model && !f.customdata && std::isfinite(f.specular_exponent) &&
         IsTruth(f.receive_gi) && IsTruth(f.receive_caustics);
}

struct VolumeEntries {
  static VolumeData* Alloc() { return new (std::nothrow) RenderVolume; }
  static void Free(VolumeData* vd) {
    if (RenderVolume::From(vd)->tracer)
      ReportCaller("volume data of a render is freed");
    else
      delete RenderVolume::From(vd);
  }
  static LONG GetCurrentCPU(const VolumeData* vd) {
    const RayTracer* tracer = TracerOf(vd, "GetCurrentCPU");
    return tracer ? tracer->Thread() : 0;
  }
  static LONG GetCPUCount(const VolumeData* vd) {
    RayTracer* tracer = TracerOf(vd, "GetCPUCount");
    return tracer ? tracer->Scene().threads : 0;
  }
  static Bool TestBreak(VolumeData* vd) {
    RayTracer* tracer = TracerOf(vd, "TestBreak");
    return tracer && tracer->Scene().stop;
  }
  static LONG GetLightCount(const VolumeData* vd) {
    RayTracer* tracer = TracerOf(vd, "GetLightCount");
    return tracer ? (LONG)tracer->Scene().lights.size() : 0;
  }
  static RayLight* GetLight(VolumeData* vd, LONG index) {
    RayTracer* tracer = TracerOf(vd, "GetLight");
    if (!tracer || index < 0 || index >= (LONG)tracer->Scene().lights.size()) return nullptr;
    return &tracer->Scene().lights[(std::size_t)index];
  }
  static const RayParameter* GetRayParameter(const VolumeData* vd) {
    RayTracer* tracer = OwnerOf(vd, "GetRayParameter"); // known as soon as a render opens
    return tracer ? &tracer->Scene().parameter : nullptr;
  }
  static const RayCamera* GetRayCamera(const VolumeData* vd) {
    RayTracer* tracer = TracerOf(vd, "GetRayCamera");
    return tracer ? &tracer->Scene().camera : nullptr;
  }
  static void IlluminanceSurfacePoint(VolumeData* vd, IlluminanceSurfacePointData* f, Vector* diffuse,
                                      Vector* specular) {
    RayTracer* tracer = TracerOf(vd, "IlluminanceSurfacePoint");
    if (!IsFilled(*f)) ReportModule("IlluminanceSurfacePoint is given fields that nothing was written to");
    *diffuse = tracer ? tracer->Illuminate(*f) : Vector();
    *specular = Vector();
  }
  static void IlluminanceAnyPoint(VolumeData* vd, const LVector& p, ILLUMINATEFLAGS flags, RAYBIT raybits,
                                  Vector* light) {
    RayTracer* tracer = TracerOf(vd, "IlluminanceAnyPoint");
    *light = tracer ? tracer->IlluminateFree(p, (flags & ILLUMINATEFLAGS_SHADOW) != 0, raybits) : Vector();
  }

  static VPBuffer* GetBuffer(const Render* render, LONG id, LONG) {
    if (!RequireDocumentThread("Volume::GetBuffer")) return nullptr;
    const RenderJob* job = RenderJob::From(render);
    return job && id == VPBUFFER_RGBA ? job->Buffer().Api() : nullptr;
  }
  static LONG GetBufferInfo(const VPBuffer* buffer, VPGETINFO type) {
    return RenderBuffer::From(buffer)->GetInfo(type);
  }
  static Bool GetBufferLine(const VPBuffer* buffer, LONG x, LONG y, LONG cnt, void* data, LONG bitdepth,
                            Bool) {
    return RenderBuffer::From(buffer)->GetLine(x, y, cnt, data, bitdepth);
  }
  static Bool SetBufferLine(VPBuffer* buffer, LONG x, LONG y, LONG cnt, const void* data, LONG bitdepth,
                            Bool) {
    return RenderBuffer::From(buffer)->SetLine(x, y, cnt, data, bitdepth);
  }
};

} // namespace

HOST_BIND(Volume, VolumeEntries)

} // namespace host
