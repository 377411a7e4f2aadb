// Records that the point library must not see: it reads some without checking their lengths, and a spatial
// index would make it hand out the points in another order than the file's. None of them is needed to read
// points.
#pragma once

#include "object/las/validator.h"

namespace kelvra {

// Adds the extended records to the report and a patch for everything that is to be hidden; a remark where a
// record is hidden because it is damaged. Precondition: the variable-length records were filled.
void HideLasRecords(ByteSource& file, LasReport& report);

} // namespace kelvra
