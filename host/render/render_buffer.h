// The picture that is being rendered: what VPBuffer* points to.
#pragma once

#include "c4d.h"

#include <vector>

namespace host {

/** Pixels from left and top on, right and bottom excluded. */
struct PixelArea {
  LONG left = 0, top = 0, right = 0, bottom = 0;
};

class RenderBuffer {
public:
  static constexpr LONG kComponents = 4;

  RenderBuffer(LONG width, LONG height) : width_(width), height_(height) {
    samples_.resize((std::size_t)width * height * kComponents);
  }
  LONG Width() const { return width_; }
  LONG Height() const { return height_; }
  /** Red, green, blue, alpha; row 0 on top. Pixels may be written by several threads at once. */
  float* At(LONG x, LONG y) { return samples_.data() + ((std::size_t)y * width_ + x) * kComponents; }
  const float* At(LONG x, LONG y) const {
    return samples_.data() + ((std::size_t)y * width_ + x) * kComponents;
  }
  /** Not while other threads write: Finished() says what they are done with. */
  const std::vector<float>& Samples() const { return samples_; }

  /** Areas of the running frame that no thread writes any more. On the thread that runs it only. */
  const std::vector<PixelArea>& Finished() const { return finished_; }
  void Finish(const PixelArea& area) { finished_.push_back(area); }
  void Begin() { finished_.clear(); }

  LONG GetInfo(VPGETINFO type) const;
  bool GetLine(LONG x, LONG y, LONG count, void* data, LONG bitDepth) const;
  bool SetLine(LONG x, LONG y, LONG count, const void* data, LONG bitDepth);

  VPBuffer* Api() { return reinterpret_cast<VPBuffer*>(this); }
  static RenderBuffer* From(VPBuffer* buffer) { return reinterpret_cast<RenderBuffer*>(buffer); }
  static const RenderBuffer* From(const VPBuffer* buffer) {
    return reinterpret_cast<const RenderBuffer*>(buffer);
  }

private:
  bool Holds(LONG x, LONG y, LONG count) const {
    return x >= 0 && y >= 0 && y < height_ && count >= 0 && x <= width_ - count;
  }
  LONG width_, height_;
  std::vector<float> samples_;
  std::vector<PixelArea> finished_;
};

} // namespace host
