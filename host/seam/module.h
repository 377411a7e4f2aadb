// One loaded module. Main thread only.
#pragma once

#include "c4d_os.h"

#include <memory>
#include <string>

namespace host {

class PluginRegistry;

/** Its destructor undoes, in reverse, what loading did: registrations, start, system initialisation, library.
 */
class Module {
public:
  /** NULL with one line naming file, stage, what was found and what was expected. `path` is absolute. */
  static std::unique_ptr<Module> Load(const std::string& path, OperatingSystem* os, PluginRegistry& plugins,
                                      std::string* error);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  const std::string& Path() const { return path_; }
  /** Tells the module that all modules have started, or that the end comes. */
  void SendMessage(LONG id);

private:
  class Library;
  class System;
  class Registrations;

  explicit Module(const std::string& path);

  std::string path_;
  // In the order in which they come; they go in reverse.
  std::unique_ptr<Library> library_;
  std::unique_ptr<System> system_;
  std::unique_ptr<Registrations> registrations_;
};

} // namespace host
