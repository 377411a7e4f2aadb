// Reports of broken rules, for code that may run without an application. Any thread.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace host {

/** The reports of one application, "module misbehaves: ..." and "host misbehaves: ...". */
class Misbehaviour {
public:
  void Add(const std::string& line);
  /** Main thread, while no other thread reports. */
  const std::vector<std::string>& Lines() const { return lines_; }

private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
};

/** Where reports go from now on; NULL: to standard error. */
void SetMisbehaviour(Misbehaviour* list);

void ReportHost(const std::string& text);
void ReportModule(const std::string& text);
/** Blames the module when its code runs on this thread, else the host. */
void ReportCaller(const std::string& text);

} // namespace host
