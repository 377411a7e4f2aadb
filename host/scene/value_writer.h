// Writes typed values into a byte sink.
#pragma once

#include "host/scene/byte_sink.h"
#include "host/scene/value_kinds.h"

namespace host {

/** Every call fails after the first failure. One thread at a time. */
class ValueWriter {
public:
  /** Without link numbers every link is written as none. The sink must outlive the writer. */
  explicit ValueWriter(ByteSink& sink, LinkNumbers links = LinkNumbers())
      : sink_(sink), links_(std::move(links)) {}

  /** value points to the C++ type of that kind. */
  bool Value(HYPERFILEVALUE kind, const void* value);
  /** Contiguous elements (increment = element size) go to the sink as they lie. */
  bool Array(const void* data, HYPERFILEARRAY kind, LONG increment, LONG count);
  bool ChunkStart(LONG id, LONG level);
  bool ChunkEnd();
  /** Bytes that hold whole values already; links are 64-bit numbers at these positions, in rising order. */
  bool Raw(const void* data, std::size_t size, const std::vector<std::size_t>& linkPositions);

  int Depth() const { return depth_; }
  bool Fail(FILEERROR code, const std::string& text);
  const StreamError& Error() const { return error_; }

private:
  template <class T>
  bool Put(const T& value) {
    return Bytes(&value, sizeof value);
  }
  bool Bytes(const void* data, std::size_t size);
  bool Kind(HYPERFILEVALUE kind);
  bool Text(const String& text);
  bool Container(const BaseContainer& bc, int depth);
  /** What follows the kind of a value or the type of a container's entry; depth counts the containers around.
   */
  template <class T>
  bool Payload(const T& value, int depth);
  bool Entry(const GeData& data, int depth);
  bool Curve(const SplineData& curve);
  bool Scattered(const unsigned char* data, std::size_t size, std::size_t increment, LONG count);

  ByteSink& sink_;
  LinkNumbers links_;
  StreamError error_;
  int depth_ = 0;
};

} // namespace host
