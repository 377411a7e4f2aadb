// For builds without OpenGL: there is never a context, so nothing that needs one is ever made or called.
#include "host/gl/framebuffer.h"
#include "host/gl/primitive_drawer.h"
#include "host/gl/program_factory.h"
#include "host/gl/sub_buffer.h"
#include "host/gl/vertex_buffer.h"

namespace host::gl {

namespace {

constexpr const char* kReason = "the viewport is not available in this build: it has no OpenGL";

bool Refused(std::string* error) {
  *error = kReason;
  return false;
}

} // namespace

std::shared_ptr<Context> Context::Create(std::string* error) {
  Refused(error);
  return nullptr;
}
Context::~Context() {}
bool Context::MakeCurrent(std::string* error) {
  return Refused(error);
}
void Context::ClearErrors() {}
Context* Context::Current() {
  return nullptr;
}

CurrentScope::CurrentScope(Context& context, std::string* error)
    : previous_(nullptr), context_(context), ok_(Refused(error)) {}
CurrentScope::~CurrentScope() {}

std::unique_ptr<Framebuffer> Framebuffer::Create(std::shared_ptr<Context>, int, int, int,
                                                 std::string* error) {
  Refused(error);
  return nullptr;
}
Framebuffer::~Framebuffer() {}
bool Framebuffer::Bind(std::string* error) {
  return Refused(error);
}
bool Framebuffer::Clear(float, float, float, float, std::string* error) {
  return Refused(error);
}
bool Framebuffer::Read(int, Image*, std::string* error) {
  return Refused(error);
}

bool Framebuffer::ReadDepth(std::vector<float>*, std::string* error) {
  return Refused(error);
}

ShaderProgram::~ShaderProgram() {}

std::unique_ptr<PrimitiveDrawer> PrimitiveDrawer::Create(const std::shared_ptr<Context>&,
                                                         std::string* error) {
  Refused(error);
  return nullptr;
}
PrimitiveDrawer::~PrimitiveDrawer() {}
bool PrimitiveDrawer::Draw(Primitive, const ColoredVertex*, std::size_t, const float*, float,
                           std::string* error) {
  return Refused(error);
}

SubBuffer::~SubBuffer() {}

VertexBuffer::VertexBuffer(std::shared_ptr<Context> context) : context_(std::move(context)) {}
VertexBuffer::~VertexBuffer() {}
SubBuffer* VertexBuffer::Allocate(BufferType, std::size_t, const void*, std::string* error) {
  Refused(error);
  return nullptr;
}
bool VertexBuffer::Free(SubBuffer*, std::string* error) {
  return Refused(error);
}
bool VertexBuffer::FreeAll(std::string* error) {
  return Refused(error);
}
void* VertexBuffer::Map(SubBuffer*, BufferAccess, std::string* error) {
  Refused(error);
  return nullptr;
}
bool VertexBuffer::Unmap(SubBuffer*, std::string* error) {
  return Refused(error);
}
std::size_t SubBufferSize(const SubBuffer*) {
  return 0;
}
bool DrawSubBuffer(const SubBuffer*, const SubBuffer*, const std::vector<DrawRange>&,
                   const std::vector<VertexAttribute>&, std::string* error) {
  return Refused(error);
}

ProgramFactory::ProgramFactory(std::shared_ptr<Context> context, std::vector<VertexAttribute>,
                               std::vector<InputVector>)
    : context_(std::move(context)) {
  Refused(&lastError_);
}
ProgramFactory::~ProgramFactory() {}
bool ProgramFactory::AddParameters(std::uint64_t) {
  return false;
}
bool ProgramFactory::Init(int) {
  return false;
}
bool ProgramFactory::AddErrorHandler(ErrorHandler) {
  return false;
}
std::string ProgramFactory::AddUniformParameter(Stage, UniformType, const std::string&) {
  return std::string();
}
bool ProgramFactory::AddLine(Stage, const std::string&) {
  return false;
}
std::string ProgramFactory::GetUniqueID() {
  return std::string();
}
bool ProgramFactory::HeaderFinished() {
  return false;
}
bool ProgramFactory::CompilePrograms() {
  return false;
}
bool ProgramFactory::DestroyPrograms() {
  return true;
}
bool ProgramFactory::BindPrograms() {
  return false;
}
bool ProgramFactory::UnbindPrograms() {
  return false;
}
int ProgramFactory::GetParameterHandle(Stage, const std::string&) {
  return -1;
}
bool ProgramFactory::SetParameterMatrix(int, const float*, int) {
  return false;
}
bool ProgramFactory::SetParameterReals(int, const float*, int) {
  return false;
}
bool ProgramFactory::SetParameterInts(int, const int*, int) {
  return false;
}
bool ProgramFactory::SetParameterUints(int, const unsigned*, int) {
  return false;
}

} // namespace host::gl
