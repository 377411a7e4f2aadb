// What saving and loading need of nodes beyond the plug-in interface.
#pragma once

#include "host/node.h"
#include "host/scene/hyper_file.h"
#include "host/scene/scene_format.h"

#include <vector>

namespace host {

/** Data of a plug-in that is not there: whole values, with links at these positions as numbers of nodes. */
struct KeptData {
  std::vector<unsigned char> bytes;
  std::vector<std::size_t> links;
};

struct SceneNode {
  BaseList2D* node;
  NodeChunk chunk;
};
enum class GuestPart { PlugIn, Own };

NodeChunk ChunkOf(BaseList2D* node);
/** In the order in which they are saved. */
std::vector<SceneNode> NodesBelow(const SceneNode& node);
LULONG LinkIdOf(BaseList2D* node);
NodeHead HeadOf(const SceneNode& node, LULONG number);
bool HasPart(const SceneNode& node, GuestPart part);
bool WritePart(const SceneNode& node, GuestPart part, HyperFileImpl& stream);
bool ReadPart(const SceneNode& node, GuestPart part, HyperFileImpl& stream, LONG level);
/** What an unknown type's node keeps; NULL for nodes of known types. */
KeptData* KeptDataOf(BaseList2D* node);

/**
 * A node of that kind and type in its place below parent, as the last one; one that keeps its data when the type is
 * unknown. NULL with the reason when it cannot lie there or there is no memory.
 */
BaseList2D* PlaceNode(const SceneNode& parent, const NodeHead& head, std::string* why);
/** Entries of the container that the file does not hold keep what the node's Init gave them. */
void ApplyHead(const SceneNode& node, const NodeHead& head, LULONG linkId);

} // namespace host
