// Position, rotation and scale of a matrix, as users see them.
#pragma once

#include "c4d.h"

namespace host {

/** Lengths of the axes; a mirrored matrix has a negative z. */
Vector ScaleOf(const Matrix& m);
/** Heading about y, pitch about x, bank about z in radians, applied bank first. */
Vector RotationOf(const Matrix& m);
Matrix MatrixOf(const Vector& position, const Vector& rotation, const Vector& scale);

} // namespace host
