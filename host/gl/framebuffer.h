// An off-screen picture to draw into.
#pragma once

#include "host/gl/context.h"
#include "host/picture/image.h"

#include <memory>
#include <string>
#include <vector>

namespace host::gl {

/**
 * Colour (8 bits a channel) and depth (24 bits) of one size. Thread of its context. Binding, clearing and
 * reading make the context current for the call; Bind leaves the target bound in the context, which must be
 * current for drawing.
 */
class Framebuffer {
public:
  /**
   * `samples` above 1 asks for multisampling (the driver may give more); 1 gives pixels that can be counted.
   * NULL with a line for sizes outside the limits of the driver and when memory is refused.
   */
  static std::unique_ptr<Framebuffer> Create(std::shared_ptr<Context> context, int width, int height,
                                             int samples, std::string* error);
  ~Framebuffer();
  Framebuffer(const Framebuffer&) = delete;
  Framebuffer& operator=(const Framebuffer&) = delete;

  int Width() const { return width_; }
  int Height() const { return height_; }

  /** Draws go here from now on, whole picture, depth test on (nearer wins). */
  bool Bind(std::string* error);
  /** Colour 0..1; depth becomes the farthest. */
  bool Clear(float r, float g, float b, float a, std::string* error);
  /** Waits for the drawing and copies the picture with row 0 on top; channels 3 or 4. */
  bool Read(int channels, Image* image, std::string* error);
  /** Window depth 0 (near) .. 1 (far) per pixel, row 0 on top. */
  bool ReadDepth(std::vector<float>* depth, std::string* error);

private:
  /** Colour and depth storage with the object that binds them; 0 where there is none. */
  struct Target {
    unsigned framebuffer = 0, color = 0, depth = 0;
  };

  Framebuffer(std::shared_ptr<Context> context, int width, int height);
  bool CreateTarget(int samples, Target* target, std::string* error);
  static void FreeTarget(const Target& target);
  void Resolve(unsigned buffers);
  bool ReadRows(unsigned format, unsigned type, std::size_t rowBytes, unsigned char* rows,
                std::string* error);

  std::shared_ptr<Context> context_;
  int width_, height_;
  Target draw_;     // multisampled when resolve_ exists
  Target resolved_; // one sample a pixel, to read from
};

} // namespace host::gl
