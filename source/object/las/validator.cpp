#include "object/las/validator.h"

#include "object/las/geokeys.h"
#include "object/las/hidden_records.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kelvra {

namespace {

constexpr unsigned kLastPointFormat = 10;

// How the file starts, for the message about a file that is not a point cloud at all.
std::string Beginning(ByteSource& file) {
  std::uint8_t bytes[12] = {};
  const std::size_t count = (std::size_t)(std::min<std::uint64_t>(file.Size(), sizeof bytes));
  if (count == 0 || !file.Read(0, bytes, count)) return "it is empty";
  std::string text;
  for (std::size_t i = 0; i < count && bytes[i] > ' ' && bytes[i] < 127; ++i) text += (char)bytes[i];
  if (!text.empty()) return "it starts with " + text + (text.size() < file.Size() ? "…" : "");
  return Text("it starts with the bytes %02X %02X %02X %02X", bytes[0], bytes[1], bytes[2], bytes[3]);
}

std::string CheckSignature(ByteSource& file) {
  char signature[4] = {};
  if (!file.Read(0, signature, 4) || std::memcmp(signature, "LASF", 4) != 0)
    return "this is not a point cloud (" + Beginning(file) + ")";
  if (file.Size() < kLasHeaderBytes)
    return Text("the file has %s bytes, a header needs at least %zu", Grouped(file.Size()).c_str(),
                kLasHeaderBytes);
  return {};
}

unsigned SmallestHeader(unsigned minorVersion) {
  if (minorVersion >= 5) return kLas15HeaderBytes;
  return minorVersion == 4 ? kLas14HeaderBytes : minorVersion == 3 ? 235 : kLasHeaderBytes;
}

void CheckLayout(ByteSource& file, const LasHeader& header, std::vector<std::string>& complaints) {
  const auto size = file.Size();
  if (header.versionMajor != 1 || header.versionMinor > 5)
    complaints.push_back(Text("version (byte 24) is %u.%u, 1.0 to 1.5 are known",
                              unsigned{header.versionMajor}, unsigned{header.versionMinor}));
  else if (header.headerSize < SmallestHeader(header.versionMinor))
    complaints.push_back(Text("header size (byte 94) is %u, version 1.%u has at least %u",
                              unsigned{header.headerSize}, unsigned{header.versionMinor},
                              SmallestHeader(header.versionMinor)));
  if (header.pointOffset < header.headerSize)
    complaints.push_back(Text("offset to point data (byte 96) is %u, the header has %u bytes",
                              header.pointOffset, unsigned{header.headerSize}));
  if (header.pointOffset > size)
    complaints.push_back(Text("offset to point data (byte 96) is %s, the file has %s bytes",
                              Grouped(header.pointOffset).c_str(), Grouped(size).c_str()));
}

void CheckPoints(const LasHeader& header, std::vector<std::string>& complaints) {
  const unsigned format = header.PointFormat();
  if (format > kLastPointFormat) {
    complaints.push_back(Text("point format (byte 104) is %u, 0 to %u are known", format, kLastPointFormat));
  } else {
    if (format >= 6 && header.versionMinor < 4)
      complaints.push_back(Text("point format (byte 104) is %u, version 1.%u has 0 to 5", format,
                                unsigned{header.versionMinor}));
    if (header.recordLength < LasBaseLength(format))
      complaints.push_back(Text("point record length (byte 105) is %u, point format %u has at least %u",
                                unsigned{header.recordLength}, format, LasBaseLength(format)));
  }
  if (header.versionMinor >= 4 && header.legacyPoints != 0 && header.extendedPoints != 0 &&
      header.legacyPoints != header.extendedPoints)
    complaints.push_back(
        Text("number of points is %s in the old field (byte 107), %s in the new one (byte 247)",
             Grouped(header.legacyPoints).c_str(), Grouped(header.extendedPoints).c_str()));
  for (int axis = 0; axis < 3; ++axis) {
    const char name = (char)('x' + axis);
    if (!std::isfinite(header.scale[axis]) || header.scale[axis] == 0)
      complaints.push_back(Text("%c scale (byte %d) is %g, it must be finite and not 0", name, 131 + 8 * axis,
                                header.scale[axis]));
    if (!std::isfinite(header.offset[axis]))
      complaints.push_back(
          Text("%c offset (byte %d) is %g, it must be finite", name, 155 + 8 * axis, header.offset[axis]));
  }
}

// Do the points lie where the header says, whatever stands between it and them? Uncompressed ones must end
// where the file or its first extended record begins; compressed ones are checked with their own record.
bool PointsFillTheFile(ByteSource& file, const LasHeader& header) {
  const std::uint64_t end = header.extendedCount > 0 ? header.extendedStart : file.Size();
  const std::uint64_t bytes = end < header.pointOffset ? 0 : end - header.pointOffset;
  return bytes % header.recordLength == 0 && bytes / header.recordLength == header.Points();
}

// Writers announce more variable-length records than there are. Where the points do not depend on the missing
// ones, the library is given the number of those that are there; otherwise the file is refused.
void IgnoreSurplus(ByteSource& file, LasFindings& findings) {
  const LasHeader& header = findings.header;
  const bool sound =
      header.Compressed()
          ? std::any_of(findings.records.begin(), findings.records.end(),
                        [](const LasRecord& record) { return record.userId == "laszip encoded"; })
          : PointsFillTheFile(file, header);
  const std::uint64_t room = header.pointOffset - header.headerSize;
  const std::string what = Text("%s (byte 100) %s not fit into the %s before the point data",
                                Counted(header.recordCount, "variable-length record").c_str(),
                                header.recordCount == 1 ? "does" : "do", Counted(room, "byte").c_str());
  if (!sound) {
    findings.complaints.push_back(what);
    return;
  }
  const std::size_t found = findings.records.size();
  findings.notes.push_back({NoteSeverity::kInfo, what + Text("; %zu %s there, the rest is ignored", found,
                                                             found == 1 ? "is" : "are")});
  std::vector<std::uint8_t> count(4);
  for (int i = 0; i < 4; ++i) count[(std::size_t)i] = (std::uint8_t)(found >> (8 * i));
  findings.patches.push_back({kRecordCountField, count});
}

// Walks the variable-length records, which must end before the point data.
void FillRecords(ByteSource& file, LasFindings& findings) {
  const LasHeader& header = findings.header;
  std::uint64_t at = header.headerSize;
  for (std::uint32_t i = 0; i < header.recordCount; ++i) {
    if (header.pointOffset - at < kRecordHeaderBytes) return IgnoreSurplus(file, findings);
    LasRecord record;
    if (!FillLasRecord(file, at, false, record) || record.End() > header.pointOffset) {
      findings.complaints.push_back(
          Text("variable-length record %u at byte %s ends at byte %s, the point data starts at byte %u", i,
               Grouped(at).c_str(), Grouped(std::max(record.End(), at + kRecordHeaderBytes)).c_str(),
               header.pointOffset));
      return;
    }
    at = record.End();
    findings.records.push_back(std::move(record));
  }
}

// The record of the compressor is there exactly when the point format says so.
void CheckCompression(ByteSource& file, LasFindings& findings) {
  const LasRecord* found = NULL;
  for (const LasRecord& record : findings.records) {
    if (record.userId != "laszip encoded") continue;
    if (record.recordId != 22204 || found) {
      findings.complaints.push_back(
          Text("record \"laszip encoded\" %u at byte %s: one with number 22204 is expected",
               unsigned{record.recordId}, Grouped(record.offset).c_str()));
      return;
    }
    found = &record;
  }
  if (findings.header.Compressed() != (found != NULL)) {
    findings.complaints.push_back(
        found ? "the file has a compression record, its point format (byte 104) is uncompressed"
              : "point format (byte 104) is compressed, the file has no compression record");
    return;
  }
  if (!found) return;
  const std::string problem = CheckLasCompression(file, findings.header, *found, findings.compression);
  if (!problem.empty())
    findings.complaints.push_back(Text("compression record at byte %s: ", Grouped(found->offset).c_str()) +
                                  problem);
  else if (findings.compression.specialRecords > 0) // a spatial index for the library, read without checks
    findings.patches.push_back({found->Payload() + kSpecialRecordsField, std::vector<std::uint8_t>(8)});
}

void CountReadable(ByteSource& file, LasFindings& findings) {
  const LasHeader& header = findings.header;
  findings.pointBytes = file.Size() - header.pointOffset;
  if (!header.Compressed()) {
    findings.readable = std::min(header.Points(), (file.Size() - header.pointOffset) / header.recordLength);
    if (findings.readable < header.Points()) {
      const double end = (double)header.Points() * header.recordLength + header.pointOffset;
      findings.cut = LoadCut::kFileEnd;
      findings.cutPlace =
          Text("its points should end at byte %s, but it ends at byte %s",
               Grouped((std::uint64_t)std::min(end, 1e18)).c_str(), Grouped(file.Size()).c_str());
    }
    return;
  }
  LasChunkPlan plan = PlanLasChunks(file, header, findings.compression);
  if (!plan.refusal.empty()) findings.complaints.push_back(plan.refusal);
  findings.cut = plan.cut;
  findings.cutPlace = plan.cutPlace;
  findings.readable = plan.readable;
  if (plan.withoutTable) {
    // A table that starts where the point data starts is how an interrupted writer leaves it.
    std::vector<std::uint8_t> position(8);
    for (int i = 0; i < 4; ++i) position[i] = (std::uint8_t)(header.pointOffset >> (8 * i));
    findings.patches.push_back({header.pointOffset, position});
  }
}

} // namespace

LasFindings ValidateLas(ByteSource& file) {
  LasFindings findings;
  if (std::string problem = CheckSignature(file); !problem.empty()) {
    findings.complaints.push_back(problem);
    return findings;
  }
  if (!FillLasHeader(file, findings.header)) {
    findings.complaints.push_back("the header cannot be read");
    return findings;
  }
  CheckLayout(file, findings.header, findings.complaints);
  CheckPoints(findings.header, findings.complaints);
  if (!findings.complaints.empty()) return findings;

  FillRecords(file, findings);
  if (!findings.complaints.empty()) return findings;
  CheckCompression(file, findings);
  if (!findings.complaints.empty()) return findings;

  HideLasRecords(file, findings);
  findings.geoKey = FindGeoKey(file, findings.records);
  findings.system = FindCoordinateSystem(file, findings.records);
  CountReadable(file, findings);
  std::sort(findings.patches.begin(), findings.patches.end(),
            [](const LasPatch& a, const LasPatch& b) { return a.offset < b.offset; });
  return findings;
}

} // namespace kelvra
