#ifdef __linux__
#include "host/memory/free_memory.h"

#include <sys/resource.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace host {

namespace {

constexpr long long kUnlimited = std::numeric_limits<long long>::max();

/** Sum of the entries of these names in a file of lines "name number". */
long long Sum(const std::string& path, const std::vector<std::string>& names) {
  std::ifstream file(path);
  long long sum = 0;
  for (std::string line, name; std::getline(file, line);) {
    std::istringstream entry(line);
    long long number = 0;
    if (entry >> name >> number && std::find(names.begin(), names.end(), name) != names.end()) sum += number;
  }
  return sum;
}

/** Memory that is free or can be freed at once, and swap space; 0 if unknown. */
long long OfTheMachine() {
  return Sum("/proc/meminfo", {"MemAvailable:", "SwapFree:"}) * 1024;
}

/** The only number of a file; -1 without one, as in a group that has no limit. */
long long NumberIn(const std::string& path) {
  std::ifstream file(path);
  long long number = -1;
  return file >> number ? number : -1;
}

/** Where a version of control groups keeps its numbers. */
struct GroupFiles {
  const char *root, *limit, *used;
  std::vector<std::string> filePages; ///< entries of memory.stat
};

/** What a group and those around it leave, up to the root. */
long long LeftBy(std::string group, const GroupFiles& files) {
  long long least = kUnlimited;
  for (;; group.resize(group.find_last_of('/'))) {
    const std::string folder = files.root + group + "/";
    const long long limit = NumberIn(folder + files.limit), used = NumberIn(folder + files.used);
    // Pages of files count as used, but make room when they must.
    const long long pages = Sum(folder + "memory.stat", files.filePages);
    if (limit >= 0 && used >= 0) least = std::min(least, std::max(0LL, limit - std::max(0LL, used - pages)));
    if (group.empty()) return least;
  }
}

/** What the control groups of the process leave to it, of version 2 or of version 1, which clusters still
 * use. */
long long OfTheGroups() {
  const GroupFiles unified = {
      "/sys/fs/cgroup", "memory.max", "memory.current", {"active_file", "inactive_file"}};
  const GroupFiles separate = {"/sys/fs/cgroup/memory",
                               "memory.limit_in_bytes",
                               "memory.usage_in_bytes",
                               {"total_active_file", "total_inactive_file"}};
  std::ifstream file("/proc/self/cgroup"); // lines NUMBER:CONTROLLERS:/GROUP
  long long least = kUnlimited;
  for (std::string line; std::getline(file, line);) {
    const std::size_t group = line.find(":/");
    if (group == std::string::npos) continue;
    const std::string controllers = line.substr(0, group) + ',';
    if (controllers == "0:,")
      least = std::min(least, LeftBy(line.substr(group + 1), unified));
    else if (controllers.find(":memory,") != std::string::npos ||
             controllers.find(",memory,") != std::string::npos)
      least = std::min(least, LeftBy(line.substr(group + 1), separate));
  }
  return least;
}

long long OfTheAddressSpace() {
  rlimit limit;
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return kUnlimited;
  const long long pages = NumberIn("/proc/self/statm"); // its first number: of the address space in use
  return std::max(0LL, (long long)limit.rlim_cur - std::max(0LL, pages) * sysconf(_SC_PAGESIZE));
}

} // namespace

long long FreeMemory() {
  const long long machine = OfTheMachine();
  return machine <= 0 ? 0 : std::max(1LL, std::min({machine, OfTheGroups(), OfTheAddressSpace()}));
}

} // namespace host
#endif
