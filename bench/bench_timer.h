// Time and memory of this process.
#pragma once

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace bench {

class Timer {
public:
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/** Memory that the process holds now, in bytes; 0 where the system does not tell. */
inline long long ResidentBytes() {
  long long size = 0, resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%lld %lld", &size, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return resident * ::sysconf(_SC_PAGESIZE);
}

} // namespace bench
