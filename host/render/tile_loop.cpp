#include "host/render/tile_loop.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

namespace host {

namespace {

const std::chrono::milliseconds kLookInterval(100);

class TileLoop {
public:
  TileLoop(FrameScene& scene, const RenderOptions& options, RenderBuffer& buffer)
      : scene_(scene),
        options_(options),
        buffer_(buffer),
        across_((options.width + options.tile - 1) / options.tile),
        down_((options.height + options.tile - 1) / options.tile) {}

  void Run(const std::function<bool(double)>& goOn) {
    std::vector<std::thread> threads;
    ended_.reserve((std::size_t)Tiles());
    buffer_.Begin();
    StartThreads(threads);
    {
      std::unique_lock<std::mutex> lock(mutex_);
      while (!finished_.wait_for(lock, kLookInterval, [this] { return running_ == 0; })) {
        PassOn();
        lock.unlock();
        if (!goOn((double)std::min(done_.load(), Tiles()) / Tiles())) scene_.stop = true;
        lock.lock();
      }
    }
    for (std::thread& thread : threads) thread.join();
    PassOn();
    if (!scene_.stop) goOn(1.0);
  }

private:
  LONG Tiles() const { return across_ * down_; }

  /** Fewer threads when the system refuses more; without any, std::bad_alloc. */
  void StartThreads(std::vector<std::thread>& threads) {
    threads.reserve((std::size_t)scene_.threads);
    const std::lock_guard<std::mutex> lock(mutex_);
    try {
      for (; running_ < scene_.threads; ++running_)
        threads.emplace_back([this, i = running_] { RunThread(i); });
    } catch (const std::system_error&) {
      if (running_ == 0) throw std::bad_alloc();
    }
  }

  void RunThread(LONG thread) {
    RayTracer tracer(scene_, options_, thread);
    for (LONG tile = next_++; tile < Tiles() && !scene_.stop; tile = next_++) {
      const PixelArea area = AreaOf(options_.lastTileFirst ? Tiles() - 1 - tile : tile);
      ComputeArea(tracer, area);
      ++done_;
      if (scene_.stop) break; // perhaps in the middle of it
      const std::lock_guard<std::mutex> lock(mutex_);
      ended_.push_back(area);
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (--running_ == 0) finished_.notify_all();
  }

  PixelArea AreaOf(LONG tile) const {
    const LONG left = tile % across_ * options_.tile, top = tile / across_ * options_.tile;
    return {left, top, std::min(left + options_.tile, options_.width),
            std::min(top + options_.tile, options_.height)};
  }

  void ComputeArea(RayTracer& tracer, const PixelArea& area) {
    for (LONG y = area.top; y < area.bottom; ++y)
      for (LONG x = area.left; x < area.right && !scene_.stop; ++x) ComputePixel(tracer, x, y, buffer_);
  }

  /** Tells the buffer what ended since the last time; the lock is held, or no thread runs. */
  void PassOn() {
    for (const PixelArea& area : ended_) buffer_.Finish(area);
    ended_.clear();
  }

  FrameScene& scene_;
  const RenderOptions& options_;
  RenderBuffer& buffer_;
  LONG across_, down_;
  std::atomic<LONG> next_{0}, done_{0};
  std::mutex mutex_;
  std::condition_variable finished_;
  std::vector<PixelArea> ended_; ///< by the threads, with the lock
  LONG running_ = 0;
};

} // namespace

void ComputePixel(RayTracer& tracer, LONG x, LONG y, RenderBuffer& buffer) {
  const Radiance light = tracer.Pixel(x, y);
  float* pixel = buffer.At(x, y);
  pixel[0] = (float)light.color.x;
  pixel[1] = (float)light.color.y;
  pixel[2] = (float)light.color.z;
  pixel[3] = (float)light.alpha;
}

void ComputeTiles(FrameScene& scene, const RenderOptions& options, RenderBuffer& buffer,
                  const std::function<bool(double)>& goOn) {
  TileLoop(scene, options, buffer).Run(goOn);
}

} // namespace host
