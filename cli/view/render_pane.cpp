#include "cli/view/render_pane.h"

#include "cli/commands/render/scene_setup.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <cmath>
#include <imgui.h>
#include <set>

namespace cli {

namespace {

/** A document with lights for one render; whatever was added is taken out again. */
class LitScene {
public:
  /** *before is the document's own objects as long as it lives. */
  LitScene(CloudSession& session, const RenderPlan& plan, const std::set<BaseObject*>** before)
      : doc_(session.Document()), shown_(before) {
    for (BaseObject* op = doc_->GetFirstObject(); op; op = op->GetNext()) before_.insert(op);
    scene_ = PrepareScene(session, plan);
    *shown_ = &before_;
  }
  ~LitScene() {
    *shown_ = nullptr;
    for (BaseObject *op = doc_->GetFirstObject(), *next = nullptr; op; op = next) {
      next = op->GetNext();
      if (before_.count(op)) continue;
      op->Remove();
      BaseObject::Free(op);
    }
  }
  LitScene(const LitScene&) = delete;
  LitScene& operator=(const LitScene&) = delete;
  host::RenderOptions& Options() { return scene_.render; }

private:
  BaseDocument* doc_;
  std::set<BaseObject*> before_;
  const std::set<BaseObject*>** shown_;
  RenderScene scene_;
};

std::uint8_t Shown(float sample) {
  return sample > 0.0f ? (std::uint8_t)std::lround(std::min(sample, 1.0f) * 255.0f) : 0;
}

} // namespace

void RenderPane::Begin(const host::RenderBuffer& buffer) {
  picture_.width = buffer.Width();
  picture_.height = buffer.Height();
  picture_.channels = 3;
  picture_.samples.assign((std::size_t)picture_.width * picture_.height * 3, 0.0f);
}

void RenderPane::Take(const host::RenderBuffer& buffer, const host::PixelArea& area) {
  for (LONG y = area.top; y < area.bottom; ++y)
    for (LONG x = area.left; x < area.right; ++x)
      std::copy_n(buffer.At(x, y), 3, &picture_.samples[((std::size_t)y * picture_.width + x) * 3]);
}

void RenderPane::ShowPicture() {
  host::gl::Image image;
  image.width = picture_.width;
  image.height = picture_.height;
  image.channels = 3;
  image.samples.resize(picture_.samples.size());
  std::transform(picture_.samples.begin(), picture_.samples.end(), image.samples.begin(), Shown);
  texture_.Set(std::move(image));
}

std::string RenderPane::Render(const host::ViewCamera& camera, double aspect,
                               const std::function<void(double)>& goOn) {
  camera_ = camera;
  plan_.view.size.height = std::max(1, (int)std::lround(plan_.view.size.width / aspect));
  plan_.view.camera = camera.position;
  plan_.view.target = camera.target;
  plan_.view.fieldOfView = camera.fieldOfView;
  marked_.reset();
  LitScene scene(session_, plan_, &lit_);
  scene.Options().camera = camera;
  host::RenderJob* running = nullptr;
  std::size_t taken = 0;
  scene.Options().progress = [&](double share) {
    const host::RenderBuffer& buffer = running->Buffer();
    const std::vector<host::PixelArea>& finished = buffer.Finished();
    if (taken == 0 || taken > finished.size()) {
      Begin(buffer);
      taken = 0;
    }
    for (; taken < finished.size(); ++taken) Take(buffer, finished[taken]);
    rendered_ = finished;
    ShowPicture();
    goOn(share);
  };
  host::RenderJob job(session_.Document(), scene.Options());
  running = &job;
  const host::RenderOutcome outcome = job.RenderFrame();
  if (!outcome.Ok()) return "rendering: " + outcome.message;
  Begin(job.Buffer());
  rendered_ = {{0, 0, picture_.width, picture_.height}};
  Take(job.Buffer(), rendered_.front());
  ShowPicture();
  return "rendered " + std::to_string(picture_.width) + "x" + std::to_string(picture_.height) + " in " +
         Fixed(outcome.seconds, 1) + " s; click a pixel to see what made it";
}

bool RenderPane::IsRendered(const Pixel& pixel) const {
  return std::any_of(rendered_.begin(), rendered_.end(), [&](const host::PixelArea& area) {
    return pixel.x >= area.left && pixel.x < area.right && pixel.y >= area.top && pixel.y < area.bottom;
  });
}

PixelReport RenderPane::Explain(const Pixel& pixel, std::vector<PixelPoint>* points) {
  marked_ = pixel;
  LitScene scene(session_, plan_, &lit_);
  host::RenderOptions& render = scene.Options();
  render.camera = camera_;
  render.probeX = pixel.x;
  render.probeY = pixel.y;
  PixelExplanation explanation;
  render.probe = [&](VolumeData* vd) {
    String text;
    KelvraRayExplanation question = {1, vd, &text};
    BaseSceneHook* hook = session_.Document()->FindSceneHook(KELVRA_HOOK);
    if (!hook || !hook->Message(KELVRA_MESSAGE_EXPLAIN_RAY, &question)) return;
    explanation.AddRay(Vector(vd->ray->p), Vector(vd->ray->v), host::Utf8(text));
  };
  host::RenderJob job(session_.Document(), render);
  const host::RenderOutcome outcome = job.RenderFrame();
  PixelReport report = explanation.Report();
  if (!outcome.Ok()) report = {outcome.message, {}, {}};
  report.title = "Pixel " + std::to_string(pixel.x) + "," + std::to_string(pixel.y) + ": " + report.title;
  if (outcome.Ok()) *points = explanation.Points();
  return report;
}

std::string RenderPane::Save(const std::string& path) const {
  host::PictureFormat format = host::PictureFormat::Png8;
  std::string error;
  if (host::ChoosePictureFormat(path, 0, &format, &error) &&
      host::SavePicture(picture_, path, format, &error, &session_.App().GetFaults()))
    return std::string();
  return error;
}

void RenderPane::Forget() {
  picture_ = host::Picture();
  marked_.reset();
}

std::optional<Pixel> RenderPane::Show(float screenScale) {
  if (!HasPicture()) return std::nullopt;
  const ImVec2 corner = ImGui::GetCursorScreenPos(), room = ImGui::GetContentRegionAvail();
  const float scale = std::min(room.x / (float)picture_.width, room.y / (float)picture_.height);
  const ImVec2 size(std::max(1.0f, picture_.width * scale), std::max(1.0f, picture_.height * scale));
  const ImVec2 start(corner.x + (room.x - size.x) / 2, corner.y + (room.y - size.y) / 2);
  ImGui::SetCursorScreenPos(start);
  const bool clicked = ImGui::InvisibleButton("picture", size);
  ImDrawList& list = *ImGui::GetWindowDrawList();
  list.AddImage(texture_.Handle(), start, ImVec2(start.x + size.x, start.y + size.y));
  if (marked_) {
    const ImVec2 at(start.x + ((float)marked_->x + 0.5f) * scale,
                    start.y + ((float)marked_->y + 0.5f) * scale);
    markedAt_ = at.x;
    DrawRing(list, at, 8.0f * screenScale, screenScale, IM_COL32(255, 220, 60, 255));
  }
  if (!clicked) return std::nullopt;
  const ImVec2 mouse = ImGui::GetIO().MousePos;
  return Pixel{std::clamp((int)((mouse.x - start.x) / scale), 0, picture_.width - 1),
               std::clamp((int)((mouse.y - start.y) / scale), 0, picture_.height - 1)};
}

} // namespace cli
