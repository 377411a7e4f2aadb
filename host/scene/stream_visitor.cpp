#include "host/scene/stream_visitor.h"

#include "host/base/text.h"
#include "host/scene/node_access.h"

namespace host {

bool VisitNode(BaseList2D* api, StreamVisitor& visitor) {
  Node& node = *Impl(api);
  const NodeHead head = HeadOf(node, 0);
  const char* kind = NodeChunkName((LONG)head.chunk);
  visitor.BeginNode(kind ? kind : "preferences", head.type, Utf8(head.name), head.diskLevel);
  bool good = true;
  for (const GuestPart part : {GuestPart::PlugIn, GuestPart::Own}) {
    if (!HasPart(node, part) || (part == GuestPart::PlugIn && node.kept)) continue;
    HyperFileImpl stream(visitor, Api(node.GetDocument()));
    good = good && WritePart(node, part, stream) && stream.Error() == FILEERROR_NONE;
  }
  visitor.EndNode();
  return good;
}

} // namespace host
