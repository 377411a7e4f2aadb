// The coordinate system code in a GeoKey directory.
#pragma once

#include "object/las/header.h"

#include <vector>

namespace kelvra {

// The value of the first of the keys 3072 (projected system), 2048 (geographic system), 4098, 4099, 3076,
// 2050 and 2054 that the GeoKey directory among `records` holds; 0 without a directory or without any of
// these keys. Only values that stand in the directory itself count. Records are looked through in the order
// given, the first directory counts.
unsigned GeoKeyCode(ByteSource& file, const std::vector<LasRecord>& records);

// Whether a code names a coordinate system that can be asked for: 0 and 32767 mean undefined and
// user-defined.
inline bool IsOfferedCode(unsigned code) {
  return code != 0 && code != 32767;
}

} // namespace kelvra
