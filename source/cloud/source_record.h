// The intermediate record that every point reader fills, one per kept point. It lives only while one file is
// converted into a point block; the block narrows it to 32-bit reals.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvra {

struct SourceRecord {
  double x, y, z;          // file axes (z up), file units, absolute
  double second[3];        // second colour or normal triple of text files; LAS: 0, 0, 1
  std::uint32_t intensity; // text files: the intensity column's value; LAS: 0
  std::uint16_t r, g, b;   // colour as read; the block multiplies it by the reader's factor (text 256, LAS 1)
  std::uint16_t flag;      // not 0 where the classification byte of a LAS point carries bit 6; text: 0
};

static_assert(sizeof(SourceRecord) == 64 && offsetof(SourceRecord, intensity) == 48 &&
                  offsetof(SourceRecord, flag) == 58,
              "a source record is 64 bytes: six reals, intensity, colour, flag, padding");

} // namespace kelvra
