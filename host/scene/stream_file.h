// The frame of a stream's file: what comes before and after the values.
//
//   bytes 0..3    "HSCN"
//   bytes 4..7    version of the format
//   bytes 8..11   ident: what kind of stream it is (a scene, or the number that a plug-in gave its own file)
//   ...           values
//   last 20..17   "HEND"
//   last 16..9    length of the file
//   last 8..1     XXH3 (64 bits) of every byte before
// All numbers are little-endian.
#pragma once

#include "host/scene/value_reader.h"
#include "host/scene/value_writer.h"

namespace host {

constexpr ULONG kStreamVersion = 1;
constexpr LONG kSceneIdent = C4D_FOUR_BYTE('S', 'C', 'N', 'E');
constexpr std::int64_t kStreamHeadBytes = 12, kStreamTailBytes = 20;

bool WriteStreamHead(ByteSink& sink, LONG ident);
bool WriteStreamTail(ByteSink& sink);

/** Checks head and end mark before any value is read and sets the source's end. */
bool ReadStreamHead(ByteSource& source, LONG ident, ULONG* version, StreamError* error);
/** Once all values are taken: nothing may be left, and length and checksum must be right. */
bool ReadStreamTail(ByteSource& source, StreamError* error);
/** True when the rest of the file agrees with its checksum; for telling damage from a fault of the writer. */
bool RestIsUndamaged(ByteSource& source);

} // namespace host
