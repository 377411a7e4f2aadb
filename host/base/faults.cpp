#include "host/base/faults.h"

#include <climits>
#include <cstdlib>

namespace host {

namespace {

const struct {
  const char* name;
  Fault fault;
} kNames[] = {
    {"allocation", Fault::Allocation},
    {"largeblock", Fault::LargeBlock},
    {"registration", Fault::Registration},
    {"vertexbuffer", Fault::VertexBuffer},
    {"programfactory", Fault::ProgramFactory},
    {"temporaryblock", Fault::TemporaryBlock},
    {"subbuffer", Fault::SubBuffer},
    {"compile", Fault::Compile},
    {"write", Fault::FileWrite},
    {"rename", Fault::FileRename},
    {"userbreak", Fault::UserBreak},
};
static_assert(sizeof kNames / sizeof kNames[0] == (std::size_t)Fault::Count, "every fault has a name");

/** Digits only, 1 and above. */
bool ParseCount(const std::string& text, long long* number) {
  if (text.empty() || text.size() > 18 || text.find_first_not_of("0123456789") != std::string::npos)
    return false;
  *number = std::atoll(text.c_str());
  return *number >= 1;
}

} // namespace

void Faults::FailAt(Fault fault, long long n, long long times) {
  Slot& slot = slots_[(int)fault];
  const long long first = slot.calls + n;
  slot.last = times < 0 ? LLONG_MAX : first + times - 1;
  slot.first = first;
}

void Faults::Clear() {
  for (Slot& slot : slots_) slot.calls = slot.first = slot.last = 0;
}

bool Faults::Strikes(Fault fault) {
  Slot& slot = slots_[(int)fault];
  const long long call = ++slot.calls;
  const long long first = slot.first;
  return first != 0 && call >= first && call <= slot.last;
}

bool Faults::Parse(const std::string& text, std::string* error) {
  std::string known;
  for (const auto& entry : kNames) {
    known += std::string(known.empty() ? "" : ", ") + entry.name;
    const std::string prefix = std::string(entry.name) + "=";
    if (text.compare(0, prefix.size(), prefix) != 0) continue;
    const std::string numbers = text.substr(prefix.size());
    const std::size_t colon = numbers.find(':');
    long long n = 0, times = 1;
    if (ParseCount(numbers.substr(0, colon), &n) &&
        (colon == std::string::npos || ParseCount(numbers.substr(colon + 1), &times))) {
      FailAt(entry.fault, n, times);
      return true;
    }
    *error = "fault \"" + text + "\": expected N or N:TIMES after " + prefix + ", both 1 or more";
    return false;
  }
  *error = "fault \"" + text + "\": expected one of " + known + ", then =N";
  return false;
}

} // namespace host
