// Reads typed values out of a byte source.
#pragma once

#include "host/scene/byte_source.h"
#include "host/scene/value_kinds.h"

namespace host {

/**
 * Every call fails after the first failure; the text of the failure names offset, found and expected. What a
 * count in the stream asks for is compared with what is left of it before memory is asked for.
 */
class ValueReader {
public:
  /** Without link numbers every link is read as none. The source must outlive the reader. */
  explicit ValueReader(ByteSource& source, LinkNumbers links = LinkNumbers())
      : source_(source), links_(std::move(links)) {}

  /** Kind of the next value (HYPERFILEVALUE), which stays; -1 at the end. */
  int Next() { return source_.Peek(); }
  bool AtChunkEnd() { return Next() == HYPERFILEVALUE_STOP; }

  /** value points to the C++ type of that kind; it is untouched when another kind follows. */
  bool Value(HYPERFILEVALUE kind, void* value);
  /** Kind and count must be those that were written. */
  bool Array(void* data, HYPERFILEARRAY kind, LONG increment, LONG count);
  /** First part of an array; count elements fit into the rest of the stream. ArrayData must follow. */
  bool ArrayHeader(HYPERFILEARRAY* kind, LONG* count);
  bool ArrayData(void* data, HYPERFILEARRAY kind, LONG increment, LONG count);
  bool ChunkStart(LONG* id, LONG* level);
  bool ChunkEnd();

  /** Passes one value; positions of the links in it are added to linkPositions when it is given. */
  bool SkipValue(std::vector<std::int64_t>* linkPositions = nullptr);
  /** Passes values and whole chunks up to the end of the chunk at this depth; that end stays. */
  bool SkipToChunkEnd(int depth, std::vector<std::int64_t>* linkPositions = nullptr);

  int Depth() const { return depth_; }
  std::int64_t Offset() const { return source_.Position(); }
  /** Bytes at another place, for keeping what was passed. */
  bool BytesAt(std::int64_t offset, void* data, std::size_t size);
  LULONG LinkTarget(LULONG number) const { return links_ && number ? links_(number) : 0; }
  bool Fail(FILEERROR code, const std::string& text) { return FailAt(Offset(), code, text); }
  const StreamError& Error() const { return error_; }

private:
  template <class T>
  bool Get(T* value) {
    return Bytes(value, sizeof *value);
  }
  bool FailAt(std::int64_t offset, FILEERROR code, const std::string& text);
  bool Expect(int kind);
  bool Bytes(void* data, std::size_t size);
  bool Pass(std::int64_t size);
  bool Count(LONG* count, std::size_t size, const char* what);
  bool Text(String* text);
  bool Container(BaseContainer* bc, int depth, std::vector<std::int64_t>* linkPositions);
  /** What follows the kind of a value or the type of a container's entry; wanted or just passed. */
  template <class T>
  bool Payload(T* value, bool wanted, int depth, std::vector<std::int64_t>* linkPositions);
  bool Entry(LONG type, GeData* data, int depth, std::vector<std::int64_t>* linkPositions);
  bool Curve(SplineData* curve);
  bool Scatter(unsigned char* data, std::size_t size, std::size_t increment, LONG count);

  ByteSource& source_;
  LinkNumbers links_;
  StreamError error_;
  int depth_ = 0;
};

} // namespace host
