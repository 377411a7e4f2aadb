// Rays take no memory.
#include "tests/rays/scenes.h"

#include <atomic>

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
    return LVector(Trace(data, ray, thread.For(kRayShadow), nullptr).transmission) + normal * 0.25;
  }
  LVector Ambient() override { return LVector(0.1); }
};

TEST_F(RaysTest, RaysTakeNoMemory) {
  VoxelData data;
  MakeScene(data, kSceneKinds[1], 9);
  Random random(10);
  std::vector<TracedRay> rays;
  for (int i = 0; i < 600; ++i) rays.push_back(MakeRay(data, random));
  oracle::Thread thread;
  ShadowCaster caster(data, thread);
  const long long before = requests, blocks = app.GetFaults().Calls(host::Fault::Allocation);
  {
    const host::ModuleScope asModule;
    for (const TracedRay& ray : rays) {
      thread.shadow->excluded = kNoItem;
      Trace(data, ray, thread.For(ray.mode), &caster);
    }
  }
  EXPECT_EQ(requests, before);
  EXPECT_EQ(app.GetFaults().Calls(host::Fault::Allocation), blocks);
  std::vector<int>(1000).swap(*std::make_unique<std::vector<int>>());
  EXPECT_TRUE(requests > before || requests < 0) << "requests are counted";
}

} // namespace rays
