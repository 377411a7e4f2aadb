#include "cli/view/viewport_pane.h"

#include "cli/commands/snapshot/first_look.h"
#include "cli/session/cloud_extent.h"
#include "cli/view/document_stamp.h"
#include "otallyframe.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <imgui.h>
#include <iterator>
#include <utility>

namespace cli {

namespace {

const Vector kTop(0.17, 0.20, 0.26), kBottom(0.05, 0.06, 0.08);
/** Seconds after the last move at which the view is at rest and everything is drawn. */
constexpr double kRest = 0.25;
/** Seconds that a picture may take while the view moves. */
constexpr double kLongest = 1.0 / 25.0, kShortest = 1.0 / 60.0;
constexpr LONG kThinnest = 64;
/** Of the farthest distance: what is nearer may lie before the range of depth. */
constexpr double kLeastDepth = 1.2e-3;
constexpr double kDegreesPerPixel = 0.35, kDegreesPerSecond = 90.0, kWalkPerSecond = 0.8, kZoomStep = 0.85;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/** Has the clouds show every n-th point only, for a block. No node notices: it is no change of the document.
 */
class Thinned {
public:
  Thinned(const std::vector<BaseObject*>& clouds, LONG everyNth) : clouds_(clouds), everyNth_(everyNth) {
    for (BaseObject* cloud : clouds_) {
      BaseContainer* data = cloud->GetDataInstance();
      own_.push_back(data->GetDataPointer(KELVRA_THIN_VIEW) ? *data->GetDataPointer(KELVRA_THIN_VIEW)
                                                            : GeData());
      const LONG own = std::max<LONG>(1, data->GetLong(KELVRA_THIN_VIEW));
      if (everyNth > 1) data->SetLong(KELVRA_THIN_VIEW, own * everyNth);
    }
  }
  ~Thinned() {
    for (std::size_t i = 0; everyNth_ > 1 && i < clouds_.size(); ++i) {
      BaseContainer* data = clouds_[i]->GetDataInstance();
      if (own_[i].GetType() == DA_NIL)
        data->RemoveData(KELVRA_THIN_VIEW);
      else
        data->SetData(KELVRA_THIN_VIEW, own_[i]);
    }
  }
  Thinned(const Thinned&) = delete;
  Thinned& operator=(const Thinned&) = delete;

private:
  const std::vector<BaseObject*>& clouds_;
  LONG everyNth_;
  std::vector<GeData> own_; ///< no value where the description's default counts
};

} // namespace

void ViewportPane::Forget() {
  const Window::Aside aside(window_);
  viewport_.reset();
  seen_ = SeenDepths();
  marks_.clear();
  framed_ = false;
  stale_ = true;
}

void ViewportPane::FrameAll(const Vector& direction) {
  host::Framing framing;
  long long apart = 0;
  for (BaseObject* cloud : session_.Clouds())
    if (host::IsShownInViews(cloud)) framing.box.Add(FramedExtent(cloud, &apart));
  std::string note;
  if (framing.box.IsEmpty()) framing.box = FramedExtent(session_, &note);
  FrameBox(framing, direction);
}

void ViewportPane::FrameOnly(BaseObject* op) {
  host::Framing framing;
  long long apart = 0;
  framing.box = FramedExtent(op, &apart);
  FrameBox(framing, Direction());
}

void ViewportPane::FrameBox(host::Framing framing, const Vector& direction) {
  if (framing.box.IsEmpty()) return;
  framing.forward = direction;
  framing.aspect = Aspect();
  camera_ = host::FrameBox(camera_, framing);
  framed_ = width_ > 0;
  stale_ = true;
}

std::vector<std::string> ViewportPane::PrepareClouds() {
  FirstLook look = cli::PrepareClouds(session_, SnapshotPlan());
  if (!framed_) eyeDome_ = look.eyeDome; // from then on it is the user's choice
  if (!framed_) FrameAll();
  ViewOptions view;
  if (height_ > 0) view.size = {width_, height_};
  FitPointSizes(session_, camera_, view, &look.notes);
  stale_ = true;
  return look.notes;
}

bool ViewportPane::IsMoving() const {
  return Now() - lastMove_ < kRest;
}

bool ViewportPane::Update(std::size_t documentStamp) {
  if (width_ < 1 || height_ < 1) return true;
  if (!framed_) FrameAll();
  stale_ = stale_ || stamp_ != documentStamp || drawnWidth_ != width_ || drawnHeight_ != height_;
  const LONG nth = IsMoving() ? movingNth_ : 1;
  if (stale_ || (thinned_ && nth == 1)) {
    if (stamp_ != documentStamp || points_.empty()) CountPoints();
    const double start = Now();
    stale_ = !Draw(nth) && error_.empty();
    drawSeconds_ = Now() - start;
    thinned_ = nth > 1;
    stamp_ = documentStamp;
    if (IsMoving()) {
      if (drawSeconds_ > kLongest) movingNth_ = std::min<LONG>(movingNth_ * 2, kThinnest);
      if (drawSeconds_ < kShortest) movingNth_ = std::max<LONG>(movingNth_ / 2, 1);
    }
  }
  return stale_ || thinned_;
}

bool ViewportPane::Draw(LONG everyNth) {
  host::gl::Image image;
  {
    const Window::Aside aside(window_);
    if (!viewport_ || drawnWidth_ != width_ || drawnHeight_ != height_) {
      viewport_.reset();
      viewport_ = host::Viewport::Create(session_.Document(), width_, height_, &error_);
      if (!viewport_) return false;
      drawnWidth_ = width_;
      drawnHeight_ = height_;
    }
    error_.clear();
    const host::EyeDome eyeDome;
    viewport_->SetGradient(kTop, kBottom);
    viewport_->SetEyeDome(eyeDome_ ? &eyeDome : nullptr);
    viewport_->SetCamera(camera_);
    const std::vector<BaseObject*> clouds = session_.Clouds();
    const Thinned thinned(clouds, everyNth);
    if (!viewport_->Draw(&error_)) return false;
    pointsShown_ = viewport_->VerticesDrawn();
    pointsDrawn_ = pointsShown_ - HiddenPoints(clouds);
    seen_.camera = camera_;
    seen_.width = width_;
    seen_.height = height_;
    image = viewport_->Read(&seen_.distances);
    nothingSeen_ = pointsShown_ > 0 && seen_.IsEmpty();
  }
  texture_.Set(std::move(image));
  return true;
}

void ViewportPane::CountPoints() {
  points_.clear();
  CloudStats stats;
  for (BaseObject* cloud : session_.Clouds())
    if (ReadCloudStats(cloud, &stats)) points_[cloud] = stats.Points();
}

/** Of those that were handed to GL: all beyond the share, and all but every n-th. */
long long ViewportPane::HiddenPoints(const std::vector<BaseObject*>& clouds) const {
  long long hidden = 0;
  for (BaseObject* cloud : clouds) {
    const auto counted = points_.find(cloud);
    if (counted == points_.end() || !host::IsShownInViews(cloud)) continue;
    const BaseContainer* data = cloud->GetDataInstance();
    const double share = std::clamp(data->GetReal(KELVRA_POINT_SHARE, 1.0), 0.0, 1.0);
    const long long total = counted->second, kept = (long long)((double)total * share);
    const long long nth = std::max<LONG>(1, data->GetLong(KELVRA_THIN_VIEW));
    hidden += total - (kept + nth - 1) / nth;
  }
  return hidden;
}

/** To points that are nearer, as seen from within the scene, its depth does not reach. */
double ViewportPane::LeastDistance() const {
  host::ViewFrame frame = host::MakeFrame(camera_, Aspect());
  host::FitRange(&frame, session_.Extent());
  return frame.farDistance * kLeastDepth;
}

/** Towards what is seen there, and never past it: of a sparse cloud, the point that is nearest to the place.
 */
void ViewportPane::Zoom(const PicturePlace& at, double factor) {
  PicturePlace towards = at;
  if (const std::optional<Vector> place = seen_.Near(at)) {
    FocusOn(&camera_, *place);
    Project(camera_, *place, Aspect(), &towards);
    if (factor < 1.0 && (camera_.target - camera_.position).GetLength() * factor < LeastDistance()) return;
  } else if (nothingSeen_ && factor < 1.0) {
    return;
  }
  ZoomTo(&camera_, towards, Aspect(), factor);
  Moved();
}

void ViewportPane::Moved() {
  stale_ = true;
  lastMove_ = Now();
}

std::optional<PicturePlace> ViewportPane::TakeClick() {
  return std::exchange(click_, std::nullopt);
}

void ViewportPane::Mark(const std::vector<Vector>& places, const std::string& label) {
  marks_ = places;
  markLabel_ = label;
}

void ViewportPane::Show(bool takesKeys) {
  const ImVec2 corner = ImGui::GetCursorScreenPos(), size = ImGui::GetContentRegionAvail();
  width_ = std::max(1, (int)size.x);
  height_ = std::max(1, (int)size.y);
  ImGui::InvisibleButton("view", ImVec2((float)width_, (float)height_),
                         ImGuiButtonFlags_MouseButtonLeft | ImGuiButtonFlags_MouseButtonMiddle |
                             ImGuiButtonFlags_MouseButtonRight);
  ImGui::SetItemAllowOverlap(); // an empty scene has a button above the view
  ImDrawList& list = *ImGui::GetWindowDrawList();
  const ImVec2 end(corner.x + (float)width_, corner.y + (float)height_);
  if (!texture_.IsEmpty()) list.AddImage(texture_.Handle(), corner, end);
  const ImVec2 mouse = ImGui::GetIO().MousePos;
  const PicturePlace at{2.0 * (mouse.x - corner.x) / width_ - 1.0,
                        1.0 - 2.0 * (mouse.y - corner.y) / height_};
  MoveWithMouse(width_, height_, at);
  if (takesKeys) MoveWithKeys();
  DrawMarks(corner.x, corner.y, (float)width_, (float)height_);
  if (nothingSeen_) {
    const char* text = "No point is in view. F shows the whole cloud.";
    const ImVec2 room = ImGui::CalcTextSize(text);
    list.AddText(ImVec2((corner.x + end.x - room.x) / 2, (corner.y + end.y - room.y) / 2),
                 ImGui::GetColorU32(ImGuiCol_TextDisabled), text);
  }
  if (!error_.empty())
    list.AddText(ImVec2(corner.x + 12, corner.y + 12), IM_COL32(255, 120, 100, 255), error_.c_str());
}

void ViewportPane::MoveWithMouse(double paneWidth, double paneHeight, const PicturePlace& at) {
  const ImGuiIO& io = ImGui::GetIO();
  if (ImGui::IsItemHovered() && io.MouseWheel != 0.0f) {
    Zoom(at, std::pow(kZoomStep, io.MouseWheel));
  }
  const bool held = ImGui::IsItemActive();
  const bool turns = held && ImGui::IsMouseDragging(ImGuiMouseButton_Left, 3.0f);
  const bool slides = held && (ImGui::IsMouseDragging(ImGuiMouseButton_Middle, 1.0f) ||
                               ImGui::IsMouseDragging(ImGuiMouseButton_Right, 1.0f));
  // A quick drag may begin and end between two frames.
  const bool strayed = io.MouseDragMaxDistanceSqr[ImGuiMouseButton_Left] > 9.0f;
  if (ImGui::IsItemDeactivated() && !dragging_ && !strayed && ImGui::IsMouseReleased(ImGuiMouseButton_Left))
    click_ = at;
  dragging_ = held && (dragging_ || turns || slides);
  const bool still = io.MouseDelta.x == 0.0f && io.MouseDelta.y == 0.0f;
  if (still || !(turns || slides)) return;
  if (slides || io.KeyShift)
    Pan(&camera_, {2.0 * io.MouseDelta.x / paneWidth, -2.0 * io.MouseDelta.y / paneHeight}, Aspect());
  else
    Orbit(&camera_, io.MouseDelta.x * kDegreesPerPixel, io.MouseDelta.y * kDegreesPerPixel);
  Moved();
}

void ViewportPane::MoveWithKeys() {
  const ImGuiIO& io = ImGui::GetIO();
  // The letter of a shortcut does not move the camera, even if Ctrl is released before it.
  const auto isHeld = [](char letter) { return ImGui::IsKeyDown(letter); };
  const std::string letters = "WSADEQ";
  // Plus is on the key of the equals sign where it needs Shift.
  const double zoom = (IsTyped('+') || IsTyped('=') ? 1.0 : 0.0) - (IsTyped('-') ? 1.0 : 0.0);
  if (io.KeyCtrl || io.KeyAlt)
    shortcut_ = true;
  else if (zoom == 0.0 && std::none_of(letters.begin(), letters.end(), isHeld))
    shortcut_ = false;
  if (shortcut_) return;
  // A frame that waited for input must not count as a long press.
  const double seconds = std::min(0.1, (double)io.DeltaTime);
  const auto held = [isHeld](char letter) { return isHeld(letter) ? 1.0 : 0.0; };
  const auto arrow = [](ImGuiKey key) { return ImGui::IsKeyDown(ImGui::GetKeyIndex(key)) ? 1.0 : 0.0; };
  const double forward = held('W') - held('S'), right = held('D') - held('A'), up = held('E') - held('Q');
  const double turn = arrow(ImGuiKey_RightArrow) - arrow(ImGuiKey_LeftArrow);
  const double lift = arrow(ImGuiKey_UpArrow) - arrow(ImGuiKey_DownArrow);
  if (forward != 0 || right != 0 || up != 0) {
    const double step = kWalkPerSecond * seconds;
    Walk(&camera_, forward * step, right * step, up * step);
    Moved();
  }
  if (turn != 0 || lift != 0) {
    Orbit(&camera_, turn * kDegreesPerSecond * seconds, lift * kDegreesPerSecond * seconds);
    Moved();
  }
  if (zoom != 0) {
    Zoom(PicturePlace(), std::pow(kZoomStep, zoom * seconds * 10.0));
  }
}

void ViewportPane::DrawMarks(float x, float y, float width, float height) const {
  ImDrawList& list = *ImGui::GetWindowDrawList();
  const float scale = window_.Scale();
  ImVec2 at;
  // The first one last, above all others.
  for (auto mark = marks_.rbegin(); mark != marks_.rend(); ++mark) {
    PicturePlace place;
    const bool isFirst = std::next(mark) == marks_.rend();
    if (!Project(camera_, *mark, Aspect(), &place)) {
      if (isFirst) return;
      continue;
    }
    at = ImVec2(x + (float)(place.x + 1.0) * 0.5f * width, y + (float)(1.0 - place.y) * 0.5f * height);
    DrawRing(list, at, (isFirst ? 8.0f : 5.0f) * scale, scale,
             isFirst ? IM_COL32(255, 220, 60, 255) : IM_COL32(255, 140, 60, 255));
  }
  if (marks_.empty() || markLabel_.empty()) return;
  const ImVec2 size = ImGui::CalcTextSize(markLabel_.c_str());
  const float gap = 14.0f * scale, margin = 5.0f * scale;
  const float beside = at.x + gap + size.x < x + width ? at.x + gap : at.x - gap - size.x;
  const float below = at.y + size.y + 2 * margin < y + height ? at.y + margin : at.y - size.y - margin;
  // A long label near the middle of a narrow view fits on neither side.
  const ImVec2 text(std::max(x + margin, std::min(beside, x + width - size.x - margin)),
                    std::max(y + margin, below));
  list.AddRectFilled(ImVec2(text.x - margin, text.y - margin),
                     ImVec2(text.x + size.x + margin, text.y + size.y + margin), IM_COL32(0, 0, 0, 190),
                     3.0f * scale);
  list.AddText(text, IM_COL32(255, 240, 200, 255), markLabel_.c_str());
}

} // namespace cli
