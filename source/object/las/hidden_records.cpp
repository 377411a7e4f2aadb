#include "object/las/hidden_records.h"

#include <algorithm>

namespace kelvra {

namespace {

constexpr std::uint64_t kUserIdField = 2, kUserIdBytes = 16; // within a record's header
constexpr std::uint64_t kAttributeBytes = 192;               // description of one extra value per point
constexpr unsigned kLastSimpleType = 10, kLastType = 30; // types above kLastSimpleType are deprecated tuples
constexpr std::uint64_t kMaxExtendedBytes = 16 << 20;    // the library loads them whole
constexpr std::uint32_t kMaxExtendedRecords = 4096;

// What is wrong with the description of the extra bytes, or an empty text.
std::string CheckExtraBytes(ByteSource& file, const LasHeader& header, const LasRecord& record) {
  static constexpr unsigned kTypeBytes[] = {1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
  if (record.length == 0 || record.length % kAttributeBytes != 0)
    return Text("its length is %u, not a multiple of %u", unsigned(record.length), unsigned(kAttributeBytes));
  const unsigned extraBytes = header.recordLength - LasBaseLength(header.PointFormat());
  unsigned described = 0;
  for (std::uint64_t at = 0; at < record.length; at += kAttributeBytes) {
    std::uint8_t attribute[kAttributeBytes];
    if (!file.Read(record.Payload() + at, attribute, sizeof attribute)) return "it cannot be read";
    const unsigned type = attribute[2];
    if (type > kLastType) return Text("value type %u is unknown (0 to %u are known)", type, kLastType);
    const std::uint8_t* name = attribute + 4;
    if (type > kLastSimpleType && std::find(name, name + 32, 0) == name + 32) return "a name has no end";
    described += type == 0 ? attribute[3] : kTypeBytes[(type - 1) % 10] * ((type - 1) / 10 + 1);
  }
  if (described > extraBytes)
    return Text("it describes %u bytes a point, %u are there", described, extraBytes);
  return {};
}

// Why the library would trip over a record of its own.
std::string CheckLibraryRecord(const LasRecord& record) {
  const std::uint64_t expected = record.recordId == 20 && record.userId == "LAStools" ? 176 : 28;
  if (record.length == expected) return {};
  return Text("its length is %u, not %u", unsigned(record.length), unsigned(expected));
}

// What is wrong with a record that the library reads without checks, or an empty text.
std::string FindDamage(ByteSource& file, const LasFindings& findings, const LasRecord& record) {
  if (record.Is("LASF_Projection", 34735)) {
    std::uint16_t keys = 0;
    if (record.length < 8 || !file.Field(record.Payload() + 6, keys))
      return Text("its length is %u, at least 8 are needed", unsigned(record.length));
    if (8 + std::uint64_t{8} * keys > record.length)
      return Text("%u keys need %u bytes, it has %u", unsigned{keys}, 8 + 8u * keys, unsigned(record.length));
  }
  if (record.Is("LASF_Spec", 4)) return CheckExtraBytes(file, findings.header, record);
  if (record.userId == "LASF_Spec" && record.recordId >= 100 && record.recordId < 355 && record.length < 26)
    return Text("its length is %u, a wave packet descriptor has 26", unsigned(record.length));
  if (record.Is("LAStools", 10) || record.Is("LAStools", 20) || record.userId == "lastools tile")
    return CheckLibraryRecord(record);
  return {};
}

// Records that are sound but must be hidden all the same.
bool IsUnwanted(const LasRecord& record) {
  if (record.userId == "copc")
    return true; // another order of points, and positions that are often out of date
  return record.userId == "LAStools" && record.recordId < 2000 && record.recordId != 10 &&
         record.recordId != 20;
}

// Follows the extended records; false when they do not lie in the file.
bool FillExtended(ByteSource& file, LasFindings& findings) {
  std::uint64_t at = findings.header.extendedStart;
  if (findings.header.extendedCount > kMaxExtendedRecords || at < findings.header.pointOffset) return false;
  for (std::uint32_t i = 0; i < findings.header.extendedCount; ++i) {
    LasRecord record;
    if (!FillLasRecord(file, at, true, record) || record.length > file.Size() - record.Payload())
      return false;
    at = record.End();
    findings.records.push_back(std::move(record));
  }
  return true;
}

// The library loads extended records whole, and those that it knows without any check.
void HideExtended(ByteSource& file, LasFindings& findings) {
  if (findings.header.extendedCount == 0) return;
  const std::size_t first = findings.records.size();
  bool hide = false;
  if (!FillExtended(file, findings)) {
    findings.records.resize(first);
    findings.notes.push_back(
        {NoteSeverity::kInfo,
         Text("the %u extended records (byte 243) from byte %s on are not wholly in the file and are ignored",
              findings.header.extendedCount, Grouped(findings.header.extendedStart).c_str())});
    hide = true;
  }
  std::uint64_t bytes = 0;
  for (std::size_t i = first; i < findings.records.size(); ++i) {
    const std::string& user = findings.records[i].userId;
    for (const char* known :
         {"LASF_Projection", "LASF_Spec", "laszip encoded", "LAStools", "lastools tile", "copc"})
      hide = hide || user == known;
    bytes += findings.records[i].length;
  }
  if (hide || bytes > kMaxExtendedBytes) findings.patches.push_back({kExtendedCountField, {0, 0, 0, 0}});
}

} // namespace

void HideLasRecords(ByteSource& file, LasFindings& findings) {
  bool extraBytesSeen = false;
  for (const LasRecord& record : findings.records) {
    const std::string damage = FindDamage(file, findings, record);
    // A second description of the extra bytes is added to the first by the library, past the end of a point.
    const bool repeated = record.Is("LASF_Spec", 4) && extraBytesSeen;
    extraBytesSeen = extraBytesSeen || record.Is("LASF_Spec", 4);
    if (damage.empty() && !repeated && !IsUnwanted(record)) continue;
    findings.patches.push_back({record.offset + kUserIdField, std::vector<std::uint8_t>(kUserIdBytes)});
    if (!damage.empty())
      findings.notes.push_back(
          {NoteSeverity::kInfo, Text("record %s %u at byte %s is ignored: ", record.userId.c_str(),
                                     unsigned{record.recordId}, Grouped(record.offset).c_str()) +
                                    damage});
  }
  HideExtended(file, findings);
}

} // namespace kelvra
