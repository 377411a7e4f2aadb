// One GL viewport: draws a document off screen as the application's view would.
#pragma once

#include "c4d.h"
#include "host/base/box.h"
#include "host/geometry/clone_tag.h"
#include "host/nodes/visible_objects.h"
#include "host/picture/image.h"
#include "host/view/eye_dome.h"
#include "host/view/view_camera.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/**
 * Owns an off-screen target. Draw brings generators up to date, calls the objects' Draw in the object pass
 * and draws the host's own geometry; the picture has row 0 on top. Main thread.
 */
class Viewport {
public:
  /** NULL with one line when OpenGL cannot be used or the size is refused. */
  static std::unique_ptr<Viewport> Create(BaseDocument* doc, int width, int height, std::string* error);
  virtual ~Viewport() {}

  virtual void SetCamera(const ViewCamera& camera) = 0;
  virtual void SetBackground(double r, double g, double b) = 0;
  /** From the top of the picture to its bottom. */
  virtual void SetGradient(const Vector& top, const Vector& bottom) = 0;
  /** Shades what was drawn by its depth; NULL, as it is at first, does not. */
  virtual void SetEyeDome(const EyeDome* settings) = 0;
  /** BASEDRAW_DRAWPORTTYPE as the objects see it; enhanced OpenGL unless set otherwise. */
  virtual void SetDrawPortType(LONG type) = 0;
  /** False with one line when GL reported errors; the picture then holds what was drawn. */
  virtual bool Draw(std::string* error) = 0;
  /** Vertices that the last Draw handed to GL, hidden ones included. */
  virtual long long VerticesDrawn() const = 0;
  /**
   * *distances, if it is asked for: of each pixel along the direction of view, infinite where nothing was
   * drawn.
   */
  virtual gl::Image Read(std::vector<float>* distances = nullptr) = 0;
  /** GL errors so far. */
  virtual const std::vector<std::string>& GlErrors() const = 0;
};

/** Box of an object and its children in world space, from GetDimension. */
Box WorldBox(BaseObject* op);

/** World-space box of all visible elements of a document, caches included. */
Box GeometryBox(BaseDocument* doc);

} // namespace host
