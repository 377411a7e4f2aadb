// Entries for program factories and vertex buffers of the views.
#include "c4d_os.h"
#include "host/base/misbehaviour.h"
#include "host/nodes/services.h"
#include "host/seam/os_tables.h"
#include "host/view/view_state.h"

#include <algorithm>

namespace host {

namespace {

ViewFactory& At(GlProgramFactory* f) {
  return *reinterpret_cast<ViewFactory*>(f);
}
const ViewFactory& At(const GlProgramFactory* f) {
  return *reinterpret_cast<const ViewFactory*>(f);
}
ViewBuffer& At(GlVertexBuffer* b) {
  return *reinterpret_cast<ViewBuffer*>(b);
}

bool Strikes(Fault fault) {
  return TheServices().faults.Strikes(fault);
}

/** A refused call is the module's mistake: say which and why. */
Bool Checked(ViewFactory& factory, bool ok) {
  if (!ok) ReportModule(factory.program.LastError());
  return ok;
}

/** The view of a call; NULL and a report for anything but a living view. */
ViewState* CheckedView(const BaseDraw* bd, const char* call) {
  ViewState* view = ViewState::Of(bd);
  if (ViewState::IsAlive(view)) return view;
  ReportModule(std::string(call) + ": the view does not exist");
  return nullptr;
}

gl::VertexAttribute Convert(const GlVertexBufferVectorInfo& info) {
  gl::VertexAttribute attribute;
  attribute.type = info.strType.GetCString();
  attribute.name = info.strName.GetCString();
  attribute.dataType = (unsigned)info.lDataType;
  attribute.components = info.lCount;
  attribute.offset = info.lOffset;
  attribute.stride = info.lStride;
  attribute.normalize = info.bNormalize != FALSE;
  attribute.location = info.nAttribLocation;
  return attribute;
}

std::string LayoutKey(const std::vector<gl::VertexAttribute>& attributes,
                      const std::vector<gl::InputVector>& inputs) {
  std::string key;
  for (const gl::VertexAttribute& a : attributes)
    key += a.type + " " + a.name + " " + std::to_string(a.dataType) + " " + std::to_string(a.components) +
           " " + std::to_string(a.offset) + " " + std::to_string(a.stride) + " " +
           std::to_string(a.location) + ";";
  for (const gl::InputVector& input : inputs) key += input.declaration + ";";
  return key;
}

std::string Identity(const void* bytes, VLONG length) {
  return bytes && length > 0 ? std::string((const char*)bytes, (std::size_t)length) : std::string();
}

struct GlEntries {
  static GlProgramFactory* GetFactory(const BaseDraw* bd, const C4DAtom* obj, LULONG index,
                                      GlProgramFactoryMessageCallback, void* identity, VLONG identityLen,
                                      const GlLight* const*, LONG, LULONG,
                                      const GlVertexBufferAttributeInfo* const* attributes, LONG attributeCnt,
                                      const GlVertexBufferVectorInfo* const* vectors, LONG vectorCnt) {
    ViewState* view = CheckedView(bd, "GlProgramFactory::GetFactory");
    if (!view || Strikes(Fault::ProgramFactory)) return nullptr;
    std::vector<gl::VertexAttribute> layout;
    for (LONG i = 0; i < vectorCnt; ++i) layout.push_back(Convert(*vectors[i]));
    std::vector<gl::InputVector> inputs;
    for (LONG i = 0; i < attributeCnt; ++i)
      inputs.push_back({attributes[i]->strDeclaration.GetCString(), attributes[i]->strName.GetCString()});
    const std::string key = Identity(identity, identityLen) + "|" + LayoutKey(layout, inputs);
    for (const auto& factory : view->factories)
      if (factory->object == obj && factory->index == index && factory->identity == key)
        return (GlProgramFactory*)factory.get();
    view->factories.push_back(std::make_unique<ViewFactory>(view, layout, inputs));
    ViewFactory& made = *view->factories.back();
    made.object = obj;
    made.index = index;
    made.identity = key;
    made.vectors.assign(vectors, vectors + vectorCnt);
    return (GlProgramFactory*)&made;
  }
  static void RemoveReference(const C4DAtom* obj, LULONG index) { ViewState::RemoveFactories(obj, index); }

  static void LockFactory(GlProgramFactory* f) { ++At(f).locks; }
  static void UnlockFactory(GlProgramFactory* f) {
    if (--At(f).locks >= 0) return;
    At(f).locks = 0;
    ReportModule("UnlockFactory without LockFactory");
  }
  static Bool BindToView(GlProgramFactory* f, const BaseDraw* bd) {
    ViewFactory& factory = At(f);
    if (!bd) {
      // The context stays current while a view draws: the view's other objects go on with it.
      if (!factory.bound) ReportModule("BindToView(NULL) of a factory that is not bound");
      factory.bound = false;
      return TRUE;
    }
    if (factory.locks == 0) ReportModule("BindToView without LockFactory");
    if (factory.bound) ReportModule("BindToView of a factory that is bound already");
    std::string error;
    ViewState* view = CheckedView(bd, "GlProgramFactory::BindToView");
    factory.bound = view && view->context->MakeCurrent(&error);
    if (!error.empty()) TheServices().console.Print("GL: " + error);
    return factory.bound;
  }
  static Bool IsProgram(GlProgramFactory* f, GlProgramType t) {
    return t == CompiledProgram && At(f).program.IsCompiled();
  }
  static void AddParameters(GlProgramFactory* f, LULONG parameters, LULONG) {
    Checked(At(f), At(f).program.AddParameters(parameters));
  }
  static ULONG Init(GlProgramFactory* f, LONG subdivisionCount) {
    return Checked(At(f), At(f).program.Init(subdivisionCount)) ? 1 : 0;
  }
  static void AddErrorHandler(GlProgramFactory* f, GlProgramFactoryErrorHandler fn) {
    Checked(At(f), fn && At(f).program.AddErrorHandler([fn](gl::Stage stage, const std::string& message) {
      fn((GlProgramType)stage, message.c_str());
    }));
  }
  static void AddUniformParameter(GlProgramFactory* f, GlProgramType t, GlUniformParamType p,
                                  const char* name, GlString* realName) {
    const std::string real =
        At(f).program.AddUniformParameter((gl::Stage)t, (gl::UniformType)p, name ? name : "");
    Checked(At(f), !real.empty());
    *realName = GlString(real.c_str());
  }
  static void AddLine(GlProgramFactory* f, GlProgramType t, const char* line) {
    Checked(At(f), At(f).program.AddLine((gl::Stage)t, line));
  }
  static void GetUniqueID(GlProgramFactory* f, GlString* id) {
    const std::string unique = At(f).program.GetUniqueID();
    Checked(At(f), !unique.empty());
    *id = GlString(unique.c_str());
  }
  static Bool HeaderFinished(GlProgramFactory* f) { return Checked(At(f), At(f).program.HeaderFinished()); }
  /** Failing is the program text's fault, not a breach: the handlers hear why. */
  static Bool CompilePrograms(GlProgramFactory* f) {
    if (!Strikes(Fault::Compile)) return At(f).program.CompilePrograms();
    At(f).program.AddLine(gl::Stage::Vertex, "#error made to fail");
    return At(f).program.CompilePrograms();
  }
  static Bool DestroyPrograms(GlProgramFactory* f) { return At(f).program.DestroyPrograms(); }
  static Bool BindPrograms(GlProgramFactory* f) { return Checked(At(f), At(f).program.BindPrograms()); }
  static Bool UnbindPrograms(GlProgramFactory* f) { return Checked(At(f), At(f).program.UnbindPrograms()); }
  static void InitSetParameters(GlProgramFactory*) {} // no texture units to count

  static void GetVectorInfo(const GlProgramFactory* f, LONG* count,
                            const GlVertexBufferVectorInfo* const** infos) {
    *count = (LONG)At(f).vectors.size();
    *infos = At(f).vectors.data();
  }
  static GlProgramParameter GetParameterHandle(const GlProgramFactory* f, GlProgramType t, const char* name) {
    return const_cast<ViewFactory&>(At(f)).program.GetParameterHandle((gl::Stage)t, name ? name : "");
  }
  static Bool SetParameterMatrixTransform(GlProgramFactory* f, GlProgramParameter p) {
    float columns[16];
    ClipMatrix(At(f).view->frame, At(f).view->objectMatrix, columns);
    return Checked(At(f), At(f).program.SetParameterMatrix((int)p, columns, 4));
  }
  static Bool SetParameterInt(GlProgramFactory* f, GlProgramParameter p, int v) {
    return Checked(At(f), At(f).program.SetParameterInts((int)p, &v, 1));
  }
  static Bool SetParameterReal(GlProgramFactory* f, GlProgramParameter p, SReal v) {
    return Checked(At(f), At(f).program.SetParameterReals((int)p, &v, 1));
  }
  static Bool SetParameterVector(GlProgramFactory* f, GlProgramParameter p, const SVector& v) {
    return Checked(At(f), At(f).program.SetParameterReals((int)p, &v.x, 3));
  }

  static GlVertexBuffer* GetVertexBuffer(const BaseDraw* bd, const C4DAtom* obj, LONG index, void* identity,
                                         VLONG identityLen, ULONG) {
    ViewState* view = CheckedView(bd, "GlVertexBuffer::GetVertexBuffer");
    if (!view || Strikes(Fault::VertexBuffer)) return nullptr;
    const std::string key = Identity(identity, identityLen);
    for (const auto& buffer : view->buffers)
      if (buffer->object == obj && buffer->index == index && buffer->identity == key)
        return (GlVertexBuffer*)buffer.get();
    view->buffers.push_back(std::make_unique<ViewBuffer>(view));
    ViewBuffer& made = *view->buffers.back();
    made.object = obj;
    made.index = index;
    made.identity = key;
    made.data.SetAllocationFault([](std::size_t) { return Strikes(Fault::SubBuffer); });
    return (GlVertexBuffer*)&made;
  }
  static void RemoveObject(C4DAtom* obj, LONG index) { ViewState::RemoveBuffers(obj, index); }
  static Bool IsDirty(GlVertexBuffer* vb) { return At(vb).dirty; }
  static void SetBufferDirty(GlVertexBuffer* vb, Bool dirty) { At(vb).dirty = dirty != FALSE; }
  static GlVertexSubBufferData* AllocSubBuffer(GlVertexBuffer* vb, const BaseDraw*,
                                               GlVertexBufferSubBufferType type, VLONG size,
                                               const void* data) {
    std::string error;
    gl::SubBuffer* made =
        size > 0 ? At(vb).data.Allocate((gl::BufferType)type, (std::size_t)size, data, &error) : nullptr;
    if (!made) TheServices().console.Print("GL: " + (error.empty() ? "a sub-buffer of no bytes" : error));
    return reinterpret_cast<GlVertexSubBufferData*>(made);
  }
  static Bool FreeBuffer(GlVertexBuffer* vb, const BaseDraw*, GlVertexSubBufferData* sub) {
    std::string error;
    if (At(vb).data.Free(reinterpret_cast<gl::SubBuffer*>(sub), &error)) return TRUE;
    ReportModule(error);
    return FALSE;
  }
  static LONG GetSubBufferCount(const GlVertexBuffer* vb) {
    return reinterpret_cast<const ViewBuffer*>(vb)->data.Count();
  }
  static Bool DrawSubBuffer(const BaseDraw* bd, const GlVertexSubBufferData* vertexSub,
                            const GlVertexSubBufferData* elementSub, LONG drawCnt,
                            const GlVertexBufferDrawSubbuffer* draw, LONG vectorCnt,
                            const GlVertexBufferVectorInfo* const* vectors,
                            GlVertexBufferDrawElementCallback callback, void* callbackData) {
    if (!CheckedView(bd, "GlVertexBuffer::DrawSubBuffer")) return FALSE;
    std::vector<gl::VertexAttribute> layout;
    for (LONG i = 0; i < vectorCnt; ++i) layout.push_back(Convert(*vectors[i]));
    gl::ResolveLocations(&layout);
    std::string error;
    for (LONG i = 0; i < drawCnt; ++i) {
      if (callback) callback(i, callbackData);
      const std::vector<gl::DrawRange> range = {{draw[i].lType, draw[i].lCount, draw[i].lOffset}};
      if (gl::DrawSubBuffer(reinterpret_cast<const gl::SubBuffer*>(vertexSub),
                            reinterpret_cast<const gl::SubBuffer*>(elementSub), range, layout, &error)) {
        ViewState::Of(bd)->pointsDrawn += draw[i].lCount;
        continue;
      }
      ReportModule(error);
      return FALSE;
    }
    return TRUE;
  }
};

} // namespace

HOST_BIND(Gl, GlEntries)

} // namespace host
