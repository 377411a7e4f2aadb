#include "host/gl/egl_display.h"

#include <epoxy/egl.h>

#include <utility>

namespace host::gl {

namespace {

bool HasWord(const char* list, const std::string& word) {
  if (!list) return false;
  return (" " + std::string(list) + " ").find(" " + word + " ") != std::string::npos;
}

void AddDevices(std::vector<DisplayChoice>* choices) {
  constexpr EGLint kMaxDevices = 32;
  EGLDeviceEXT devices[kMaxDevices];
  EGLint count = 0;
  if (!eglQueryDevicesEXT(kMaxDevices, devices, &count)) count = 0;
  for (EGLint i = 0; i < count; ++i) {
    DisplayChoice choice;
    choice.name = "EGL device " + std::to_string(i);
    choice.handle = eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
    choice.lastResort =
        HasWord(eglQueryDeviceStringEXT(devices[i], EGL_EXTENSIONS), "EGL_MESA_device_software");
    choices->push_back(choice);
  }
}

} // namespace

bool InitializeDisplay(void* handle, std::string* error) {
  if (eglInitialize(handle, nullptr, nullptr)) return true;
  *error = "eglInitialize failed with " + EglErrorName();
  return false;
}

std::vector<DisplayChoice> ListDisplays() {
  std::vector<DisplayChoice> choices;
  // Without the library the loader behind the EGL calls would end the process.
  if (!epoxy_has_egl()) return choices;
  const char* client = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  const bool platforms = HasWord(client, "EGL_EXT_platform_base");

  DisplayChoice surfaceless;
  surfaceless.name = "surfaceless platform";
  if (platforms && HasWord(client, "EGL_MESA_platform_surfaceless"))
    surfaceless.handle =
        eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  choices.push_back(surfaceless);

  const bool enumeration =
      HasWord(client, "EGL_EXT_device_base") || HasWord(client, "EGL_EXT_device_enumeration");
  if (platforms && enumeration && HasWord(client, "EGL_EXT_platform_device")) AddDevices(&choices);

  DisplayChoice standard;
  standard.name = "default display";
  standard.handle = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  standard.lastResort = true;
  choices.push_back(standard);
  return choices;
}

std::string EglErrorName() {
  static const std::pair<EGLint, const char*> kNames[] = {
      {EGL_SUCCESS, "EGL_SUCCESS"},
      {EGL_NOT_INITIALIZED, "EGL_NOT_INITIALIZED"},
      {EGL_BAD_ACCESS, "EGL_BAD_ACCESS"},
      {EGL_BAD_ALLOC, "EGL_BAD_ALLOC"},
      {EGL_BAD_ATTRIBUTE, "EGL_BAD_ATTRIBUTE"},
      {EGL_BAD_CONFIG, "EGL_BAD_CONFIG"},
      {EGL_BAD_CONTEXT, "EGL_BAD_CONTEXT"},
      {EGL_BAD_DISPLAY, "EGL_BAD_DISPLAY"},
      {EGL_BAD_MATCH, "EGL_BAD_MATCH"},
      {EGL_BAD_PARAMETER, "EGL_BAD_PARAMETER"},
      {EGL_CONTEXT_LOST, "EGL_CONTEXT_LOST"},
  };
  const EGLint code = eglGetError();
  for (const auto& [value, name] : kNames)
    if (value == code) return name;
  return "EGL error " + std::to_string(code);
}

} // namespace host::gl
