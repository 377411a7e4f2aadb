// What a ray must see, found the plain way: lists in ordinary vectors, every sphere tested with the tracer's
// own roundings to 32 bits, opacities in long double. Shared by the tests and the fuzz target.
#pragma once

#include "object/render/voxel_trace.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace oracle {

using namespace kelvra;

/** Hit lists of one render thread. */
struct Thread {
  std::unique_ptr<HitList> volumetric{new HitList}, shadow{new HitList};
  ThreadLists For(RayMode mode) { return {mode == kRayShadow ? *shadow : *volumetric, *shadow}; }
};

/** Lists by place in the cell table, and the places in the order in which they got their first item. */
struct Lists {
  std::vector<std::vector<ULONG>> at;
  std::vector<LLONG> order;

  explicit Lists(const VoxelData& data) {
    const LONG nx = data.Root()->nx, ny = data.Root()->ny, nz = data.Root()->nz;
    const LVector low = data.itemBox.min, extent = data.itemBox.max - low;
    at.resize(std::size_t(nx + 1) * std::size_t(ny + 1) * std::size_t(nz + 1));
    for (LLONG i = 0; i < data.items.size; ++i) {
      const RenderItem& item = data.items.data[i];
      LONG a[3], b[3];
      for (LONG k = 0; k < 3; ++k) {
        const LReal perUnit = (k == 0 ? nx : k == 1 ? ny : nz) / extent[k];
        a[k] = (LONG)((item.boxMin[k] - low[k]) * perUnit);
        b[k] = (LONG)((item.boxMax[k] - low[k]) * perUnit);
      }
      for (LONG z = a[2]; z <= b[2]; ++z)
        for (LONG y = a[1]; y <= b[1]; ++y)
          for (LONG x = a[0]; x <= b[0]; ++x) {
            const LLONG place = x + (LLONG)nx * (y + (LLONG)ny * z);
            if (at[place].empty()) order.push_back(place);
            at[place].push_back((ULONG)i);
          }
    }
  }
};

/** The sphere test, step by step. */
inline bool Meets(const RaySegment& ray, const RenderItem& item, LReal farLimit, HitRecord& hit) {
  LReal v[3];
  for (LONG k = 0; k < 3; ++k) v[k] = (hit.centre[k] = item.boxMin[k] + item.radius) - ray.start[k];
  const float tc = (float)(v[0] * ray.unit.x + v[1] * ray.unit.y + v[2] * ray.unit.z);
  const float d2 = (float)(v[0] * v[0] + v[1] * v[1] + v[2] * v[2] - (LReal)tc * tc);
  if (d2 > item.radius) return false;
  const LReal h = std::sqrt(std::max(0.0, item.radius * item.radius - d2));
  hit.entry = (float)(tc - h);
  hit.exit = (float)(tc + h);
  return hit.exit >= 0 && hit.entry <= farLimit;
}

/** All cells along a ray. */
inline std::vector<WalkedCell> Walk(const VoxelData& data, const RaySegment& ray) {
  std::vector<WalkedCell> cells;
  const GridNode& root = data.nodes.data[0];
  ParameterRange range;
  if (ClipToBox(ray, root.boxMin, root.boxMax, &range))
    WalkCells(root, *data.Root(), ray, range, [&](const WalkedCell& c) { return cells.push_back(c), true; });
  return cells;
}

/** The hits of the cells along a ray, at most 1024 with duplicates; sorted, without duplicates. */
inline std::vector<HitRecord> Hits(const VoxelData& data, const Lists& lists, const TracedRay& traced) {
  const RaySegment ray(traced.origin, traced.end);
  std::vector<HitRecord> hits;
  for (const WalkedCell& cell : Walk(data, ray))
    for (const ULONG i :
         lists.at[cell.at[0] + (LLONG)data.Root()->nx * (cell.at[1] + (LLONG)data.Root()->ny * cell.at[2])]) {
      HitRecord hit;
      hit.item = (LONG)i;
      if (hits.size() == 1024 || (!hits.empty() && hits.back().item == hit.item)) continue;
      if (Meets(ray, data.items.data[i], traced.farLimit, hit)) hits.push_back(hit);
    }
  std::sort(hits.begin(), hits.end(), [](const HitRecord& a, const HitRecord& b) {
    return a.entry != b.entry ? a.entry < b.entry : a.item < b.item;
  });
  const auto same = [](const HitRecord& a, const HitRecord& b) { return a.item == b.item; };
  hits.erase(std::unique(hits.begin(), hits.end(), same), hits.end());
  return hits;
}

/** Opacity of a hit; `slack` moves the ray from the centre by a multiple of what rounding can do. */
inline LReal Opacity(const TracedRay& traced, const HitRecord& hit, const RenderItem& item,
                     const RenderObjectRecord& record, int slack) {
  const RaySegment ray(traced.origin, traced.end);
  long double w[3], uu = 0, wu = 0, ww = 0, q = 0;
  for (LONG k = 0; k < 3; ++k) {
    w[k] = (long double)hit.centre[k] - ray.start[k];
    uu += (long double)ray.unit[k] * ray.unit[k];
    wu += w[k] * ray.unit[k];
    ww += w[k] * w[k];
  }
  for (LONG k = 0; k < 3; ++k) q += std::pow(w[k] - (uu > 0 ? wu / uu : 0) * ray.unit[k], 2);
  const long double rr = (long double)item.radius * item.radius;
  const long double x = std::min(1.0L, 1 - q / rr - slack * (1e-14L + 4e-15L * ww / rr));
  const LReal disc = x > 0 ? (LReal)std::pow(record.falloffBias, std::log(x) / std::log(0.5L))
                           : (record.falloffBias == 1 ? 1 : 0);
  const LVector centre(hit.centre[0], hit.centre[1], hit.centre[2]);
  const LReal a = disc * (1 - record.transparency) * record.opacityCurve.At(record.HeightOf(centre));
  const LReal depth = std::abs(traced.surfaceDistance - hit.entry), soft = record.softDepth;
  return soft == 0 ? a : a * std::min(1.0, depth / (item.radius * 2.0 * soft));
}

/** Light that depends on all that it is asked with; keeps what it was asked. */
struct FakeLight : Illumination {
  struct Call {
    LVector p, normal;
    LONG alt, excluded;
    LVector Sum() const { return LVector(0.5 + normal.x, 1 + normal.y + alt, 1.5 + std::sin(p.x + p.z)); }
  };
  const HitList* shadow = nullptr;
  std::vector<Call> calls;
  LVector At(const LVector& p, const LVector& normal, LONG alt) override {
    calls.push_back({p, normal, alt, shadow->excluded});
    return calls.back().Sum() - Ambient();
  }
  LVector Ambient() override { return LVector(0.125, 0.25, 0.5); }
};

/** What a trace says while it shades. */
struct Recorder : TraceObserver {
  struct Shade {
    HitRecord hit;
    LReal opacity;
    LVector color;
    LReal left;
  };
  std::vector<Shade> shaded;
  void Shaded(const HitRecord& hit, const ShadedHit& found) override {
    if (hit.item != kNoItem && found.fate != kHitDuplicate)
      shaded.push_back({hit, found.weight, found.color, found.left});
  }
};

inline bool Near(const LVector& a, const LVector& b, LReal most) {
  return (a - b).GetLength() <= most;
}

/** Empty when Trace and TraceObserved do with the ray what they must; else what differs. */
inline std::string Check(const VoxelData& data, const Lists& lists, const TracedRay& ray, LONG excluded,
                         Thread& thread) {
  FakeLight light;
  Recorder seen;
  light.shadow = thread.shadow.get();
  thread.shadow->excluded = excluded;
  const TracedLight result = TraceObserved(data, ray, thread.For(ray.mode), &light, seen);
  if (thread.shadow->excluded != (ray.mode == kRayShadow ? excluded : kNoItem)) return "excluded afterwards";
  const std::vector<HitRecord> hits = Hits(data, lists, ray);
  if (seen.shaded.size() != hits.size()) return std::to_string(hits.size()) + " hits expected";
  LReal left = 1.0;
  LVector sum;
  std::size_t lit = 0;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    const Recorder::Shade& shade = seen.shaded[i];
    const HitRecord& hit = hits[i];
    const RenderItem& item = data.items.data[hit.item];
    const RenderObjectRecord& record = data.records.data[item.recordIndex];
    const std::string place = "hit " + std::to_string(i) + ", item " + std::to_string(hit.item) + ": ";
    if (shade.hit.item != hit.item || shade.hit.entry != hit.entry || shade.hit.exit != hit.exit ||
        !std::equal(hit.centre, hit.centre + 3, shade.hit.centre))
      return place + "other item or distances";
    const bool counts = left > 0 && !(ray.mode == kRayShadow && hit.item == excluded) &&
                        (!(ray.bits & 16) || record.reflectionVisible) &&
                        (!(ray.bits & 32) || record.transparencyVisible) &&
                        (!(ray.bits & 64) || record.refractionVisible);
    // The last one counts for what is left.
    const LReal least = counts ? std::min(left, Opacity(ray, hit, item, record, 1)) : 0.0;
    const LReal most = counts ? std::min(left, Opacity(ray, hit, item, record, -1)) : 0.0;
    if (!(shade.opacity >= least - 1e-12 && shade.opacity <= most + 1e-12)) return place + "opacity";
    const LReal rest = std::max(0.0, shade.left);
    if (!(std::abs(left - shade.opacity - rest) <= 1e-15)) return place + "what is left";
    left = rest;
    if (shade.opacity == 0 || ray.mode == kRayShadow) continue;
    LVector color(item.color[0], item.color[1], item.color[2]);
    if (record.illuminate || record.illuminateAlt) {
      if (lit == light.calls.size()) return place + "not lit";
      const FakeLight::Call& call = light.calls[lit++];
      const LVector p = RaySegment(ray.origin, ray.end).unit * hit.entry + ray.origin;
      const LVector normal = !(LVector(hit.centre[0], hit.centre[1], hit.centre[2]) - call.p);
      if (!Near(call.p, p, 1e-14 * (p.GetLength() + ray.origin.GetLength()))) return place + "lit elsewhere";
      if (!Near(call.normal, normal, 1e-12) || call.alt != record.illuminateAlt)
        return place + "lit otherwise";
      if (call.excluded != hit.item) return place + "would shadow itself";
      color = color ^ call.Sum();
    }
    if (!Near(shade.color, color, 1e-14)) return place + "color";
    sum += shade.color * shade.opacity;
  }
  if (lit != light.calls.size()) return "light was asked for a hit that does not count";
  if (result.color != sum || result.transmission != left) return "result";
  const TracedLight again = Trace(data, ray, thread.For(ray.mode), &light);
  return again.color == sum && again.transmission == left ? "" : "observing changed the result";
}

} // namespace oracle
