#include "host/scene/scene_file.h"

#include "host/base/text.h"
#include "host/base/user_break.h"
#include "host/memory/memory.h"
#include "host/scene/hyper_file.h"
#include "host/scene/node_access.h"

#include <map>
#include <new>
#include <unordered_map>
#include <unordered_set>

namespace host {

namespace {

class SceneReader {
public:
  SceneReader(ByteSource& source, ULONG version)
      : reader_(source, [this](LULONG number) { return LinkIdOfNumber(number); }), version_(version) {}

  /** NULL on failure, with everything made so far freed. */
  Document* Read() {
    try {
      LONG id = 0;
      document_ = MakeDocument();
      if (!document_)
        reason_ = "not enough memory for a document";
      else if (reader_.ChunkStart(&id, nullptr) && CheckRoot(id) && Root() && reader_.ChunkEnd())
        return document_;
    } catch (const std::bad_alloc&) {
      reason_ = "offset " + std::to_string(reader_.Offset()) + ": not enough memory";
    }
    FreeNode(document_);
    return nullptr;
  }
  const std::string& Reason() const { return reason_.empty() ? reader_.Error().text : reason_; }
  /** One line for each type that nobody knows. */
  const std::map<LONG, std::string>& Unknown() const { return unknown_; }

private:
  /** A number that is met before its node gets the link id that the node will have. */
  LULONG LinkIdOfNumber(LULONG number) {
    LULONG& id = linkIds_[number];
    if (id == 0) id = ReserveLinkId();
    return id;
  }

  bool CheckRoot(LONG id) {
    return (NodeChunk)id == NodeChunk::Document ||
           reader_.Fail(FILEERROR_WRONG_VALUE, "found no document, expected one");
  }

  bool Root() {
    FreeList(document_->renderSettings); // the file has its own
    if (!Chunk(nullptr, (LONG)NodeChunk::Document)) return false;
    const Node* active = FindNode(document_->activeObject);
    if (!active || active->kind != NodeKind::Object) document_->activeObject = 0;
    if (document_->renderSettings.first) return true;
    Node* settings = MakeNode(NodeKind::RenderSettings, Rbase);
    if (!settings) return reader_.Fail(FILEERROR_OUTOFMEMORY, "not enough memory for render settings");
    AppendNode(document_->renderSettings, *settings);
    return true;
  }

  /** One node and what is below it; its chunk has been begun. */
  bool Chunk(Node* parent, LONG id) {
    Node* node = Content(parent, id);
    return node && Below(*node);
  }

  /** Apart from Below, so that what it needs is gone before the nodes below are read. NULL on failure. */
  Node* Content(Node* parent, LONG id) {
    NodeHead head;
    if (!ReadHead(&head, id)) return nullptr;
    std::string why;
    Node* node = parent ? PlaceNode(*parent, head, &why) : document_;
    if (!node) {
      reader_.Fail(FILEERROR_INVALID, head.Describe() + ": " + why);
      return nullptr;
    }
    ApplyHead(*node, head, LinkIdOfNumber(head.number));
    if (node->kept)
      unknown_.emplace(head.type,
                       head.Describe() + ": no loaded module knows this type; its data is kept as it is");
    return Parts(*node, head) ? node : nullptr;
  }

  bool ReadHead(NodeHead* head, LONG id) {
    // What can be loaded can be saved: a node needs room for one more chunk.
    if (reader_.Depth() >= kMaxChunkDepth)
      return reader_.Fail(FILEERROR_CHUNK_NUMBER,
                          "found nodes nested deeper than " + std::to_string(kMaxChunkDepth - 1));
    if (!head->Read(reader_, id)) return false;
    if (head->number != 0 && seen_.insert(head->number).second) return true;
    return reader_.Fail(FILEERROR_INVALID, "found link number " + std::to_string(head->number) + " of " +
                                               head->Describe() + ", expected one that no other node has");
  }

  /** DATA and OWN, which lie before the nodes below. */
  bool Parts(Node& node, const NodeHead& head) {
    while (!reader_.AtChunkEnd()) {
      LONG id = 0, level = 0;
      if (!reader_.ChunkStart(&id, &level)) return false;
      bool good = true;
      if (id == kDataChunk && node.kept) {
        good = Keep(*node.kept);
      } else if (id == kDataChunk || id == kOwnChunk) {
        good = Guest(node, head, id == kOwnChunk ? GuestPart::Own : GuestPart::PlugIn, level);
      } else if (NodeChunkName(id)) {
        pending_ = id; // the first node below: Below goes on with it
        return true;
      }
      if (!good || !reader_.SkipToChunkEnd(reader_.Depth()) || !reader_.ChunkEnd()) return false;
    }
    return true;
  }

  bool Below(Node& node) {
    while (pending_ != 0 || !reader_.AtChunkEnd()) {
      LONG id = pending_;
      pending_ = 0;
      if (id == 0 && !reader_.ChunkStart(&id, nullptr)) return false;
      const bool good = NodeChunkName(id) ? Chunk(&node, id) : reader_.SkipToChunkEnd(reader_.Depth());
      if (!good || !reader_.ChunkEnd()) return false;
    }
    return true;
  }

  bool Guest(Node& node, const NodeHead& head, GuestPart part, LONG level) {
    if (!HasPart(node, part)) return true;
    const int depth = reader_.Depth();
    HyperFileImpl stream(reader_, Api(document_), version_);
    const LLONG refused = memory::RefusedRequests();
    const bool read = ReadPart(node, part, stream, level);
    if (read && stream.Error() == FILEERROR_NONE) return reader_.SkipToChunkEnd(depth);
    reason_ = head.Describe() + ": ";
    if (reader_.Error().code == FILEERROR_NONE)
      reason_ += "offset " + std::to_string(reader_.Offset()) + ": ";
    const std::string text = stream.ErrorText();
    if (!text.empty())
      reason_ += text;
    else
      reason_ += memory::RefusedRequests() > refused ? "not enough memory for its data"
                                                     : "its plug-in refuses the data";
    return false;
  }

  /** Keeps the values of a chunk as they are, links turned into those of the nodes here. */
  bool Keep(KeptData& kept) {
    const std::int64_t start = reader_.Offset();
    std::vector<std::int64_t> links;
    if (!reader_.SkipToChunkEnd(reader_.Depth(), &links)) return false;
    const std::size_t size = (std::size_t)(reader_.Offset() - start);
    kept.links.clear();
    kept.bytes.resize(size); // as much as was just read out of the file
    if (!reader_.BytesAt(start, kept.bytes.data(), size)) return false;
    for (const std::int64_t link : links) {
      const std::size_t position = (std::size_t)(link - start);
      LULONG target = 0;
      std::memcpy(&target, &kept.bytes[position], sizeof target);
      target = reader_.LinkTarget(target);
      std::memcpy(&kept.bytes[position], &target, sizeof target);
      kept.links.push_back(position);
    }
    return true;
  }

  ValueReader reader_;
  ULONG version_;
  Document* document_ = nullptr;
  std::unordered_map<LULONG, LULONG> linkIds_;
  std::unordered_set<LULONG> seen_;
  std::map<LONG, std::string> unknown_;
  LONG pending_ = 0;
  std::string reason_;
};

/** Why parsing stopped, and whether the file is damaged or was written so. */
std::string Explain(ByteSource& source, const std::string& reason) {
  if (!source.Error().empty())
    return reason; // the file cannot be read: nothing can be said about its content
  return RestIsUndamaged(source) ? reason : reason + " (the checksum shows that the file is damaged)";
}

} // namespace

BaseDocument* ReadSceneStream(ByteSource& source, std::string* error) {
  StreamError failure;
  ULONG version = 0;
  if (!ReadStreamHead(source, kSceneIdent, &version, &failure)) {
    *error = failure.text;
    return nullptr;
  }
  SceneReader reader(source, version);
  const Work work;
  Document* document = reader.Read();
  if (!document) {
    *error = Explain(source, reader.Reason());
    return nullptr;
  }
  if (!ReadStreamTail(source, &failure)) {
    FreeNode(document);
    *error = failure.text;
    return nullptr;
  }
  for (const auto& line : reader.Unknown()) GePrint(FromUtf8(line.second));
  return Api(document);
}

BaseDocument* ReadScene(const std::string& path, std::string* error) {
  ByteSource source;
  std::string reason;
  if (!source.Open(path))
    reason = source.Error();
  else if (BaseDocument* document = ReadSceneStream(source, &reason))
    return document;
  *error = path + ": " + reason;
  return nullptr;
}

} // namespace host
