#include "host/base/misbehaviour.h"

#include "host/base/printable.h"

#include <atomic>
#include <cstdio>

namespace host {

namespace {

std::atomic<Misbehaviour*> living{nullptr};

void Report(const std::string& line) {
  if (Misbehaviour* list = living)
    list->Add(line);
  else
    std::fprintf(stderr, "%s\n", Printable(line).c_str());
}

} // namespace

void Misbehaviour::Add(const std::string& line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  lines_.push_back(line);
}

void SetMisbehaviour(Misbehaviour* list) {
  living = list;
}

void ReportHost(const std::string& text) {
  Report("host misbehaves: " + text);
}

void ReportModule(const std::string& text) {
  Report("module misbehaves: " + text);
}

} // namespace host
