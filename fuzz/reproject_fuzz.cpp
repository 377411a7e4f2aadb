// Takes any bytes as a geometry service's answer: a number changes only if its colon and comma are there, and
// then to the host's conversion of the text between them. The reference works on plain text with checked
// indices.
#include "host/application.h"
#include "object/reprojection.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

struct Reading {
  LReal values[4];
  Bool read[4] = {FALSE, FALSE, FALSE, FALSE};
};

constexpr std::size_t kNone = std::string::npos;

/** A text that does not begin with a finite number changes nothing. */
void ReadNumber(const std::string& text, Reading& reading, int index) {
  char* end = nullptr;
  const double found = std::strtod(text.c_str(), &end);
  if (end == text.c_str() || !std::isfinite(found)) return;
  reading.values[index] =
      StringToNumber(String(text.c_str(), STRINGENCODING_8BIT), FORMAT_REAL, 30).GetReal();
  reading.read[index] = TRUE;
}

void ReadPoint(const std::string& text, Reading& reading, int first) {
  const std::size_t colon = text.find(':'), comma = colon == kNone ? kNone : text.find(',', colon);
  if (comma == kNone) return;
  ReadNumber(text.substr(colon + 1, comma - colon - 1), reading, first);
  const std::size_t second = text.find(':', comma);
  if (second == kNone) return;
  ReadNumber(text.substr(second + 1), reading, first + 1);
}

void ReadAnswer(const std::string& answer, Reading& reading) {
  std::size_t at = answer.find("geometries");
  for (int first = 0; first < 4 && at != kNone; first += 2) {
    const std::size_t open = answer.find('{', at), close = open == kNone ? kNone : answer.find('}', open);
    if (close == kNone) return;
    if (close - open > 3) ReadPoint(answer.substr(open + 1, close - open - 3), reading, first);
    at = close + 1;
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static host::Application application;
  const std::string answer((const char*)data, std::find(data, data + size, 0) - data);
  Reading expected{{0.125, 0.25, 0.5, 0.75}};
  ReadAnswer(answer, expected);
  kelvra::CornerPair corners{0.125, 0.25, 0.5, 0.75};
  const kelvra::CoordinatesRead read =
      kelvra::ReadProjectAnswer(String(answer.c_str(), STRINGENCODING_8BIT), corners);
  const LReal values[] = {corners.a1, corners.a2, corners.b1, corners.b2};
  const Bool flags[] = {read.a1, read.a2, read.b1, read.b2};
  for (int i = 0; i < 4; ++i) {
    const bool same = values[i] == expected.values[i] ||
                      (values[i] != values[i] && expected.values[i] != expected.values[i]);
    if (!same || flags[i] != expected.read[i]) std::abort();
  }
  return 0;
}
