// The rendered picture: it fills in while it is rendered, is saved, and explains its pixels.
#pragma once

#include "cli/commands/render/render_plan.h"
#include "cli/session/cloud_session.h"
#include "cli/view/pixel_explanation.h"
#include "cli/view/window.h"
#include "host/render.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace cli {

class RenderPane {
public:
  explicit RenderPane(CloudSession& session) : session_(session) {}

  /**
   * Renders what the camera sees, in the proportions of its view. `goOn` is called with the share that is
   * done a few times a second, between frames of the interface. Returns a line about how it ended.
   */
  std::string Render(const host::ViewCamera& camera, double aspect, const std::function<void(double)>& goOn);
  /** Asks the module about the pixel; *points are those that its rays meet, in that order. */
  PixelReport Explain(const Pixel& pixel, std::vector<PixelPoint>* points);
  /** False for a pixel that a stopped render had not come to. */
  bool IsRendered(const Pixel& pixel) const;
  /** A light that lies in the document for a render only. */
  bool IsOwn(BaseObject* op) const { return lit_ && lit_->count(op) == 0; }
  /** Empty, or one line that says why it was not saved. */
  std::string Save(const std::string& path) const;
  void Forget();

  /** Draws the picture into the current window; returns the pixel that was clicked. */
  std::optional<Pixel> Show(float screenScale);
  /** Where on the screen the pixel that was asked was shown, from the left. */
  float MarkedAt() const { return markedAt_; }
  bool HasPicture() const { return picture_.width > 0; }
  RenderPlan& Plan() { return plan_; }

private:
  /** A black picture of the buffer's size. */
  void Begin(const host::RenderBuffer& buffer);
  void Take(const host::RenderBuffer& buffer, const host::PixelArea& area);
  /** Brings the picture to the screen. */
  void ShowPicture();

  CloudSession& session_;
  RenderPlan plan_;
  host::Picture picture_;
  Texture texture_;
  host::ViewCamera camera_; ///< of the picture
  std::optional<Pixel> marked_;
  std::vector<host::PixelArea> rendered_;
  float markedAt_ = 0.0f;
  const std::set<BaseObject*>* lit_ =
      nullptr; ///< the document's own objects, while it has lights for a render
};

} // namespace cli
