// Units of coordinate systems that a file names by their EPSG code alone.
#pragma once

#include "cloud/load_report.h"

namespace kelvra {

// Unknown for codes that are not in the table: a wrong unit would be worse than none.
LengthUnit UnitOfSystem(unsigned epsg);

} // namespace kelvra
