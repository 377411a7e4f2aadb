// How far away is what a picture of the viewport shows.
#pragma once

#include "cli/view/camera_moves.h"

#include <optional>
#include <vector>

namespace cli {

struct SeenDepths {
  std::vector<float> distances; ///< of each pixel, infinite where nothing was drawn
  int width = 0, height = 0;
  host::ViewCamera camera; ///< of the picture

  bool IsEmpty() const;
  /**
   * What was drawn nearest to a place of the picture, in world space; the nearest to the viewer where several
   * things meet. None in an empty picture.
   */
  std::optional<Vector> Near(const PicturePlace& at) const;

private:
  struct Pixel {
    int x = 0, y = 0;
  };
  /** Calls visit for each pixel that far around one, with its distance. */
  template <class Visit>
  void Around(const Pixel& middle, int reach, const Visit& visit) const;
  std::optional<Pixel> DrawnNear(const Pixel& at) const;
};

} // namespace cli
