// A dynamic library for the life of the object.
#pragma once

#include <string>

namespace host {

class DynamicLibrary {
public:
  DynamicLibrary() {}
  ~DynamicLibrary();
  DynamicLibrary(const DynamicLibrary&) = delete;
  DynamicLibrary& operator=(const DynamicLibrary&) = delete;

  /** False with the system's reason. */
  bool Open(const std::string& path, std::string* error);
  /** NULL when the library does not export the name. */
  void* Find(const char* name) const;

private:
  void* handle_ = nullptr;
};

} // namespace host
