// Saving and loading a whole document.
#pragma once

#include "c4d.h"
#include "host/scene/byte_source.h"

#include <string>

namespace host {

class Faults;

/**
 * Writes a document to a temporary file beside path and lets it take path's place once it is whole and on the
 * disk: a save that fails leaves what was there. False with one line naming file, node or offset, and reason.
 * Main thread.
 */
bool WriteScene(BaseDocument* doc, const std::string& path, Faults* faults, std::string* error);

/**
 * A new document that the caller owns, or NULL with one line naming file, offset, found and expected; nothing
 * else is changed then. Nodes of types that no loaded module knows are kept as they are and saved again
 * unchanged; each such type is named on the console once. Main thread.
 */
BaseDocument* ReadScene(const std::string& path, std::string* error);
/** The same out of any source; the text names no file. */
BaseDocument* ReadSceneStream(ByteSource& source, std::string* error);

} // namespace host
