// EGL displays that need no window system, and how they are shared by the contexts of one process.
#pragma once

#include <string>
#include <vector>

namespace host::gl {

/**
 * An initialised EGL display. EGL hands out one handle per platform and does not count its users, so the
 * holders are counted here and the last one terminates the display. Movable, not copyable. Any thread.
 */
class EglDisplay {
public:
  EglDisplay() = default;
  EglDisplay(EglDisplay&& other) noexcept;
  EglDisplay& operator=(EglDisplay&& other) noexcept;
  ~EglDisplay() { Close(); }

  /** Initialises the display (EGLDisplay) unless another holder did. False with what EGL said. */
  bool Open(void* handle, std::string* error);
  void Close();
  /** EGLDisplay; NULL when not open. */
  void* Handle() const { return handle_; }

private:
  void* handle_ = nullptr;
};

/** A way to reach OpenGL without a window. */
struct DisplayChoice {
  std::string name;
  void* handle = nullptr; ///< EGLDisplay, not yet initialised; NULL when EGL offers none
  bool software = false;  ///< known to be a software rasteriser before it is tried
};

/**
 * The ways to try, in order: Mesa's surfaceless platform, each EGL device, the default display. Entries with
 * a NULL handle are ways that this EGL lacks. Empty when there is no EGL library.
 */
std::vector<DisplayChoice> ListDisplays();

/** "EGL_BAD_ALLOC" for the calling thread's last EGL error. */
std::string EglErrorName();

} // namespace host::gl
