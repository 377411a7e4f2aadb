// Name and unit of the coordinate system that a LAS file describes, in GeoTIFF keys or as well-known text.
#pragma once

#include "cloud/load_report.h"
#include "object/las/header.h"

#include <vector>

namespace kelvra {

struct CoordinateSystem {
  std::string name; // empty where the file has none
  LengthUnit unit = LengthUnit::kUnknown;
};

// The horizontal system. A file that gives no more than a code has neither name nor unit. Well-known text
// counts before keys.
CoordinateSystem FindCoordinateSystem(ByteSource& file, const std::vector<LasRecord>& records);

// The same of well-known text, of both generations.
CoordinateSystem ReadSystemText(const std::string& text);

} // namespace kelvra
