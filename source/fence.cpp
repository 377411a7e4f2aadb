#include "fence.h"

namespace kelvra {

void ReportFailedCall(const CHAR* call, const CHAR* why) noexcept {
  try {
    GePrint(String("Kelvra: ") + call + " failed: " + why);
  } catch (...) {
    // Not enough memory for the line: the host still gets the failure.
  }
}

} // namespace kelvra
