#include "host/scene/stream_file.h"

#include <cstdio>

namespace host {

namespace {

constexpr char kHead[] = "HSCN", kTail[] = "HEND";

std::string Hex(std::uint64_t value) {
  char text[32];
  std::snprintf(text, sizeof text, "%016llx", (unsigned long long)value);
  return text;
}

/** Four bytes for a message: as text when they can be read as such. */
std::string Quote(const UCHAR* bytes) {
  char text[32];
  bool readable = true;
  for (int i = 0; i < 4; ++i) readable = readable && bytes[i] >= 32 && bytes[i] < 127;
  if (readable)
    std::snprintf(text, sizeof text, "\"%.4s\"", (const char*)bytes);
  else
    std::snprintf(text, sizeof text, "%02x %02x %02x %02x", bytes[0], bytes[1], bytes[2], bytes[3]);
  return text;
}

bool Put(ByteSink& sink, const void* data, std::size_t size) {
  return sink.Write(data, size);
}

std::string At(std::int64_t offset, const std::string& found, const std::string& expected) {
  return "offset " + std::to_string(offset) + ": found " + found + ", expected " + expected;
}

struct Tail {
  UCHAR mark[4];
  LULONG length = 0, checksum = 0;

  bool Read(ByteSource& source) {
    const std::int64_t at = source.Length() - kStreamTailBytes;
    return source.ReadAt(at, mark, 4) && source.ReadAt(at + 4, &length, 8) &&
           source.ReadAt(at + 12, &checksum, 8);
  }
};

} // namespace

bool WriteStreamHead(ByteSink& sink, LONG ident) {
  return Put(sink, kHead, 4) && Put(sink, &kStreamVersion, 4) && Put(sink, &ident, 4);
}

bool WriteStreamTail(ByteSink& sink) {
  const LULONG length = (LULONG)(sink.Position() + kStreamTailBytes);
  if (!Put(sink, kTail, 4) || !Put(sink, &length, 8)) return false;
  const LULONG checksum = sink.CurrentChecksum();
  return Put(sink, &checksum, 8);
}

bool ReadStreamHead(ByteSource& source, LONG ident, ULONG* version, StreamError* error) {
  UCHAR magic[4];
  LONG foundIdent = 0;
  if (source.Length() < kStreamHeadBytes + kStreamTailBytes)
    return error->Set(FILEERROR_FILE_END,
                      At(source.Length(), "the end of the file",
                         "at least " + std::to_string(kStreamHeadBytes + kStreamTailBytes) +
                             " bytes: it is truncated or not a scene file"));
  if (!source.Read(magic, 4) || !source.Read(version, 4) || !source.Read(&foundIdent, 4))
    return error->Set(FILEERROR_READ, "offset " + std::to_string(source.Position()) + ": " + source.Error());
  if (std::memcmp(magic, kHead, 4) != 0)
    return error->Set(FILEERROR_WRONG_VALUE, At(0, Quote(magic), "\"HSCN\": this is not a scene file"));
  if (*version == 0 || *version > kStreamVersion)
    return error->Set(FILEERROR_WRONG_VALUE, At(4, "format version " + std::to_string(*version),
                                                "version 1 to " + std::to_string(kStreamVersion) +
                                                    ": a newer program wrote this file"));
  if (foundIdent != ident)
    return error->Set(FILEERROR_WRONG_VALUE,
                      At(8, "ident " + std::to_string(foundIdent), "ident " + std::to_string(ident)));
  Tail tail;
  if (!tail.Read(source)) return error->Set(FILEERROR_READ, source.Error());
  const std::int64_t at = source.Length() - kStreamTailBytes;
  if (std::memcmp(tail.mark, kTail, 4) != 0)
    return error->Set(FILEERROR_FILE_END,
                      At(at, Quote(tail.mark), "the end mark \"HEND\": the file is truncated or damaged"));
  if (tail.length != (LULONG)source.Length())
    return error->Set(FILEERROR_FILE_END,
                      At(at + 4, "a length of " + std::to_string(tail.length) + " bytes",
                         std::to_string(source.Length()) + ": the file is truncated or damaged"));
  source.SetEnd(at);
  return true;
}

bool ReadStreamTail(ByteSource& source, StreamError* error) {
  const std::int64_t at = source.Position();
  if (source.Remaining() != 0)
    return error->Set(FILEERROR_WRONG_VALUE,
                      At(at, std::to_string(source.Remaining()) + " more bytes", "the end of the values"));
  source.SetEnd(source.Length());
  Tail tail;
  if (!source.Skip(12)) return error->Set(FILEERROR_READ, source.Error());
  const LULONG computed = source.CurrentChecksum();
  if (!tail.Read(source)) return error->Set(FILEERROR_READ, source.Error());
  if (tail.checksum != computed)
    return error->Set(FILEERROR_WRONG_VALUE, At(at + 12, "checksum " + Hex(tail.checksum),
                                                Hex(computed) + " from the content: the file is damaged"));
  return true;
}

bool RestIsUndamaged(ByteSource& source) {
  StreamError ignored;
  source.SetEnd(source.Length() - kStreamTailBytes);
  return source.Skip(source.Remaining()) && ReadStreamTail(source, &ignored);
}

} // namespace host
