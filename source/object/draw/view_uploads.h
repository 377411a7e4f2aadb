// What each view's vertex buffer holds of our points.
//
// Kept by buffer, not by object: undo gives a node the data of its copy and back, while the node's buffers
// stay. Thread that draws views.
#pragma once

#include "c4d.h"
#include "c4d_gl.h"
#include "ge_dynamicarray.h"

namespace kelvra {

struct ViewUpload {
  GlVertexBuffer* buffer = NULL;
  const C4DAtom* node = NULL;
  GlVertexSubBufferData* vertices = NULL;
  LONG count = 0;     ///< of points
  LULONG version = 0; ///< of the points, from NewPointsVersion
};

/** A number that no points, of any object, have had. */
LULONG NewPointsVersion();

/** The buffer's entry, NULL when it holds no sub-buffer of ours. The pointer is good until the next call. */
ViewUpload* FindViewUpload(GlVertexBuffer* buffer);

/**
 * Notes a new sub-buffer and frees all others of the buffer, which are ours too. FALSE, with the new one
 * freed as well, when memory is refused.
 */
Bool KeepViewUpload(BaseDraw* bd, const ViewUpload& upload);

/** For a node that is freed: the host drops its buffers. With the last entry the list's memory goes. */
void ForgetViewUploads(const C4DAtom* node);

} // namespace kelvra
