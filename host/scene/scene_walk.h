// Walks the nodes of a scene stream and shows the values that they wrote to a visitor.
#pragma once

#include "host/scene/stream_visitor.h"
#include "host/scene/value_reader.h"

namespace host {

/** One value or array of a guest's chunk, shown as it was written; starts and ends of chunks are passed
 * silently. */
bool VisitValue(ValueReader& reader, StreamVisitor& visitor);

/** All of a scene stream, checksum included; text of the failure without a file's name. */
bool VisitSceneStream(ByteSource& source, StreamVisitor& visitor, std::string* error);

} // namespace host
