// Data that the renderer passes to shaders and video posts.
#pragma once

#include "c4d_nodes.h"

class Render;
class VolumeData;
struct RayObject;

enum RAYBIT {
  RAYBIT_0 = 0,
  RAYBIT_REFLECTION = 1 << 0,
  RAYBIT_TRANSPARENCY = 1 << 1,
  RAYBIT_REFRACTION = 1 << 2,
  RAYBIT_CUSTOM = 1 << 3,
  RAYBIT_CURR_REFLECTION = 1 << 4,
  RAYBIT_CURR_TRANSPARENCY = 1 << 5,
  RAYBIT_CURR_REFRACTION = 1 << 6,
  RAYBIT_CURR_CUSTOM = 1 << 7,
  RAYBIT_VOLUMETRICLIGHT = 1 << 8
};
ENUM_END_FLAGS(RAYBIT)

enum ILLUMINATEFLAGS {
  ILLUMINATEFLAGS_0 = 0,          // ours
  ILLUMINATEFLAGS_SHADOW = 1 << 0 // ours
};
ENUM_END_FLAGS(ILLUMINATEFLAGS)

// Light types (RayLight::type) and shadows (RayLight::stype).
enum { RT_LT_OMNI = 0, RT_LT_SPOT = 1, RT_LT_DISTANT = 3, RT_LT_AMBIENT = 50 };
enum { RT_SHADOW_NONE = 0, RT_SHADOW_SOFT = 1, RT_SHADOW_HARD = 2, RT_SHADOW_AREA = 3 };
enum { RT_FALLOFF_NONE = 0, RT_FALLOFF_LINEAR = 8, RT_FALLOFF_INVERSE = 9, RT_FALLOFF_SQUARE = 10 };

/** Identity of a surface element; an empty one stands for a free point. */
class RayHitID {
public:
  Bool IsEqual(const RayHitID& other) const { return object_ == other.object_ && polygon_ == other.polygon_; }
  Bool Content() const { return object_ != 0; }
  void Clear() { object_ = polygon_ = 0; }
  LONG GetPolygon() const { return polygon_; }
  void SetPrivateData(LONG object, LONG polygon) {
    object_ = object;
    polygon_ = polygon;
  }
  void GetPrivateData(LONG* object, LONG* polygon) const {
    *object = object_;
    *polygon = polygon_;
  }

private:
  LONG object_ = 0, polygon_ = 0;
};

/** A ray in world space; v is a unit vector. */
struct Ray {
  LVector p, v;
  Real ior = 1.0;
  Vector pp[3], vv[3];
  Vector transport = Vector(1.0);
  Ray() : p(DC), v(DC) {}
};

/** A light while rendering. m.off is its position, m.v3 the direction in which a distant one shines. */
struct RayLight {
  BaseObject* link = NULL;
  Bool calc_illum = TRUE;
  LMatrix m, m_inverse;
  LONG type = RT_LT_OMNI, stype = RT_SHADOW_HARD, falloff = RT_FALLOFF_NONE;
  Real innerdist = 0.0, outerdist = 0.0;
  Bool ambient = FALSE, nodiffuse = FALSE, nospecular = FALSE;
  Vector color;
};

/** What is rendered, in pixels. The picture spans left to right and top to bottom, both inclusive. */
struct RayParameter {
  LONG xres = 0, yres = 0, left = 0, top = 0, right = 0, bottom = 0;
  Real pixelaspect = 1.0;
  LONG antialiasing = 0, oversample = 1;
  LONG raydepth = 0, reflectiondepth = 0, shadowdepth = 0;
};

/** The camera: m maps camera space (x right, y up, z into the picture) to world space. */
struct RayCamera {
  LMatrix m, m_inverse;
  LReal zoom = 1.0;
  LONG type = 0;
};

struct SurfaceIntersection {
  RayObject* op = NULL;
  RayHitID id;
  LVector p, n;
};

/**
 * What one render thread knows about the current ray. The plug-in reads the input fields and writes the
 * results (col, trans) last: calls that it makes may use the same structure for other rays meanwhile.
 */
struct BaseVolumeData {
  LONG version = 0, fps = 30;
  Vector ambient; ///< light that reaches every point
  Real time = 0.0;
  Vector col;                 ///< result: what is added
  Vector trans = Vector(1.0); ///< result: share of what lies behind that remains
  LVector p;                  ///< end of the volumetric span
  LVector bumpn;
  Ray* ray = NULL;
  LVector orign, n;
  LReal dist =
      0.0; ///< from ray->p to the surface that the ray hit, 1e20 without one; to the light for shadow
  LReal cosc = 0.0;
  RayHitID lhit;
  LONG raydepth = 0;
  LONG calc_illum = 1;
  RAYBIT raybits = RAYBIT_0;
  RayLight* xlight = NULL; ///< the light of a shadow ray; may be NULL
  RayObject* op = NULL;
};

struct IlluminanceSurfacePointData;
typedef void IlluminanceSurfacePointModel(VolumeData* sd, struct RayLightCache* rlc,
                                          IlluminanceSurfacePointData* dat);

/** A point, its normals and its viewer, for which the light is summed. Nothing is preset: fill every field.
 */
struct IlluminanceSurfacePointData {
  LVector p, bumpn, phongn, orign, ray_vector;
  Real specular_exponent;
  Bool receive_gi, receive_caustics;
  Bool cosine_cutoff; ///< FALSE: light counts whatever its angle to the normal
  Bool calc_shadow;
  RAYBIT raybits;
  RayHitID lhit;
  void* local_mat;
  IlluminanceSurfacePointModel* model;
  void* customdata;
};

class VolumeData : public BaseVolumeData {
public:
  static VolumeData* Alloc();
  static void Free(VolumeData*& vd);

  /** Number of the render thread, from 0. */
  LONG GetCurrentCPU();
  LONG GetCPUCount();
  /** TRUE once the user asked to stop. */
  Bool TestBreak();
  LONG GetLightCount();
  RayLight* GetLight(LONG index);
  RayParameter* GetRayParameter();
  RayCamera* GetRayCamera();
  /** Light at a point with normals, of all lights. A normal that looks away from the viewer is turned. */
  void IlluminanceSurfacePoint(IlluminanceSurfacePointData* f, Vector* diffuse, Vector* specular);
  /** Light at a point without a normal. */
  Vector IlluminanceAnyPoint(const LVector& place, ILLUMINATEFLAGS flags, RAYBIT bits);

protected:
  VolumeData() {}
  ~VolumeData() {}
};

enum { VPBUFFER_RGBA = 1, VPBUFFER_DEPTH = 100 };
enum VPGETINFO {
  VPGETINFO_XRESOLUTION = 0, // ours
  VPGETINFO_YRESOLUTION = 1, // ours
  VPGETINFO_BITDEPTH = 2,    // ours
  VPGETINFO_CPP = 3,         // ours
  VPGETINFO_VISIBLE = 4,     // ours
  VPGETINFO_LINEOFFSET = 5
};
ENUM_END_LIST(VPGETINFO)

/** A picture that is being rendered: red, green, blue, then alpha where there are four components. */
class VPBuffer : public HostOwned {
public:
  LONG GetInfo(VPGETINFO type);
  LONG GetBw() { return GetInfo(VPGETINFO_XRESOLUTION); }
  LONG GetBh() { return GetInfo(VPGETINFO_YRESOLUTION); }
  LONG GetBt() { return GetInfo(VPGETINFO_BITDEPTH); }
  LONG GetCpp() { return GetInfo(VPGETINFO_CPP); }
  /** cnt pixels of line y from x on; bitdepth 8, 16 or 32, says whether data holds UCHAR, UWORD or SReal. */
  Bool GetLine(LONG x, LONG y, LONG cnt, void* data, LONG bitdepth, Bool dithering);
  Bool SetLine(LONG x, LONG y, LONG cnt, void* data, LONG bitdepth, Bool dithering);
};

/** One running render. */
class Render : public HostOwned {
public:
  /** NULL when there is none; subid is NOTOK for pictures that exist once. */
  VPBuffer* GetBuffer(LONG id, LONG subid);
};

struct VideoPostStruct {
  LONG version = 0;
  VIDEOPOSTCALL vp = VIDEOPOSTCALL_FRAME;
  Bool open = FALSE;
  BaseTime time;
  LONG fps = 30;
  RENDERRESULT* error = NULL;
  VolumeData* vd = NULL;
  BaseDocument* doc = NULL;
  BaseThread* thread = NULL;
  LONG subframe = 0, subframe_cnt = 1, field = 0, field_cnt = 1;
  Render* render = NULL;
};

struct InitRenderStruct {
  LONG version = 0;
  BaseTime time;
  LONG fps = 30;
  Filename docpath;
  VolumeData* vd = NULL;
  BaseDocument* doc = NULL;
  BaseThread* thread = NULL;
};

struct ChannelData {
  Vector p, n, d;
  Real t = 0.0;
  LONG texflag = 0;
  VolumeData* vd = NULL;
};
