// Whose code runs on this thread: the host's or a module's.
#pragma once

#include <exception>
#include <string>
#include <type_traits>

namespace host {

/** True while a module's code runs on this thread. Injected refusals of memory strike modules only. */
extern thread_local bool inModule;

/** True while the host works because a module called it. */
extern thread_local bool calledByModule;

class ScopeSwitch {
public:
  explicit ScopeSwitch(bool module);
  ~ScopeSwitch();
  ScopeSwitch(const ScopeSwitch&) = delete;
  ScopeSwitch& operator=(const ScopeSwitch&) = delete;

private:
  bool wasInModule_, wasCalled_;
};
struct HostScope : ScopeSwitch {
  HostScope() : ScopeSwitch(false) {}
};
struct ModuleScope : ScopeSwitch {
  ModuleScope() : ScopeSwitch(true) {}
};

/** Reports that an exception left a module's function. */
void ReportModuleException(const std::string& function, const char* what);

/** Calls a function of a module; one that throws is reported and gives R(). */
template <class R, class... P, class... A>
R CallModule(const char* function, R (*call)(P...), A&&... arguments) noexcept {
  const ModuleScope scope;
  try {
    return call(static_cast<A&&>(arguments)...);
  } catch (const std::exception& e) {
    ReportModuleException(function, e.what());
  } catch (...) {
    ReportModuleException(function, "unknown exception");
  }
  return R();
}

} // namespace host
