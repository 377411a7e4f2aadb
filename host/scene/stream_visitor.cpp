#include "host/stream_visitor.h"

#include "host/scene/node_access.h"
#include "host/scene/text.h"

namespace host {

bool VisitNode(BaseList2D* api, StreamVisitor& visitor) {
  const SceneNode node = {api, ChunkOf(api)};
  const NodeHead head = HeadOf(node, 0);
  visitor.BeginNode(NodeChunkName((LONG)head.chunk), head.type, Utf8(head.name), head.diskLevel);
  bool good = true;
  for (const GuestPart part : {GuestPart::PlugIn, GuestPart::Own}) {
    if (!HasPart(node, part) || KeptDataOf(api)) continue;
    HyperFileImpl stream(visitor, api->GetDocument());
    good = good && WritePart(node, part, stream) && stream.Error() == FILEERROR_NONE;
  }
  visitor.EndNode();
  return good;
}

} // namespace host
