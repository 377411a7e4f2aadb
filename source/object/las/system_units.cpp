#include "object/las/system_units.h"

#include <cstddef>

namespace kelvra {

namespace {

struct Range {
  unsigned first, last;
};

// UTM on WGS 84, ETRS89, NAD83, NAD27 and ED50; national grids of Europe, Australia, New Zealand and Japan;
// state planes in metres; web maps.
constexpr Range kMetre[] = {
    {2056, 2056},   {2100, 2100},   {2154, 2154},   {2180, 2180},   {2193, 2193},   {2443, 2461},
    {3003, 3004},   {3006, 3006},   {3034, 3035},   {3040, 3049},   {3067, 3067},   {3416, 3416},
    {3763, 3763},   {3812, 3812},   {3857, 3857},   {3942, 3950},   {4647, 4647},   {5070, 5070},
    {5514, 5514},   {5554, 5556},   {6339, 6348},   {6350, 6350},   {6669, 6687},   {7846, 7859},
    {21781, 21781}, {23028, 23038}, {25828, 25838}, {26701, 26722}, {26901, 26923}, {26929, 26998},
    {27561, 27564}, {27571, 27574}, {27700, 27700}, {28348, 28358}, {28992, 28992}, {31254, 31259},
    {31287, 31287}, {31370, 31370}, {31466, 31469}, {32601, 32660}, {32701, 32760}};

// State planes of NAD83 in international feet.
constexpr Range kFoot[] = {{2222, 2224}, {2251, 2253}, {2256, 2256}, {2265, 2266},
                           {2269, 2270}, {2273, 2273}, {2280, 2282}};

// The others that are in feet, and those of NAD27.
constexpr Range kUsFoot[] = {{2225, 2250}, {2254, 2255}, {2257, 2264},  {2267, 2268},
                             {2271, 2272}, {2274, 2279}, {2283, 2289},  {2965, 2966},
                             {3417, 3424}, {3433, 3438}, {26729, 26799}};

constexpr Range kDegree[] = {{4148, 4148}, {4171, 4171}, {4230, 4230}, {4258, 4258}, {4267, 4267},
                             {4269, 4269}, {4277, 4277}, {4283, 4283}, {4314, 4314}, {4326, 4326},
                             {4490, 4490}, {4612, 4612}, {6318, 6318}, {7844, 7844}};

template <std::size_t N>
bool Holds(const Range (&ranges)[N], unsigned code) {
  for (const Range& range : ranges)
    if (code >= range.first && code <= range.last) return true;
  return false;
}

} // namespace

LengthUnit UnitOfSystem(unsigned epsg) {
  if (Holds(kMetre, epsg)) return LengthUnit::kMetre;
  if (Holds(kFoot, epsg)) return LengthUnit::kFoot;
  if (Holds(kUsFoot, epsg)) return LengthUnit::kUsFoot;
  return Holds(kDegree, epsg) ? LengthUnit::kDegree : LengthUnit::kUnknown;
}

} // namespace kelvra
