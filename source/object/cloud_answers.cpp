#include "object/cloud_answers.h"

#include "cloud/color_ramp.h"
#include "cloud/file_coordinates.h"
#include "cloud/number_text.h"
#include "cloud/percentiles.h"
#include "cloud/point_share.h"
#include "object/las/palette.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <new>
#include <unordered_map>

namespace kelvra {

namespace {

constexpr LONG kAnswerVersion = 1;
/** Colours that show a ramp. */
constexpr LONG kRampEntries = 64;
constexpr LONG kClasses = 256, kReturns = 8;

Vector Shown(const UWORD* rgb) {
  return Vector(rgb[0] / 65535.0, rgb[1] / 65535.0, rgb[2] / 65535.0);
}

void AddEntry(KelvraLegend& answer, LReal value, const UWORD* rgb, const std::string& text) {
  KelvraLegendEntry& entry = answer.entries[answer.count++];
  entry.value = value;
  entry.color = Shown(rgb);
  std::snprintf(entry.text, sizeof entry.text, "%s", text.c_str());
}

void FillRamp(const BaseContainer& data, KelvraLegend& answer) {
  const LONG ramp = data.GetLong(KELVRA_RAMP, KELVRA_RAMP_VIRIDIS);
  const LReal from = data.GetReal(KELVRA_RAMP_FROM), to = data.GetReal(KELVRA_RAMP_TO);
  for (LONG i = 0; i < kRampEntries; ++i) {
    const LReal share = (LReal)i / (kRampEntries - 1);
    AddEntry(answer, from + (to - from) * share, RampColor(ramp, share).rgb, std::string());
  }
}

std::uint64_t Packed(const UWORD* rgb) {
  return (std::uint64_t)rgb[0] << 32 | (std::uint64_t)rgb[1] << 16 | rgb[2];
}

/** Which numbers' colours do points have? Colours are all that is stored of a class or a return. */
class ColorsInUse {
public:
  void Add(LONG number, const LasColor& color) {
    const UWORD rgb[3] = {color.r, color.g, color.b};
    numbers_.insert({Packed(rgb), number});
  }
  void LookAt(const PointBlock& block) {
    std::uint64_t last = ~std::uint64_t{0};
    for (LONG i = 0; i < block.count; ++i) {
      const std::uint64_t color = Packed(block.attrib3 + (VLONG)i * 3);
      if (color == last) continue;
      last = color;
      const auto found = numbers_.find(color);
      if (found != numbers_.end()) used_[found->second] = true;
    }
  }
  bool Uses(LONG number) const { return used_[number]; }

private:
  std::unordered_map<std::uint64_t, LONG> numbers_;
  bool used_[kClasses] = {};
};

void AddUsed(const PointStore& store, KelvraLegend& answer, LONG count, LasColor (*colorOf)(unsigned),
             std::string (*nameOf)(unsigned)) {
  ColorsInUse colors;
  for (LONG number = 0; number < count; ++number) colors.Add(number, colorOf((unsigned)number));
  store.VisitBlocks([&colors](const PointBlock& block, VLONG) {
    colors.LookAt(block);
    return true;
  });
  for (LONG number = 0; number < count; ++number) {
    if (!colors.Uses(number)) continue;
    const LasColor color = colorOf((unsigned)number);
    const UWORD rgb[3] = {color.r, color.g, color.b};
    AddEntry(answer, number, rgb, nameOf((unsigned)number));
  }
}

std::string NameOfReturn(unsigned number) {
  return number == 0 ? "other returns" : "return " + std::to_string(number);
}

/** The fixed colours of classes, which stand for nothing else where the file gave none. */
bool IsColoredByClass(const PointStore& store) {
  bool all = store.CountBlocks() > 0;
  store.VisitBlocks([&all](const PointBlock& block, VLONG) {
    all = all && block.settings.reader.kind == kReaderLasByClass;
    return all;
  });
  return all;
}

void FillLegend(const BaseContainer& data, const PointStore& store, KelvraLegend& answer) {
  answer.count = 0;
  answer.kind = data.GetLong(KELVRA_LOAD_COLOR);
  if (answer.kind == KELVRA_LOAD_COLOR_FILE && IsColoredByClass(store)) answer.kind = KELVRA_LOAD_COLOR_CLASS;
  switch (answer.kind) {
  case KELVRA_LOAD_COLOR_HEIGHT:
  case KELVRA_LOAD_COLOR_INTENSITY:
    if (data.FindIndex(KELVRA_RAMP_FROM) != NOTOK) FillRamp(data, answer);
    break;
  case KELVRA_LOAD_COLOR_CLASS:
    AddUsed(store, answer, kClasses, ColorOfAnyClass, NameOfClass);
    break;
  case KELVRA_LOAD_COLOR_RETURN:
    AddUsed(store, answer, kReturns, ColorOfReturn, NameOfReturn);
    break;
  default:
    break;
  }
}

void FillSpread(BaseObject* op, const PointStore& store, KelvraSpread& answer) {
  const LReal size = op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE);
  const LONG count = store.GetPointCount();
  const PercentileSearch search(answer.share, 1.0 - answer.share);
  PercentileSearch searches[3] = {search, search, search};
  store.VisitPoints(count, size, [&](const Vector& p, const UWORD*, LONG) {
    for (LONG axis = 0; axis < 3; ++axis) searches[axis].First((SReal)p[axis]);
    return true;
  });
  for (PercentileSearch& each : searches) each.EndFirst();
  store.VisitPoints(count, size, [&](const Vector& p, const UWORD*, LONG) {
    for (LONG axis = 0; axis < 3; ++axis) searches[axis].Second((SReal)p[axis]);
    return true;
  });
  for (LONG axis = 0; axis < 3; ++axis) {
    const FloatRange range = searches[axis].Result();
    const LReal margin = ((LReal)range.high - range.low) * answer.margin;
    answer.min[axis] = range.low - margin;
    answer.max[axis] = range.high + margin;
  }
  answer.outside = 0;
  store.VisitPoints(count, size, [&](const Vector& p, const UWORD*, LONG) {
    bool inside = true;
    for (LONG axis = 0; axis < 3; ++axis)
      inside = inside && (SReal)p[axis] >= answer.min[axis] && (SReal)p[axis] <= answer.max[axis];
    answer.outside += inside ? 0 : 1;
    return true;
  });

  // The mapping is straight on each axis: two places of it give origin and scale.
  const PointBlock& first = *store.GetFirstBlock();
  const PointMapping mapping(store.HeaderFor(first), size);
  const SReal low[3] = {0.0f, 0.0f, 0.0f}, high[3] = {1024.0f, 1024.0f, 1024.0f};
  const Vector at = mapping.Map(low), step = (mapping.Map(high) - at) * (1.0 / 1024.0);
  const LVector origin = op->GetDataInstance()->GetVector(KELVRA_ORIGIN);
  const LONG fileAxis[3] = {0, 2, 1}; // the host's x, y, z
  for (LONG axis = 0; axis < 3; ++axis) {
    answer.scale[fileAxis[axis]] = step[axis];
    answer.origin[fileAxis[axis]] =
        origin[fileAxis[axis]] - (step[axis] != 0.0 ? at[axis] / step[axis] : 0.0);
  }
}

/** Distance along the line at which the point is met; negative for points that are not near it. */
LReal MetAt(const KelvraSight& sight, const Vector& point) {
  const Vector offset = point - sight.from;
  const LReal depth = offset * sight.along, reach = sight.reach * depth;
  return offset * offset - depth * depth <= reach * reach ? depth : -1.0;
}

/** The first one takes what is not a number: bounds and origin may be anything. */
LONG BinOf(LReal place, LONG count) {
  return place > 0.0 ? (LONG)std::min(place, (LReal)(count - 1)) : 0;
}

bool HasFiniteHeight(const PointStore& store) {
  bool found = false;
  store.VisitBlocks([&found](const PointBlock& block, VLONG) {
    for (LONG i = 0; !found && i < block.count; ++i) found = std::isfinite(block.positions[(VLONG)i * 3 + 1]);
    return !found;
  });
  return found;
}

void DescribeSeen(const PointStore& store, const LVector& origin, LONG number, KelvraSight& answer) {
  store.VisitBlocks([&](const PointBlock& block, VLONG) {
    if (number >= block.count) {
      number -= block.count;
      return true;
    }
    const VLONG at = (VLONG)number * 3;
    answer.color = Shown(block.attrib3 + at);
    answer.file = FileCoordinates(block, origin, TRUE).At(block.positions + at);
    *answer.source = block.settings.name;
    answer.number = number;
    return false;
  });
}

} // namespace

LONG NumberAmongAll(const PointStore& store, LONG number) {
  LONG all = 0;
  store.VisitBlocks([&](const PointBlock& block, VLONG) {
    const SReal* p = block.positions;
    for (LONG i = 0; i < block.count; ++i, ++all, p += 3)
      if (IsFinitePoint(p) && number-- == 0) return false;
    return true;
  });
  return all;
}

String DescribePoint(const PointStore& store, const LVector& origin, LONG number) {
  String text;
  store.VisitBlocks([&](const PointBlock& block, VLONG) {
    if (number >= block.count) {
      number -= block.count;
      return true;
    }
    const FileCoordinates file(block, origin, TRUE);
    const SReal* stored = block.positions + (VLONG)number * 3;
    CHAR digits[3 * kMostNumberChars + 3];
    CHAR* end = file.x.Write(digits, stored[0]);
    *end++ = ' ';
    end = file.y.Write(end, stored[2]);
    *end++ = ' ';
    end = file.z.Write(end, stored[1]);
    *end = 0;
    const String name = block.settings.name.Content() ? block.settings.name : String("another plug-in");
    text = name + ", point " + LongToString(number) + " of " + LongToString(block.count) + ", at " + digits;
    return false;
  });
  return text;
}

Bool AnswerLegend(BaseObject* op, const PointStore& store, KelvraLegend& answer) {
  if (answer.version != kAnswerVersion) return FALSE;
  try {
    FillLegend(*op->GetDataInstance(), store, answer);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

Bool AnswerHeights(BaseObject* op, const PointStore& store, KelvraHeights& answer) {
  if (answer.version != kAnswerVersion || answer.binCount < 1 || !answer.bins || !HasFiniteHeight(store))
    return FALSE;
  const LReal base = op->GetDataInstance()->GetVector(KELVRA_ORIGIN).z;
  const LReal from = answer.from - base, to = answer.to - base;
  const LReal perHeight = to > from ? answer.binCount / (to - from) : 0.0;
  SReal lowest = std::numeric_limits<SReal>::infinity(), highest = -lowest;
  answer.below = answer.above = 0;
  std::fill_n(answer.bins, answer.binCount, 0);
  store.VisitBlocks([&](const PointBlock& block, VLONG) {
    for (LONG i = 0; i < block.count; ++i) {
      const SReal height = block.positions[(VLONG)i * 3 + 1];
      if (!std::isfinite(height)) continue; // such a point is never shown
      lowest = std::min(lowest, height);
      highest = std::max(highest, height);
      if (height < from)
        ++answer.below;
      else if (height > to)
        ++answer.above;
      else
        ++answer.bins[BinOf((height - from) * perHeight, answer.binCount)];
    }
    return true;
  });
  answer.lowest = base + lowest;
  answer.highest = base + highest;
  return TRUE;
}

Bool AnswerSight(BaseObject* op, const PointStore& store, KelvraSight& answer) {
  if (answer.version != kAnswerVersion || !answer.source) return FALSE;
  const BaseContainer& data = *op->GetDataInstance();
  const LONG count = ShareOf(store.GetPointCount(), data.GetReal(KELVRA_POINT_SHARE));
  const LONG everyNth = LMax(1, data.GetLong(KELVRA_THIN_VIEW));
  LONG seen = NOTOK;
  LReal nearest = std::numeric_limits<LReal>::infinity();
  store.VisitPoints(count, data.GetReal(KELVRA_OBJECT_SIZE),
                    [&](const Vector& point, const UWORD*, LONG number) {
                      const LReal at = MetAt(answer, point);
                      if (at > 0.0 && at < nearest && number % everyNth == 0) {
                        nearest = at;
                        seen = number;
                        answer.position = point;
                      }
                      return true;
                    });
  if (seen == NOTOK) return FALSE;
  DescribeSeen(store, data.GetVector(KELVRA_ORIGIN), seen, answer);
  return TRUE;
}

Bool AnswerSpread(BaseObject* op, const PointStore& store, KelvraSpread& answer) {
  if (answer.version != kAnswerVersion || store.CountBlocks() == 0) return FALSE;
  try {
    KelvraSpread filled = answer;
    FillSpread(op, store, filled);
    answer = filled;
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return TRUE;
}

} // namespace kelvra
