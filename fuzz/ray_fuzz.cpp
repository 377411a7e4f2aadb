// Takes any bytes as a small scene with rays through it: the rays find what a plain search finds.
#include "tests/rays/oracle.h"

#include "host/application.h"

#include <cstdlib>

/** Numbers out of bytes; zeros once they are used up. */
struct Bytes {
  const std::uint8_t* at;
  std::size_t left;

  int Next() { return left > 0 ? (--left, *at++) : 0; }
  /** Multiples of a quarter, others, and now and then one far out. */
  LReal Number() {
    const int coarse = Next() - 128, fine = Next();
    return fine < 128   ? coarse * 0.25
           : fine < 250 ? coarse + fine / 1024.0
                        : coarse * std::pow(10.0, fine - 250);
  }
  LVector Place() {
    const LReal x = Number(), y = Number();
    return LVector(x, y, Number());
  }
};

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static host::Application application;
  static oracle::Thread thread;
  Bytes bytes{data, size};
  kelvra::VoxelData scene;
  scene.items.growth = 64;
  kelvra::RenderObjectRecord record;
  const int flags = bytes.Next();
  record.illuminate = flags & 1;
  record.reflectionVisible = flags & 4;
  record.softDepth = flags >> 3 & 3;
  record.transparency = bytes.Next() / 255.0;
  record.falloffBias = std::max(1e-6, bytes.Next() / 255.0);
  const SReal color[] = {1.0f, 0.5f, 0.25f};
  UWORD index = 0;
  if (!scene.AddRecord(record, &index)) std::abort();
  for (int i = bytes.Next() % 64; i >= 0; --i) {
    const LVector centre = bytes.Place();
    if (!scene.AddItem(centre, std::max(1e-3, std::abs(bytes.Number()) * 0.25), index, color)) std::abort();
  }
  if (!kelvra::BuildGrid(scene)) std::abort();
  const oracle::Lists lists(scene);
  while (bytes.left > 0) {
    kelvra::TracedRay ray;
    const int kind = bytes.Next();
    ray.mode = kind & 1 ? kelvra::kRayShadow : kelvra::kRayVolumetric;
    ray.bits = kind << 3 & 0x170;
    ray.origin = bytes.Place();
    const LVector delta = bytes.Place();
    ray.end = ray.origin + delta * (kind & 1 ? 1.0 : 1e18);
    if (kind & 1) ray.farLimit = delta.GetLength();
    if ((kind & 65) == 64) ray.farLimit = ray.surfaceDistance = bytes.Next();
    if (!oracle::Check(scene, lists, ray, bytes.Next() - 1, thread).empty()) std::abort();
  }
  return 0;
}
