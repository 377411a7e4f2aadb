// GL drawing through the host: program factory, vertex buffers and their descriptions.
// Everything here belongs to the thread that draws the view (main thread in the viewport).
#pragma once

#include "c4d_nodes.h"

typedef unsigned int C4DGLuint;
typedef int C4DGLint;
/** Handle of a uniform; -1 means there is none. */
typedef VLONG GlProgramParameter;

enum GlProgramType { VertexProgram = 1, FragmentProgram = 2, CompiledProgram = 3, GeometryProgram = 4 };

enum GlUniformParamType {
  UniformFloat1 = 0,
  UniformFloat2 = 1,
  UniformFloat3 = 2,
  UniformFloat4 = 3,
  UniformInt1 = 4,
  UniformInt2 = 5, // ours
  UniformInt3 = 6, // ours
  UniformInt4 = 7,
  UniformFloatMatrix2 = 12,
  UniformFloatMatrix3 = 13,
  UniformFloatMatrix4 = 14
};

enum GlVertexBufferSubBufferType {
  VBArrayBuffer = 0,
  VBElementArrayBuffer16 = 1,
  VBElementArrayBuffer32 = 2
};
enum GlVertexBufferAccessFlags { VBReadWrite = 0, VBReadOnly = 1, VBWriteOnly = 2 };

enum {
  C4D_VERTEX_BUFFER_VERTEX = 0,
  C4D_VERTEX_BUFFER_NORMAL = 2,
  C4D_VERTEX_BUFFER_COLOR = 3,
  C4D_VERTEX_BUFFER_TEX_COORD_0 = 8
};
enum {
  C4D_VERTEX_BUFFER_TRIANGLES = 0,    // ours
  C4D_VERTEX_BUFFER_TRIANGLE_FAN = 4, // ours
  C4D_VERTEX_BUFFER_POINTS = 5,
  C4D_VERTEX_BUFFER_LINES = 6,         // ours
  C4D_VERTEX_BUFFER_LINE_STRIP = 7,    // ours
  C4D_VERTEX_BUFFER_TRIANGLE_STRIP = 8 // ours
};
enum { C4D_GL_DATATYPE_FLOAT = 0x1406 };

/** Light 8-bit text. */
class GlString {
public:
  GlString() {}
  GlString(const char* s) { Append(s); }
  GlString(const GlString& s) { Append(s.GetCString()); }
  GlString(GlString&& s) noexcept { Swap(s); }
  explicit GlString(LONG n);
  ~GlString() { sdk::Free(text_); }
  GlString& operator=(const GlString& s) {
    GlString copy(s);
    Swap(copy);
    return *this;
  }
  GlString& operator=(GlString&& s) noexcept {
    Swap(s);
    return *this;
  }
  friend GlString operator+(const GlString& a, const GlString& b) {
    GlString sum(a);
    sum.Append(b.GetCString());
    return sum;
  }
  GlString& operator+=(const GlString& s) {
    Append(s.GetCString());
    return *this;
  }
  bool operator==(const GlString& s) const { return Compare(s) == 0; }
  LONG Compare(const GlString& s) const { return std::strcmp(GetCString(), s.GetCString()); }
  const char* GetCString() const { return text_ ? text_ : ""; }
  VLONG GetLength() const { return length_; }

private:
  void Append(const char* s);
  void Swap(GlString& s) noexcept {
    std::swap(text_, s.text_);
    std::swap(length_, s.length_);
  }
  char* text_ = NULL;
  VLONG length_ = 0;
};

class GlLight;
class GlVertexSubBufferData;
class GlProgramFactory;
struct GlFBAdditionalTextureInfo;

typedef void (*GlProgramFactoryMessageCallback)(LONG lMessage, const void* pObj, LULONG ulIndex,
                                                GlProgramFactory* pFactory);
typedef LONG (*GlProgramFactoryErrorHandler)(GlProgramType type, const char* pszError);
typedef void (*GlVertexBufferDrawElementCallback)(LONG lElement, void* pData);

/** One draw of a range of a sub-buffer. */
struct GlVertexBufferDrawSubbuffer {
  LONG lType, lCount, lOffset;
  GlVertexBufferDrawSubbuffer() {}
  GlVertexBufferDrawSubbuffer(LONG type, LONG count, LONG offset)
      : lType(type), lCount(count), lOffset(offset) {}
};

/** A name that program text uses, and the statement that fills it from the vertex attributes. */
class GlVertexBufferAttributeInfo {
public:
  GlVertexBufferAttributeInfo() : bContinuous(FALSE), ulData(0), lCount(0) {}
  GlString strDeclaration;
  GlString strName;
  Bool bContinuous;
  ULONG ulData;
  LONG lVector[4];
  LONG lIndex[4];
  LONG lCount;
};

/** Where one vertex attribute lies in the record of a vertex. */
class GlVertexBufferVectorInfo {
public:
  GlString strType;
  GlString strName;
  LONG lDataType = 0;
  LONG lCount = 0;
  VLONG lOffset = 0;
  VLONG lStride = 0;
  Bool bNormalize = TRUE;
  C4DGLint nAttribLocation = -1;
  C4DGLint nUniformLocation = -1;
};

/** Builder and owner of one shader program. Instances belong to a cache of the host. */
class GlProgramFactory : public HostOwned {
public:
  /**
   * Finds or makes the factory of (view, object, index, identity, vertex layout); NULL on failure. The
   * descriptions must outlive the factory.
   */
  static GlProgramFactory* GetFactory(const BaseDraw* bd, const C4DAtom* obj, LULONG index,
                                      GlProgramFactoryMessageCallback callback, void* identity,
                                      VLONG identityLen, const GlLight* const* lights, LONG lightCnt,
                                      LULONG flags, const GlVertexBufferAttributeInfo* const* attributes,
                                      LONG attributeCnt, const GlVertexBufferVectorInfo* const* vectors,
                                      LONG vectorCnt, GlFBAdditionalTextureInfo* additionalTextures);
  /** Drops all programs of a node; called when the node is freed. */
  static void RemoveReference(const C4DAtom* obj, LULONG index = (LULONG)NOTOK);

  void LockFactory();
  void UnlockFactory();
  /** Makes the view's context current; NULL unbinds. */
  Bool BindToView(const BaseDraw* bd);
  Bool IsProgram(GlProgramType t);
  /** Calls in this order: AddParameters, Init, AddErrorHandler, uniforms, header lines, HeaderFinished,
   * lines, CompilePrograms. */
  void AddParameters(LULONG parameters, LULONG formats = 0);
  ULONG Init(LONG subdivisionCount);
  void AddErrorHandler(GlProgramFactoryErrorHandler fn);
  /** Declares a uniform and returns the real name, to be used in lines and for GetParameterHandle. */
  GlString AddUniformParameter(GlProgramType t, GlUniformParamType p, const char* name);
  /** Before HeaderFinished a line goes to the declarations, after it to the body. */
  void AddLine(GlProgramType t, const GlString& line);
  GlString GetUniqueID();
  Bool HeaderFinished();
  Bool CompilePrograms();
  Bool DestroyPrograms();
  Bool BindPrograms();
  Bool UnbindPrograms();
  void InitSetParameters();

  void GetVectorInfo(LONG& count, const GlVertexBufferVectorInfo* const*& infos) const;
  GlProgramParameter GetParameterHandle(GlProgramType t, const char* name) const;
  /** Sets the view's current object-to-screen transform. */
  Bool SetParameterMatrixTransform(GlProgramParameter param);
  Bool SetParameterInt(GlProgramParameter param, int v);
  Bool SetParameterReal(GlProgramParameter param, SReal v);
  Bool SetParameterVector(GlProgramParameter param, const SVector& v);
};

/** Vertex data of one node in one view. Sub-buffers belong to their vertex buffer. */
class GlVertexBuffer : public HostOwned {
public:
  /** Finds or makes the buffer of (view, object, index, identity); NULL on failure. */
  static GlVertexBuffer* GetVertexBuffer(const BaseDraw* bd, const C4DAtom* obj, LONG index, void* identity,
                                         VLONG identityLen, ULONG flags = 0);
  static void RemoveObject(C4DAtom* obj, LONG index);

  /** TRUE for a fresh buffer and after SetDirty. */
  Bool IsDirty();
  void SetDirty(Bool dirty = TRUE);
  /** Copies size bytes; NULL when the card or the host refuses. */
  GlVertexSubBufferData* AllocSubBuffer(const BaseDraw* bd, GlVertexBufferSubBufferType type, VLONG size,
                                        const void* data);
  Bool FreeBuffer(const BaseDraw* bd, GlVertexSubBufferData* sub);
  LONG GetSubBufferCount() const;
  static Bool DrawSubBuffer(const BaseDraw* bd, const GlVertexSubBufferData* vertexSub,
                            const GlVertexSubBufferData* elementSub, LONG drawCnt,
                            const GlVertexBufferDrawSubbuffer* draw, LONG vectorCnt,
                            const GlVertexBufferVectorInfo* const* vectors,
                            GlVertexBufferDrawElementCallback callback = NULL, void* callbackData = NULL);
};
