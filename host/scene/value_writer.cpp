#include "host/scene/value_writer.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kPieceBytes = 16384;

} // namespace

bool ValueWriter::Fail(FILEERROR code, const std::string& text) {
  return error_.Set(code, "offset " + std::to_string(sink_.Position()) + ": " + text);
}

bool ValueWriter::Bytes(const void* data, std::size_t size) {
  if (error_.code != FILEERROR_NONE) return false;
  return sink_.Write(data, size) || Fail(FILEERROR_WRITE, sink_.Error());
}

bool ValueWriter::Kind(HYPERFILEVALUE kind) {
  return Put((UCHAR)kind);
}

template <class T>
bool ValueWriter::Payload(const T& value, int depth) {
  const Overloaded put = {
      [](NoData) { return true; },
      [](void*) { return true; }, // means nothing in another process: it comes back as NULL
      [this](const BaseTime& time) { return Put(time.GetNumerator()) && Put(time.GetDenominator()); },
      [this](const String& text) { return Text(text); },
      [this](const Filename& path) { return Text(path.GetString()); },
      [this, depth](const BaseContainer& inner) { return Container(inner, depth + 1); },
      [this](const SplineData& curve) { return Curve(curve); },
      [this](const BaseLink& link) { return Put((LULONG)(links_ && link.target ? links_(link.target) : 0)); },
      [](UnknownData) { return false; },
      [this](const auto& plain) { return this->Put(plain); }, // as it lies in memory
  };
  return put(value);
}

bool ValueWriter::Value(HYPERFILEVALUE kind, const void* value) {
  if (!value) return Fail(FILEERROR_INVALID, "no value to write");
  if (kind == HYPERFILEVALUE_BOOL) return Kind(kind) && Put((UCHAR)(*(const Bool*)value != 0));
  return SwitchValueKind(kind, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (std::is_same_v<T, UnknownData>)
      return Fail(FILEERROR_UNKNOWN_VALUE, KindName(kind) + " cannot be written as a value");
    else
      return Kind(kind) && Payload(*static_cast<const T*>(value), 0);
  });
}

bool ValueWriter::Text(const String& text) {
  if (!Put((ULONG)text.GetLength())) return false;
  UWORD piece[1024];
  const LONG room = (LONG)(sizeof piece / sizeof piece[0]);
  for (LONG start = 0; start < text.GetLength(); start += room) {
    const LONG count = std::min(room, text.GetLength() - start);
    for (LONG i = 0; i < count; ++i) piece[i] = text[start + i];
    if (!Bytes(piece, (std::size_t)count * sizeof piece[0])) return false;
  }
  return true;
}

bool ValueWriter::Container(const BaseContainer& bc, int depth) {
  if (depth > kMaxContainerDepth)
    return Fail(FILEERROR_INVALID, "containers are nested deeper than " + std::to_string(kMaxContainerDepth));
  if (bc.GetCount() > kMaxContainerEntries)
    return Fail(FILEERROR_INVALID, "a container has " + std::to_string(bc.GetCount()) + " entries, at most " +
                                       std::to_string(kMaxContainerEntries) + " can be saved");
  if (!Put(bc.GetId()) || !Put(bc.GetCount())) return false;
  for (LONG i = 0; i < bc.GetCount(); ++i)
    if (!Put(bc.GetIndexId(i)) || !Entry(*bc.GetIndexData(i), depth)) return false;
  return true;
}

bool ValueWriter::Entry(const GeData& data, int depth) {
  const LONG type = data.GetType();
  return Put(type) && (VisitData(data, [&](const auto& held) { return Payload(held, depth); }) ||
                       Fail(FILEERROR_UNKNOWN_VALUE,
                            "a container entry of type " + std::to_string(type) + " cannot be saved"));
}

bool ValueWriter::Curve(const SplineData& curve) {
  if (!Put(curve.GetKnotCount())) return false;
  for (LONG i = 0; i < curve.GetKnotCount(); ++i)
    if (!Put(curve.GetKnot(i).x) || !Put(curve.GetKnot(i).y)) return false;
  return true;
}

bool ValueWriter::Array(const void* data, HYPERFILEARRAY kind, LONG increment, LONG count) {
  const std::size_t size = ElementSize(kind);
  if (size == 0) return Fail(FILEERROR_UNKNOWN_VALUE, ElementName(kind) + " cannot be saved");
  if (count < 0 || (count > 0 && !data) || increment < (LONG)size)
    return Fail(FILEERROR_INVALID, "array of " + std::to_string(count) + " " + ElementName(kind) + " every " +
                                       std::to_string(increment) + " bytes cannot be saved");
  if (!Kind(HYPERFILEVALUE_ARRAY) || !Put((UCHAR)kind) || !Put((UCHAR)size) || !Put(count)) return false;
  if (increment == (LONG)size) return Bytes(data, (std::size_t)count * size);
  return Scattered((const unsigned char*)data, size, (std::size_t)increment, count);
}

bool ValueWriter::Scattered(const unsigned char* data, std::size_t size, std::size_t increment, LONG count) {
  unsigned char piece[kPieceBytes];
  const LONG room = (LONG)(kPieceBytes / size);
  while (count > 0) {
    const LONG now = std::min(room, count);
    for (LONG i = 0; i < now; ++i, data += increment) std::memcpy(piece + (std::size_t)i * size, data, size);
    if (!Bytes(piece, (std::size_t)now * size)) return false;
    count -= now;
  }
  return true;
}

bool ValueWriter::ChunkStart(LONG id, LONG level) {
  if (depth_ >= kMaxChunkDepth)
    return Fail(FILEERROR_CHUNK_NUMBER, "chunks are nested deeper than " + std::to_string(kMaxChunkDepth));
  if (!Kind(HYPERFILEVALUE_START) || !Put(id) || !Put(level)) return false;
  ++depth_;
  return true;
}

bool ValueWriter::ChunkEnd() {
  if (depth_ == 0) return Fail(FILEERROR_CHUNK_NUMBER, "no chunk is open that could end");
  if (!Kind(HYPERFILEVALUE_STOP)) return false;
  --depth_;
  return true;
}

bool ValueWriter::Raw(const void* data, std::size_t size, const std::vector<std::size_t>& linkPositions) {
  const unsigned char* bytes = (const unsigned char*)data;
  std::size_t done = 0;
  for (const std::size_t position : linkPositions) {
    LULONG target = 0;
    std::memcpy(&target, bytes + position, sizeof target);
    if (!Bytes(bytes + done, position - done)) return false;
    if (!Put((LULONG)(links_ && target ? links_(target) : 0))) return false;
    done = position + sizeof target;
  }
  return Bytes(bytes + done, size - done);
}

} // namespace host
