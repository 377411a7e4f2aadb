// Reports of broken rules, for code that may run without an application.
#pragma once

#include <string>

namespace host {

/** To the application's list; to standard error when none is alive. Any thread. */
void ReportHost(const std::string& text);
void ReportModule(const std::string& text);
/** Blames the module when its code runs on this thread, else the host. */
void ReportCaller(const std::string& text);

} // namespace host
