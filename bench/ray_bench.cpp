// Rays against spheres, every hit collected and sorted: the voxel grid beside Embree's sphere points, for the
// same rays and spheres in one run. Embree gets the disc that the grid's test accepts (the square root of the
// radius). What memory gives is measured first: the limit of both.
//
//   ray_bench [--points N]... [--rays N] [--scene surface|volume]
#include "bench/bench_timer.h"
#include "host/application.h"
#include "object/render/voxel_trace.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <embree3/rtcore.h>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int kRounds = 5;

struct Scene {
  const char* name;
  std::vector<LVector> centres;
  double radius = 0.25;
};

/** Terrain in scan lines: points follow one another across, with noise, over 200 x 200 units. */
Scene MakeSurface(int points, double radius) {
  Scene scene{"surface", {}, radius};
  std::mt19937 random(7);
  std::uniform_real_distribution<double> jitter(-0.5, 0.5);
  const int side = (int)std::sqrt((double)points);
  const double step = 200.0 / side;
  for (int z = 0; z < side; ++z)
    for (int x = 0; x < side; ++x) {
      const double px = (x + jitter(random)) * step - 100.0, pz = (z + jitter(random)) * step - 100.0;
      const double height =
          12.0 * std::sin(px * 0.05) * std::cos(pz * 0.04) + 2.0 * std::sin(px * 0.4 + pz * 0.3);
      scene.centres.push_back(LVector(px, height + 0.1 * jitter(random), pz));
    }
  return scene;
}

/** Points anywhere in a block of 200 x 100 x 200 units, in no order. */
Scene MakeVolume(int points, double radius) {
  Scene scene{"volume", {}, radius};
  std::mt19937 random(11);
  std::uniform_real_distribution<double> place(-100.0, 100.0);
  for (int i = 0; i < points; ++i)
    scene.centres.push_back(LVector(place(random), place(random) * 0.5, place(random)));
  return scene;
}

struct Rays {
  std::vector<kelvra::TracedRay> rays;
};

/** As from a camera that sees the whole block. */
Rays MakeRays(int count) {
  Rays rays;
  const LVector eye(40, 160, -260);
  const LVector forward = !(LVector() - eye), right = !(LVector(0, 1, 0) % forward), up = forward % right;
  const int across = (int)std::sqrt(count * 16.0 / 9.0), down = count / across;
  for (int y = 0; y < down; ++y)
    for (int x = 0; x < across; ++x) {
      kelvra::TracedRay ray;
      ray.origin = eye;
      const LVector v = !(forward + right * ((2.0 * (x + 0.5) / across - 1.0) * 0.62) +
                          up * ((1.0 - 2.0 * (y + 0.5) / down) * 0.35));
      ray.end = eye + v * kelvra::kNoSurface;
      rays.rays.push_back(ray);
    }
  return rays;
}

// The grid.

bool Fill(const Scene& scene, kelvra::VoxelData& data) {
  UWORD record = 0;
  const SReal white[3] = {1, 1, 1};
  if (!data.AddRecord(kelvra::RenderObjectRecord(), &record)) return false;
  for (const LVector& centre : scene.centres)
    if (!data.AddItem(centre, scene.radius, record, white)) return false;
  return true;
}

/** Every listed item of every cell on the ray through the exact test: what the packed walk must equal. */
std::vector<int> PlainHits(const kelvra::VoxelData& data, const kelvra::TracedRay& ray) {
  const kelvra::RaySegment segment(ray.origin, ray.end);
  const kelvra::GridNode& root = data.nodes.data[0];
  std::vector<int> items;
  kelvra::ParameterRange range;
  if (!kelvra::ClipToBox(segment, root.boxMin, root.boxMax, &range)) return items;
  kelvra::WalkCells(root, *data.Root(), segment, range, [&](const kelvra::WalkedCell& cell) {
    const ULONG node = data.Root()->cells[data.Root()->IndexOf(cell.at[0], cell.at[1], cell.at[2])];
    if (node == kelvra::kNoNode) return true;
    const kelvra::AutoBuffer<ULONG>& list = *data.nodes.data[node].content->items;
    kelvra::HitRecord hit;
    for (LLONG i = 0; i < list.size && items.size() < kelvra::kMostHits; ++i) {
      const int item = (int)list.data[i];
      if ((items.empty() || items.back() != item) &&
          kelvra::TestItem(segment, data.items.data[item], ray.farLimit, &hit))
        items.push_back(item);
    }
    return items.size() < kelvra::kMostHits;
  });
  std::sort(items.begin(), items.end());
  items.erase(std::unique(items.begin(), items.end()), items.end());
  return items;
}

std::vector<int> Distinct(const kelvra::HitList& list) {
  std::vector<int> items;
  for (LONG i = 0; i < list.count; ++i)
    if (list.hits[i].item != kelvra::kNoItem) items.push_back(list.hits[i].item);
  std::sort(items.begin(), items.end());
  return items;
}

/** Each thread takes every n-th run of rays. */
template <class One>
double OnThreads(int threads, std::size_t rays, One one) {
  const bench::Timer timer;
  std::vector<std::thread> running;
  for (int t = 0; t < threads; ++t)
    running.emplace_back([&, t] {
      for (std::size_t from = (std::size_t)t * 64; from < rays; from += (std::size_t)threads * 64)
        for (std::size_t i = from; i < std::min(from + 64, rays); ++i) one(t, i);
    });
  for (std::thread& thread : running) thread.join();
  return timer.Seconds();
}

// Embree.

struct EmbreeHit {
  float entry;
  unsigned item;
};
struct Collected : RTCIntersectContext {
  std::vector<EmbreeHit> hits;
  float dx, dy, dz;
};

/** Takes the side on which the ray enters and lets it go on. */
void Collect(const RTCFilterFunctionNArguments* arguments) {
  Collected& collected = *static_cast<Collected*>(arguments->context);
  const RTCHit& hit = *(const RTCHit*)arguments->hit;
  if (hit.Ng_x * collected.dx + hit.Ng_y * collected.dy + hit.Ng_z * collected.dz < 0.0f)
    collected.hits.push_back({((const RTCRay*)arguments->ray)->tfar, hit.primID});
  arguments->valid[0] = 0;
}

class Embree {
public:
  explicit Embree(const Scene& scene) : device_(rtcNewDevice(nullptr)), scene_(rtcNewScene(device_)) {
    RTCGeometry spheres = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_SPHERE_POINT);
    float* at = (float*)rtcSetNewGeometryBuffer(spheres, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT4, 16,
                                                scene.centres.size());
    for (const LVector& centre : scene.centres) {
      *at++ = (float)centre.x;
      *at++ = (float)centre.y;
      *at++ = (float)centre.z;
      *at++ = (float)std::sqrt(scene.radius);
    }
    rtcSetGeometryIntersectFilterFunction(spheres, &Collect);
    rtcCommitGeometry(spheres);
    rtcAttachGeometry(scene_, spheres);
    rtcReleaseGeometry(spheres);
    const bench::Timer timer;
    rtcCommitScene(scene_);
    buildSeconds = timer.Seconds();
  }
  ~Embree() {
    rtcReleaseScene(scene_);
    rtcReleaseDevice(device_);
  }
  void Trace(const kelvra::TracedRay& ray, Collected& collected) const {
    const LVector v = !(ray.end - ray.origin);
    rtcInitIntersectContext(&collected);
    collected.hits.clear();
    RTCRayHit query = {};
    query.ray.org_x = (float)ray.origin.x;
    query.ray.org_y = (float)ray.origin.y;
    query.ray.org_z = (float)ray.origin.z;
    query.ray.dir_x = collected.dx = (float)v.x;
    query.ray.dir_y = collected.dy = (float)v.y;
    query.ray.dir_z = collected.dz = (float)v.z;
    query.ray.tfar = 1e30f;
    query.ray.mask = ~0u;
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(scene_, &collected, &query);
    std::sort(collected.hits.begin(), collected.hits.end(),
              [](const EmbreeHit& a, const EmbreeHit& b) { return a.entry < b.entry; });
  }
  double buildSeconds = 0.0;

private:
  RTCDevice device_;
  RTCScene scene_;
};

void Report(const char* what, int threads, double seconds, std::size_t rays, long long hits) {
  std::printf("    %-7s %d thread%s %9.0f rays/s %11.0f hits/s\n", what, threads, threads > 1 ? "s" : " ",
              (double)rays / seconds, (double)hits / seconds);
}

/** Cache lines a second that a thread gets from memory, one after the other and in no order. */
struct MemoryRates {
  double inOrder = 0.0, inNoOrder = 0.0;
};
MemoryRates MeasureMemory(int threads) {
  constexpr std::size_t kLines = 8u << 20, kBlock = 64; // 512 MB a thread
  struct alignas(64) Line {
    unsigned char bytes[64];
  };
  std::vector<std::vector<Line>> lines((std::size_t)threads, std::vector<Line>(kLines));
  std::vector<unsigned> sums((std::size_t)threads);
  const auto rate = [&](bool inOrder) {
    double best = 1e300;
    for (int round = 0; round < kRounds; ++round)
      best = std::min(best, OnThreads(threads, (std::size_t)threads * kBlock, [&](int t, std::size_t i) {
                        const std::vector<Line>& own = lines[(std::size_t)t];
                        const std::size_t part = kLines / kBlock, first = i % kBlock * part;
                        unsigned sum = 0;
                        for (std::size_t at = first; at < first + part; ++at)
                          sum += own[inOrder ? at : at * 2654435761u % kLines].bytes[0];
                        sums[(std::size_t)t] += sum;
                      }));
    return (double)kLines * threads / best;
  };
  MemoryRates rates{rate(true), rate(false)};
  if (std::count(sums.begin(), sums.end(), 1u) > 0) std::printf(" "); // so that the sums are needed
  return rates;
}

/** Seconds of the best of several runs: the first gets memory that the system has to find and clear. */
template <class Make>
double Best(Make make) {
  double best = 1e300;
  for (int round = 0; round < kRounds; ++round) {
    const double seconds = make();
    if (seconds < 0.0) return seconds;
    best = std::min(best, seconds);
  }
  return best;
}

int Run(const Scene& scene, const Rays& rays) {
  const std::size_t n = rays.rays.size();
  auto data = std::make_unique<kelvra::VoxelData>();
  if (!Fill(scene, *data)) return 1;
  const long long before = bench::ResidentBytes();
  const double buildSeconds = Best([&data] {
    const bench::Timer timer;
    return kelvra::BuildGrid(*data) ? timer.Seconds() : -1.0;
  });
  if (buildSeconds < 0.0) return 1;
  const double perItem = (double)(bench::ResidentBytes() - before) / (double)scene.centres.size();
  const double embreeSeconds = Best([&scene] { return Embree(scene).buildSeconds; });
  const Embree embree(scene);

  // Check first that both are right, and how far they agree.
  auto lists = std::make_unique<kelvra::HitList[]>(2);
  std::vector<Collected> collected(2);
  for (std::size_t i = 0; i < n; i += n / 300 + 1) {
    kelvra::CollectHits(*data, rays.rays[i], lists[0]);
    if (Distinct(lists[0]) != PlainHits(*data, rays.rays[i])) {
      std::printf("ray %zu: the packed walk and the plain one differ\n", i);
      return 1;
    }
  }
  kelvra::TraceCounts counts;
  long long hits = 0, embreeHits = 0, full = 0;
  for (const kelvra::TracedRay& ray : rays.rays) {
    kelvra::CollectHits(*data, ray, lists[0], &counts);
    hits += (long long)Distinct(lists[0]).size();
    full += lists[0].IsFull();
    embree.Trace(ray, collected[0]);
    embreeHits += (long long)collected[0].hits.size();
  }
  const kelvra::CellGrid& grid = *data->Root();
  std::printf("%s, %zu spheres, radius %g: grid %d x %d x %d\n", scene.name, scene.centres.size(),
              scene.radius, grid.nx, grid.ny, grid.nz);
  std::printf("    hits: grid %lld, Embree %lld (%.3f); %lld rays with the most hits\n", hits, embreeHits,
              (double)hits / (double)std::max(1LL, embreeHits), full);
  std::printf("    a ray: %.1f cells, %.1f groups of four, %.1f exact tests, %.1f hits\n",
              (double)counts.cells / (double)n, (double)counts.quickTests / (double)n,
              (double)counts.exactTests / (double)n, (double)hits / (double)n);
  std::printf("    build: grid %.2f M items/s, %.0f bytes an item beyond the items; Embree %.2f M/s\n",
              (double)scene.centres.size() / buildSeconds / 1e6, perItem,
              (double)scene.centres.size() / embreeSeconds / 1e6);
  for (int threads = 1; threads <= 2; ++threads) {
    // The best of several rounds, in turn, as other work on the machine slows either down.
    double own = 1e300, other = 1e300;
    for (int round = 0; round < kRounds; ++round) {
      own = std::min(own, OnThreads(threads, n, [&](int t, std::size_t i) {
                       kelvra::CollectHits(*data, rays.rays[i], lists[t]);
                     }));
      other = std::min(other, OnThreads(threads, n, [&](int t, std::size_t i) {
                         embree.Trace(rays.rays[i], collected[t]);
                       }));
    }
    Report("grid", threads, own, n, hits);
    Report("Embree", threads, other, n, embreeHits);
    // A four is a line, an item two.
    std::printf("    grid / Embree: %.2fx; the grid reads %.0f M lines a second\n", other / own,
                (double)(counts.quickTests + 2 * counts.exactTests) / own / 1e6);
  }
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  host::Application application;
  std::vector<int> points;
  int rays = 60000;
  std::string only;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::string(argv[i]) == "--points") points.push_back(std::atoi(argv[i + 1]));
    if (std::string(argv[i]) == "--rays") rays = std::atoi(argv[i + 1]);
    if (std::string(argv[i]) == "--scene") only = argv[i + 1];
  }
  if (points.empty()) points = {1000000, 10000000};
  const Rays set = MakeRays(std::max(rays, 100));
  for (int threads = 1; threads <= 2; ++threads) {
    const MemoryRates memory = MeasureMemory(threads);
    std::printf("memory, %d thread%s %.0f M lines of 64 bytes a second in order, %.0f M in no order\n",
                threads, threads > 1 ? "s:" : ": ", memory.inOrder / 1e6, memory.inNoOrder / 1e6);
  }
  for (const int count : points) {
    // Radius at the spacing and at twice that.
    const double side = 200.0 / std::sqrt((double)count), depth = std::cbrt(200.0 * 100.0 * 200.0 / count);
    for (const double times : {1.0, 2.0}) {
      if (only != "volume" && Run(MakeSurface(count, side * times), set)) return 1;
      if (only != "surface" && Run(MakeVolume(count, depth * times), set)) return 1;
    }
  }
  return 0;
}
