#include "host/seam/dynamic_library.h"

#ifdef _WIN32
#include <filesystem>
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace host {

#ifdef _WIN32
DynamicLibrary::~DynamicLibrary() {
  if (handle_) FreeLibrary((HMODULE)handle_);
}

bool DynamicLibrary::Open(const std::string& path, std::string* error) {
  handle_ = LoadLibraryW(std::filesystem::u8path(path).c_str());
  if (!handle_) *error = "system error " + std::to_string(GetLastError());
  return handle_ != nullptr;
}

void* DynamicLibrary::Find(const char* name) const {
  return (void*)GetProcAddress((HMODULE)handle_, name);
}
#else
DynamicLibrary::~DynamicLibrary() {
  if (handle_) dlclose(handle_);
}

bool DynamicLibrary::Open(const std::string& path, std::string* error) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle_) {
    const char* reason = dlerror();
    *error = reason ? reason : "unknown reason";
  }
  return handle_ != nullptr;
}

void* DynamicLibrary::Find(const char* name) const {
  return dlsym(handle_, name);
}
#endif

} // namespace host
