#include "object/render/ray_explanation.h"

#include "object/render/volume_rays.h"

#include <cstdarg>
#include <cstdio>

namespace kelvra {

namespace {

/** Most lines of each list; further ones are only counted. */
constexpr LONG kMostLines = 200;

const char* FateText(HitFate fate) {
  switch (fate) {
  case kHitBlended:
    return "blended";
  case kHitDuplicate:
    return "duplicate, skipped";
  case kHitIsLit:
    return "the point being lit, skipped";
  case kHitNotVisible:
    return "not visible to this kind of ray";
  case kHitTransparent:
    return "opacity 0, skipped";
  case kHitBehindOpaque:
    return "behind what is opaque already";
  }
  return "";
}

const char* Ending(LLONG count) {
  return count == 1 ? "" : "s";
}

/** Writes each step of a trace as a line. */
class Lines : public TraceObserver {
public:
  Lines(String& text, const VoxelData& data, PointDescriber describe)
      : text_(text), data_(data), describe_(describe) {}

  void Add(const char* format, ...) {
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    text_ += String(line) + "\n";
  }
  /** Closes a list with the number of lines that it left out. */
  void CloseList(const char* what) {
    const LONG more = lines_ - kMostLines;
    if (more > 0) Add("  and %d more %s%s", more, what, Ending(more));
    lines_ = 0;
  }

  void Clipped(const RaySegment& ray, const ParameterRange& range) override {
    clipped_ = TRUE;
    const LVector from = ray.At(range.entry), to = ray.At(range.exit);
    Add("in the points' box from (%.6g, %.6g, %.6g) to (%.6g, %.6g, %.6g)", from.x, from.y, from.z, to.x,
        to.y, to.z);
    Add("walk: cell, points listed");
  }
  void Cell(const WalkedCell& cell, LLONG listed) override {
    if (listed > 0 && ++lines_ <= kMostLines)
      Add("  (%d, %d, %d) %lld", cell.at[0], cell.at[1], cell.at[2], (long long)listed);
    ++(listed > 0 ? filled_ : empty_);
  }
  void Collected(const HitList& list) override {
    found_ = list.found;
    different_ = list.count;
  }
  void Shaded(const HitRecord& hit, const ShadedHit& shaded) override {
    if (shaded_++ == 0) BeginHits();
    if (++lines_ > kMostLines) return;
    const LVector& color = shaded.color;
    if (shaded.fate != kHitBlended)
      Add("  %d: point %d, entry %.6g, exit %.6g: %s", shaded_, hit.item, hit.entry, hit.exit,
          FateText(shaded.fate));
    else
      Add("  %d: point %d, entry %.6g, exit %.6g: opacity %.6f, weight %.6f, colour (%.4f, %.4f, %.4f), %.6f "
          "left",
          shaded_, hit.item, hit.entry, hit.exit, shaded.opacity, shaded.weight, color.x, color.y, color.z,
          shaded.left);
    const RenderObjectRecord& record = data_.records.data[data_.items.data[hit.item].recordIndex];
    const String point = describe_(record.source, (LONG)hit.item - record.firstItem, record.leftOut);
    if (point.Content()) text_ += "     " + point + "\n";
  }
  void End(const TracedLight& light) {
    if (!clipped_)
      Add("misses the points' box");
    else if (shaded_ == 0)
      BeginHits();
    CloseList("hit");
    Add("blend: colour (%.6f, %.6f, %.6f), %.6f of what lies behind remains", light.color.x, light.color.y,
        light.color.z, light.transmission);
  }

private:
  void BeginHits() {
    CloseList("cell");
    Add("  %d cell%s with points, %d empty", filled_, Ending(filled_), empty_);
    Add("hits: %d found, %d different%s; sorted by entry", found_, different_,
        found_ >= kMostHits ? ", the most that a ray collects: the walk ended there" : "");
  }

  String& text_;
  const VoxelData& data_;
  PointDescriber describe_;
  Bool clipped_ = FALSE;
  LONG lines_ = 0, filled_ = 0, empty_ = 0, found_ = 0, different_ = 0, shaded_ = 0;
};

} // namespace

Bool ExplainRay(const RenderScene& scene, PointDescriber describe, KelvraRayExplanation& explanation) {
  if (!scene.lists) return FALSE;
  VolumeData& vd = *explanation.vd;
  const TracedRay ray = VolumetricRay(vd);
  Lines lines(*explanation.text, scene.data, describe);
  lines.Add("ray from (%.6g, %.6g, %.6g) along (%.6f, %.6f, %.6f)", ray.origin.x, ray.origin.y, ray.origin.z,
            vd.ray->v.x, vd.ray->v.y, vd.ray->v.z);
  if (ray.farLimit < kNoSurface)
    lines.Add("a surface lies at distance %.6g", ray.farLimit);
  else
    lines.Add("no surface behind the points");
  if (const CellGrid* grid = scene.data.Root())
    lines.Add("grid of %d x %d x %d cells over %lld point%s", grid->nx, grid->ny, grid->nz,
              (long long)scene.data.items.size, Ending(scene.data.items.size));
  VolumeIllumination light(explanation.vd);
  lines.End(TraceObserved(scene.data, ray, ListsOf(*scene.lists, vd, kRayVolumetric), &light, lines));
  return TRUE;
}

} // namespace kelvra
