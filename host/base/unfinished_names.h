// Names of unfinished files, for a signal that ends the program.
#pragma once

#include <string>

namespace host {

/** The file goes with the program when a signal ends it. There is room for a few; others stay. Any thread. */
void NoteUnfinished(const std::string& path);
void ForgetUnfinished(const std::string& path);
/** For signal handlers. */
void RemoveUnfinished();

} // namespace host
