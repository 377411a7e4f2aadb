#include "host/scene/hyper_file.h"

#include "host/base/replacing_file.h"

#include <new>

namespace host {

/** A file that a plug-in opened itself. */
struct HyperFileImpl::OwnFile {
  explicit OwnFile(const std::string& name) : path(name) {}

  std::string path;
  std::unique_ptr<ReplacingFile> target;
  std::unique_ptr<ByteSink> sink;
  ByteSource source;
  std::unique_ptr<ValueWriter> writer;
  std::unique_ptr<ValueReader> reader;
};

HyperFileImpl::HyperFileImpl() = default;
HyperFileImpl::HyperFileImpl(ValueWriter& writer, BaseDocument* doc)
    : document(doc), writer_(&writer), floor_(writer.Depth()) {}
HyperFileImpl::HyperFileImpl(ValueReader& reader, BaseDocument* doc, ULONG fileVersion)
    : document(doc), version(fileVersion), reader_(&reader), floor_(reader.Depth()) {}
HyperFileImpl::HyperFileImpl(StreamVisitor& visitor, BaseDocument* doc) : document(doc), visitor_(&visitor) {}
HyperFileImpl::~HyperFileImpl() = default;

bool HyperFileImpl::Fail(FILEERROR error, const std::string& text) {
  return error_.Set(error, text);
}

bool HyperFileImpl::Open(LONG ident, const std::string& path, FILEOPEN mode, Faults* faults) {
  if (own_ || writer_ || reader_ || visitor_)
    return Fail(FILEERROR_OPEN, path + ": the stream is open already");
  error_ = StreamError();
  own_.reset(new OwnFile(path));
  std::string reason;
  if (mode == FILEOPEN_READ) {
    if (!own_->source.Open(path)) {
      reason = own_->source.Error();
    } else if (ReadStreamHead(own_->source, ident, &version, &error_)) {
      own_->reader.reset(new ValueReader(own_->source));
      reader_ = own_->reader.get();
      return true;
    } else {
      reason = error_.text;
    }
  } else if (mode == FILEOPEN_WRITE) {
    own_->target.reset(new ReplacingFile(path, faults));
    own_->sink.reset(new ByteSink(own_->target->File()));
    if (own_->target->Open(&reason) && WriteStreamHead(*own_->sink, ident)) {
      own_->writer.reset(new ValueWriter(*own_->sink));
      writer_ = own_->writer.get();
      return true;
    }
  } else {
    reason = "streams are opened for reading or for writing only";
  }
  own_.reset();
  error_ = StreamError();
  return Fail(FILEERROR_OPEN, path + ": " + reason);
}

bool HyperFileImpl::Close() {
  if (!own_) return Fail(FILEERROR_CLOSE, "the stream is not open");
  bool good = Error() == FILEERROR_NONE;
  if (good && writer_ && writer_->Depth() > 0) good = Fail(FILEERROR_CHUNK_NUMBER, "a chunk was not ended");
  if (good && reader_ && own_->source.Remaining() == 0) good = ReadStreamTail(own_->source, &error_);
  std::string reason;
  if (good && writer_) {
    good = WriteStreamTail(*own_->sink) && own_->target->Commit(&reason);
    if (!good) Fail(FILEERROR_WRITE, own_->path + ": " + (reason.empty() ? own_->sink->Error() : reason));
  }
  // The error outlives the writer or reader that found it.
  const StreamError last = error_.code != FILEERROR_NONE ? error_
                           : writer_                     ? writer_->Error()
                                                         : reader_->Error();
  writer_ = nullptr;
  reader_ = nullptr;
  own_.reset();
  error_ = last;
  return good;
}

bool HyperFileImpl::CanWrite() {
  if (Error() != FILEERROR_NONE) return false;
  if (!writer_ && !visitor_) return Fail(FILEERROR_INVALID, "the stream is not open for writing");
  return true;
}

bool HyperFileImpl::CanRead() {
  if (Error() != FILEERROR_NONE) return false;
  if (!reader_) return Fail(FILEERROR_INVALID, "the stream is not open for reading");
  return true;
}

bool HyperFileImpl::Write(HYPERFILEVALUE kind, const void* value) {
  if (!CanWrite()) return false;
  if (visitor_) {
    visitor_->Value(kind, value);
    return true;
  }
  if (writer_->Depth() == 0) return Fail(FILEERROR_VALUE_NO_CHUNK, "a value lies outside any chunk");
  return writer_->Value(kind, value);
}

bool HyperFileImpl::Read(HYPERFILEVALUE kind, void* value) {
  if (!CanRead()) return false;
  if (reader_->Depth() == 0) return Fail(FILEERROR_VALUE_NO_CHUNK, "a value was asked for outside any chunk");
  return reader_->Value(kind, value);
}

bool HyperFileImpl::WriteArray(const void* data, HYPERFILEARRAY kind, LONG increment, LONG count) {
  if (!CanWrite()) return false;
  if (visitor_) {
    visitor_->Array(kind, data, increment, count);
    return true;
  }
  if (writer_->Depth() == 0) return Fail(FILEERROR_VALUE_NO_CHUNK, "an array lies outside any chunk");
  return writer_->Array(data, kind, increment, count);
}

bool HyperFileImpl::ReadArray(void* data, HYPERFILEARRAY kind, LONG increment, LONG count) {
  if (!CanRead()) return false;
  if (reader_->Depth() == 0)
    return Fail(FILEERROR_VALUE_NO_CHUNK, "an array was asked for outside any chunk");
  return reader_->Array(data, kind, increment, count);
}

bool HyperFileImpl::ReadArrayStart(HYPERFILEARRAY kind, LONG* count) {
  if (!CanRead()) return false;
  HYPERFILEARRAY found = kind;
  if (!reader_->ArrayHeader(&found, count)) return false;
  return found == kind || Fail(FILEERROR_WRONG_VALUE, "found an array of " + ElementName(found) +
                                                          ", expected one of " + ElementName(kind));
}

bool HyperFileImpl::ReadArrayRest(void* data, HYPERFILEARRAY kind, LONG increment, LONG count) {
  return CanRead() && reader_->ArrayData(data, kind, increment, count);
}

bool HyperFileImpl::WriteChunkStart(LONG id, LONG level) {
  if (!CanWrite()) return false;
  if (visitor_) return ++visitorDepth_ > 0;
  return writer_->ChunkStart(id, level);
}

bool HyperFileImpl::WriteChunkEnd() {
  if (!CanWrite()) return false;
  if (OpenChunks() <= 0) return Fail(FILEERROR_CHUNK_NUMBER, "a chunk was ended that was not begun");
  if (visitor_) return --visitorDepth_ >= 0;
  return writer_->ChunkEnd();
}

bool HyperFileImpl::ReadChunkStart(LONG* id, LONG* level) {
  return CanRead() && reader_->ChunkStart(id, level);
}

bool HyperFileImpl::ReadChunkEnd() {
  if (!CanRead()) return false;
  if (OpenChunks() <= 0) return Fail(FILEERROR_CHUNK_NUMBER, "a chunk was ended that was not begun");
  return reader_->ChunkEnd();
}

bool HyperFileImpl::SkipToEndChunk() {
  return CanRead() && reader_->SkipToChunkEnd(reader_->Depth());
}

FILEERROR HyperFileImpl::Error() const {
  if (error_.code != FILEERROR_NONE) return error_.code;
  if (writer_) return writer_->Error().code;
  return reader_ ? reader_->Error().code : FILEERROR_NONE;
}

std::string HyperFileImpl::ErrorText() const {
  if (error_.code != FILEERROR_NONE) return error_.text;
  if (writer_) return writer_->Error().text;
  return reader_ ? reader_->Error().text : std::string();
}

void HyperFileImpl::SetError(FILEERROR error) {
  if (error == FILEERROR_NONE)
    error_ = StreamError(); // what the stream itself found stays
  else
    error_.Set(error, "the plug-in reports error " + std::to_string((int)error));
}

int HyperFileImpl::OpenChunks() const {
  if (visitor_) return visitorDepth_;
  return (writer_ ? writer_->Depth() : reader_ ? reader_->Depth() : 0) - floor_;
}

} // namespace host
