// The fields of a LAS file's header and of its record headers, taken from the bytes without any judgement.
#pragma once

#include "object/las/bytes.h"

#include <string>

namespace kelvra {

constexpr std::size_t kLasHeaderBytes = 227;       // LAS 1.0 to 1.2
constexpr std::size_t kLas14HeaderBytes = 375;     // LAS 1.4
constexpr std::size_t kLas15HeaderBytes = 393;     // LAS 1.5: the same fields, then some that hold no points
constexpr std::size_t kRecordHeaderBytes = 54;     // variable-length record
constexpr std::size_t kExtendedHeaderBytes = 60;   // extended variable-length record
constexpr std::uint64_t kRecordCountField = 100;   // byte of the number of variable-length records
constexpr std::uint64_t kExtendedCountField = 243; // byte of the number of extended records

struct LasHeader {
  std::uint8_t versionMajor = 0, versionMinor = 0;
  std::uint16_t headerSize = 0;
  std::uint32_t pointOffset = 0; // of the point data, from the start of the file
  std::uint32_t recordCount = 0; // variable-length records
  std::uint8_t formatByte = 0;   // bit 7: compressed
  std::uint16_t recordLength = 0;
  std::uint32_t legacyPoints = 0;
  double scale[3] = {}, offset[3] = {};
  double minimum[3] = {}, maximum[3] = {}; // x, y, z in file units
  // From LAS 1.4 on, 0 otherwise:
  std::uint64_t extendedStart = 0;
  std::uint32_t extendedCount = 0;
  std::uint64_t extendedPoints = 0;

  bool Compressed() const { return (formatByte & 0x80) != 0; }
  unsigned PointFormat() const { return formatByte & 0x7f; }
  std::uint64_t Points() const { return legacyPoints ? legacyPoints : extendedPoints; }
};

struct LasRecord {
  std::uint64_t offset = 0; // of the record's header
  bool extended = false;
  std::string userId; // up to its first zero byte, 16 bytes at most
  std::uint16_t recordId = 0;
  std::uint64_t length = 0; // of the payload
  std::uint64_t Payload() const { return offset + (extended ? kExtendedHeaderBytes : kRecordHeaderBytes); }
  std::uint64_t End() const { return Payload() + length; }
  bool Is(const char* user, unsigned id) const { return recordId == id && userId == user; }
};

// False when the file is shorter than the smallest header. The fields of LAS 1.4 are read when version and
// size have them.
bool FillLasHeader(ByteSource& file, LasHeader& header);

// False when the record's header is not wholly in the file.
bool FillLasRecord(ByteSource& file, std::uint64_t offset, bool extended, LasRecord& record);

} // namespace kelvra
