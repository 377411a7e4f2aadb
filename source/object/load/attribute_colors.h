// Colours of points that stand for something else that the file says about them.
#pragma once

#include "object/las/records.h"
#include "object/load/loaded_file.h"

namespace kelvra {

/** What a reader must keep for this way of colouring (KELVRA_LOAD_COLOR_FILE and so on). */
LasAttribute AttributeFor(LONG colorBy);

/**
 * Colours the points of the loaded block by the attribute, which stands in the records' intensity; the
 * records are in the block's order. Intensities get the ramp, over the options' range or else their own,
 * which becomes the loaded file's.
 */
void ColorByAttribute(const SourceRecord* records, LasAttribute attribute, const LoadOptions& options,
                      LoadedFile& loaded);

} // namespace kelvra
