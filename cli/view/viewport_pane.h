// The pane that shows the document as the host's viewport draws it, and moves its camera.
#pragma once

#include "cli/session/cloud_session.h"
#include "cli/view/camera_moves.h"
#include "cli/view/seen_depths.h"
#include "cli/view/window.h"
#include "host/viewport.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

class ViewportPane {
public:
  ViewportPane(CloudSession& session, Window& window) : session_(session), window_(window) {}

  /** For another document: nothing of the old one is used any more. */
  void Forget();
  /** Has the points in the picture, seen along that direction. */
  /** Of the clouds that are shown, or of all where none is. */
  void FrameAll(const Vector& direction = host::Framing::UsualDirection());
  void FrameOnly(BaseObject* op);
  /** Colours clouds that bring none, and sizes their points, as a first picture does. */
  std::vector<std::string> PrepareClouds();

  /** Draws when something changed, outside of frames of the interface. True while there is more to do. */
  bool Update(std::size_t documentStamp);
  /** The pane's content, filling the current window; takes the mouse and, if they are free, the keys. */
  void Show(bool takesKeys);

  /** Where the user clicked since the last call. */
  std::optional<PicturePlace> TakeClick();
  /** Marks places in the picture until the next call, the first of them with a label. */
  void Mark(const std::vector<Vector>& places, const std::string& label = std::string());

  /** Half the height of the pane, pixels. */
  double HalfHeight() const { return height_ > 1 ? height_ * 0.5 : 1.0; }
  /** True while it moves, or did so lately. */
  bool IsMoving() const;
  const host::ViewCamera& Camera() const { return camera_; }
  /** In which the camera looks. */
  Vector Direction() const { return (camera_.target - camera_.position).GetNormalized(); }
  double Aspect() const { return height_ > 0 ? (double)width_ / height_ : 1.0; }
  long long PointsDrawn() const { return pointsDrawn_; }
  /** Those that it left out, too: as the parameters say, or because it moves. */
  long long PointsShown() const { return pointsShown_; }
  double FramesPerSecond() const { return drawSeconds_ > 0 ? 1.0 / drawSeconds_ : 0.0; }
  bool& EyeDome() { return eyeDome_; }
  void Redraw() { stale_ = true; }
  /** Drawing itself may touch the document: this is what it is like now. */
  void Settle(std::size_t documentStamp) { stamp_ = documentStamp; }

private:
  bool Draw(LONG everyNth);
  void FrameBox(host::Framing framing, const Vector& direction);
  void CountPoints();
  long long HiddenPoints(const std::vector<BaseObject*>& clouds) const;
  void MoveWithMouse(double paneWidth, double paneHeight, const PicturePlace& at);
  void MoveWithKeys();
  void DrawMarks(float x, float y, float width, float height) const;
  double LeastDistance() const;
  void Zoom(const PicturePlace& at, double factor);
  void Moved();

  CloudSession& session_;
  Window& window_;
  std::unique_ptr<host::Viewport> viewport_;
  Texture texture_;
  host::ViewCamera camera_;
  SeenDepths seen_;
  int width_ = 0, height_ = 0; ///< of the pane, pixels
  int drawnWidth_ = 0, drawnHeight_ = 0;
  std::size_t stamp_ = 0;
  bool stale_ = true, eyeDome_ = false, framed_ = false;
  bool nothingSeen_ = false; ///< the camera looks past all points
  LONG movingNth_ = 1;       ///< while the view moves
  bool thinned_ = false;
  double lastMove_ = -1.0, drawSeconds_ = 0.0;
  long long pointsDrawn_ = 0, pointsShown_ = 0;
  std::map<BaseObject*, long long> points_; ///< of each cloud
  std::optional<PicturePlace> click_;
  std::vector<Vector> marks_;
  std::string markLabel_, error_;
  bool dragging_ = false;
  bool shortcut_ = false; ///< a key of it may still be held
};

} // namespace cli
