#include "host/scene/scene_walk.h"

#include "host/base/text.h"
#include "host/scene/scene_format.h"
#include "host/scene/stream_file.h"

#include <memory>
#include <new>

namespace host {

namespace {

template <class T>
bool Show(ValueReader& reader, StreamVisitor& visitor, HYPERFILEVALUE kind) {
  T value{};
  if (!reader.Value(kind, &value)) return false;
  visitor.Value(kind, &value);
  return true;
}

bool ShowArray(ValueReader& reader, StreamVisitor& visitor) {
  HYPERFILEARRAY kind = HYPERFILEARRAY_CHAR;
  LONG count = 0;
  if (!reader.ArrayHeader(&kind, &count)) return false;
  const LONG size = (LONG)ElementSize(kind);
  // The count was compared with the rest of the file.
  std::unique_ptr<LLONG[]> data(new (std::nothrow) LLONG[((std::size_t)count * (std::size_t)size + 7) / 8]);
  if (!data)
    return reader.Fail(FILEERROR_OUTOFMEMORY, "not enough memory for an array of " + std::to_string(count));
  if (!reader.ArrayData(data.get(), kind, size, count)) return false;
  visitor.Array(kind, data.get(), size, count);
  return true;
}

class Walker {
public:
  Walker(ValueReader& reader, StreamVisitor& visitor) : reader_(reader), visitor_(visitor) {}

  /** Chunks up to the end of the one around them; nodes lie as deep as chunks may. */
  bool Chunks() {
    while (!reader_.AtChunkEnd()) {
      LONG id = 0, level = 0;
      if (!reader_.ChunkStart(&id, &level) || !Chunk(id) || !reader_.ChunkEnd()) return false;
    }
    return true;
  }

  bool Chunk(LONG id) {
    if (id == kDataChunk || id == kOwnChunk) return Values(reader_.Depth());
    if (NodeChunkName(id)) return Node(id);
    return reader_.SkipToChunkEnd(reader_.Depth());
  }

private:
  bool Node(LONG id) {
    { // The head leaves the stack before what lies below it is walked.
      NodeHead head;
      if (!head.Read(reader_, id)) return false;
      visitor_.BeginNode(NodeChunkName(id), head.type, Utf8(head.name), head.diskLevel);
      visitor_.Head(head.number, head.bits, head.chunk == NodeChunk::Object ? &head.matrix : nullptr,
                    head.container);
    }
    const bool good = Chunks();
    visitor_.EndNode();
    return good;
  }

  bool Values(int depth) {
    while (reader_.Depth() > depth || !reader_.AtChunkEnd())
      if (!VisitValue(reader_, visitor_)) return false;
    return true;
  }

  ValueReader& reader_;
  StreamVisitor& visitor_;
};

} // namespace

bool VisitValue(ValueReader& reader, StreamVisitor& visitor) {
  const HYPERFILEVALUE kind = (HYPERFILEVALUE)(reader.Next() & 0xff);
  if (kind == HYPERFILEVALUE_ARRAY) return ShowArray(reader, visitor);
  return SwitchValueKind(kind, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (std::is_same_v<T, UnknownData>)
      return reader.SkipValue();
    else
      return Show<T>(reader, visitor, kind);
  });
}

bool VisitSceneStream(ByteSource& source, StreamVisitor& visitor, std::string* error) {
  StreamError failure;
  ULONG version = 0;
  if (ReadStreamHead(source, kSceneIdent, &version, &failure)) {
    ValueReader reader(source, [](LULONG number) { return number; }); // links keep the file's numbers
    Walker walker(reader, visitor);
    LONG id = 0;
    const bool walked = reader.ChunkStart(&id, nullptr) && walker.Chunk(id) && reader.ChunkEnd();
    if (walked && ReadStreamTail(source, &failure)) return true;
    if (!walked) failure = reader.Error();
  }
  *error = failure.text;
  return false;
}

bool VisitScene(const std::string& path, StreamVisitor& visitor, std::string* error) {
  ByteSource source;
  std::string reason;
  if (!source.Open(path))
    reason = source.Error();
  else if (VisitSceneStream(source, visitor, &reason))
    return true;
  *error = path + ": " + reason;
  return false;
}

} // namespace host
