#include "host/gl/framebuffer.h"

#include <algorithm>
#include <epoxy/gl.h>
#include <new>

namespace host::gl {

namespace {

std::string SizeText(int width, int height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

int Limit(unsigned name) {
  GLint values[2] = {0, 0};
  glGetIntegerv(name, values);
  return name == GL_MAX_VIEWPORT_DIMS ? std::min(values[0], values[1]) : values[0];
}

/** Swaps rows so that the first becomes the last: GL counts from the bottom. */
void FlipRows(unsigned char* rows, std::size_t rowBytes, int height) {
  for (int top = 0, bottom = height - 1; top < bottom; ++top, --bottom)
    std::swap_ranges(rows + top * rowBytes, rows + (top + 1) * rowBytes, rows + bottom * rowBytes);
}

} // namespace

Framebuffer::Framebuffer(std::shared_ptr<Context> context, int width, int height)
    : context_(std::move(context)), width_(width), height_(height) {}

std::unique_ptr<Framebuffer> Framebuffer::Create(std::shared_ptr<Context> context, int width, int height,
                                                 int samples, std::string* error) {
  CurrentScope scope(*context, error);
  if (!scope.Ok()) return nullptr;
  const int limit = std::min(Limit(GL_MAX_RENDERBUFFER_SIZE), Limit(GL_MAX_VIEWPORT_DIMS));
  if (width < 1 || height < 1 || width > limit || height > limit) {
    *error = "a picture of " + SizeText(width, height) + " pixels cannot be drawn: each side must be 1 to " +
             std::to_string(limit);
    return nullptr;
  }
  if (samples < 1 || samples > Limit(GL_MAX_SAMPLES)) {
    *error = std::to_string(samples) + " samples a pixel cannot be drawn: 1 to " +
             std::to_string(Limit(GL_MAX_SAMPLES));
    return nullptr;
  }
  std::unique_ptr<Framebuffer> framebuffer(new Framebuffer(std::move(context), width, height));
  if (!framebuffer->CreateTarget(samples, &framebuffer->draw_, error)) return nullptr;
  if (samples > 1 && !framebuffer->CreateTarget(1, &framebuffer->resolved_, error)) return nullptr;
  return framebuffer;
}

bool Framebuffer::CreateTarget(int samples, Target* target, std::string* error) {
  const int stored = samples > 1 ? samples : 0;
  context_->TakeError("an earlier call");
  glGenFramebuffers(1, &target->framebuffer);
  glGenRenderbuffers(1, &target->color);
  glGenRenderbuffers(1, &target->depth);
  glBindRenderbuffer(GL_RENDERBUFFER, target->color);
  glRenderbufferStorageMultisample(GL_RENDERBUFFER, stored, GL_RGBA8, width_, height_);
  glBindRenderbuffer(GL_RENDERBUFFER, target->depth);
  glRenderbufferStorageMultisample(GL_RENDERBUFFER, stored, GL_DEPTH_COMPONENT24, width_, height_);
  glBindRenderbuffer(GL_RENDERBUFFER, 0);

  std::string reason = context_->TakeError("glRenderbufferStorageMultisample");
  if (reason.empty()) {
    GLint previous = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &previous);
    glBindFramebuffer(GL_FRAMEBUFFER, target->framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, target->color);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, target->depth);
    const GLenum status = glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if (status != GL_FRAMEBUFFER_COMPLETE) reason = "framebuffer status " + std::to_string(status);
    glBindFramebuffer(GL_FRAMEBUFFER, (GLuint)previous);
  }
  if (reason.empty()) return true;
  *error = "a picture of " + SizeText(width_, height_) + " pixels with " + std::to_string(samples) +
           " samples cannot be allocated: " + reason;
  return false;
}

void Framebuffer::FreeTarget(const Target& target) {
  // Names of 0 are ignored by GL.
  glDeleteFramebuffers(1, &target.framebuffer);
  glDeleteRenderbuffers(1, &target.color);
  glDeleteRenderbuffers(1, &target.depth);
}

Framebuffer::~Framebuffer() {
  std::string error;
  CurrentScope scope(*context_, &error);
  if (!scope.Ok()) return; // another thread; the names go with the context
  FreeTarget(draw_);
  FreeTarget(resolved_);
}

bool Framebuffer::Bind(std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok()) return false;
  glBindFramebuffer(GL_FRAMEBUFFER, draw_.framebuffer);
  glViewport(0, 0, width_, height_);
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LEQUAL);
  return true;
}

bool Framebuffer::Clear(float r, float g, float b, float a, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok() || !Bind(error)) return false;
  glClearColor(r, g, b, a);
  glClearDepth(1.0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  return true;
}

void Framebuffer::Resolve(unsigned buffers) {
  if (!resolved_.framebuffer) {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, draw_.framebuffer);
    return;
  }
  glBindFramebuffer(GL_READ_FRAMEBUFFER, draw_.framebuffer);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved_.framebuffer);
  glBlitFramebuffer(0, 0, width_, height_, 0, 0, width_, height_, buffers, GL_NEAREST);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, draw_.framebuffer);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, resolved_.framebuffer);
}

bool Framebuffer::ReadRows(unsigned format, unsigned type, std::size_t rowBytes, unsigned char* rows,
                           std::string* error) {
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, width_, height_, format, type, rows);
  const std::string reason = context_->TakeError("glReadPixels");
  glBindFramebuffer(GL_FRAMEBUFFER, draw_.framebuffer);
  if (!reason.empty()) {
    *error = "the picture cannot be read back: " + reason;
    return false;
  }
  FlipRows(rows, rowBytes, height_);
  return true;
}

bool Framebuffer::Read(int channels, Image* image, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok()) return false;
  if (channels != 3 && channels != 4) {
    *error = "a picture has 3 or 4 channels, asked for " + std::to_string(channels);
    return false;
  }
  const std::size_t rowBytes = (std::size_t)width_ * channels;
  try {
    image->samples.resize(rowBytes * height_);
  } catch (const std::bad_alloc&) {
    *error = "not enough memory for a picture of " + SizeText(width_, height_) + " pixels";
    return false;
  }
  image->width = width_;
  image->height = height_;
  image->channels = channels;
  Resolve(GL_COLOR_BUFFER_BIT);
  return ReadRows(channels == 4 ? GL_RGBA : GL_RGB, GL_UNSIGNED_BYTE, rowBytes, image->samples.data(), error);
}

bool Framebuffer::ReadDepth(std::vector<float>* depth, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok()) return false;
  try {
    depth->resize((std::size_t)width_ * height_);
  } catch (const std::bad_alloc&) {
    *error = "not enough memory for the depth of " + SizeText(width_, height_) + " pixels";
    return false;
  }
  Resolve(GL_DEPTH_BUFFER_BIT);
  return ReadRows(GL_DEPTH_COMPONENT, GL_FLOAT, (std::size_t)width_ * sizeof(float),
                  reinterpret_cast<unsigned char*>(depth->data()), error);
}

} // namespace host::gl
