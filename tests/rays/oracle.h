// What a ray must see, found the plain way: lists in ordinary vectors, every sphere tested with the prescribed
// roundings, opacities in long double. Shared by the tests and the fuzz target.
#pragma once

#include "object/voxel_trace.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace oracle {

using kelvra::CellGrid, kelvra::HitRecord, kelvra::RaySegment, kelvra::RenderItem, kelvra::RenderObjectRecord;
using kelvra::TracedLight, kelvra::TracedRay, kelvra::VoxelData;

/** Hit lists of one render thread. */
struct Thread {
  std::unique_ptr<kelvra::HitList> volumetric{new kelvra::HitList}, shadow{new kelvra::HitList};
  kelvra::ThreadLists For(kelvra::RayMode mode) {
    return {mode == kelvra::kRayShadow ? *shadow : *volumetric, *shadow};
  }
};

/** Lists by place in the cell table, and the places in the order in which they got their first item. */
struct Lists {
  std::vector<std::vector<ULONG>> at;
  std::vector<LLONG> order;

  explicit Lists(const VoxelData& data) {
    const CellGrid* grid = data.Root();
    if (!grid) return;
    at.resize(std::size_t(grid->nx + 1) * (grid->ny + 1) * (grid->nz + 1));
    const LReal counts[] = {(LReal)grid->nx, (LReal)grid->ny, (LReal)grid->nz};
    for (LLONG i = 0; i < data.items.size; ++i) {
      LONG a[3], b[3];
      for (LONG k = 0; k < 3; ++k) {
        const LReal low = k == 0 ? data.itemBox.min.x : k == 1 ? data.itemBox.min.y : data.itemBox.min.z;
        const LReal high = k == 0 ? data.itemBox.max.x : k == 1 ? data.itemBox.max.y : data.itemBox.max.z;
        const LReal perUnit = counts[k] / (high - low);
        a[k] = (LONG)((data.items.data[i].boxMin[k] - low) * perUnit);
        b[k] = (LONG)((data.items.data[i].boxMax[k] - low) * perUnit);
      }
      for (LONG z = a[2]; z <= b[2]; ++z)
        for (LONG y = a[1]; y <= b[1]; ++y)
          for (LONG x = a[0]; x <= b[0]; ++x) {
            const LLONG place = x + (LLONG)grid->nx * (y + (LLONG)grid->ny * z);
            if (at[place].empty()) order.push_back(place);
            at[place].push_back((ULONG)i);
          }
    }
  }
};

/** The sphere test, step by step. */
inline bool Meets(const RaySegment& ray, const RenderItem& item, LReal farLimit, HitRecord& hit) {
  LReal v[3];
  const LReal start[] = {ray.start.x, ray.start.y, ray.start.z};
  for (int k = 0; k < 3; ++k) v[k] = (hit.centre[k] = item.boxMin[k] + item.radius) - start[k];
  const float tc = (float)(v[0] * ray.unit.x + v[1] * ray.unit.y + v[2] * ray.unit.z);
  const float d2 = (float)(v[0] * v[0] + v[1] * v[1] + v[2] * v[2] - (LReal)tc * tc);
  if (d2 > item.radius) return false;
  const LReal h = std::sqrt(std::max(0.0, item.radius * item.radius - d2));
  hit.entry = (float)(tc - h);
  hit.exit = (float)(tc + h);
  return hit.exit >= 0 && hit.entry <= farLimit;
}

/** All cells along a ray. */
inline std::vector<kelvra::WalkedCell> Walk(const VoxelData& data, const RaySegment& ray) {
  std::vector<kelvra::WalkedCell> cells;
  const kelvra::GridNode& root = data.nodes.data[0];
  kelvra::ParameterRange range;
  if (kelvra::ClipToBox(ray, root.boxMin, root.boxMax, &range))
    kelvra::WalkCells(root, *data.Root(), ray, range, [&](const kelvra::WalkedCell& cell) {
      cells.push_back(cell);
      return true;
    });
  return cells;
}

/** The hits of the cells in their order, at most 1024 with duplicates; sorted, without duplicates. */
inline std::vector<HitRecord> Hits(const VoxelData& data, const Lists& lists, const TracedRay& traced) {
  const RaySegment ray(traced.origin, traced.end);
  std::vector<HitRecord> hits;
  for (const kelvra::WalkedCell& cell : Walk(data, ray)) {
    const CellGrid& grid = *data.Root();
    const std::size_t place = cell.at[0] + (std::size_t)grid.nx * (cell.at[1] + (std::size_t)grid.ny * cell.at[2]);
    for (const ULONG i : lists.at[place]) {
      HitRecord hit;
      hit.item = (LONG)i;
      if (hits.size() == 1024 || (!hits.empty() && hits.back().item == hit.item)) continue;
      if (Meets(ray, data.items.data[i], traced.farLimit, hit)) hits.push_back(hit);
    }
  }
  std::sort(hits.begin(), hits.end(), [](const HitRecord& a, const HitRecord& b) {
    return a.entry != b.entry ? a.entry < b.entry : a.item < b.item;
  });
  const auto same = [](const HitRecord& a, const HitRecord& b) { return a.item == b.item; };
  hits.erase(std::unique(hits.begin(), hits.end(), same), hits.end());
  return hits;
}

/** Least and greatest opacity that rounding in double allows. */
struct Range {
  LReal low, high;
  bool Holds(LReal value) const { return value >= low - 1e-12 && value <= high + 1e-12; }
};
inline Range Opacity(const RaySegment& ray, const HitRecord& hit, const RenderItem& item,
                     const RenderObjectRecord& record, LReal surface) {
  typedef long double Exact;
  const Exact w[] = {Exact(hit.centre[0]) - ray.start.x, Exact(hit.centre[1]) - ray.start.y,
                     Exact(hit.centre[2]) - ray.start.z};
  const Exact u[] = {ray.unit.x, ray.unit.y, ray.unit.z};
  const Exact uu = u[0] * u[0] + u[1] * u[1] + u[2] * u[2];
  const Exact along = uu > 0 ? (w[0] * u[0] + w[1] * u[1] + w[2] * u[2]) / uu : 0;
  Exact q = 0, ww = 0;
  for (int k = 0; k < 3; ++k) {
    q += (w[k] - along * u[k]) * (w[k] - along * u[k]);
    ww += w[k] * w[k];
  }
  const Exact rr = Exact(item.radius) * item.radius, slack = 1e-14L + 4e-15L * ww / rr;
  const LVector centre(hit.centre[0], hit.centre[1], hit.centre[2]);
  const LReal scale = record.opacityCurve.At(record.HeightOf(centre)) * (1.0 - record.transparency);
  const LReal soft =
      record.softDepth == 0.0
          ? 1.0
          : std::min(1.0, std::abs(surface - hit.entry) / (item.radius * 2.0 * record.softDepth));
  const auto at = [&](Exact f) {
    const Exact x = 1 - std::min<Exact>(1, std::max<Exact>(0, f)), b = record.falloffBias;
    const Exact disc = x > 0 ? std::pow(b, std::log(x) / std::log(0.5L)) : (b == 1 ? 1 : 0);
    return LReal(disc) * scale * soft;
  };
  return {at(q / rr + slack), at(q / rr - slack)};
}

/** Light that depends on all that it is asked with; keeps what it was asked. */
struct FakeLight : kelvra::Illumination {
  struct Call {
    LVector p, normal;
    LONG alt, excluded;
  };
  const kelvra::HitList* shadow = NULL;
  std::vector<Call> calls;

  static LVector Of(const LVector& p, const LVector& n, LONG alt) {
    return LVector(0.5 + 0.25 * n.x, 0.5 + 0.25 * n.y + 0.125 * alt, 0.5 + 0.25 * std::sin(p.x + p.y + p.z));
  }
  LVector At(const LVector& p, const LVector& normal, LONG alt) override {
    calls.push_back({p, normal, alt, shadow->excluded});
    return Of(p, normal, alt);
  }
  LVector Ambient() override { return LVector(0.125, 0.25, 0.375); }
};

/** What a trace said while it ran. */
struct Recorder : kelvra::TraceObserver {
  struct Shade {
    HitRecord hit;
    kelvra::HitFate fate;
    LReal opacity;
    LVector color;
    LReal left;
  };
  std::vector<Shade> shaded;

  void Shaded(const HitRecord& hit, kelvra::HitFate fate, LReal opacity, const LVector& color, LReal left) override {
    if (hit.item != kelvra::kNoItem && fate != kelvra::kHitDuplicate) shaded.push_back({hit, fate, opacity, color, left});
  }
};

inline bool Sees(LONG bits, const RenderObjectRecord& record) {
  return (!(bits & 16) || record.reflectionVisible) && (!(bits & 32) || record.transparencyVisible) &&
         (!(bits & 64) || record.refractionVisible);
}

inline bool Near(const LVector& a, const LVector& b, LReal most) {
  return std::abs(a.x - b.x) <= most && std::abs(a.y - b.y) <= most && std::abs(a.z - b.z) <= most;
}
inline bool Same(const TracedLight& a, const TracedLight& b) {
  return a.color == b.color && a.transmission == b.transmission;
}

/** Shades the hits with the opacities that were reported, once those are found to be right. */
inline std::string CheckShading(const VoxelData& data, const TracedRay& traced, const std::vector<HitRecord>& hits,
                                const Recorder& seen, const FakeLight& light, LONG excluded, TracedLight result) {
  const RaySegment ray(traced.origin, traced.end);
  LReal left = 1.0;
  LVector sum;
  std::size_t call = 0;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    const Recorder::Shade& shade = seen.shaded[i];
    const RenderItem& item = data.items.data[hits[i].item];
    const RenderObjectRecord& record = data.records.data[item.recordIndex];
    const std::string place = "hit " + std::to_string(i) + " of item " + std::to_string(hits[i].item) + ": ";
    if (shade.hit.item != hits[i].item || shade.hit.entry != hits[i].entry || shade.hit.exit != hits[i].exit ||
        !std::equal(hits[i].centre, hits[i].centre + 3, shade.hit.centre))
      return place + "found item " + std::to_string(shade.hit.item) + " instead, or other distances";
    const Range opacity = Opacity(ray, hits[i], item, record, traced.surfaceDistance);
    kelvra::HitFate fate = kelvra::kHitBlended;
    if (left <= 0) fate = kelvra::kHitBehindOpaque;
    else if (traced.mode == 1 && hits[i].item == excluded) fate = kelvra::kHitIsLit;
    else if (!Sees(traced.bits, record)) fate = kelvra::kHitNotVisible;
    else if (opacity.high <= 0 || (shade.opacity == 0 && opacity.low <= 1e-300)) fate = kelvra::kHitTransparent;
    const bool softened = record.softDepth != 0 && shade.opacity == 0 && opacity.high == 0;
    if (shade.fate != fate && !(softened && shade.fate == kelvra::kHitBlended))
      return place + "fate " + std::to_string(shade.fate) + " instead of " + std::to_string(fate);
    if (shade.fate != kelvra::kHitBlended) continue;
    // The last one is blended with what was left.
    const bool last = shade.left <= 0;
    if (last ? shade.opacity > opacity.high + 1e-12 || std::abs(shade.opacity - left) > 1e-12
             : !opacity.Holds(shade.opacity))
      return place + "opacity " + std::to_string(shade.opacity) + " instead of " + std::to_string(opacity.high);
    LVector color(item.color[0], item.color[1], item.color[2]);
    if (traced.mode == 0 && (record.illuminate || record.illuminateAlt)) {
      if (call >= light.calls.size()) return place + "was not lit";
      const FakeLight::Call& asked = light.calls[call++];
      const LVector p = ray.start + ray.unit * hits[i].entry;
      const LVector to = LVector(hits[i].centre[0], hits[i].centre[1], hits[i].centre[2]) - asked.p;
      const LReal length = std::sqrt(to * to), scale = 1.0 + std::sqrt(p * p) + std::abs(hits[i].entry);
      if (!Near(asked.p, p, 1e-14 * scale)) return place + "lit at another point";
      if (!Near(asked.normal, length > 0 ? to * (1.0 / length) : LVector(), 1e-12)) return place + "normal";
      if (asked.alt != record.illuminateAlt) return place + "option of the light";
      if (asked.excluded != hits[i].item) return place + "shadow rays would meet the item that is lit";
      const LVector sent = FakeLight::Of(asked.p, asked.normal, asked.alt) + LVector(0.125, 0.25, 0.375);
      color = LVector(color.x * sent.x, color.y * sent.y, color.z * sent.z);
    }
    left = last ? 0.0 : left - shade.opacity;
    if (traced.mode == 0) {
      if (shade.color != color) return place + "color";
      sum += color * shade.opacity;
    }
    if (std::max(left, 0.0) != std::max(shade.left, 0.0)) return place + "light that is left";
  }
  if (call != light.calls.size()) return "light was asked for a hit that does not count";
  return Same(result, {sum, std::max(left, 0.0)}) ? "" : "color or transmission of the ray";
}

/** Empty when Trace, TraceObserved and CollectHits do with the ray what they must; else what differs. */
inline std::string Check(const VoxelData& data, const Lists& lists, const TracedRay& ray, LONG excluded, Thread& thread) {
  FakeLight light, again;
  Recorder seen;
  const kelvra::ThreadLists own = thread.For(ray.mode);
  light.shadow = again.shadow = thread.shadow.get();
  thread.shadow->excluded = excluded;
  const TracedLight result = kelvra::TraceObserved(data, ray, own, &light, seen);
  if (thread.shadow->excluded != (ray.mode == 1 ? excluded : -1)) return "excluded item afterwards";
  const std::vector<HitRecord> hits = Hits(data, lists, ray);
  if (seen.shaded.size() != hits.size())
    return std::to_string(seen.shaded.size()) + " hits instead of " + std::to_string(hits.size());
  const std::string wrong = CheckShading(data, ray, hits, seen, light, excluded, result);
  if (!wrong.empty()) return wrong;
  if (!Same(kelvra::Trace(data, ray, own, &again), result)) return "observing changed the result";
  kelvra::CollectHits(data, ray, own.own);
  std::size_t found = 0;
  for (LONG i = 0; i < own.own.count; ++i) {
    const HitRecord& hit = own.own.hits[i];
    if (hit.item == kelvra::kNoItem) continue;
    if (found == hits.size() || hit.item != hits[found].item || hit.entry != hits[found].entry) return "collected hits";
    ++found;
  }
  return found == hits.size() ? "" : "collected too few hits";
}

} // namespace oracle
