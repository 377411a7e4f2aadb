// EGL displays that need no window system.
#pragma once

#include <string>
#include <vector>

namespace host::gl {

/** A way to reach OpenGL without a window. */
struct DisplayChoice {
  std::string name;
  void* handle = nullptr;  ///< EGLDisplay, not yet initialised; NULL when EGL offers none
  bool lastResort = false; ///< a software rasteriser, or a way that adds nothing once another works
};

/**
 * The ways to try, in order: Mesa's surfaceless platform, each EGL device, the default display. Entries with
 * a NULL handle are ways that this EGL lacks. Empty when there is no EGL library.
 */
std::vector<DisplayChoice> ListDisplays();

/**
 * Prepares a display (EGLDisplay) for use, again and again if need be. False with what EGL said. A display
 * stays ready until the process ends: EGL hands out one per platform without counting its users, so ending it
 * would pull it from under other contexts, and the software driver leaks each time it is unloaded.
 */
bool InitializeDisplay(void* handle, std::string* error);

/** "EGL_BAD_ALLOC" for the calling thread's last EGL error. */
std::string EglErrorName();

} // namespace host::gl
