#include "host/gl/program_factory.h"

#include <cstdio>
#include <epoxy/gl.h>

namespace host::gl {

namespace {

constexpr int kTransformHandle = 0;

std::string Hex(std::uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof(text), "%llx", (unsigned long long)value);
  return text;
}

} // namespace

ProgramFactory::ProgramFactory(std::shared_ptr<Context> context, std::vector<VertexAttribute> attributes,
                               std::vector<InputVector> inputs)
    : context_(std::move(context)) {
  text_.attributes = std::move(attributes);
  text_.inputs = std::move(inputs);
  ResolveLocations(&text_.attributes);
}

ProgramFactory::~ProgramFactory() {
  DestroyPrograms();
}

const char* ProgramFactory::Describe(State state) {
  static constexpr const char* kNames[] = {"before AddParameters", "before Init", "before HeaderFinished",
                                           "before CompilePrograms", "after CompilePrograms"};
  return kNames[(int)state];
}

bool ProgramFactory::Refuse(const char* call, const std::string& reason) {
  lastError_ = std::string(call) + ": " + reason;
  return false;
}

bool ProgramFactory::Require(const char* call, std::initializer_list<State> states) {
  for (const State state : states)
    if (state == state_) return true;
  return Refuse(call, std::string("called ") + Describe(state_));
}

bool ProgramFactory::RequireCurrent(const char* call) {
  return context_->IsCurrent() || Refuse(call, "the view's OpenGL context is not current");
}

bool ProgramFactory::RequireStage(const char* call, Stage stage) {
  if (stage == Stage::Vertex || stage == Stage::Fragment) return true;
  return Refuse(call, "program type " + std::to_string((int)stage) + " is not available");
}

bool ProgramFactory::AddParameters(std::uint64_t parameters) {
  if (!Require("AddParameters", {State::Empty, State::Parameters})) return false;
  if (const std::uint64_t unknown = parameters & ~kKnownParameters)
    return Refuse("AddParameters", "flags 0x" + Hex(unknown) + " are not available");
  if (state_ == State::Empty) Restart();
  text_.parameters |= parameters;
  state_ = State::Parameters;
  return true;
}

void ProgramFactory::Restart() {
  text_.parameters = 0;
  text_.uniforms.clear();
  text_.vertex = text_.fragment = ProgramText::Lines();
  handlers_.clear();
  locations_.clear();
  lastId_ = 0;
  state_ = State::Empty;
}

bool ProgramFactory::Init(int subdivisionCount) {
  if (!Require("Init", {State::Parameters})) return false;
  if (subdivisionCount != 0)
    return Refuse("Init", "subdivision count " + std::to_string(subdivisionCount) + ", must be 0");
  std::string reason;
  if (!CheckLayout(text_.attributes, &reason)) return Refuse("Init", reason);
  state_ = State::Header;
  return true;
}

bool ProgramFactory::AddErrorHandler(ErrorHandler handler) {
  if (!Require("AddErrorHandler", {State::Header, State::Body})) return false;
  if (!handler) return Refuse("AddErrorHandler", "no handler given");
  handlers_.push_back(std::move(handler));
  return true;
}

std::string ProgramFactory::AddUniformParameter(Stage stage, UniformType type, const std::string& name) {
  const char* const call = "AddUniformParameter";
  if (!Require(call, {State::Header}) || !RequireStage(call, stage)) return "";
  if (!TypeKeyword(type)) {
    Refuse(call, "type " + std::to_string((int)type) + " of \"" + name + "\" is not available");
    return "";
  }
  if (!IsIdentifier(name)) {
    Refuse(call, "\"" + name + "\" is not an identifier");
    return "";
  }
  Uniform uniform;
  uniform.stage = stage;
  uniform.type = type;
  // Two underscores in a row are reserved in GLSL.
  uniform.name = name + (name.back() == '_' ? "" : "_") + Hex(++lastId_);
  text_.uniforms.push_back(uniform);
  return uniform.name;
}

bool ProgramFactory::AddLine(Stage stage, const std::string& line) {
  if (!Require("AddLine", {State::Header, State::Body}) || !RequireStage("AddLine", stage)) return false;
  ProgramText::Lines& lines = text_.Of(stage);
  (state_ == State::Header ? lines.header : lines.body).push_back(line);
  return true;
}

std::string ProgramFactory::GetUniqueID() {
  if (!Require("GetUniqueID", {State::Header, State::Body})) return "";
  return "unique_" + Hex(++lastId_);
}

bool ProgramFactory::HeaderFinished() {
  if (!Require("HeaderFinished", {State::Header})) return false;
  state_ = State::Body;
  return true;
}

void ProgramFactory::ForwardMessage(ShaderProgram::Source source, const std::string& message) {
  const Stage stage = source == ShaderProgram::Source::Fragment ? Stage::Fragment : Stage::Vertex;
  for (const ErrorHandler& handler : handlers_) handler(stage, message);
}

bool ProgramFactory::CompilePrograms() {
  const char* const call = "CompilePrograms";
  if (!Require(call, {State::Body}) || !RequireCurrent(call)) return false;
  std::string messages;
  program_ = ShaderProgram::Build(context_, GetText(Stage::Vertex), GetText(Stage::Fragment),
                                  [&](ShaderProgram::Source source, const std::string& message) {
                                    messages += (messages.empty() ? "" : "\n") + message;
                                    ForwardMessage(source, message);
                                  });
  state_ = program_ ? State::Compiled : State::Empty;
  if (!program_) return Refuse(call, messages);
  locations_.assign(1, program_->UniformLocation(kTransformName));
  for (const Uniform& uniform : text_.uniforms) locations_.push_back(program_->UniformLocation(uniform.name));
  return true;
}

bool ProgramFactory::DestroyPrograms() {
  if (bound_ && context_->IsCurrent()) UnbindPrograms();
  bound_ = bindFailed_ = false;
  program_.reset();
  Restart();
  return true;
}

bool ProgramFactory::BindPrograms() {
  const char* const call = "BindPrograms";
  bindFailed_ = true;
  if (!Require(call, {State::Compiled}) || !RequireCurrent(call)) return false;
  if (bound_) return Refuse(call, "already bound");
  GLint other = 0;
  glGetIntegerv(GL_CURRENT_PROGRAM, &other);
  if (other) return Refuse(call, "another program is bound");
  context_->TakeError("an earlier call");
  glUseProgram(program_->Name());
  glEnable(GL_PROGRAM_POINT_SIZE);
  const std::string reason = context_->TakeError("glUseProgram");
  if (!reason.empty()) return Refuse(call, "the driver reports " + reason);
  bindFailed_ = false;
  bound_ = true;
  return true;
}

bool ProgramFactory::UnbindPrograms() {
  const char* const call = "UnbindPrograms";
  const bool afterFailure = !bound_ && bindFailed_;
  bindFailed_ = false;
  if (afterFailure) return true;
  if (!bound_) return Refuse(call, "not bound");
  if (!RequireCurrent(call)) return false;
  glUseProgram(0);
  glDisable(GL_PROGRAM_POINT_SIZE);
  bound_ = false;
  return true;
}

int ProgramFactory::GetParameterHandle(Stage stage, const std::string& realName) {
  if (!Require("GetParameterHandle", {State::Compiled})) return -1;
  if (stage == Stage::Vertex && realName == kTransformName) return kTransformHandle;
  for (std::size_t i = 0; i < text_.uniforms.size(); ++i)
    if (text_.uniforms[i].stage == stage && text_.uniforms[i].name == realName) return (int)i + 1;
  Refuse("GetParameterHandle",
         "no uniform \"" + realName + "\" in program type " + std::to_string((int)stage));
  return -1;
}

bool ProgramFactory::FindTarget(const char* call, int handle, UniformType first, int offset, int count,
                                int* location) {
  if (!bound_) return Refuse(call, "no program is bound");
  if (!RequireCurrent(call)) return false;
  if (handle < 0 || handle >= (int)locations_.size())
    return Refuse(call, "there is no parameter with handle " + std::to_string(handle));
  const bool transform = handle == kTransformHandle;
  const UniformType type = transform ? UniformType::Matrix4 : text_.uniforms[(std::size_t)handle - 1].type;
  const std::string name = transform ? kTransformName : text_.uniforms[(std::size_t)handle - 1].name;
  // The types of one family follow each other by size.
  const int given = (int)first + offset;
  if (offset < 0 || offset >= count || given != (int)type)
    return Refuse(call, "parameter \"" + name + "\" is a " + TypeKeyword(type) + ", not of the type set");
  *location = locations_[(std::size_t)handle];
  return true;
}

bool ProgramFactory::SetParameterMatrix(int handle, const float* columns, int dimension) {
  int location = -1;
  if (!FindTarget("SetParameterMatrix", handle, UniformType::Matrix2, dimension - 2, 3, &location))
    return false;
  if (dimension == 2) glUniformMatrix2fv(location, 1, GL_FALSE, columns);
  if (dimension == 3) glUniformMatrix3fv(location, 1, GL_FALSE, columns);
  if (dimension == 4) glUniformMatrix4fv(location, 1, GL_FALSE, columns);
  return true;
}

bool ProgramFactory::SetParameterReals(int handle, const float* values, int count) {
  int location = -1;
  if (!FindTarget("SetParameterReal", handle, UniformType::Float1, count - 1, 4, &location)) return false;
  if (count == 1) glUniform1fv(location, 1, values);
  if (count == 2) glUniform2fv(location, 1, values);
  if (count == 3) glUniform3fv(location, 1, values);
  if (count == 4) glUniform4fv(location, 1, values);
  return true;
}

bool ProgramFactory::SetParameterInts(int handle, const int* values, int count) {
  int location = -1;
  if (!FindTarget("SetParameterInt", handle, UniformType::Int1, count - 1, 4, &location)) return false;
  if (count == 1) glUniform1iv(location, 1, values);
  if (count == 2) glUniform2iv(location, 1, values);
  if (count == 3) glUniform3iv(location, 1, values);
  if (count == 4) glUniform4iv(location, 1, values);
  return true;
}

bool ProgramFactory::SetParameterUints(int handle, const unsigned* values, int count) {
  int location = -1;
  if (!FindTarget("SetParameterUint", handle, UniformType::Uint1, count - 1, 4, &location)) return false;
  if (count == 1) glUniform1uiv(location, 1, values);
  if (count == 2) glUniform2uiv(location, 1, values);
  if (count == 3) glUniform3uiv(location, 1, values);
  if (count == 4) glUniform4uiv(location, 1, values);
  return true;
}

} // namespace host::gl
