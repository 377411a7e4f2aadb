// Standard input, output and error of a program that was started without them.
#pragma once

namespace cli {

/**
 * Gives those that are closed something that cannot be written to: the next file that is opened would be
 * taken for them otherwise. To be called before anything is opened.
 */
void FillClosedStreams();
/** Was standard output closed when the program began? */
bool IsOutputClosed();

} // namespace cli
