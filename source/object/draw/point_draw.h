// Draws the points of an object in a view, once per clone.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"
#include "object/draw/point_program.h"

namespace kelvra {

/** An object's state in its views. The host drops buffers and programs when the node is freed. */
struct PointDisplay {
  UniformNames uniforms;
  BaseContainer uniformCache; ///< handed to SetUniform, which does not consult it
  GrowingBox box;             ///< of the positions written last
  LULONG version = 0; ///< of the points that views are to show; new with every raise of the upload flag
};

/**
 * Uploads when the store's flag asks for it or the view has no copy of ours, then draws. Every failure ends
 * the draw and is no error; compile messages reach the console.
 */
void DrawPoints(BaseObject* op, PointStore& store, PointDisplay& display, DRAWPASS pass, BaseDraw* bd,
                BaseDrawHelp* bh);

} // namespace kelvra
