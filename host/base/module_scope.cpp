#include "host/base/module_scope.h"

#include "host/base/misbehaviour.h"

namespace host {

thread_local bool inModule = false;
thread_local bool calledByModule = false;

ScopeSwitch::ScopeSwitch(bool module) : wasInModule_(inModule), wasCalled_(calledByModule) {
  calledByModule = !module && (inModule || calledByModule);
  inModule = module;
}
ScopeSwitch::~ScopeSwitch() {
  inModule = wasInModule_;
  calledByModule = wasCalled_;
}

void ReportModuleException(const std::string& function, const char* what) {
  ReportModule("an exception left " + function + ": " + what);
}

void ReportCaller(const std::string& text) {
  if (inModule || calledByModule)
    ReportModule(text);
  else
    ReportHost(text);
}

} // namespace host
