// Writes down what plug-ins ask of the host's GL table while it lives, and passes every call on.
#pragma once

#include "c4d_os.h"
#include "support/common.h"

#include <cstdio>

class GlRecorder {
public:
  GlRecorder() : os_(*t_C4DOS), table_(*t_C4DOS->gl) {
    current = this;
    host_ = t_C4DOS;
    os_.gl = &table_;
    Patch();
    t_C4DOS = &os_;
  }
  ~GlRecorder() {
    t_C4DOS = host_;
    current = nullptr;
  }
  GlRecorder(const GlRecorder&) = delete;
  GlRecorder& operator=(const GlRecorder&) = delete;

  /** One line a call; uniforms stand as <name>, whatever name the factory gave them. */
  std::vector<std::string> calls;

  /** The calls that begin so, without that beginning. */
  std::vector<std::string> After(const std::string& start) const {
    std::vector<std::string> found;
    for (const std::string& call : calls)
      if (call.rfind(start, 0) == 0) found.push_back(call.substr(start.size()));
    return found;
  }

private:
  static inline GlRecorder* current = nullptr;

  template <class... A>
  static void Note(const char* format, A... arguments) {
    char text[512];
    std::snprintf(text, sizeof text, format, arguments...);
    current->calls.push_back(text);
  }
  static const C4D_Gl& Host() { return *current->host_->gl; }
  static const char* Name(GlProgramParameter p) { return current->handles_[p].c_str(); }
  static std::string Plain(std::string text) {
    for (const auto& [real, name] : current->names_)
      for (std::size_t at; (at = text.find(real)) != std::string::npos;)
        text.replace(at, real.size(), "<" + name + ">");
    return text;
  }

  void Patch() {
    table_.AllocSubBuffer = [](GlVertexBuffer* vb, const BaseDraw* bd, GlVertexBufferSubBufferType type,
                               VLONG size, const void* data) {
      Note("AllocSubBuffer %d %d", (int)type, (int)size);
      return Host().AllocSubBuffer(vb, bd, type, size, data);
    };
    table_.LockFactory = [](GlProgramFactory* f) { Note("Lock"), Host().LockFactory(f); };
    table_.UnlockFactory = [](GlProgramFactory* f) { Note("Unlock"), Host().UnlockFactory(f); };
    table_.BindToView = [](GlProgramFactory* f, const BaseDraw* bd) {
      Note(bd ? "BindToView" : "Unbind view");
      return Host().BindToView(f, bd);
    };
    table_.AddUniformParameter = [](GlProgramFactory* f, GlProgramType t, GlUniformParamType p,
                                    const char* name, GlString* real) {
      Note("uniform %d %d %s", (int)t, (int)p, name);
      Host().AddUniformParameter(f, t, p, name, real);
      current->names_[real->GetCString()] = name;
    };
    table_.AddLine = [](GlProgramFactory* f, GlProgramType t, const char* line) {
      Note("line %d %s", (int)t, Plain(line).c_str());
      Host().AddLine(f, t, line);
    };
    table_.CompilePrograms = [](GlProgramFactory* f) { return Note("Compile"), Host().CompilePrograms(f); };
    table_.BindPrograms = [](GlProgramFactory* f) { return Note("BindPrograms"), Host().BindPrograms(f); };
    table_.UnbindPrograms = [](GlProgramFactory* f) {
      return Note("UnbindPrograms"), Host().UnbindPrograms(f);
    };
    table_.GetParameterHandle = [](const GlProgramFactory* f, GlProgramType t, const char* name) {
      const GlProgramParameter handle = Host().GetParameterHandle(f, t, name);
      current->handles_[handle] = Plain(name);
      return handle;
    };
    table_.SetParameterMatrixTransform = [](GlProgramFactory* f, GlProgramParameter p) {
      return Note("set %s", Name(p)), Host().SetParameterMatrixTransform(f, p);
    };
    table_.SetParameterInt = [](GlProgramFactory* f, GlProgramParameter p, int v) {
      return Note("set %s int %d", Name(p), v), Host().SetParameterInt(f, p, v);
    };
    table_.SetParameterReal = [](GlProgramFactory* f, GlProgramParameter p, SReal v) {
      return Note("set %s real %g", Name(p), v), Host().SetParameterReal(f, p, v);
    };
    table_.SetParameterVector = [](GlProgramFactory* f, GlProgramParameter p, const SVector& v) {
      return Note("set %s vector %g %g %g", Name(p), v.x, v.y, v.z), Host().SetParameterVector(f, p, v);
    };
    table_.DrawSubBuffer = [](const BaseDraw* bd, const GlVertexSubBufferData* vertices,
                              const GlVertexSubBufferData* elements, LONG drawCount,
                              const GlVertexBufferDrawSubbuffer* draw, LONG vectorCount,
                              const GlVertexBufferVectorInfo* const* vectors,
                              GlVertexBufferDrawElementCallback callback, void* data) {
      Note("DrawSubBuffer %d: %d %d %d", (int)drawCount, (int)draw->lType, (int)draw->lCount,
           (int)draw->lOffset);
      return Host().DrawSubBuffer(bd, vertices, elements, drawCount, draw, vectorCount, vectors, callback,
                                  data);
    };
  }

  OperatingSystem os_;
  C4D_Gl table_;
  OperatingSystem* host_;
  std::map<std::string, std::string> names_; ///< the factory's to ours
  std::map<GlProgramParameter, std::string> handles_;
};
