#ifdef _WIN32
#include "cli/system/separate_process.h"

namespace cli {

// A process there cannot be split in two. A driver that ends it ends this one.
bool RunSeparately(const std::function<bool()>& work) {
  return work();
}

} // namespace cli
#endif
