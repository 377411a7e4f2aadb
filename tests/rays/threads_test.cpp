// Rays take no memory, and threads do not disturb each other.
#include "tests/rays/scenes.h"

#include <atomic>
#include <cstdlib>
#include <thread>

/** Requests for memory; -1 where the allocator is the sanitizer's. */
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
static std::atomic<long long> requests{0};
extern "C" void* __libc_malloc(std::size_t);
extern "C" void* malloc(std::size_t size) {
  return ++requests, __libc_malloc(size);
}
#else
static const long long requests = -1;
#endif

namespace rays {

/** Casts a shadow ray to a light above for each point, as a host does. */
struct ShadowCaster : Illumination {
  const VoxelData& data;
  oracle::Thread& thread;
  ShadowCaster(const VoxelData& scene, oracle::Thread& own) : data(scene), thread(own) {}
  LVector At(const LVector& p, const LVector& normal, LONG) override {
    TracedRay ray;
    ray.mode = kRayShadow;
    ray.origin = p;
    ray.end = p + LVector(5, 80, 3);
    ray.farLimit = LVector(5, 80, 3).GetLength();
    return LVector(Trace(data, ray, thread.For(kRayShadow), NULL).transmission) + normal * 0.25;
  }
  LVector Ambient() override { return LVector(0.1); }
};

/** Traces the rays beginning with one of them; the lights are in the order of the rays. */
void TraceAll(const VoxelData& data, const std::vector<TracedRay>& rays, std::size_t first,
              oracle::Thread& thread, std::vector<TracedLight>& lights) {
  ShadowCaster caster(data, thread);
  for (std::size_t i = 0; i < rays.size(); ++i) {
    const std::size_t at = (first + i) % rays.size();
    thread.shadow->excluded = kNoItem;
    lights[at] = Trace(data, rays[at], thread.For(rays[at].mode), &caster);
  }
}

TEST_F(RaysTest, ThreadsSeeWhatOneThreadSeesAndTakeNoMemory) {
  VoxelData data;
  MakeScene(data, kSceneKinds[1], 9);
  Random random(10);
  std::vector<TracedRay> rays;
  for (int i = 0; i < 600; ++i) rays.push_back(MakeRay(data, random));
  std::vector<std::vector<TracedLight>> lights(9, std::vector<TracedLight>(rays.size()));
  oracle::Thread alone;
  const long long before = requests, blocks = app.GetFaults().Calls(host::Fault::Allocation);
  {
    const host::ModuleScope asModule;
    TraceAll(data, rays, 0, alone, lights[8]);
  }
  EXPECT_EQ(requests, before);
  EXPECT_EQ(app.GetFaults().Calls(host::Fault::Allocation), blocks);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < 8; ++i)
    threads.emplace_back([&, i] {
      oracle::Thread own;
      TraceAll(data, rays, i * 71, own, lights[i]);
    });
  for (std::thread& each : threads) each.join();
  EXPECT_TRUE(requests > before || requests < 0) << "starting threads is counted";
  for (std::size_t i = 0; i < 8; ++i)
    for (std::size_t k = 0; k < rays.size(); ++k)
      ASSERT_TRUE(lights[i][k].color == lights[8][k].color &&
                  lights[i][k].transmission == lights[8][k].transmission)
          << "ray " << k << " of thread " << i;
}

} // namespace rays
