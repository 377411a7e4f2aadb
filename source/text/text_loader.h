// The two text formats: how one line of each becomes a point. Files, lines and format detection are the
// driver's.
#pragma once

#include "cloud/source_record.h"

#include <cstdint>

namespace kelvra {

/** One parsed point. A parse writes only the fields that its form names; the rest keep what they had. */
using TextPoint = SourceRecord;

/**
 * One format. The order of the virtual operations is that of their slots and must not change. This module's
 * driver asks for the three parses only; the sizes and counts before them are for callers that reserve memory
 * before they read.
 */
class TextLoader {
public:
  virtual ~TextLoader() {}
  /** Estimated bytes a line. */
  virtual std::int32_t BytesPerLine() const { return 2; }
  virtual std::int32_t FormatFlag() const { return 0; }
  /**
   * Occurrences of a pair of bytes. After a match the scan goes on three positions later: that is one byte
   * more than the pair, so of "\r\n\r\n" only the first is counted. Callers get an estimate, never more than
   * there are. buffer holds `readable` bytes; the comparison at the last of the `length` positions looks one
   * byte further where there is one.
   */
  virtual std::int32_t CountPairs(const char* buffer, std::int32_t length, std::int32_t readable,
                                  const char pair[2]) const;
  /** size / BytesPerLine() in 32-bit integers. */
  virtual std::int32_t EstimatePointCount(std::int32_t size) const { return size / BytesPerLine(); }

  // line[length] must be a NUL. False at the first field that is missing, not a number or beyond the line's
  // end; fields stored before it stay.
  virtual bool ParseColored(const char* line, std::int32_t length, TextPoint& point) const;
  virtual bool ParseExtended(const char* line, std::int32_t length, TextPoint& point) const;
  virtual bool ParsePlain(const char* line, std::int32_t length, TextPoint& point) const;
};

/** x y z r g b, x y z e1 e2 e3 r g b, or x y z. */
class TextLoader_XYZ : public TextLoader {
public:
  std::int32_t BytesPerLine() const override { return 38; }
  bool ParseColored(const char* line, std::int32_t length, TextPoint& point) const override;
  bool ParseExtended(const char* line, std::int32_t length, TextPoint& point) const override;
  bool ParsePlain(const char* line, std::int32_t length, TextPoint& point) const override;
};

/** x y z intensity [r g b]. */
class TextLoader_PTS : public TextLoader {
public:
  std::int32_t BytesPerLine() const override { return 42; }
  std::int32_t FormatFlag() const override { return 1; }
  bool ParseColored(const char* line, std::int32_t length, TextPoint& point) const override;
};

} // namespace kelvra
