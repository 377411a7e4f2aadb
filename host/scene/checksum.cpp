#include "host/scene/checksum.h"

#include <xxhash.h>

namespace host {

Checksum::Checksum() : state_(XXH3_createState()) {
  Reset();
}

Checksum::~Checksum() {
  XXH3_freeState(state_);
}

void Checksum::Reset() {
  if (state_) XXH3_64bits_reset(state_);
}

void Checksum::Update(const void* data, std::size_t size) {
  if (state_ && size) XXH3_64bits_update(state_, data, size);
}

std::uint64_t Checksum::Value() const {
  return state_ ? XXH3_64bits_digest(state_) : 0;
}

} // namespace host
