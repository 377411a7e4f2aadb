// An OpenGL context that draws off screen, on a graphics card or in software.
#pragma once

#include "host/gl/egl_display.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace host::gl {

/**
 * A desktop OpenGL context, 3.3 core or later, without a window. It belongs to the thread that created it:
 * every other thread is refused. Targets, buffers and programs hold the context alive.
 */
class Context {
public:
  /**
   * Tries the displays of ListDisplays in order and takes the first on a graphics card, else the first that
   * works at all. NULL with one line that says what was tried and how each failed. The context is not yet
   * current.
   */
  static std::shared_ptr<Context> Create(std::string* error);
  ~Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  /** Replaces what was current on this thread. False with a line on another thread than the creating one. */
  bool MakeCurrent(std::string* error);
  /** Leaves the thread without a context. False with a line when this context is not current here. */
  bool Release(std::string* error);
  bool IsCurrent() const { return Current() == this; }
  /** The calling thread's current context, NULL without one. */
  static Context* Current();

  /** True when the renderer is a software rasteriser. */
  bool IsSoftware() const { return software_; }

  /** GL errors since creation or ClearErrors; all are counted, the first 64 kept as text. */
  long long ErrorCount() const { return errorCount_; }
  const std::vector<std::string>& Errors() const { return errors_; }
  void ClearErrors();
  /** Called with each GL error as it happens, on the context's thread. */
  void SetErrorCallback(std::function<void(const std::string&)> callback) {
    errorCallback_ = std::move(callback);
  }
  /**
   * Takes the errors that GL holds. Returns the first one's name ("GL_OUT_OF_MEMORY"), empty without one.
   * Where the driver has no debug output they are reported from here, with `where` in the text. Must be
   * current.
   */
  std::string TakeError(const std::string& where);

private:
  Context() = default;
  bool Start(const DisplayChoice& choice, std::string* error);
  bool CreateHandle(bool surfaceless, std::string* error);
  void Describe();
  void ListenToDebugOutput();
  void Report(const std::string& text);
  static void OnDebugMessage(unsigned source, unsigned type, unsigned id, unsigned severity, int length,
                             const char* message, const void* context);

  void* display_ = nullptr; // EGLDisplay
  void* context_ = nullptr; // EGLContext
  void* surface_ = nullptr; // EGLSurface, only where the driver cannot do without
  std::thread::id thread_ = std::this_thread::get_id();
  bool software_ = false;
  bool debugOutput_ = false;
  long long errorCount_ = 0;
  std::vector<std::string> errors_;
  std::function<void(const std::string&)> errorCallback_;
};

/** Makes a context current for a block and brings back what was current before. */
class CurrentScope {
public:
  /** Check Ok() before GL is used; *error then holds a line. */
  CurrentScope(Context& context, std::string* error);
  ~CurrentScope();
  CurrentScope(const CurrentScope&) = delete;
  CurrentScope& operator=(const CurrentScope&) = delete;
  bool Ok() const { return ok_; }

private:
  Context* previous_;
  Context& context_;
  bool ok_;
};

/** "GL_INVALID_ENUM" for an error code of glGetError. */
std::string GlErrorName(unsigned code);

} // namespace host::gl
