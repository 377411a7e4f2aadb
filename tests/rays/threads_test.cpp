// Rays take no memory, and threads do not disturb each other.
#include "tests/rays/scenes.h"

#include <atomic>
#include <cstdlib>
#include <thread>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define KELVRA_COUNTS_MALLOC 1
static std::atomic<long long> taken{0};
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* malloc(std::size_t size) {
  ++taken;
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  ++taken;
  return __libc_calloc(count, size);
}
}
#endif

namespace rays {

/** Casts a shadow ray to a light above for each point, as a host does. */
struct ShadowCaster : Illumination {
  const VoxelData& data;
  oracle::Thread& thread;
  LONG lit = kNoItem;
  bool selfShadowed = false;

  ShadowCaster(const VoxelData& scene, oracle::Thread& own) : data(scene), thread(own) {}
  LVector At(const LVector& p, const LVector& normal, LONG) override {
    lit = thread.shadow->excluded;
    TracedRay ray;
    ray.mode = kRayShadow;
    ray.origin = p;
    ray.end = p + LVector(5, 80, 3);
    ray.farLimit = (ray.end - p).GetLength();
    const TracedLight left = Trace(data, ray, thread.For(kRayShadow), NULL);
    selfShadowed = selfShadowed || thread.shadow->excluded != lit;
    return LVector(left.transmission) + normal * 0.25;
  }
  LVector Ambient() override { return LVector(0.1); }
};

/** Traces the same rays in an order of its own; results in the order of the rays. */
std::vector<TracedLight> TraceAll(const VoxelData& data, const std::vector<TracedRay>& rays, std::size_t first,
                                  oracle::Thread& thread) {
  std::vector<TracedLight> lights(rays.size());
  ShadowCaster caster(data, thread);
  for (std::size_t i = 0; i < rays.size(); ++i) {
    const std::size_t at = (first + i) % rays.size();
    if (rays[at].mode == kRayShadow) thread.shadow->excluded = kNoItem;
    lights[at] = Trace(data, rays[at], thread.For(rays[at].mode), &caster);
  }
  EXPECT_FALSE(caster.selfShadowed) << "the lit item changed during its light";
  return lights;
}

TEST_F(RaysTest, ThreadsSeeWhatOneThreadSees) {
  VoxelData data;
  MakeScene(data, kSceneKinds[2], 9);
  Random random(10);
  std::vector<TracedRay> rays;
  for (int i = 0; i < 600; ++i) rays.push_back(MakeRay(data, random));
  oracle::Thread alone;
  const std::vector<TracedLight> expected = TraceAll(data, rays, 0, alone);
  std::vector<std::vector<TracedLight>> seen(8);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < seen.size(); ++i)
    threads.emplace_back([&, i] {
      oracle::Thread own;
      seen[i] = TraceAll(data, rays, i * 71, own);
    });
  for (std::thread& each : threads) each.join();
  for (const auto& lights : seen)
    for (std::size_t k = 0; k < rays.size(); ++k) ASSERT_TRUE(oracle::Same(lights[k], expected[k])) << "ray " << k;
}

TEST_F(RaysTest, RaysTakeNoMemory) {
#ifndef KELVRA_COUNTS_MALLOC
  GTEST_SKIP() << "the allocator is not ours to count";
#else
  VoxelData data;
  MakeScene(data, kSceneKinds[6], 2);
  Random random(3);
  oracle::Thread thread;
  ShadowCaster caster(data, thread);
  TracedRay ray = MakeRay(data, random);
  long long before = taken;
  delete new std::vector<int>(100);
  ASSERT_GT(taken, before) << "the counter counts";
  const host::ModuleScope asModule;
  const long long blocks = app_.GetFaults().Calls(host::Fault::Allocation);
  LONG most = 0;
  before = taken;
  for (int i = 0; i < 2000; ++i) {
    ray = MakeRay(data, random);
    Trace(data, ray, thread.For(ray.mode), &caster);
    most = std::max(most, thread.For(ray.mode).own.count);
  }
  EXPECT_EQ(taken, before);
  EXPECT_EQ(app_.GetFaults().Calls(host::Fault::Allocation), blocks);
  EXPECT_GE(most, 40);
#endif
}

} // namespace rays
