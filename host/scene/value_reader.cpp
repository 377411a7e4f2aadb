#include "host/scene/value_reader.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr std::size_t kPieceBytes = 16384;
/** An entry of a container without payload: id and type. */
constexpr std::size_t kSmallestEntry = 8;

} // namespace

bool ValueReader::FailAt(std::int64_t offset, FILEERROR code, const std::string& text) {
  return error_.Set(code, "offset " + std::to_string(offset) + ": " + text);
}

bool ValueReader::Bytes(void* data, std::size_t size) {
  if (error_.code != FILEERROR_NONE) return false;
  if (source_.Remaining() >= 0 && (std::uint64_t)source_.Remaining() < size)
    return Fail(FILEERROR_FILE_END, "found " + std::to_string(source_.Remaining()) +
                                        " bytes up to the end, expected " + std::to_string(size));
  return source_.Read(data, size) || Fail(FILEERROR_READ, source_.Error());
}

bool ValueReader::Pass(std::int64_t size) {
  if (error_.code != FILEERROR_NONE) return false;
  if (source_.Remaining() < size)
    return Fail(FILEERROR_FILE_END, "found " + std::to_string(source_.Remaining()) +
                                        " bytes up to the end, expected " + std::to_string(size));
  return source_.Skip(size) || Fail(FILEERROR_READ, source_.Error());
}

bool ValueReader::BytesAt(std::int64_t offset, void* data, std::size_t size) {
  if (error_.code != FILEERROR_NONE) return false;
  return source_.ReadAt(offset, data, size) || FailAt(offset, FILEERROR_READ, source_.Error());
}

bool ValueReader::Expect(int kind) {
  if (error_.code != FILEERROR_NONE) return false;
  const int next = Next();
  // A disk that cannot be read also looks like an end.
  if (next < 0 && !source_.Error().empty()) return Fail(FILEERROR_READ, source_.Error());
  if (next == kind) {
    UCHAR taken;
    return Get(&taken);
  }
  // The kind is left where it is; the code tells damage (unknown), another order of values and the end apart.
  const std::string text = "found " + KindName(next) + ", expected " + KindName(kind);
  if (next < 0) return Fail(FILEERROR_FILE_END, text);
  const bool known = KindName(next).rfind("unknown", 0) != 0;
  return Fail(known ? FILEERROR_WRONG_VALUE : FILEERROR_UNKNOWN_VALUE, text);
}

bool ValueReader::Count(LONG* count, std::size_t size, const char* what) {
  const std::int64_t at = Offset();
  ULONG found = 0;
  if (!Get(&found)) return false;
  // The rest of the stream bounds every count, whatever the count claims.
  const std::uint64_t most = std::min<std::uint64_t>((std::uint64_t)source_.Remaining() / size, MAXLONGl);
  if (found > most)
    return FailAt(at, FILEERROR_FILE_END,
                  "found a count of " + std::to_string(found) + " " + what + ", expected at most " +
                      std::to_string(most) + " in the rest of the file");
  *count = (LONG)found;
  return true;
}

template <class T>
bool ValueReader::Payload(T* value, bool wanted, int depth, std::vector<std::int64_t>* linkPositions) {
  const Overloaded get = {
      [](NoData*) { return true; },
      [](void**) { return true; },
      [this](BaseTime* time) {
        Real parts[2];
        if (!Get(&parts)) return false;
        *time = BaseTime(parts[0], parts[1]);
        return true;
      },
      [this, wanted](String* text) { return Text(wanted ? text : nullptr); },
      [this, wanted](Filename* path) {
        String text;
        if (!Text(wanted ? &text : nullptr)) return false;
        *path = Filename(text);
        return true;
      },
      [=](BaseContainer* inner) {
        inner->FlushAll();
        return Container(wanted ? inner : nullptr, depth + 1, linkPositions);
      },
      [this](SplineData* curve) { return Curve(curve); },
      [=](BaseLink* link) {
        if (linkPositions) linkPositions->push_back(Offset());
        LULONG number = 0;
        if (!Get(&number)) return false;
        link->target = LinkTarget(number);
        return true;
      },
      [this](auto* plain) { return this->Get(plain); }, // as it lay in memory
  };
  return get(value);
}

bool ValueReader::Value(HYPERFILEVALUE kind, void* value) {
  if (!value) return Fail(FILEERROR_INVALID, "no place to read a value to");
  if (!Expect(kind)) return false;
  if (kind == HYPERFILEVALUE_BOOL) {
    UCHAR truth = 0;
    if (!Get(&truth)) return false;
    *static_cast<Bool*>(value) = truth != 0;
    return true;
  }
  return SwitchValueKind(kind, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (std::is_same_v<T, UnknownData>)
      return Fail(FILEERROR_UNKNOWN_VALUE, KindName(kind) + " cannot be read as a value");
    else
      return Payload(static_cast<T*>(value), true, 0, nullptr);
  });
}

bool ValueReader::Text(String* text) {
  LONG length = 0;
  if (!Count(&length, sizeof(UWORD), "characters")) return false;
  if (!text) return Pass((std::int64_t)length * (std::int64_t)sizeof(UWORD));
  *text = String(length, 0);
  if (text->GetLength() != length) return Fail(FILEERROR_OUTOFMEMORY, "not enough memory for a text");
  UWORD piece[1024];
  const LONG room = (LONG)(sizeof piece / sizeof piece[0]);
  for (LONG start = 0; start < length; start += room) {
    const LONG count = std::min(room, length - start);
    if (!Bytes(piece, (std::size_t)count * sizeof piece[0])) return false;
    for (LONG i = 0; i < count; ++i) text->SetChar(start + i, piece[i]);
  }
  return true;
}

bool ValueReader::Container(BaseContainer* bc, int depth, std::vector<std::int64_t>* linkPositions) {
  if (depth > kMaxContainerDepth)
    return Fail(FILEERROR_INVALID,
                "found containers nested deeper than " + std::to_string(kMaxContainerDepth));
  LONG id = 0, count = 0;
  if (!Get(&id)) return false;
  const std::int64_t at = Offset();
  if (!Count(&count, kSmallestEntry, "container entries")) return false;
  if (count > kMaxContainerEntries)
    return FailAt(at, FILEERROR_INVALID,
                  "found a count of " + std::to_string(count) + " container entries, expected at most " +
                      std::to_string(kMaxContainerEntries));
  if (bc) bc->SetId(id);
  for (LONG i = 0; i < count; ++i) {
    LONG entry = 0, type = 0;
    GeData data;
    if (!Get(&entry) || !Get(&type) || !Entry(type, bc ? &data : nullptr, depth, linkPositions)) return false;
    if (bc && !bc->SetData(entry, data))
      return Fail(FILEERROR_OUTOFMEMORY, "not enough memory for a container");
  }
  return true;
}

bool ValueReader::Entry(LONG type, GeData* data, int depth, std::vector<std::int64_t>* linkPositions) {
  return SwitchDataType(type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (std::is_same_v<T, UnknownData>) {
      return Fail(FILEERROR_UNKNOWN_VALUE,
                  "found a container entry of type " + std::to_string(type) + ", expected a known one");
    } else {
      T held = T();
      if (!Payload(&held, data != nullptr, depth, linkPositions)) return false;
      if (!data) return true;
      *data = ToData(held);
      // A refused allocation leaves the value without a type.
      return data->GetType() == type || Fail(FILEERROR_OUTOFMEMORY, "not enough memory for a container");
    }
  });
}

bool ValueReader::Curve(SplineData* curve) {
  const std::int64_t at = Offset();
  LONG count = 0;
  if (!Count(&count, 2 * sizeof(Real), "knots")) return false;
  if (count > SplineData::kMaxKnots)
    return FailAt(at, FILEERROR_INVALID,
                  "found a count of " + std::to_string(count) + " knots, expected at most " +
                      std::to_string(SplineData::kMaxKnots));
  // Knots are stored in order, as a curve keeps them.
  Real previous = 0.0;
  for (LONG i = 0; i < count; ++i) {
    const std::int64_t place = Offset();
    Real knot[2];
    if (!Get(&knot)) return false;
    if (!(knot[0] >= previous && knot[0] <= 1.0) || !std::isfinite(knot[1]))
      return FailAt(place, FILEERROR_INVALID,
                    "found knot " + std::to_string(i) + " at " + std::to_string(knot[0]) + ", " +
                        std::to_string(knot[1]) + ", expected x from " + std::to_string(previous) +
                        " to 1 and a finite value");
    previous = knot[0];
    if (curve->InsertKnot(knot[0], knot[1]) == NOTOK)
      return Fail(FILEERROR_OUTOFMEMORY, "not enough memory for a curve");
  }
  return true;
}

bool ValueReader::ArrayHeader(HYPERFILEARRAY* kind, LONG* count) {
  if (!Expect(HYPERFILEVALUE_ARRAY)) return false;
  const std::int64_t at = Offset();
  // The size of an element is stored too: a program with other types must not misread the rest.
  UCHAR found[2];
  if (!Get(&found)) return false;
  const std::size_t size = ElementSize(found[0]);
  if (size == 0)
    return FailAt(at, FILEERROR_UNKNOWN_VALUE,
                  "found an array of " + ElementName(found[0]) + ", expected a known one");
  if (found[1] != size)
    return FailAt(at, FILEERROR_INVALID,
                  "found an element size of " + std::to_string(found[1]) + " for " + ElementName(found[0]) +
                      ", expected " + std::to_string(size));
  *kind = (HYPERFILEARRAY)found[0];
  return Count(count, size, ElementName(found[0]).c_str());
}

bool ValueReader::ArrayData(void* data, HYPERFILEARRAY kind, LONG increment, LONG count) {
  const std::size_t size = ElementSize(kind);
  if (increment == (LONG)size) return Bytes(data, (std::size_t)count * size);
  return Scatter((unsigned char*)data, size, (std::size_t)increment, count);
}

bool ValueReader::Array(void* data, HYPERFILEARRAY kind, LONG increment, LONG count) {
  const std::int64_t at = Offset();
  HYPERFILEARRAY foundKind = kind;
  LONG found = 0;
  if (!ArrayHeader(&foundKind, &found)) return false;
  if (foundKind != kind || found != count)
    return FailAt(at, FILEERROR_WRONG_VALUE,
                  "found an array of " + std::to_string(found) + " " + ElementName(foundKind) +
                      ", expected one of " + std::to_string(count) + " " + ElementName(kind));
  if ((count > 0 && !data) || increment < (LONG)ElementSize(kind))
    return FailAt(at, FILEERROR_INVALID,
                  "array of " + std::to_string(count) + " " + ElementName(kind) + " every " +
                      std::to_string(increment) + " bytes cannot be read");
  return ArrayData(data, kind, increment, count);
}

bool ValueReader::Scatter(unsigned char* data, std::size_t size, std::size_t increment, LONG count) {
  // In pieces of whole elements, each then copied to its own place.
  unsigned char piece[kPieceBytes];
  const LONG room = (LONG)(kPieceBytes / size);
  while (count > 0) {
    const LONG now = std::min(room, count);
    if (!Bytes(piece, (std::size_t)now * size)) return false;
    for (LONG i = 0; i < now; ++i, data += increment) std::memcpy(data, piece + (std::size_t)i * size, size);
    count -= now;
  }
  return true;
}

bool ValueReader::ChunkStart(LONG* id, LONG* level) {
  if (depth_ >= kMaxChunkDepth)
    return Fail(FILEERROR_CHUNK_NUMBER, "found chunks nested deeper than " + std::to_string(kMaxChunkDepth));
  LONG found[2];
  if (!Expect(HYPERFILEVALUE_START) || !Get(&found)) return false;
  ++depth_;
  if (id) *id = found[0];
  if (level) *level = found[1];
  return true;
}

bool ValueReader::ChunkEnd() {
  if (depth_ == 0) return Fail(FILEERROR_CHUNK_NUMBER, "no chunk is open that could end");
  if (!Expect(HYPERFILEVALUE_STOP)) return false;
  --depth_;
  return true;
}

bool ValueReader::SkipValue(std::vector<std::int64_t>* linkPositions) {
  const int kind = Next();
  switch (kind) {
  case HYPERFILEVALUE_START:
    return ChunkStart(nullptr, nullptr);
  case HYPERFILEVALUE_STOP:
    return ChunkEnd();
  case HYPERFILEVALUE_STRING:
  case HYPERFILEVALUE_FILENAME:
    return Expect(kind) && Text(nullptr);
  case HYPERFILEVALUE_CONTAINER:
    return Expect(kind) && Container(nullptr, 1, linkPositions);
  case HYPERFILEVALUE_ARRAY: {
    HYPERFILEARRAY element;
    LONG count = 0;
    return ArrayHeader(&element, &count) && Pass((std::int64_t)count * (std::int64_t)ElementSize(element));
  }
  default:
    break;
  }
  const std::size_t size = FixedSize(kind);
  if (size == 0) return Expect(HYPERFILEVALUE_STOP);
  return Expect(kind) && Pass((std::int64_t)size);
}

bool ValueReader::SkipToChunkEnd(int depth, std::vector<std::int64_t>* linkPositions) {
  while (depth_ > depth || !AtChunkEnd())
    if (!SkipValue(linkPositions)) return false;
  return true;
}

} // namespace host
