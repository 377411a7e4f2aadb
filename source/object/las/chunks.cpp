#include "object/las/chunks.h"

#include <algorithm>
#include <limits>

namespace kelvra {

namespace {

// A chunked file starts its point data with the position of the chunk table.
constexpr std::uint64_t kTablePositionBytes = 8;
constexpr std::uint64_t kTableHeaderBytes = 8; // version, number of chunks

struct ChunkTable {
  std::vector<LasChunk> chunks;
  std::uint64_t position = 0; // of the table, and the end of the last chunk
  // Points that its chunks hold at most, where they fill the bytes before it and not the header's number; 0
  // where that is not known.
  std::uint64_t most = 0;
};

std::uint64_t BytesOf(const std::vector<LasChunk>& chunks) {
  std::uint64_t bytes = 0;
  for (const LasChunk& chunk : chunks) bytes += chunk.bytes;
  return bytes;
}

// Reads the position of the table; the writer of a stream that cannot seek puts it into the last eight bytes.
std::string FindTable(ByteSource& file, const LasHeader& header, std::uint64_t& position) {
  if (!file.Field(header.pointOffset, position)) return "the position of the chunk table cannot be read";
  if (position == std::numeric_limits<std::uint64_t>::max() && !file.Field(file.Size() - 8, position))
    return "the position of the chunk table cannot be read from the end of the file";
  const std::uint64_t firstChunk = header.pointOffset + kTablePositionBytes;
  if (position == header.pointOffset) return "the file has no chunk table: its writer was interrupted";
  if (position < firstChunk || position > file.Size() || file.Size() - position < kTableHeaderBytes)
    return Text("the chunk table should be at byte %s, but the point data reaches from byte %s to %s",
                Grouped(position).c_str(), Grouped(firstChunk).c_str(), Grouped(file.Size()).c_str());
  return {};
}

// Reads the table and checks that its chunks hold the announced points and end where the table starts.
std::string ReadTable(ByteSource& file, const LasHeader& header, const LasCompression& compression,
                      ChunkTable& table) {
  if (std::string problem = FindTable(file, header, table.position); !problem.empty()) return problem;
  std::uint32_t version = 0, count = 0;
  if (!file.Field(table.position, version) || !file.Field(table.position + 4, count))
    return "the chunk table cannot be read";
  if (version != 0) return Text("the chunk table has version %u, only 0 is known", version);

  const std::uint64_t announced = header.Points();
  const std::uint64_t bytes = table.position - header.pointOffset - kTablePositionBytes;
  const std::uint64_t mostChunks = std::min(announced, bytes / compression.RawPointBytes());
  const std::uint64_t size = compression.chunkSize;
  // The number of chunks must fit the points and the bytes before it sizes an array.
  if (count > mostChunks)
    return Text("the chunk table has %s chunks, %s points in %s bytes make %s at most",
                Grouped(count).c_str(), Grouped(announced).c_str(), Grouped(bytes).c_str(),
                Grouped(mostChunks).c_str());
  if (!compression.VariableChunks() && count != (announced - 1) / size + 1) {
    if (DecodeLasChunkTable(file, table.position + kTableHeaderBytes, count, false, table.chunks) &&
        BytesOf(table.chunks) == bytes)
      table.most = count * size;
    return Text("the chunk table has %s chunks, %s points in chunks of %s make %s", Grouped(count).c_str(),
                Grouped(announced).c_str(), Grouped(size).c_str(),
                Grouped((announced - 1) / size + 1).c_str());
  }

  if (!DecodeLasChunkTable(file, table.position + kTableHeaderBytes, count, compression.VariableChunks(),
                           table.chunks))
    return "the chunk table does not decode";
  // Add up points and bytes: the last chunk must end where the table starts.
  std::uint64_t points = 0, end = header.pointOffset + kTablePositionBytes;
  for (std::size_t i = 0; i < table.chunks.size(); ++i) {
    LasChunk& chunk = table.chunks[i];
    if (!compression.VariableChunks()) chunk.points = std::min(size, announced - points);
    points += chunk.points;
    end += chunk.bytes;
    if (chunk.points == 0 || chunk.bytes < compression.RawPointBytes() || end > table.position ||
        points > announced)
      return Text("chunk %zu of the chunk table has %s points in %s bytes", i, Grouped(chunk.points).c_str(),
                  Grouped(chunk.bytes).c_str());
  }
  if (end != table.position || points != announced)
    return Text("the chunk table holds %s points and ends at byte %s, not %s points and byte %s",
                Grouped(points).c_str(), Grouped(end).c_str(), Grouped(announced).c_str(),
                Grouped(table.position).c_str());
  return {};
}

// Finds the length of the layered chunk at `start`: the first point, the number of points, the lengths of the
// layers, the layers. Returns what is wrong with it, or an empty text. A length above end - start tells that
// the chunk is cut off.
std::string MeasureLayeredChunk(ByteSource& file, const LasCompression& compression, std::uint64_t start,
                                std::uint64_t end, std::uint64_t points, std::uint64_t& length) {
  const std::uint64_t sizesAt = compression.RawPointBytes();
  length = sizesAt + 4 + 4 * compression.Layers();
  if (length > end - start) return "ends before its layers";
  std::vector<std::uint8_t> sizes(length - sizesAt);
  if (!file.Read(start + sizesAt, sizes.data(), sizes.size())) return "cannot be read";
  const auto counted = LittleEndian<std::uint32_t>(sizes.data());
  if (counted != points) return Text("says it holds %u points, not %s", counted, Grouped(points).c_str());
  for (std::size_t at = 4; at < sizes.size(); at += 4) length += LittleEndian<std::uint32_t>(&sizes[at]);
  if (length > end - start)
    return Text("has %s bytes in its layers, %s are there", Grouped(length).c_str(),
                Grouped(end - start).c_str());
  return {};
}

// Follows the layered chunks one after the other; the points of the chunks before the first damaged one are
// readable.
void FollowLayeredChunks(ByteSource& file, const LasHeader& header, const LasCompression& compression,
                         const ChunkTable* table, LasChunkPlan& plan) {
  const std::uint64_t announced = header.Points();
  const std::uint64_t end = table ? table->position : file.Size();
  std::uint64_t at = header.pointOffset + kTablePositionBytes, points = 0;
  for (std::size_t i = 0; points < announced; ++i) {
    const std::uint64_t inChunk =
        table ? table->chunks[i].points : std::min<std::uint64_t>(compression.chunkSize, announced - points);
    std::uint64_t length = 0;
    std::string problem = MeasureLayeredChunk(file, compression, at, end, inChunk, length);
    if (problem.empty() && table && length != table->chunks[i].bytes)
      problem = Text("has %s bytes, the chunk table says %s", Grouped(length).c_str(),
                     Grouped(table->chunks[i].bytes).c_str());
    if (!problem.empty()) {
      plan.cut = !table && length > end - at ? LoadCut::kFileEnd : LoadCut::kDamage;
      plan.cutPlace = Text("chunk %zu at byte %s ", i, Grouped(at).c_str()) + problem;
      break;
    }
    points += inChunk;
    at += length;
  }
  plan.readable = points;
}

} // namespace

LasChunkPlan PlanLasChunks(ByteSource& file, const LasHeader& header, const LasCompression& compression) {
  LasChunkPlan plan;
  const std::uint64_t announced = header.Points();
  if (announced == 0) return plan;
  // 1. Is there room for the first point, which stands uncompressed? The library cannot start without it.
  const std::uint64_t start = header.pointOffset + (compression.Chunked() ? kTablePositionBytes : 0);
  if (start + compression.RawPointBytes() > file.Size()) {
    plan.cut = LoadCut::kFileEnd;
    plan.cutPlace =
        Text("it ends at byte %s, before its first point is complete", Grouped(file.Size()).c_str());
    return plan;
  }
  // 2. Bound the number of points by the bytes that are there.
  const std::uint64_t bytes = file.Size() - start;
  plan.readable = bytes < announced / kMaxPointsPerByte ? bytes * kMaxPointsPerByte : announced;
  if (!compression.Chunked()) return plan;

  // 3. Read the chunk table. Chunks of one size can do without: each starts where the one before it ends.
  ChunkTable table;
  const std::string tableProblem = ReadTable(file, header, compression, table);
  plan.withoutTable = !tableProblem.empty();
  if (plan.withoutTable && compression.VariableChunks()) {
    plan.refusal = tableProblem + "; chunks of different sizes cannot be read without it";
    plan.readable = 0;
    return plan;
  }
  // Behind the last chunk nothing but the table would be decoded, into points that are none.
  if (table.most > 0) plan.readable = std::min(plan.readable, table.most);
  // 4. Layered chunks tell their lengths: follow them to the first one that does not fit.
  if (compression.Layered())
    FollowLayeredChunks(file, header, compression, plan.withoutTable ? NULL : &table, plan);
  if (plan.cut == LoadCut::kNone && plan.withoutTable) {
    plan.cut = table.position > file.Size() ? LoadCut::kFileEnd : LoadCut::kDamage;
    plan.cutPlace = tableProblem;
  }
  return plan;
}

} // namespace kelvra
