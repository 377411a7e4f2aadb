// What saving and loading do to single nodes.
#pragma once

#include "host/nodes/node.h"
#include "host/scene/hyper_file.h"
#include "host/scene/scene_format.h"

#include <vector>

namespace host {

/** Data of a plug-in that is not there: whole values, with links at these positions as numbers of nodes. */
struct KeptData {
  LONG diskLevel = 0;
  std::vector<unsigned char> bytes;
  std::vector<std::size_t> links;
};

enum class GuestPart { PlugIn, Own };

/** Nodes of the preferences are not saved with scenes and have no chunk. */
NodeChunk ChunkOf(const Node& node);
NodeHead HeadOf(const Node& node, LULONG number);
bool HasPart(const Node& node, GuestPart part);
bool WritePart(Node& node, GuestPart part, HyperFileImpl& stream);
bool ReadPart(Node& node, GuestPart part, HyperFileImpl& stream, LONG level);

/**
 * A node of that kind and type in its place below parent, as the last one; a scene hook that the document has
 * already; one that keeps its data when the type is unknown. NULL with the reason when it cannot lie there or
 * be made.
 */
Node* PlaceNode(Node& parent, const NodeHead& head, std::string* why);
/** Entries of the container that the file does not hold keep what the node's Init gave them. */
void ApplyHead(Node& node, const NodeHead& head, LULONG linkId);

} // namespace host
