// The point that an object's stored coordinates are counted from, in file axes.
#pragma once

#include "c4d.h"
#include "cloud/source_record.h"

namespace kelvra {

/** Distance between neighbouring 32-bit floats at this distance from zero. */
LReal FloatStep(LReal distance);

/** Step of text files, which do not declare one: a millimetre. */
constexpr LReal kTextStep = 0.001;

/**
 * Chooses the origin for a file: 0 on each axis where floats already keep a tenth of the file's step,
 * otherwise whole units near the middle of `bounds`: hundreds where they do, else tens, else ones. `bounds`
 * may be what a header says; the origin never leaves the box of the points.
 */
LVector ChooseOrigin(const SourceBox& bounds, const SourceBox& points, const LReal step[3]);

} // namespace kelvra
