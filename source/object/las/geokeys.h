// The coordinate system code in a GeoKey directory.
#pragma once

#include "object/las/header.h"

#include <vector>

namespace kelvra {

// An entry of a GeoKey directory; both 0: none.
struct GeoKey {
  unsigned key = 0, code = 0;
};

// The first of the keys 3072 (projected system), 2048 (geographic system), 4098, 4099, 3076,
// 2050 and 2054 that the GeoKey directory among `records` holds; none without a directory or without any of
// these keys. Only values that stand in the directory itself count. Records are looked through in the order
// given, the first directory counts.
GeoKey FindGeoKey(ByteSource& file, const std::vector<LasRecord>& records);

// The code of a coordinate system that can be asked for, else 0. The keys but the first two hold units and
// datums, and 32767 means that the system is the user's own.
inline unsigned OfferedCode(const GeoKey& found) {
  return (found.key == 3072 || found.key == 2048) && found.code != 32767 ? found.code : 0;
}

} // namespace kelvra
