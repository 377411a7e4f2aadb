#include "host/core/module_scope.h"

#include "host/core/misbehaviour.h"

namespace host {

thread_local bool inModule = false;
thread_local bool calledByModule = false;

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
