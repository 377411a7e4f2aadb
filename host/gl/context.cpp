#include "host/gl/context.h"

#include <epoxy/gl.h>
// Its declarations of EGL need those of GL first.
#include <epoxy/egl.h>

#include <utility>

namespace host::gl {

namespace {

constexpr std::size_t kMaxKeptErrors = 64;

thread_local Context* currentContext = nullptr;

const char* Text(unsigned name) {
  const GLubyte* text = glGetString(name);
  return text ? reinterpret_cast<const char*>(text) : "unknown";
}

bool NamesSoftware(const std::string& renderer) {
  for (const char* word : {"llvmpipe", "softpipe", "swrast", "Software Rasterizer", "SwiftShader"})
    if (renderer.find(word) != std::string::npos) return true;
  return false;
}

} // namespace

std::shared_ptr<Context> Context::Create(std::string* error) {
  const std::vector<DisplayChoice> choices = ListDisplays();
  if (choices.empty()) {
    *error = "no usable OpenGL: libEGL is not installed";
    return nullptr;
  }
  std::shared_ptr<Context> software;
  std::string tried;
  for (const DisplayChoice& choice : choices) {
    if (software && choice.lastResort) continue;
    std::string reason;
    std::shared_ptr<Context> context(new Context);
    if (context->Start(choice, &reason)) {
      if (!context->IsSoftware()) return context;
      if (!software) software = std::move(context);
    } else {
      tried += (tried.empty() ? "" : "; ") + choice.name + ": " + reason;
    }
  }
  if (!software) *error = "no usable OpenGL 3.3: " + tried;
  return software;
}

bool Context::Start(const DisplayChoice& choice, std::string* error) {
  if (!choice.handle) {
    *error = "not offered by this EGL";
    return false;
  }
  if (!InitializeDisplay(choice.handle, error)) return false;
  display_ = choice.handle;
  if (!eglBindAPI(EGL_OPENGL_API)) {
    *error = "desktop OpenGL is not offered, " + EglErrorName();
    return false;
  }
  if (!CreateHandle(epoxy_has_egl_extension(choice.handle, "EGL_KHR_surfaceless_context"), error))
    return false;
  CurrentScope scope(*this, error);
  if (!scope.Ok()) return false;
  if (!epoxy_is_desktop_gl() || epoxy_gl_version() < 33) {
    *error = std::string("OpenGL 3.3 is needed, found ") + Text(GL_VERSION);
    return false;
  }
  Describe();
  ListenToDebugOutput();
  return true;
}

bool Context::CreateHandle(bool surfaceless, std::string* error) {
  // A surface type of 0 accepts every config; the default would ask for windows.
  const EGLint wanted[] = {EGL_SURFACE_TYPE, surfaceless ? 0 : EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                           EGL_OPENGL_BIT, EGL_NONE};
  EGLConfig config = nullptr;
  EGLint found = 0;
  if (!eglChooseConfig(display_, wanted, &config, 1, &found) || found == 0) {
    if (!surfaceless || !epoxy_has_egl_extension(display_, "EGL_KHR_no_config_context")) {
      *error = "no EGL config for desktop OpenGL, " + EglErrorName();
      return false;
    }
    config = nullptr;
  }
  const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION_KHR,
                               3,
                               EGL_CONTEXT_MINOR_VERSION_KHR,
                               3,
                               EGL_CONTEXT_OPENGL_PROFILE_MASK_KHR,
                               EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT_KHR,
                               EGL_CONTEXT_FLAGS_KHR,
                               EGL_CONTEXT_OPENGL_DEBUG_BIT_KHR,
                               EGL_NONE};
  context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, attributes);
  if (!context_) {
    *error = "no OpenGL 3.3 core context, " + EglErrorName();
    return false;
  }
  if (surfaceless) return true;
  const EGLint size[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
  surface_ = eglCreatePbufferSurface(display_, config, size);
  if (!surface_) *error = "no EGL pixel buffer, " + EglErrorName();
  return surface_ != nullptr;
}

void Context::Describe() {
  software_ = NamesSoftware(Text(GL_RENDERER));
}

Context::~Context() {
  if (Current() == this) {
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    currentContext = nullptr;
  }
  if (surface_) eglDestroySurface(display_, surface_);
  if (context_) eglDestroyContext(display_, context_);
}

bool Context::MakeCurrent(std::string* error) {
  if (std::this_thread::get_id() != thread_) {
    *error = "OpenGL context made current on another thread than the one that created it";
    return false;
  }
  if (Current() == this) return true;
  // The client API is a setting of the thread, and other users of EGL may have changed it.
  if (!eglBindAPI(EGL_OPENGL_API) || !eglMakeCurrent(display_, surface_, surface_, context_)) {
    *error = "the OpenGL context cannot be made current, " + EglErrorName();
    return false;
  }
  currentContext = this;
  return true;
}

bool Context::Release(std::string* error) {
  if (Current() != this) {
    *error = "OpenGL context released on a thread where it is not current";
    return false;
  }
  eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  currentContext = nullptr;
  return true;
}

Context* Context::Current() {
  // A window that shares the thread may have made its own one current meanwhile.
  if (currentContext && eglGetCurrentContext() != currentContext->context_) currentContext = nullptr;
  return currentContext;
}

void Context::ListenToDebugOutput() {
  if (epoxy_gl_version() < 43 && !epoxy_has_gl_extension("GL_KHR_debug")) return;
  debugOutput_ = true;
  glEnable(GL_DEBUG_OUTPUT);
  glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
  glDebugMessageCallback(&Context::OnDebugMessage, this);
}

void Context::OnDebugMessage(unsigned source, unsigned type, unsigned, unsigned severity, int length,
                             const char* message, const void* context) {
  // Compiler messages reach their reader through the program's error handlers.
  if (source == GL_DEBUG_SOURCE_SHADER_COMPILER) return;
  if (type != GL_DEBUG_TYPE_ERROR && type != GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR) return;
  if (severity != GL_DEBUG_SEVERITY_HIGH && severity != GL_DEBUG_SEVERITY_MEDIUM) return;
  std::string text = length >= 0 ? std::string(message, (std::size_t)length) : std::string(message);
  while (!text.empty() && (text.back() == '\n' || text.back() == '\0')) text.pop_back();
  // The callback hands back as constant what was registered as the context itself.
  static_cast<Context*>(const_cast<void*>(context))->Report(text);
}

void Context::Report(const std::string& text) {
  ++errorCount_;
  if (errors_.size() < kMaxKeptErrors) errors_.push_back(text);
  if (errorCallback_) errorCallback_(text);
}

void Context::ClearErrors() {
  errorCount_ = 0;
  errors_.clear();
}

std::string Context::TakeError(const std::string& where) {
  // A lost context may answer with an error for ever.
  constexpr int kMaxPending = 32;
  std::string first;
  for (int i = 0; i < kMaxPending; ++i) {
    const GLenum code = glGetError();
    if (code == GL_NO_ERROR) break;
    const std::string name = GlErrorName(code);
    if (first.empty()) first = name;
    if (!debugOutput_) Report(std::string(name).append(" in ").append(where));
  }
  return first;
}

CurrentScope::CurrentScope(Context& context, std::string* error)
    : previous_(Context::Current()), context_(context), ok_(context.MakeCurrent(error)) {}

CurrentScope::~CurrentScope() {
  if (!ok_ || previous_ == &context_) return;
  std::string ignored;
  if (previous_)
    previous_->MakeCurrent(&ignored);
  else
    context_.Release(&ignored);
}

std::string GlErrorName(unsigned code) {
  static const std::pair<GLenum, const char*> kNames[] = {
      {GL_INVALID_ENUM, "GL_INVALID_ENUM"},
      {GL_INVALID_VALUE, "GL_INVALID_VALUE"},
      {GL_INVALID_OPERATION, "GL_INVALID_OPERATION"},
      {GL_INVALID_FRAMEBUFFER_OPERATION, "GL_INVALID_FRAMEBUFFER_OPERATION"},
      {GL_OUT_OF_MEMORY, "GL_OUT_OF_MEMORY"},
      {GL_CONTEXT_LOST, "GL_CONTEXT_LOST"},
  };
  for (const auto& [value, name] : kNames)
    if (value == code) return name;
  return "GL error " + std::to_string(code);
}

} // namespace host::gl
