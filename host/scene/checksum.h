// Running 64-bit checksum (XXH3).
#pragma once

#include <cstddef>
#include <cstdint>

struct XXH3_state_s;

namespace host {

class Checksum {
public:
  Checksum();
  ~Checksum();
  Checksum(const Checksum&) = delete;
  Checksum& operator=(const Checksum&) = delete;

  /** False when there was no memory for the state; the other calls then do nothing. */
  bool Valid() const { return state_ != nullptr; }
  void Reset();
  void Update(const void* data, std::size_t size);
  std::uint64_t Value() const;

private:
  XXH3_state_s* state_;
};

} // namespace host
