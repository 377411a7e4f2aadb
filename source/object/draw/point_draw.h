// Draws the points of an object in a view, once per clone.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"
#include "object/draw/point_program.h"
#include "object/draw/view_uploads.h"

#include <memory>

namespace kelvra {

/** What an object's drawing keeps. The host frees buffers and programs with the node. */
struct PointDisplay {
  UniformNames uniforms;
  BaseContainer uniformCache; ///< handed to SetUniform, which does not consult it
  GrowingBox<Vector> box;     ///< of the positions written last
  LULONG version = 0; ///< of the points that views must show; a new one each time the upload flag is raised
  std::shared_ptr<ViewUploads> uploads; ///< shared with the copies of the object
};

/**
 * Uploads when the store's flag asks for it or the view has no copy of ours, then draws. A failure ends the
 * draw silently; only compile errors are printed on the console.
 */
void DrawPoints(BaseObject* op, PointStore& store, PointDisplay& display, DRAWPASS pass, BaseDraw* bd,
                BaseDrawHelp* bh);

} // namespace kelvra
