// Files and folder listings that modules hold open. Any thread.
#pragma once

#include "ge_types.h"

#include <atomic>

namespace host {

inline std::atomic<LLONG> liveFiles{0};

} // namespace host
