// What each view's vertex buffer holds of our points.
//
// Kept by buffer, not by object: undo exchanges a node's data for that of its copy, while the node's buffers
// stay. Only for the thread that draws views.
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

/** A number that the points of no object have had before. */
LULONG NewPointsVersion();

/** The buffer's entry, NULL when it holds no sub-buffer of ours. The pointer is good until the next call. */
ViewUpload* FindViewUpload(GlVertexBuffer* buffer);

/**
 * Keeps a new sub-buffer and frees all others of the buffer, which are ours too. FALSE when memory is
 * refused: the new one is freed as well then.
 */
Bool KeepViewUpload(BaseDraw* bd, const ViewUpload& upload);

/** For a node that is freed: the host frees its buffers. The list's memory goes with the last entry. */
void ForgetViewUploads(const C4DAtom* node);

} // namespace kelvra
