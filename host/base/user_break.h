// Work that the user can stop: Ctrl-C, an injected break, and the thread object that plug-ins ask.
#pragma once

#include "c4d.h"

#include <atomic>
#include <functional>

namespace host {

class Faults;

/**
 * Ctrl-C, a request to terminate and a closed terminal ask running work to stop; a second one removes
 * unfinished outputs and ends the program. For command lines only.
 */
void InstallInterruptHandler();
/** As if the user had pressed Ctrl-C; stays until cleared. Any thread. */
void RequestInterrupt();
void ClearInterrupt();
bool Interrupted();

/** Work that the host has started on this thread, for the life of the object; works nest. */
class Work {
public:
  /** Who may make TestBreak answer true; NULL for nobody. */
  static void SetFaults(Faults* faults);
  /**
   * Called whenever work of this thread asks whether it was stopped, so that an application with a window
   * stays alive meanwhile; NULL for nothing.
   */
  static void SetAsked(std::function<void()> asked);

  Work();
  ~Work();
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;

  /** The innermost work of this thread, NULL without one. */
  static Work* Current();
  /** True once the user asked to stop, and from then on. Any thread. */
  bool TestBreak() const;
  /** Whether TestBreak ever answered true. */
  bool WasStopped() const { return stopped_; }

  BaseThread* Api() { return reinterpret_cast<BaseThread*>(this); }
  static const Work* From(const BaseThread* thread) { return reinterpret_cast<const Work*>(thread); }

private:
  Work* outer_;
  mutable std::atomic<bool> stopped_{false};
};

} // namespace host
