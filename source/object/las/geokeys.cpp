#include "object/las/geokeys.h"

#include <algorithm>

namespace kelvra {

namespace {

// A projected system that is user-defined hides the geographic one below it: its points are not in degrees.
constexpr unsigned kKeyOrder[] = {3072, 2048, 4098, 4099, 3076, 2050, 2054};
constexpr std::uint64_t kEntryBytes = 8;

} // namespace

GeoKey FindGeoKey(ByteSource& file, const std::vector<LasRecord>& records) {
  const auto directory = std::find_if(records.begin(), records.end(), [](const LasRecord& record) {
    return record.Is("LASF_Projection", 34735);
  });
  if (directory == records.end() || directory->length < kEntryBytes) return {};

  std::uint16_t count = 0;
  if (!file.Field(directory->Payload() + 6, count)) return {};
  const std::uint64_t held = std::min<std::uint64_t>(count, directory->length / kEntryBytes - 1);
  unsigned best = std::size(kKeyOrder);
  GeoKey found;
  for (std::uint64_t i = 1; i <= held; ++i) {
    std::uint8_t entry[kEntryBytes]; // key, where its value is (0: here), number of values, value
    if (!file.Read(directory->Payload() + i * kEntryBytes, entry, sizeof entry)) break;
    if (LittleEndian<std::uint16_t>(entry + 2) != 0) continue;
    const unsigned key = LittleEndian<std::uint16_t>(entry);
    const unsigned rank =
        (unsigned)(std::find(std::begin(kKeyOrder), std::end(kKeyOrder), key) - std::begin(kKeyOrder));
    if (rank >= best) continue;
    best = rank;
    found = {key, LittleEndian<std::uint16_t>(entry + 6)};
  }
  return found;
}

} // namespace kelvra
