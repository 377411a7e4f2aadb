// How many files, streams and listings plug-ins hold.
#pragma once

#include "c4d.h"

#include <atomic>

namespace host {

/** Base of what is counted. Any thread. */
class LiveFile {
public:
  static LLONG Count() { return count_; }

protected:
  LiveFile() { ++count_; }
  LiveFile(const LiveFile&) = delete;
  LiveFile& operator=(const LiveFile&) = delete;
  ~LiveFile() { --count_; }

private:
  inline static std::atomic<LLONG> count_{0};
};

} // namespace host
