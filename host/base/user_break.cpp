#include "host/base/user_break.h"

#include "host/base/faults.h"
#include "host/base/unfinished_names.h"

#include <csignal>
#include <utility>

namespace host {

namespace {

std::atomic<bool> interrupted{false};
std::atomic<bool> signalled{false}; ///< by the system; a button of a window only interrupts
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");
std::atomic<Faults*> faults{nullptr};
thread_local Work* current = nullptr;
thread_local std::function<void()> whenAsked;

extern "C" void OnInterrupt(int signal) {
  interrupted = true;
  if (!signalled.exchange(true)) {
    std::signal(signal, OnInterrupt); // some systems call a handler once
    return;
  }
  RemoveUnfinished();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

} // namespace

void InstallInterruptHandler() {
  // Shells start jobs in the background with SIGINT ignored; it must still reach them when it is sent.
  std::signal(SIGINT, OnInterrupt);
  std::signal(SIGTERM, OnInterrupt);
#ifdef SIGHUP
  // nohup lets a program outlive its terminal: a closed terminal that is ignored stays ignored.
  if (std::signal(SIGHUP, OnInterrupt) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
#endif
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

void Work::SetAsked(std::function<void()> asked) {
  whenAsked = std::move(asked);
}

bool Work::TestBreak() const {
  if (whenAsked) whenAsked();
  Faults* const injected = faults;
  if (!stopped_ && (Interrupted() || (injected && injected->Strikes(Fault::UserBreak)))) stopped_ = true;
  return stopped_;
}

} // namespace host
