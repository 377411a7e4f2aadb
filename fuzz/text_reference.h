// The plain way to read point text: the C library's conversions, line by line. In the tests, the fuzz target
// and the bench the driver must agree with it, and the bench times the driver against it.
#pragma once

#include "text/text_driver.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

namespace reference {

struct Reading {
  std::vector<kelvra::TextPoint> points;
  std::int64_t lines = 0, rejected = 0, firstRejected = 0, noData = 0, notFinite = 0;
};

/** The fields of one line; `ok` turns false at the first one that fails and stays false. */
struct Fields {
  char *at, *lineEnd;
  bool ok = true, first = true;

  template <class Value, class Field>
  void Take(Value value, char* end, Field& field) {
    ok = end <= lineEnd && (first || end != at);
    first = false;
    at = end;
    if (ok) field = (Field)value;
  }
  Fields& Real(double& field) {
    char* end = nullptr;
    if (ok) {
      double value = std::strtod(at, &end);
      // The name in "nan(name)" says nothing about a point; strtod puts it into the number's bits.
      if (std::isnan(value)) value = std::copysign(std::numeric_limits<double>::quiet_NaN(), value);
      Take(value, end, field);
    }
    return *this;
  }
  template <class Field>
  Fields& Integer(Field& field) {
    char* end = nullptr;
    if (ok) {
      const long long value = std::strtoll(at, &end, 10);
      Take(std::clamp(value, -0x80000000LL, 0x7fffffffLL), end, field);
    }
    return *this;
  }
};

inline bool Colored(Fields f, kelvra::TextPoint& p, bool pts) {
  f.Real(p.x).Real(p.y).Real(p.z);
  if (pts && !f.Integer(p.intensity).ok) return false;
  if (f.Integer(p.r).ok) return f.Integer(p.g).Integer(p.b).ok;
  if (pts) p.r = p.g = p.b = (std::uint16_t)p.intensity;
  return pts;
}
inline bool Extended(Fields f, kelvra::TextPoint& p) {
  f.Real(p.x).Real(p.y).Real(p.z).Real(p.second[0]).Real(p.second[1]).Real(p.second[2]);
  return f.Integer(p.r).Integer(p.g).Integer(p.b).ok;
}
inline bool Plain(Fields f, kelvra::TextPoint& p) {
  if (!f.Real(p.x).Real(p.y).Real(p.z).ok) return false;
  p.r = p.g = p.b = 1;
  return true;
}

/** text[size] must be writable; line feeds become NULs. The memory of out's points is used again. */
inline void ReadInto(Reading& out, char* text, std::size_t size, std::int32_t everyNth, bool pts) {
  std::vector<kelvra::TextPoint> points = std::move(out.points);
  points.clear();
  out = Reading();
  out.points = std::move(points);
  kelvra::TextPoint p{};
  int state = 0;
  std::int32_t counter = 0;
  char* const stop = text + size;
  if (size >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) text += 3;
  for (char* line = text; line < stop;) {
    char* end = (char*)std::memchr(line, '\n', (std::size_t)(stop - line));
    if (!end) end = stop;
    *end = 0;
    ++out.lines;
    const std::int32_t t = counter >= everyNth ? 0 : counter;
    counter = t + 1;
    const Fields fields{line, end};
    const bool tooLong = (std::size_t)(end - line) > kelvra::kMostLineBytes;
    line = end + 1;
    if (t != 0) continue;
    bool ok = false;
    if (!tooLong && state == 0) ok = Colored(fields, p, pts);
    if (!tooLong && !ok && !pts && state != 2 && (ok = Extended(fields, p))) state = 1;
    if (!tooLong && !ok && !pts && state != 1 && (ok = Plain(fields, p))) state = 2;
    if (!ok && out.rejected++ == 0) out.firstRejected = out.lines;
    if (!ok) continue;
    if (p.z <= -9999.0)
      ++out.noData;
    else if (!std::isfinite((float)p.x) || !std::isfinite((float)p.y) || !std::isfinite((float)p.z))
      ++out.notFinite;
    else
      out.points.push_back(p);
  }
}

inline Reading Read(char* text, std::size_t size, std::int32_t everyNth, bool pts) {
  Reading out;
  ReadInto(out, text, size, everyNth, pts);
  return out;
}

} // namespace reference
