#include "object/las/coordinate_system.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kelvra {

namespace {

constexpr unsigned kKeys = 34735, kKeyTexts = 34737, kSystemText = 2112;
constexpr std::uint64_t kEntryBytes = 8;
// Descriptions are a few thousand bytes; the rest of a longer one is not looked at.
constexpr std::uint64_t kMostTextBytes = 32768;
constexpr std::size_t kMostNameBytes = 120;

std::string ReadText(ByteSource& file, const LasRecord& record) {
  std::string text(static_cast<std::size_t>(std::min(record.length, kMostTextBytes)), '\0');
  if (text.empty() || !file.Read(record.Payload(), text.data(), text.size())) return std::string();
  return text;
}

const LasRecord* Find(const std::vector<LasRecord>& records, unsigned id) {
  const auto found = std::find_if(records.begin(), records.end(),
                                  [id](const LasRecord& record) { return record.Is("LASF_Projection", id); });
  return found == records.end() ? NULL : &*found;
}

// A name is shown to people, and comes from anywhere.
std::string Printable(std::string name) {
  name.resize(std::min(name.size(), kMostNameBytes));
  name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }), name.end());
  return name;
}

LengthUnit UnitOfCode(unsigned code) {
  switch (code) {
  case 9001:
    return LengthUnit::kMetre;
  case 9002:
    return LengthUnit::kFoot;
  case 9003:
    return LengthUnit::kUsFoot;
  default:
    return LengthUnit::kUnknown;
  }
}

LengthUnit UnitOfFactor(double metres) {
  const auto is = [metres](double size) { return std::abs(metres - size) < size * 1e-7; };
  return is(1.0)               ? LengthUnit::kMetre
         : is(0.3048)          ? LengthUnit::kFoot
         : is(1200.0 / 3937.0) ? LengthUnit::kUsFoot
                               : LengthUnit::kUnknown;
}

// From a keyword's bracket to the one that closes it.
std::string Bracketed(const std::string& text, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < text.size(); ++i) {
    if (text[i] == '[') ++depth;
    if (text[i] == ']' && --depth == 0) return text.substr(open, i - open);
  }
  return text.substr(open);
}

// The last unit among a system's own entries or, where it has none, those of its axes. Units farther inside
// belong to the globe, to parameters, and to a system of heights that some writers put there.
LengthUnit UnitOfPlane(const std::string& system) {
  LengthUnit own = LengthUnit::kUnknown, ofAxis = LengthUnit::kUnknown;
  constexpr int kOwnDepth = 2; // below the system's own bracket
  int depth = 0;
  bool inAxis = false;
  const auto isAt = [&system](std::size_t at, const std::string& word) {
    return at >= word.size() && system.compare(at - word.size(), word.size(), word) == 0;
  };
  for (std::size_t i = 0; i < system.size(); ++i) {
    if (system[i] == ']') --depth;
    if (system[i] != '[') continue;
    ++depth;
    if (depth == kOwnDepth) inAxis = isAt(i, "AXIS");
    if (!isAt(i, "UNIT") || depth > kOwnDepth + (inAxis ? 1 : 0)) continue;
    const std::size_t factor = system.find(',', i);
    if (factor == std::string::npos) break;
    (inAxis ? ofAxis : own) = UnitOfFactor(std::strtod(system.c_str() + factor + 1, NULL));
  }
  return own != LengthUnit::kUnknown ? own : ofAxis;
}

std::string Quoted(const std::string& text, std::size_t from) {
  const std::size_t begin = text.find('"', from);
  if (begin == std::string::npos) return std::string();
  return text.substr(begin + 1, text.find('"', begin + 1) - begin - 1);
}

// Citations end with a bar; several may stand in one.
std::string Citation(const std::string& texts, unsigned offset, unsigned count) {
  if (offset >= texts.size()) return std::string();
  const std::string text = texts.substr(offset, count);
  return text.substr(0, text.find_first_of(std::string("|\0", 2)));
}

CoordinateSystem ReadKeys(ByteSource& file, const LasRecord& keys, const std::string& texts) {
  CoordinateSystem system;
  unsigned model = 0, nameRank = 0;
  bool projected = false;
  const std::uint64_t end = std::min(keys.length, kMostTextBytes);
  for (std::uint64_t at = kEntryBytes; at + kEntryBytes <= end; at += kEntryBytes) {
    std::uint8_t entry[kEntryBytes]; // key, where its value is (0: here), number of values, value
    if (!file.Read(keys.Payload() + at, entry, sizeof entry)) break;
    const unsigned key = LittleEndian<std::uint16_t>(entry), place = LittleEndian<std::uint16_t>(entry + 2),
                   count = LittleEndian<std::uint16_t>(entry + 4),
                   value = LittleEndian<std::uint16_t>(entry + 6);
    if (key == 1024 && place == 0) model = value;
    if (key == 3072 && place == 0) projected = true;
    if (key == 3076 && place == 0) system.unit = UnitOfCode(value);
    // The name of the projected system before that of the whole, before that of the geographic one.
    const unsigned rank = key == 3073 ? 3 : key == 1026 ? 2 : key == 2049 ? 1 : 0;
    if (rank <= nameRank || place != kKeyTexts) continue;
    nameRank = rank;
    system.name = Printable(Citation(texts, value, count));
  }
  if (model == 2 && !projected) system.unit = LengthUnit::kDegree;
  return system;
}

} // namespace

CoordinateSystem ReadSystemText(const std::string& text) {
  CoordinateSystem system;
  for (const char* keyword : {"PROJCS[", "PROJCRS["}) {
    const std::size_t at = text.find(keyword);
    if (at == std::string::npos) continue;
    const std::string part = Bracketed(text, text.find('[', at));
    system.name = Printable(Quoted(part, 0));
    system.unit = UnitOfPlane(part);
    return system;
  }
  for (const char* keyword : {"GEOGCS[", "GEOGCRS[", "GEODCRS["}) {
    const std::size_t at = text.find(keyword);
    if (at == std::string::npos) continue;
    return {Printable(Quoted(text, at)), LengthUnit::kDegree};
  }
  return system;
}

CoordinateSystem FindCoordinateSystem(ByteSource& file, const std::vector<LasRecord>& records) {
  if (const LasRecord* text = Find(records, kSystemText)) {
    CoordinateSystem system = ReadSystemText(ReadText(file, *text));
    if (!system.name.empty() || system.unit != LengthUnit::kUnknown) return system;
  }
  const LasRecord* keys = Find(records, kKeys);
  if (!keys) return {};
  const LasRecord* texts = Find(records, kKeyTexts);
  return ReadKeys(file, *keys, texts ? ReadText(file, *texts) : std::string());
}

} // namespace kelvra
