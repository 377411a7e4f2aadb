// What the module relies on in the vendor's interface, whole signatures: compiled against sdk/ by the
// interface check and against the vendor's headers when the module is built for the application, so that
// neither may differ. Against sdk/ const counts as well. The vendor's headers may say more of it than is
// known: there the compiler checks it at each call of the module.
//
// Not listed: templates, constructors and operators, and String::Insert, String::ToReal, StringToNumber,
// BaseFile::Open and BaseBitmap::Init, whose last arguments, with defaults, sdk/ does not have; what may be
// const or a reference there: BaseDrawHelp::GetMg, InitRenderStruct::vd, doc and thread, ChannelData::vd.
#include "c4d.h"
#include "c4d_baseeffectordata.h"
#include "c4d_gl.h"
#include "c4d_particles.h"
#include "customgui_splinecontrol.h"
#include "lib_hair.h"
#include "lib_prefs.h"

#include <type_traits>

#ifndef __C4D_NO_NEW_DELETE__
#error "without it the vendor's operator new gives NULL, where the C++ library expects an exception"
#endif

namespace {

template <class C, class Signature>
struct MethodOf;
template <class C, class R, class... A>
struct MethodOf<C, R(A...)> {
  static std::true_type Is(R (C::*)(A...));
  static std::true_type Is(R (C::*)(A...) const);
};

#ifdef KELVRA_C4D_SDK
#define METHOD(R, C, name, arguments) static_assert(decltype(MethodOf<C, R arguments>::Is(&C::name))::value)
#define METHOD_CONST METHOD
#else
#define METHOD(R, C, name, arguments) static_assert(sizeof(static_cast<R(C::*) arguments>(&C::name)) > 0)
#define METHOD_CONST(R, C, name, arguments)                                                                  \
  static_assert(sizeof(static_cast<R(C::*) arguments const>(&C::name)) > 0)
#endif
#define STATIC(R, C, name, arguments) static_assert(sizeof(static_cast<R(*) arguments>(&C::name)) > 0)
#define FUNCTION(R, name, arguments) static_assert(sizeof(static_cast<R(*) arguments>(&name)) > 0)
#define FIELD(C, name, T) static_assert(std::is_same_v<decltype(C::name), T>)

METHOD(GeData, BaseDraw, GetDrawParam, (LONG));
METHOD(void, BaseDraw, SetMatrix_Matrix, (BaseObject*, const Matrix&));

METHOD(BaseDocument*, BaseDrawHelp, GetDocument, ());

STATIC(MoData*, MoData, Alloc, ());
STATIC(void, MoData, Free, (MoData*&));
METHOD(LONG, MoData, GetCount, ());
METHOD_CONST(void*, MoData, GetArray, (LONG, MD_TYPE));
METHOD_CONST(MDArray<LONG>, MoData, GetLongArray, (LONG, LONG));
METHOD_CONST(MDArray<Matrix>, MoData, GetMatrixArray, (LONG, Matrix));

FIELD(GetMoDataMessage, modata, MoData*);
FIELD(GetMoDataMessage, index, LONG);
FIELD(GetMoDataMessage, user_owned, Bool);

METHOD_CONST(FILEERROR, HyperFile, GetError, ());
METHOD_CONST(BaseDocument*, HyperFile, GetDocument, ());
METHOD(Bool, HyperFile, WriteUWord, (UWORD));
METHOD(Bool, HyperFile, WriteLong, (LONG));
METHOD(Bool, HyperFile, WriteLLong, (LLONG));
METHOD(Bool, HyperFile, WriteLReal, (LReal));
METHOD(Bool, HyperFile, WriteLVector, (const LVector&));
METHOD(Bool, HyperFile, WriteString, (const String&));
METHOD(Bool, HyperFile, ReadUWord, (UWORD*));
METHOD(Bool, HyperFile, ReadLong, (LONG*));
METHOD(Bool, HyperFile, ReadLLong, (LLONG*));
METHOD(Bool, HyperFile, ReadLReal, (LReal*));
METHOD(Bool, HyperFile, ReadLVector, (LVector*));
METHOD(Bool, HyperFile, ReadString, (String*));
METHOD(Bool, HyperFile, WriteArray, (const void*, HYPERFILEARRAY, LONG, LONG));
METHOD(Bool, HyperFile, ReadArray, (void*, HYPERFILEARRAY, LONG, LONG));

STATIC(BaseFile*, BaseFile, Alloc, ());
STATIC(void, BaseFile, Free, (BaseFile*&));
METHOD(Bool, BaseFile, Close, ());
METHOD(VLONG, BaseFile, TryReadBytes, (void*, VLONG));
METHOD(Bool, BaseFile, WriteBytes, (const void*, VLONG));
METHOD(LLONG, BaseFile, GetLength, ());
METHOD_CONST(FILEERROR, BaseFile, GetError, ());

STATIC(BrowseFiles*, BrowseFiles, Alloc, ());
STATIC(void, BrowseFiles, Free, (BrowseFiles*&));
METHOD(void, BrowseFiles, Init, (const Filename&, LONG));
METHOD(Bool, BrowseFiles, GetNext, ());
METHOD(Filename, BrowseFiles, GetFilename, ());
METHOD(Bool, BrowseFiles, IsDir, ());
METHOD(Bool, BrowseFiles, IsHidden, ());

FUNCTION(Bool, GeFExist, (const Filename&, Bool));
FUNCTION(Bool, GeFKill, (const Filename&, LONG));
FUNCTION(Bool, GeFRename, (const Filename&, const Filename&));
FUNCTION(void, GePrint, (const String&));
FUNCTION(void, StatusSetText, (const String&));
FUNCTION(void, StatusSetBar, (LONG));
FUNCTION(void, StatusClear, ());
FUNCTION(void, MessageDialog, (const String&));
FUNCTION(Bool, QuestionDialog, (const String&));
FUNCTION(void, EventAdd, (EVENT));
FUNCTION(BaseThread*, GeGetCurrentThread, ());
FUNCTION(Bool, GeIsMainThread, ());
FUNCTION(void, StopAllThreads, ());
FUNCTION(LReal, GeGetMilliSeconds, ());
FUNCTION(LONG, GeGetCPUCount, ());
FUNCTION(Vector, TransformColor, (const Vector&, COLORSPACETRANSFORMATION));
FUNCTION(BaseContainer*, GetWorldPluginData, (LONG));
FUNCTION(Bool, SetWorldPluginData, (LONG, const BaseContainer&, Bool));
FUNCTION(Bool, InitThinkingParticles, ());
FUNCTION(Bool, RegisterObjectPlugin,
         (LONG, const String&, LONG, DataAllocator*, const String&, BaseBitmap*, LONG));
FUNCTION(Bool, RegisterShaderPlugin, (LONG, const String&, LONG, DataAllocator*, const String&, LONG, void*));
FUNCTION(Bool, RegisterVideoPostPlugin,
         (LONG, const String&, LONG, DataAllocator*, const String&, LONG, LONG, void*));
FUNCTION(Bool, RegisterSceneHookPlugin, (LONG, const String&, LONG, DataAllocator*, LONG, LONG, void*));
FUNCTION(Bool, RegisterMessagePlugin, (LONG, const String&, LONG, MessageData*));
FUNCTION(const String&, GeLoadString, (LONG));
FUNCTION(void, ClearMem, (void*, VLONG, LONG));
FUNCTION(void, CopyMem, (const void*, void*, VLONG));
FUNCTION(String, LongToString, (LONG));
FUNCTION(String, LLongToString, (LLONG));
FUNCTION(String, RealToString, (Real, LONG, LONG, Bool, UWORD));
FUNCTION(Real, FCut01, (Real));
FUNCTION(LONG, LMin, (LONG, LONG));
FUNCTION(LONG, LMax, (LONG, LONG));
FUNCTION(LONG, LCut, (LONG, LONG, LONG));
FUNCTION(Matrix, MatrixScale, (const Vector&));

FIELD(Segment, cnt, LONG);
FIELD(Segment, closed, Bool);

STATIC(VariableTag*, VariableTag, Alloc, (LONG, LONG));
STATIC(void, VariableTag, Free, (VariableTag*&));
METHOD(LONG, VariableTag, GetDataCount, ());
METHOD(void*, VariableTag, GetLowlevelDataAddressW, ());

STATIC(VertexMapTag*, VertexMapTag, Alloc, (LONG));
STATIC(void, VertexMapTag, Free, (VertexMapTag*&));
METHOD(const SReal*, VertexMapTag, GetDataAddressR, ());

METHOD_CONST(LONG, PointObject, GetPointCount, ());
METHOD_CONST(const Vector*, PointObject, GetPointR, ());
METHOD(Vector*, PointObject, GetPointW, ());

STATIC(PolygonObject*, PolygonObject, Alloc, (LONG, LONG));
STATIC(void, PolygonObject, Free, (PolygonObject*&));

STATIC(SplineObject*, SplineObject, Alloc, (LONG, SPLINETYPE));
STATIC(void, SplineObject, Free, (SplineObject*&));

METHOD_CONST(LONG, GlString, Compare, (const GlString&));
METHOD_CONST(const char*, GlString, GetCString, ());
METHOD_CONST(VLONG, GlString, GetLength, ());

FIELD(GlVertexBufferDrawSubbuffer, lCount, LONG);
FIELD(GlVertexBufferDrawSubbuffer, lOffset, LONG);

FIELD(GlVertexBufferAttributeInfo, strDeclaration, GlString);
FIELD(GlVertexBufferAttributeInfo, strName, GlString);
FIELD(GlVertexBufferAttributeInfo, lVector, LONG[4]);
FIELD(GlVertexBufferAttributeInfo, lIndex, LONG[4]);
FIELD(GlVertexBufferAttributeInfo, lCount, LONG);

FIELD(GlVertexBufferVectorInfo, strType, GlString);
FIELD(GlVertexBufferVectorInfo, strName, GlString);
FIELD(GlVertexBufferVectorInfo, lDataType, LONG);
FIELD(GlVertexBufferVectorInfo, lCount, LONG);
FIELD(GlVertexBufferVectorInfo, lOffset, VLONG);
FIELD(GlVertexBufferVectorInfo, lStride, VLONG);
FIELD(GlVertexBufferVectorInfo, nAttribLocation, C4DGLint);

STATIC(GlProgramFactory*, GlProgramFactory, GetFactory,
       (const BaseDraw*, const C4DAtom*, LULONG, GlProgramFactoryMessageCallback, void*, VLONG,
        const GlLight* const*, LONG, LULONG, const GlVertexBufferAttributeInfo* const*, LONG,
        const GlVertexBufferVectorInfo* const*, LONG, GlFBAdditionalTextureInfo*));
STATIC(void, GlProgramFactory, RemoveReference, (const C4DAtom*, LULONG));
METHOD(void, GlProgramFactory, LockFactory, ());
METHOD(void, GlProgramFactory, UnlockFactory, ());
METHOD(Bool, GlProgramFactory, BindToView, (const BaseDraw*));
METHOD(Bool, GlProgramFactory, IsProgram, (GlProgramType));
METHOD(void, GlProgramFactory, AddParameters, (LULONG, LULONG));
METHOD(ULONG, GlProgramFactory, Init, (LONG));
METHOD(void, GlProgramFactory, AddErrorHandler, (GlProgramFactoryErrorHandler));
METHOD(GlString, GlProgramFactory, AddUniformParameter, (GlProgramType, GlUniformParamType, const char*));
METHOD(void, GlProgramFactory, AddLine, (GlProgramType, const GlString&));
METHOD(GlString, GlProgramFactory, GetUniqueID, ());
METHOD(Bool, GlProgramFactory, HeaderFinished, ());
METHOD(Bool, GlProgramFactory, CompilePrograms, ());
METHOD(Bool, GlProgramFactory, DestroyPrograms, ());
METHOD(Bool, GlProgramFactory, BindPrograms, ());
METHOD(Bool, GlProgramFactory, UnbindPrograms, ());
METHOD(void, GlProgramFactory, InitSetParameters, ());
METHOD_CONST(void, GlProgramFactory, GetVectorInfo, (LONG&, const GlVertexBufferVectorInfo* const*&));
METHOD_CONST(GlProgramParameter, GlProgramFactory, GetParameterHandle, (GlProgramType, const char*));
METHOD(Bool, GlProgramFactory, SetParameterMatrixTransform, (GlProgramParameter));
METHOD(Bool, GlProgramFactory, SetParameterInt, (GlProgramParameter, int));
METHOD(Bool, GlProgramFactory, SetParameterReal, (GlProgramParameter, SReal));
METHOD(Bool, GlProgramFactory, SetParameterVector, (GlProgramParameter, const SVector&));

STATIC(GlVertexBuffer*, GlVertexBuffer, GetVertexBuffer,
       (const BaseDraw*, const C4DAtom*, LONG, void*, VLONG, ULONG));
STATIC(void, GlVertexBuffer, RemoveObject, (C4DAtom*, LONG));
METHOD(Bool, GlVertexBuffer, IsDirty, ());
METHOD(void, GlVertexBuffer, SetDirty, (Bool));
METHOD(GlVertexSubBufferData*, GlVertexBuffer, AllocSubBuffer,
       (const BaseDraw*, GlVertexBufferSubBufferType, VLONG, const void*));
METHOD(Bool, GlVertexBuffer, FreeBuffer, (const BaseDraw*, GlVertexSubBufferData*));
METHOD_CONST(LONG, GlVertexBuffer, GetSubBufferCount, ());
STATIC(Bool, GlVertexBuffer, DrawSubBuffer,
       (const BaseDraw*, const GlVertexSubBufferData*, const GlVertexSubBufferData*, LONG,
        const GlVertexBufferDrawSubbuffer*, LONG, const GlVertexBufferVectorInfo* const*,
        GlVertexBufferDrawElementCallback, void*));

METHOD_CONST(LONG, C4DAtom, GetType, ());
METHOD_CONST(Bool, C4DAtom, IsInstanceOf, (LONG));
METHOD(Bool, C4DAtom, Message, (LONG, void*));
METHOD(Bool, C4DAtom, CopyTo, (C4DAtom*, COPYFLAGS, AliasTrans*));
METHOD(void, C4DAtom, SetDirty, (DIRTYFLAGS));

METHOD(GeListNode*, GeListNode, GetNext, ());
METHOD(GeListNode*, GeListNode, GetPred, ());
METHOD(GeListNode*, GeListNode, GetUp, ());
METHOD(GeListNode*, GeListNode, GetDown, ());
METHOD(void, GeListNode, Remove, ());
METHOD_CONST(NodeData*, GeListNode, GetNodeData, (LONG));
METHOD(BaseDocument*, GeListNode, GetDocument, ());

METHOD_CONST(const String&, BaseList2D, GetName, ());
METHOD(void, BaseList2D, SetName, (const String&));
METHOD(BaseContainer, BaseList2D, GetData, ());
METHOD(void, BaseList2D, SetData, (const BaseContainer&, Bool));
METHOD(BaseContainer*, BaseList2D, GetDataInstance, ());

STATIC(BaseTag*, BaseTag, Alloc, (LONG));
STATIC(void, BaseTag, Free, (BaseTag*&));
METHOD(BaseTag*, BaseTag, GetNext, ());

STATIC(BaseObject*, BaseObject, Alloc, (LONG));
STATIC(void, BaseObject, Free, (BaseObject*&));
METHOD(BaseObject*, BaseObject, GetNext, ());
METHOD(BaseObject*, BaseObject, GetUp, ());
METHOD(BaseObject*, BaseObject, GetDown, ());
METHOD_CONST(Matrix, BaseObject, GetMl, ());
METHOD(void, BaseObject, SetMl, (const Matrix&));
METHOD_CONST(Matrix, BaseObject, GetMg, ());
METHOD(BaseTag*, BaseObject, GetTag, (LONG, LONG));
METHOD(VariableTag*, BaseObject, MakeVariableTag, (LONG, LONG, BaseTag*));
METHOD(Bool, BaseObject, CopyTagsTo, (BaseObject*, LONG, LONG, LONG, AliasTrans*));
METHOD(BaseObject*, BaseObject, GetCache, (HierarchyHelp*));
METHOD(BaseObject*, BaseObject, GetDeformCache, ());
METHOD(Bool, BaseObject, CheckCache, (HierarchyHelp*));
METHOD(Bool, BaseObject, IsDirty, (DIRTYFLAGS));

STATIC(BaseVideoPost*, BaseVideoPost, Alloc, (LONG));
STATIC(void, BaseVideoPost, Free, (BaseVideoPost*&));

METHOD(void, RenderData, InsertVideoPost, (BaseVideoPost*, BaseVideoPost*));

METHOD(BaseContainer, BaseDocument, GetData, (DOCUMENTSETTINGS));
METHOD(void, BaseDocument, SetData, (DOCUMENTSETTINGS, const BaseContainer&));
METHOD(BaseObject*, BaseDocument, GetFirstObject, ());
METHOD(void, BaseDocument, InsertObject, (BaseObject*, BaseObject*, BaseObject*, Bool));
METHOD(RenderData*, BaseDocument, GetActiveRenderData, ());
METHOD_CONST(BaseSceneHook*, BaseDocument, FindSceneHook, (LONG));
METHOD(Bool, BaseDocument, StartUndo, ());
METHOD(Bool, BaseDocument, EndUndo, ());
METHOD(Bool, BaseDocument, AddUndo, (UNDOTYPE, void*, Bool));
METHOD(BaseTime, BaseDocument, GetTime, ());
METHOD_CONST(LONG, BaseDocument, GetFps, ());

METHOD(BaseThread*, HierarchyHelp, GetThread, ());
METHOD(BaseDocument*, HierarchyHelp, GetDocument, ());

METHOD(Bool, BaseThread, TestBreak, ());

STATIC(BaseBitmap*, BaseBitmap, Alloc, ());
STATIC(void, BaseBitmap, Free, (BaseBitmap*&));
METHOD_CONST(IMAGERESULT, BaseBitmap, Save, (const Filename&, LONG, BaseContainer*, SAVEBIT));
METHOD_CONST(LONG, BaseBitmap, GetBw, ());
METHOD_CONST(LONG, BaseBitmap, GetBh, ());
METHOD(Bool, BaseBitmap, SetPixelCnt, (LONG, LONG, LONG, UCHAR*, LONG, COLORMODE, PIXELCNT));

STATIC(MultipassBitmap*, MultipassBitmap, Alloc, (LONG, LONG, COLORMODE));
STATIC(void, MultipassBitmap, Free, (MultipassBitmap*&));

METHOD(Bool, Description, LoadDescription, (LONG));
METHOD(Bool, Description, LoadDescription, (const String&));
METHOD(const DescID*, Description, GetSingleDescID, ());

FIELD(DescriptionCommand, id, DescID);

FIELD(DescriptionPostSetValue, descid, const DescID*);

METHOD(LONG, TP_ParticleNode, GetParticleID, ());
METHOD(TP_ParticleNode*, TP_ParticleNode, GetNext, ());

METHOD(TP_ParticleNode*, TP_PGroup, GetFirstNode, ());

METHOD_CONST(LONG, TP_PGroupArray, GetCount, ());
METHOD_CONST(TP_PGroup*, TP_PGroupArray, GetIndex, (LONG));

METHOD(LONG, TP_MasterSystem, AllocParticle, ());
METHOD(void, TP_MasterSystem, FreeParticle, (LONG));
METHOD(TP_PGroup*, TP_MasterSystem, AllocParticleGroup, ());
METHOD(void, TP_MasterSystem, FreeParticleGroup, (TP_PGroup*&));
METHOD(Bool, TP_MasterSystem, SetPGroupHierarchy, (TP_PGroup*, TP_PGroup*, TP_InsertMode));
METHOD(LONG, TP_MasterSystem, GetParticleGroups, (TP_PGroup*, TP_PGroupArray*, TP_GetPGroupMode, Bool));
METHOD(void, TP_MasterSystem, SetGroup, (LONG, TP_PGroup*));
METHOD(void, TP_MasterSystem, SetPosition, (LONG, const Vector&));
METHOD(Vector, TP_MasterSystem, Position, (LONG));
METHOD(Real, TP_MasterSystem, Size, (LONG));
METHOD(void, TP_MasterSystem, SetLife, (LONG, const BaseTime&));

METHOD_CONST(GeListNode*, NodeData, Get, ());
METHOD(Bool, NodeData, Init, (GeListNode*));
METHOD(void, NodeData, Free, (GeListNode*));
METHOD(Bool, NodeData, Read, (GeListNode*, HyperFile*, LONG));
METHOD(Bool, NodeData, Write, (GeListNode*, HyperFile*));
METHOD(Bool, NodeData, Message, (GeListNode*, LONG, void*));
METHOD(Bool, NodeData, CopyTo, (NodeData*, GeListNode*, GeListNode*, COPYFLAGS, AliasTrans*));
METHOD(Bool, NodeData, GetDDescription, (GeListNode*, Description*, DESCFLAGS_DESC&));
METHOD(Bool, NodeData, GetDParameter, (GeListNode*, const DescID&, GeData&, DESCFLAGS_GET&));
METHOD(Bool, NodeData, GetDEnabling,
       (GeListNode*, const DescID&, const GeData&, DESCFLAGS_ENABLE, const BaseContainer*));
METHOD(Bool, NodeData, SetDParameter, (GeListNode*, const DescID&, const GeData&, DESCFLAGS_SET&));

METHOD(void, ObjectData, GetDimension, (BaseObject*, Vector*, Vector*));
METHOD(DRAWRESULT, ObjectData, Draw, (BaseObject*, DRAWPASS, BaseDraw*, BaseDrawHelp*));
METHOD(BaseObject*, ObjectData, GetVirtualObjects, (BaseObject*, HierarchyHelp*));

METHOD(INITRENDERRESULT, ShaderData, InitRender, (BaseShader*, const InitRenderStruct&));
METHOD(void, ShaderData, FreeRender, (BaseShader*));
METHOD(Vector, ShaderData, Output, (BaseShader*, ChannelData*));

METHOD(VIDEOPOSTINFO, VideoPostData, GetRenderInfo, (BaseVideoPost*));
METHOD(RENDERRESULT, VideoPostData, Execute, (BaseVideoPost*, VideoPostStruct*));
METHOD(void, VideoPostData, CalcVolumetric, (BaseVideoPost*, VolumeData*));
METHOD(void, VideoPostData, CalcShadow, (BaseVideoPost*, VolumeData*));

METHOD(LONG, MessageData, GetTimer, ());
METHOD(Bool, MessageData, CoreMessage, (LONG, const BaseContainer&));

FIELD(Ray, p, LVector);
FIELD(Ray, v, LVector);

FIELD(RayLight, link, BaseObject*);
FIELD(RayLight, m, LMatrix);
FIELD(RayLight, type, LONG);
FIELD(RayLight, falloff, LONG);
FIELD(RayLight, ambient, Bool);
FIELD(RayLight, color, Vector);

FIELD(BaseVolumeData, version, LONG);
FIELD(BaseVolumeData, fps, LONG);
FIELD(BaseVolumeData, ambient, Vector);
FIELD(BaseVolumeData, time, Real);
FIELD(BaseVolumeData, col, Vector);
FIELD(BaseVolumeData, trans, Vector);
FIELD(BaseVolumeData, p, LVector);
FIELD(BaseVolumeData, bumpn, LVector);
FIELD(BaseVolumeData, ray, Ray*);
FIELD(BaseVolumeData, orign, LVector);
FIELD(BaseVolumeData, n, LVector);
FIELD(BaseVolumeData, dist, LReal);
FIELD(BaseVolumeData, raybits, RAYBIT);
FIELD(BaseVolumeData, xlight, RayLight*);
FIELD(BaseVolumeData, op, RayObject*);

FIELD(IlluminanceSurfacePointData, p, LVector);
FIELD(IlluminanceSurfacePointData, bumpn, LVector);
FIELD(IlluminanceSurfacePointData, phongn, LVector);
FIELD(IlluminanceSurfacePointData, orign, LVector);
FIELD(IlluminanceSurfacePointData, ray_vector, LVector);
FIELD(IlluminanceSurfacePointData, cosine_cutoff, Bool);
FIELD(IlluminanceSurfacePointData, calc_shadow, Bool);
FIELD(IlluminanceSurfacePointData, raybits, RAYBIT);

METHOD(LONG, VolumeData, GetCurrentCPU, ());
METHOD(LONG, VolumeData, GetCPUCount, ());
METHOD(Bool, VolumeData, TestBreak, ());
METHOD(void, VolumeData, IlluminanceSurfacePoint, (IlluminanceSurfacePointData*, Vector*, Vector*));

METHOD(LONG, VPBuffer, GetBw, ());
METHOD(LONG, VPBuffer, GetBh, ());
METHOD(LONG, VPBuffer, GetCpp, ());
METHOD(Bool, VPBuffer, GetLine, (LONG, LONG, LONG, void*, LONG, Bool));

METHOD(VPBuffer*, Render, GetBuffer, (LONG, LONG));

FIELD(VideoPostStruct, version, LONG);
FIELD(VideoPostStruct, vp, VIDEOPOSTCALL);
FIELD(VideoPostStruct, open, Bool);
FIELD(VideoPostStruct, time, BaseTime);
FIELD(VideoPostStruct, fps, LONG);
FIELD(VideoPostStruct, error, RENDERRESULT*);
FIELD(VideoPostStruct, vd, VolumeData*);
FIELD(VideoPostStruct, doc, BaseDocument*);
FIELD(VideoPostStruct, thread, BaseThread*);
FIELD(VideoPostStruct, render, Render*);

FIELD(InitRenderStruct, version, LONG);
FIELD(InitRenderStruct, time, BaseTime);
FIELD(InitRenderStruct, fps, LONG);

FIELD(ChannelData, p, Vector);
FIELD(ChannelData, n, Vector);
FIELD(ChannelData, d, Vector);
FIELD(ChannelData, t, Real);

METHOD(Bool, GeResource, Init, ());

STATIC(SplineData*, SplineData, Alloc, ());
STATIC(void, SplineData, Free, (SplineData*&));
METHOD_CONST(LONG, SplineData, GetKnotCount, ());
METHOD_CONST(Vector, SplineData, GetPoint, (Real));

METHOD(void, GeData, Free, ());
METHOD_CONST(LONG, GeData, GetType, ());
METHOD_CONST(Bool, GeData, GetBool, ());
METHOD_CONST(LONG, GeData, GetLong, ());
METHOD_CONST(Real, GeData, GetReal, ());
METHOD_CONST(const Vector&, GeData, GetVector, ());
METHOD_CONST(const String&, GeData, GetString, ());
METHOD_CONST(const Filename&, GeData, GetFilename, ());
METHOD_CONST(const BaseTime&, GeData, GetTime, ());
METHOD_CONST(CustomDataType*, GeData, GetCustomDataType, (LONG));
METHOD_CONST(BaseList2D*, GeData, GetLink, (const BaseDocument*, LONG));
METHOD(void, GeData, SetLong, (LONG));
METHOD(void, GeData, SetReal, (Real));
METHOD(void, GeData, SetVector, (const Vector&));
METHOD(void, GeData, SetString, (const String&));
METHOD(void, GeData, SetFilename, (const Filename&));

METHOD_CONST(const GeData*, BaseContainer, GetDataPointer, (LONG));
METHOD_CONST(const GeData&, BaseContainer, GetData, (LONG));
METHOD(GeData*, BaseContainer, SetData, (LONG, const GeData&));
METHOD_CONST(Bool, BaseContainer, GetBool, (LONG, Bool));
METHOD_CONST(LONG, BaseContainer, GetLong, (LONG, LONG));
METHOD_CONST(Real, BaseContainer, GetReal, (LONG, Real));
METHOD_CONST(Vector, BaseContainer, GetVector, (LONG, const Vector&));
METHOD_CONST(String, BaseContainer, GetString, (LONG, const String&));
METHOD_CONST(Filename, BaseContainer, GetFilename, (LONG, const Filename&));
METHOD_CONST(CustomDataType*, BaseContainer, GetCustomDataType, (LONG, LONG));
METHOD_CONST(LONG, BaseContainer, FindIndex, (LONG, GeData**));
METHOD_CONST(LONG, BaseContainer, GetType, (LONG));
METHOD_CONST(BaseList2D*, BaseContainer, GetLink, (LONG, const BaseDocument*, LONG));
METHOD_CONST(BaseObject*, BaseContainer, GetObjectLink, (LONG, const BaseDocument*));
METHOD(void, BaseContainer, SetBool, (LONG, Bool));
METHOD(void, BaseContainer, SetLong, (LONG, LONG));
METHOD(void, BaseContainer, SetReal, (LONG, Real));
METHOD(void, BaseContainer, SetVector, (LONG, const Vector&));
METHOD(void, BaseContainer, SetString, (LONG, const String&));
METHOD(void, BaseContainer, SetFilename, (LONG, const Filename&));
METHOD(void, BaseContainer, SetLink, (LONG, C4DAtomGoal*));

FIELD(DescLevel, id, LONG);

METHOD(Bool, Filename, FileSelect, (FILESELECTTYPE, FILESELECT, const String&, const String&));
METHOD_CONST(Bool, Filename, Content, ());
METHOD_CONST(String, Filename, GetString, ());
METHOD(void, Filename, SetString, (const String&));
METHOD_CONST(Filename, Filename, GetDirectory, ());
METHOD_CONST(String, Filename, GetFileString, ());
METHOD_CONST(String, Filename, GetSuffix, ());
METHOD_CONST(Bool, Filename, CheckSuffix, (const String&));
METHOD_CONST(void, Filename, CopyTo, (Filename*));

METHOD_CONST(LONG, String, GetLength, ());
METHOD_CONST(Bool, String, Content, ());
METHOD_CONST(void, String, CopyTo, (String*));
METHOD_CONST(LONG, String, Compare, (const String&));
METHOD_CONST(Bool, String, FindFirst, (const String&, LONG*, LONG));
METHOD_CONST(Bool, String, FindFirst, (UWORD, LONG*, LONG));
METHOD_CONST(Bool, String, FindLast, (const String&, LONG*, LONG));
METHOD_CONST(Bool, String, FindLast, (UWORD, LONG*, LONG));
METHOD_CONST(String, String, SubStr, (LONG, LONG));
METHOD_CONST(String, String, Left, (LONG));
METHOD(void, String, Delete, (LONG, LONG));
METHOD_CONST(LONG, String, ToLong, (LONG*));
METHOD_CONST(LONG, String, GetCString, (CHAR*, LONG, STRINGENCODING));
METHOD_CONST(CHAR*, String, GetCStringCopy, (STRINGENCODING));

METHOD_CONST(Real, BaseTime, Get, ());
METHOD_CONST(LONG, BaseTime, GetFrame, (Real));

STATIC(HairGuides*, HairGuides, Alloc, (LONG, LONG));
STATIC(void, HairGuides, Free, (HairGuides*&));
METHOD_CONST(LONG, HairGuides, GetCount, ());
METHOD_CONST(LONG, HairGuides, GetPointCount, ());
METHOD(Vector*, HairGuides, GetPoints, ());

STATIC(HairObject*, HairObject, Alloc, ());
STATIC(void, HairObject, Free, (HairObject*&));
METHOD(Bool, HairObject, Lock, (BaseDocument*, BaseThread*, Bool, LONG));
METHOD(void, HairObject, Unlock, ());
METHOD(HairGuides*, HairObject, GetGuides, ());
METHOD(Bool, HairObject, SetGuides, (HairGuides*, Bool));
METHOD(Bool, HairObject, Update, (BaseDocument*));

FIELD(PrefsMapTable, guiid, LONG);
FIELD(PrefsMapTable, prefsid, LONG);

STATIC(BasePlugin*, PrefsDialogObject, Register,
       (LONG, DataAllocator*, const String&, const String&, LONG, LONG));

// Read by the converters and the renderer's lights, and known to be without const in this release.
METHOD(LONG, PolygonObject, GetPolygonCount, ());
METHOD(const CPolygon*, PolygonObject, GetPolygonR, ());
METHOD(LONG, SplineObject, GetSegmentCount, ());
METHOD(const Segment*, SplineObject, GetSegmentR, ());
METHOD(LONG, VariableTag, GetDataSize, ());
METHOD(const void*, VariableTag, GetLowlevelDataAddressR, ());
METHOD(const String&, BaseList2D, GetTypeName, ());
METHOD(Filename, BaseDocument, GetDocumentName, ());
METHOD(Filename, BaseDocument, GetDocumentPath, ());
METHOD(LONG, VolumeData, GetLightCount, ());
METHOD(RayParameter*, VolumeData, GetRayParameter, ());
METHOD(RayCamera*, VolumeData, GetRayCamera, ());
METHOD(LONG, VPBuffer, GetInfo, (VPGETINFO));
METHOD(LONG, VPBuffer, GetBt, ());
METHOD(Bool, VPBuffer, SetLine, (LONG, LONG, LONG, void*, LONG, Bool));
FIELD(Ray, ior, Real);
FIELD(IlluminanceSurfacePointData, local_mat, void*);
FIELD(IlluminanceSurfacePointData, model, IlluminanceSurfacePointModel*);
FIELD(IlluminanceSurfacePointData, customdata, void*);
static_assert(std::is_aggregate_v<IlluminanceSurfacePointData>, "it has no constructor: {} sets every field");

struct Preferences : PrefsDialogObject {
  METHOD(Bool, Preferences, InitValues, (const DescID&, Description*));
  METHOD(void, Preferences, InitPrefsValue,
         (LONG, const GeData&, Description*, const DescID&, BaseContainer*));
};

// Numbers behind the names that registrations pass and messages carry.
static_assert(PLUGINFLAG_VIDEOPOST_MULTIPLE == 1 && PLUGINFLAG_VIDEOPOST_INHERENT == 2 &&
              PLUGINFLAG_VIDEOPOST_GL == 4);
static_assert(OBJECT_GENERATOR == 4);
static_assert(PLUGINFLAG_HIDE == 1 << 29 && PLUGINFLAG_HIDEPLUGINMENU == 1 << 28);
static_assert(ID_MOTAGDATA == 1018625 && MSG_GET_MODATA == 1019522);
static_assert(Onull == 5140 && Opolygon == 5100 && Ospline == 5101 && Tvertexmap == 5682 && Ohair == 1017305);
static_assert(CUSTOMDATATYPE_SPLINE == 1009060 && ID_THINKINGPARTICLES == 1001428);
static_assert(PREFS_PRI_IMEXPORT == 10000060);
static_assert((LONG)HYPERFILEARRAY_WORD == 2 && (LONG)HYPERFILEARRAY_SREAL == 5);
static_assert(FILTER_PNG == 1023671 && FILTER_TIF == 1100);

} // namespace
