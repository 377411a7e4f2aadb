#include "host/base/unfinished_names.h"

#include "host/base/disk.h"

#include <atomic>
#include <cstring>

namespace host {

namespace {

enum State { kFree, kChanging, kNoted };

/** Of fixed size, as signal handlers have no heap. */
struct Slot {
  std::atomic<int> state{kFree};
  char path[4096];
};
static_assert(std::atomic<int>::is_always_lock_free, "read by a signal handler");
Slot slots[16];

} // namespace

void NoteUnfinished(const std::string& path) {
  for (Slot& slot : slots) {
    int expected = kFree;
    if (path.size() >= sizeof slot.path || !slot.state.compare_exchange_strong(expected, kChanging)) continue;
    std::memcpy(slot.path, path.c_str(), path.size() + 1);
    slot.state = kNoted;
    return;
  }
}

void ForgetUnfinished(const std::string& path) {
  for (Slot& slot : slots) {
    int expected = kNoted;
    if (!slot.state.compare_exchange_strong(expected, kChanging)) continue;
    const bool found = path == slot.path;
    slot.state = found ? kFree : kNoted;
    if (found) return;
  }
}

void RemoveUnfinished() {
  for (Slot& slot : slots)
    if (slot.state == kNoted) disk::RemoveInHandler(slot.path);
}

} // namespace host
