#include "object/las/header.h"

#include <algorithm>

namespace kelvra {

bool FillLasHeader(ByteSource& file, LasHeader& header) {
  std::uint8_t bytes[kLas14HeaderBytes] = {};
  if (!file.Read(0, bytes, kLasHeaderBytes)) return false;

  header = LasHeader();
  header.versionMajor = bytes[24];
  header.versionMinor = bytes[25];
  header.headerSize = LittleEndian<std::uint16_t>(bytes + 94);
  header.pointOffset = LittleEndian<std::uint32_t>(bytes + 96);
  header.recordCount = LittleEndian<std::uint32_t>(bytes + 100);
  header.formatByte = bytes[104];
  header.recordLength = LittleEndian<std::uint16_t>(bytes + 105);
  header.legacyPoints = LittleEndian<std::uint32_t>(bytes + 107);
  for (int axis = 0; axis < 3; ++axis) {
    header.scale[axis] = LittleEndian<double>(bytes + 131 + 8 * axis);
    header.offset[axis] = LittleEndian<double>(bytes + 155 + 8 * axis);
    header.maximum[axis] = LittleEndian<double>(bytes + 179 + 16 * axis);
    header.minimum[axis] = LittleEndian<double>(bytes + 187 + 16 * axis);
  }

  if (header.versionMinor < 4 || header.headerSize < kLas14HeaderBytes) return true;
  if (!file.Read(0, bytes, kLas14HeaderBytes)) return true;
  header.extendedStart = LittleEndian<std::uint64_t>(bytes + 235);
  header.extendedCount = LittleEndian<std::uint32_t>(bytes + kExtendedCountField);
  header.extendedPoints = LittleEndian<std::uint64_t>(bytes + 247);
  return true;
}

bool FillLasRecord(ByteSource& file, std::uint64_t offset, bool extended, LasRecord& record) {
  std::uint8_t bytes[kExtendedHeaderBytes];
  if (!file.Read(offset, bytes, extended ? kExtendedHeaderBytes : kRecordHeaderBytes)) return false;
  record.offset = offset;
  record.extended = extended;
  const auto* user = reinterpret_cast<const char*>(bytes + 2);
  record.userId.assign(user, std::find(user, user + 16, '\0'));
  record.recordId = LittleEndian<std::uint16_t>(bytes + 18);
  record.length =
      extended ? LittleEndian<std::uint64_t>(bytes + 20) : LittleEndian<std::uint16_t>(bytes + 20);
  return true;
}

} // namespace kelvra
