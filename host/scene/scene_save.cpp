#include "host/scene/scene_file.h"

#include "host/base/replacing_file.h"
#include "host/base/text.h"
#include "host/base/user_break.h"
#include "host/scene/hyper_file.h"
#include "host/scene/node_access.h"

#include <unordered_map>

namespace host {

namespace {

class SceneWriter {
public:
  SceneWriter(ByteSink& sink, Document* doc)
      : writer_(sink, [this](LULONG node) { return NumberOf(node); }), document_(doc) {}

  bool Write() {
    // Links are written as places in the file: known before the first value, and the same in every process.
    for (const Node* node : Hierarchy(*document_)) numbers_.emplace(node->linkId, numbers_.size() + 1);
    return Chunk(*document_);
  }
  std::string Reason() const { return reason_.empty() ? writer_.Error().text : reason_; }

private:
  LULONG NumberOf(LULONG node) const {
    const auto found = numbers_.find(node);
    return found == numbers_.end() ? 0 : found->second; // a node of another document, or one that is gone
  }

  bool Chunk(Node& node) {
    return writer_.ChunkStart((LONG)ChunkOf(node), kNodeLayout) && Content(node) && Below(node) &&
           writer_.ChunkEnd();
  }

  /** Apart from Below, so that what it needs is gone before the nodes below are written. */
  bool Content(Node& node) {
    const NodeHead head = HeadOf(node, NumberOf(node.linkId));
    if (!head.Write(writer_)) return false;
    return Guest(node, head, GuestPart::PlugIn) && Guest(node, head, GuestPart::Own);
  }

  bool Below(Node& node) {
    for (const NodeList* list : ListsOf(node))
      for (Node* below = list->first; below; below = below->next)
        if (!Chunk(*below)) return false;
    return true;
  }

  bool Guest(Node& node, const NodeHead& head, GuestPart part) {
    if (!HasPart(node, part)) return true;
    const bool own = part == GuestPart::Own;
    if (!writer_.ChunkStart(own ? kOwnChunk : kDataChunk, own ? kNodeLayout : head.diskLevel)) return false;
    if (!own && node.kept)
      return writer_.Raw(node.kept->bytes.data(), node.kept->bytes.size(), node.kept->links) &&
             writer_.ChunkEnd();
    HyperFileImpl stream(writer_, Api(document_));
    const bool written = WritePart(node, part, stream);
    if (written && stream.Error() == FILEERROR_NONE && stream.OpenChunks() == 0) return writer_.ChunkEnd();
    const std::string text = stream.ErrorText();
    reason_ = head.Describe() + ": ";
    if (!text.empty())
      reason_ += text;
    else if (written)
      reason_ += "its data leaves " + std::to_string(stream.OpenChunks()) + " chunks open";
    else
      reason_ += "its plug-in refuses to write its data";
    return false;
  }

  ValueWriter writer_;
  Document* document_;
  std::unordered_map<LULONG, LULONG> numbers_;
  std::string reason_;
};

} // namespace

bool WriteScene(BaseDocument* doc, const std::string& path, Faults* faults, std::string* error) {
  ReplacingFile file(path, faults);
  ByteSink sink(file.File());
  SceneWriter writer(sink, Impl(doc));
  const Work work;
  std::string reason;
  if (file.Open(&reason)) {
    const bool begun = WriteStreamHead(sink, kSceneIdent);
    // Where in the scene the file's own failure came does not matter.
    if (begun && !writer.Write())
      reason = file.File().Good() ? writer.Reason() : sink.Error();
    else if (begun && WriteStreamTail(sink) && file.Commit(&reason))
      return true;
    if (reason.empty()) reason = sink.Error();
  }
  *error = OutputName(path) + ": " + reason;
  return false;
}

} // namespace host
