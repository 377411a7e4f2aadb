// What every point reader fills: one record per kept point, and the box around them. Both live only while one
// file is converted into a point block; the block narrows the records to 32-bit reals.
#pragma once

#include "cloud/growing_box.h"

#include <cstddef>
#include <cstdint>

namespace kelvra {

// A place in file axes and units.
struct SourcePoint {
  double at[3]; // x, y, z

  explicit SourcePoint(double all) : at{all, all, all} {}
  SourcePoint(double x, double y, double z) : at{x, y, z} {}
  double& operator[](int axis) { return at[axis]; }
  double operator[](int axis) const { return at[axis]; }
};
typedef GrowingBox<SourcePoint> SourceBox;

struct SourceRecord {
  double x, y, z;          // file axes (z up), file units, absolute
  double second[3];        // second colour or normal triple of text files; LAS: 0, 0, 1
  std::uint32_t intensity; // text files: the intensity column's value; LAS: 0, or the attribute asked for
  std::uint16_t r, g, b;   // colour as read; the block multiplies it by the reader's factor (text 256, LAS 1)
  std::uint16_t flag;      // not 0 where the classification byte of a LAS point carries bit 6; text: 0
};

static_assert(sizeof(SourceRecord) == 64 && offsetof(SourceRecord, intensity) == 48 &&
                  offsetof(SourceRecord, flag) == 58,
              "a source record is 64 bytes: six reals, intensity, colour, flag, padding");

// Most points that one block, and so one file, can give: three values a point are counted in 32 bits.
constexpr std::int32_t kMostBlockPoints = 715827882;

} // namespace kelvra
