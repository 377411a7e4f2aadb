#include "object/draw/point_program.h"

#include "fence.h"

#include <cstring>
#include <initializer_list>

namespace kelvra {

namespace {

/**
 * Colour passes from the vertex to the fragment stage; no colour conversion; no shadows; after lighting;
 * noise functions in the vertex stage.
 */
constexpr LULONG kProgramParameters = 0x1281040;

struct UniformDeclaration {
  const char* name;
  GlProgramType program;
  GlUniformParamType type;
};

/**
 * No line reads "fcolor_mode", the "mo_" uniforms and "index_count". They are declared on purpose, so that
 * setting them never fails.
 */
const UniformDeclaration kDeclarations[kUniformCount] = {
    {"point_size", VertexProgram, UniformFloat1},     {"min_height", VertexProgram, UniformFloat1},
    {"max_height", VertexProgram, UniformFloat1},     {"fcolor_mode", FragmentProgram, UniformInt1},
    {"vcolor_mode", VertexProgram, UniformInt1},      {"vcolor_invert", VertexProgram, UniformInt1},
    {"falloff_type", VertexProgram, UniformInt1},     {"falloff_action", VertexProgram, UniformInt1},
    {"falloff_pos", VertexProgram, UniformFloat3},    {"falloff_rad", VertexProgram, UniformFloat1},
    {"falloff_normal", VertexProgram, UniformFloat3}, {"falloff_func", VertexProgram, UniformFloat1},
    {"mo_time", VertexProgram, UniformFloat1},        {"mo_min", VertexProgram, UniformFloat1},
    {"mo_max", VertexProgram, UniformFloat1},         {"mo_delta", VertexProgram, UniformFloat1},
    {"mo_nscale", VertexProgram, UniformFloat1},      {"index_stop", VertexProgram, UniformInt1},
    {"index_count", VertexProgram, UniformInt1},      {"index_nth", VertexProgram, UniformInt1}};

LONG PrintError(GlProgramType, const char* message) {
  Fence("the compiler's error handler", [message] { GePrint(String("glerror") + String(message)); });
  return 0;
}

/**
 * Hands over the line that the parts make. A refused allocation cuts a text short without another sign, and
 * the host would keep what it compiled of it: only the length tells. FALSE, with nothing handed over, then.
 */
Bool AddLine(GlProgramFactory* factory, GlProgramType program, std::initializer_list<const char*> parts) {
  GlString line;
  std::size_t length = 0;
  for (const char* part : parts) {
    line += part;
    length += std::strlen(part);
  }
  if (line.GetLength() != (VLONG)length) return FALSE;
  factory->AddLine(program, line);
  return TRUE;
}

/**
 * Writes the vertex program. N(uniform) is the name that the factory gave a uniform. The text is the same for
 * all objects and settings. Drivers keep compiled programs by their text, so blanks and unused lines stay: a
 * new mode adds its line and leaves the others as they are.
 */
class ProgramWriter {
public:
  ProgramWriter(GlProgramFactory* factory, const UniformNames& uniforms)
      : factory_(factory), uniforms_(uniforms) {}

  /** FALSE when memory was refused for a line. */
  Bool Whole() const { return whole_; }

  /** Hides points beyond the share that is shown, and all but every n-th: a size of 0 draws nothing. */
  void Thinning() {
    Line({"if (gl_VertexID>", N(kIndexStop), ")\t{gl_PointSize = 0;return;}"});
    Line({"if (mod(gl_VertexID,", N(kIndexNth), ")>0)\t\t\t\t{gl_PointSize = 0;return;}"});
  }

  /** Mode 1 to 4: red, green, blue or their mean as grey; 5: the height as grey; 6: the colour by height. */
  void Color() {
    Line({"float size = ", N(kPointSize), ";"});
    Line({"vec4 col = vec4(icolor.rgb, 1.0);"});
    Line({"float col_val = 1.0;"});
    Line({"switch (", N(kColorMode), ") {"});
    Line({"case 1: col_val = icolor.r, col = vec4(col_val,col_val,col_val, 1.0);break;"});
    Line({"case 2: col_val = icolor.g, col = vec4(col_val,col_val,col_val, 1.0);break;"});
    Line({"case 3: col_val = icolor.b, col = vec4(col_val,col_val,col_val, 1.0);break;"});
    Line({"case 4: col_val = (icolor.r+icolor.g+icolor.b)*(1.0/3.0), col = vec4(col_val,col_val,col_val, "
          "1.0);break;"});
    Line({"case 5: col_val = (iposition.y-", N(kMinHeight), ")/(", N(kMaxHeight), "-", N(kMinHeight),
          "), col = vec4(col_val,col_val,col_val, 1.0);break;"});
    Line({"case 6: col_val = (iposition.y-", N(kMinHeight), ")/(", N(kMaxHeight), "-", N(kMinHeight),
          "), col = vec4(col_val*icolor.r,col_val*icolor.g,col_val*icolor.b, 1.0);break;"});
    Line({"}"});
    Line({"if (", N(kColorInvert), ">0) col = vec4(1.0-col.r,1.0-col.g,1.0-col.b, 1.0);"});
    Line({"ocolor = col;"});
    // No line reads it after the output; it stays as part of the text.
    Line({"col_val = (col.r+col.g+col.b)*(1.0/3.0);"});
  }

  /** From the object's space to the screen. */
  void Position() {
    Line({"vec3  p = iposition;"});
    Line({"oposition = (transmatrix * vec4(p.xyz, 1.0));"});
  }

  /** Hides points outside a sphere or beyond a plane (action 1) or shrinks them towards its edge (2). */
  void Falloff() {
    Line({"if (", N(kFalloffAction), ">0)"});
    Line({"{"});
    Line({" float dist,falloff,ifalloff;"});
    Line({"switch (", N(kFalloffType), ") {"});
    Line({"case 0:"});
    Line({" dist = distance( p, ", N(kFalloffPosition), " );"});
    Line({"break;"});
    Line({"case 1:"});
    Line({" dist = dot( ", N(kFalloffNormal), ", p -", N(kFalloffPosition), " );"});
    Line({"break;"});
    Line({"}"});
    Line({" falloff = smoothstep( ", N(kFalloffRadius), ",0.0, dist );"});
    Line({" ifalloff = pow(falloff,", N(kFalloffFunction), ");"});
    Line({" if (", N(kFalloffAction), "==1 )  if (ifalloff<=0.0) size = 0.0; else size = ", N(kPointSize),
          ";"});
    Line({" if (", N(kFalloffAction), "==2)   size = ", N(kPointSize), "*ifalloff;"});
    Line({"}"});
    Line({"gl_PointSize = size;"});
  }

private:
  const char* N(PointUniform uniform) const { return uniforms_.names[uniform].GetCString(); }
  void Line(std::initializer_list<const char*> parts) {
    whole_ = AddLine(factory_, VertexProgram, parts) && whole_;
  }

  GlProgramFactory* factory_;
  const UniformNames& uniforms_;
  Bool whole_ = TRUE;
};

/** None is empty, as where memory was refused for it. */
Bool AllKnown(const UniformNames& uniforms) {
  for (const GlString& name : uniforms.names)
    if (name.GetLength() == 0) return FALSE;
  return TRUE;
}

} // namespace

Bool BuildPointProgram(GlProgramFactory* factory, UniformNames& known) {
  if (factory->IsProgram(CompiledProgram)) {
    if (AllKnown(known)) return TRUE;
    // Undo gave the node the data of its copy, which does not know this program's names: build it again.
    factory->DestroyPrograms();
  }

  // Begin the header: parameters first, then Init, then the error handler, the only order that the host
  // takes.
  factory->AddParameters(kProgramParameters);
  factory->Init(0);
  factory->AddErrorHandler(&PrintError);

  // Declare the uniforms, and keep the names that the factory gives them.
  UniformNames uniforms;
  for (LONG i = 0; i < kUniformCount; ++i)
    uniforms.names[i] =
        factory->AddUniformParameter(kDeclarations[i].program, kDeclarations[i].type, kDeclarations[i].name);

  // End the header. Neither the variable nor the name is used; both are part of the text that is cached.
  const Bool begun = AddLine(factory, VertexProgram, {"vec3 ranv;"});
  factory->GetUniqueID();
  const Bool headed = factory->HeaderFinished();

  ProgramWriter vertex(factory, uniforms);
  vertex.Thinning();
  vertex.Color();
  vertex.Position();
  vertex.Falloff();
  const Bool ended = AddLine(factory, FragmentProgram, {"ocolor = icolor;"});
  // The host caches a program for good: one that lacks a line is never compiled.
  if (!AllKnown(uniforms) || !begun || !headed || !vertex.Whole() || !ended || !factory->CompilePrograms())
    return FALSE;
  // Programs of other views go by the names that are known: one that fails must not replace them.
  for (LONG i = 0; i < kUniformCount; ++i)
    if (known.names[i].Compare(uniforms.names[i]) != 0) known.names[i] = uniforms.names[i];
  return AllKnown(known);
}

void SetUniform(GlProgramFactory* factory, const GlString& name, const GeData& value, BaseContainer*) {
  const GlProgramParameter handle = factory->GetParameterHandle(VertexProgram, name.GetCString());
  switch (value.GetType()) {
  case DA_LONG:
    factory->SetParameterInt(handle, value.GetLong());
    break;
  case DA_REAL:
    factory->SetParameterReal(handle, (SReal)value.GetReal());
    break;
  case DA_VECTOR:
    factory->SetParameterVector(handle, value.GetVector().ToSV());
    break;
  default:
    break;
  }
}

} // namespace kelvra
