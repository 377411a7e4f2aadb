// What each view's vertex buffer holds of an object's points.
#pragma once

#include "c4d.h"
#include "c4d_gl.h"

#include <mutex>
#include <vector>

namespace kelvra {

struct ViewUpload {
  GlVertexBuffer* buffer = NULL;
  const C4DAtom* node = NULL;
  GlVertexSubBufferData* vertices = NULL;
  LONG count = 0;     ///< of points
  LULONG version = 0; ///< of the points, from NewVersion
};

/**
 * One list for an object and its copies: undo exchanges a node's data for that of its copy, while the node's
 * buffers stay. Views are drawn on one thread, but the host may copy and free nodes on any.
 */
class ViewUploads {
public:
  /** A number that the points of none of these objects have had before. */
  LULONG NewVersion();

  Bool IsEmpty();

  /** FALSE when the buffer holds nothing of ours; what was noted of an earlier one at its address goes. */
  Bool Find(GlVertexBuffer* buffer, ViewUpload* found);

  /** Lets what the buffer holds count as another version of the points. */
  void SetVersion(GlVertexBuffer* buffer, LULONG version);

  /**
   * Keeps a new sub-buffer and frees the one that Find gave. FALSE when memory is refused: the new one is
   * freed then.
   */
  Bool Keep(BaseDraw* bd, const ViewUpload& upload);

  /** For a node that is freed: the host frees its buffers. */
  void Forget(const C4DAtom* node);

private:
  std::vector<ViewUpload>::iterator EntryOf(const GlVertexBuffer* buffer);

  std::mutex mutex_;
  std::vector<ViewUpload> uploads_;
  LULONG lastVersion_ = 0;
};

} // namespace kelvra
