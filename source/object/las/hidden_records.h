// Records that the point library must not see: it reads some without checking their lengths, and a spatial
// index would make it hand out the points in another order than the file's. None of them is needed to read
// points.
#pragma once

#include "object/las/validator.h"

namespace kelvra {

// Adds the extended records to the findings and a patch for everything that is to be hidden; a note where a
// record is hidden because it is damaged. Precondition: the variable-length records were filled.
void HideLasRecords(ByteSource& file, LasFindings& findings);

} // namespace kelvra
