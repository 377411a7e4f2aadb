#include "text/text_loader.h"

#include "text/number_parse.h"

namespace kelvra {

namespace {

/** Reads the fields of one line from left to right. */
class FieldReader {
public:
  FieldReader(const char* line, std::int32_t length) : next_(line), lineEnd_(line + length) {}

  bool Real(double& field) {
    const char* end = NULL;
    const double value = ParseReal(next_, lineEnd_, &end);
    if (!Advance(end)) return false;
    field = value;
    return true;
  }
  bool Integer(std::int32_t& value) {
    const char* end = NULL;
    const std::int32_t parsed = ParseInteger(next_, &end);
    if (!Advance(end)) return false;
    value = parsed;
    return true;
  }
  /** Truncated to 16 bits, no range check. */
  bool Channel(std::uint16_t& field) {
    std::int32_t value = 0;
    if (!Integer(value)) return false;
    field = (std::uint16_t)value;
    return true;
  }
  bool Position(TextPoint& point) { return Real(point.x) && Real(point.y) && Real(point.z); }
  bool Color(TextPoint& point) { return Channel(point.r) && Channel(point.g) && Channel(point.b); }

private:
  /** The first field is checked against the line's end only; one without digits makes the second fail. */
  bool Advance(const char* end) {
    const bool ok = end && end <= lineEnd_ && (first_ || end != next_);
    first_ = false;
    next_ = end;
    return ok;
  }

  const char* next_;
  const char* const lineEnd_;
  bool first_ = true;
};

} // namespace

std::int32_t TextLoader::CountPairs(const char* buffer, std::int32_t length, std::int32_t readable,
                                    const char pair[2]) const {
  std::int32_t count = 0;
  for (std::int32_t i = 0; i < length && i + 1 < readable;) {
    const bool match = buffer[i] == pair[0] && buffer[i + 1] == pair[1];
    count += match;
    i += match ? 3 : 1;
  }
  return count;
}

bool TextLoader::ParseColored(const char*, std::int32_t, TextPoint&) const {
  return false;
}
bool TextLoader::ParseExtended(const char*, std::int32_t, TextPoint&) const {
  return false;
}
bool TextLoader::ParsePlain(const char*, std::int32_t, TextPoint&) const {
  return false;
}

bool TextLoader_XYZ::ParseColored(const char* line, std::int32_t length, TextPoint& point) const {
  FieldReader fields(line, length);
  return fields.Position(point) && fields.Color(point);
}

bool TextLoader_XYZ::ParseExtended(const char* line, std::int32_t length, TextPoint& point) const {
  FieldReader fields(line, length);
  return fields.Position(point) && fields.Real(point.second[0]) && fields.Real(point.second[1]) &&
         fields.Real(point.second[2]) && fields.Color(point);
}

bool TextLoader_XYZ::ParsePlain(const char* line, std::int32_t length, TextPoint& point) const {
  FieldReader fields(line, length);
  if (!fields.Position(point)) return false;
  // The 16-bit value 1, not full scale: files without colours are recognised by it.
  point.r = point.g = point.b = 1;
  return true;
}

bool TextLoader_PTS::ParseColored(const char* line, std::int32_t length, TextPoint& point) const {
  FieldReader fields(line, length);
  std::int32_t intensity = 0;
  if (!fields.Position(point) || !fields.Integer(intensity)) return false;
  point.intensity = (std::uint32_t)intensity;
  if (fields.Channel(point.r)) return fields.Channel(point.g) && fields.Channel(point.b);
  point.r = point.g = point.b = (std::uint16_t)intensity;
  return true;
}

} // namespace kelvra
