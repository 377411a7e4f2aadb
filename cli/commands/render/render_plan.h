// What is wrong with the options of a render, found before a file is loaded.
#pragma once

#include "cli/commands/commands.h"
#include "host/picture/picture.h"

namespace cli {

/**
 * The format of the pictures; of no meaning with --pixel, which writes none. Throws UsageError for options
 * that cannot be used or contradict each other, and std::runtime_error when the disk does not take the
 * output.
 */
host::PictureFormat CheckRenderOptions(const RenderCommandOptions& options);

} // namespace cli
