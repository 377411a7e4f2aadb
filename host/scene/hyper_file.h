// What a HyperFile pointer points to: one stream of typed values, written, read or shown to a visitor.
#pragma once

#include "host/scene/stream_file.h"
#include "host/scene/stream_visitor.h"

#include <memory>
#include <string>

namespace host {

/**
 * One stream. A guest (a plug-in's Read or Write) is held within the chunk that was made for it: it can
 * neither end that chunk nor read past its end. Errors stick.
 */
class HyperFileImpl {
public:
  HyperFileImpl();
  /** For one part of a larger stream; the writer, reader or visitor must outlive this. */
  HyperFileImpl(ValueWriter& writer, BaseDocument* doc);
  HyperFileImpl(ValueReader& reader, BaseDocument* doc, ULONG fileVersion);
  HyperFileImpl(StreamVisitor& visitor, BaseDocument* doc);
  ~HyperFileImpl();

  /** Own files: READ or WRITE; a written file takes the place of an older one when it is closed. */
  bool Open(LONG ident, const std::string& path, FILEOPEN mode, Faults* faults);
  bool Close();

  bool Write(HYPERFILEVALUE kind, const void* value);
  bool Read(HYPERFILEVALUE kind, void* value);
  bool WriteArray(const void* data, HYPERFILEARRAY kind, LONG increment, LONG count);
  bool ReadArray(void* data, HYPERFILEARRAY kind, LONG increment, LONG count);
  /** First part of ReadArray, for arrays whose count is not known: so many elements fit into what is left. */
  bool ReadArrayStart(HYPERFILEARRAY kind, LONG* count);
  /** Second part; data has room for count elements. */
  bool ReadArrayRest(void* data, HYPERFILEARRAY kind, LONG increment, LONG count);
  bool WriteChunkStart(LONG id, LONG level);
  bool WriteChunkEnd();
  bool ReadChunkStart(LONG* id, LONG* level);
  bool ReadChunkEnd();
  bool SkipToEndChunk();

  FILEERROR Error() const;
  /** Empty without an error. */
  std::string ErrorText() const;
  void SetError(FILEERROR error);
  /** Gives up; the user sees the text. Always false. */
  bool Refuse(FILEERROR error, const std::string& text) { return Fail(error, text); }
  /** Chunks that the guest began and did not end. */
  int OpenChunks() const;

  BaseDocument* document = nullptr;
  ULONG version = kStreamVersion;

  HyperFile* Api() { return reinterpret_cast<HyperFile*>(this); }
  static HyperFileImpl* From(HyperFile* hf) { return reinterpret_cast<HyperFileImpl*>(hf); }
  static const HyperFileImpl* From(const HyperFile* hf) { return reinterpret_cast<const HyperFileImpl*>(hf); }

private:
  struct OwnFile;
  bool CanWrite();
  bool CanRead();
  bool Fail(FILEERROR error, const std::string& text);

  ValueWriter* writer_ = nullptr;
  ValueReader* reader_ = nullptr;
  StreamVisitor* visitor_ = nullptr;
  std::unique_ptr<OwnFile> own_;
  StreamError error_;
  int floor_ = 0, visitorDepth_ = 0;
};

} // namespace host
