#include "host/base/user_break.h"

#include "host/base/faults.h"

#include <csignal>

namespace host {

namespace {

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");
std::atomic<Faults*> faults{nullptr};
thread_local Work* current = nullptr;

extern "C" void OnInterrupt(int signal) {
  interrupted = true;
  std::signal(signal, SIG_DFL); // the next one ends the program
}

const int kSignals[] = {
    SIGINT,
    SIGTERM,
#ifdef SIGHUP
    SIGHUP,
#endif
};

} // namespace

void InstallInterruptHandler() {
  // What the caller has ignored stays ignored: nohup lets a program outlive its terminal that way.
  for (const int signal : kSignals)
    if (std::signal(signal, OnInterrupt) == SIG_IGN) std::signal(signal, SIG_IGN);
}
void RequestInterrupt() {
  interrupted = true;
}
void ClearInterrupt() {
  interrupted = false;
}
bool Interrupted() {
  return interrupted;
}

Work::Work() : outer_(current) {
  current = this;
}
Work::~Work() {
  current = outer_;
}

Work* Work::Current() {
  return current;
}

void Work::SetFaults(Faults* injected) {
  faults = injected;
}

bool Work::TestBreak() const {
  Faults* const injected = faults;
  if (!stopped_ && (Interrupted() || (injected && injected->Strikes(Fault::UserBreak)))) stopped_ = true;
  return stopped_;
}

} // namespace host
