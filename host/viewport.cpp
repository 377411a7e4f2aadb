#include "host/viewport.h"

#include "host/nodes/object_calls.h"
#include "host/nodes/services.h"
#include "host/nodes/visible_objects.h"
#include "host/particles/particle_system.h"
#include "host/view/geometry_drawing.h"
#include "host/view/view_state.h"
#include "host/view/visible_points.h"

namespace host {

namespace {

/** Every object of a document, parents before children. */
std::vector<BaseObject*> AllObjects(BaseDocument* doc) {
  std::vector<BaseObject*> objects;
  const auto collect = [&objects](BaseObject* first, const auto& self) -> void {
    for (BaseObject* op = first; op; op = op->GetNext()) {
      objects.push_back(op);
      self(op->GetDown(), self);
    }
  };
  collect(doc->GetFirstObject(), collect);
  return objects;
}

/** What an object holds itself, in its own space. */
Box ObjectBox(BaseObject* op) {
  Vector centre, half;
  GetObjectBox(op, &centre, &half);
  Box box;
  if (half == Vector() && centre == Vector()) return box;
  box.Add(centre - half);
  box.Add(centre + half);
  return box;
}

class OffscreenViewport : public Viewport {
public:
  OffscreenViewport(BaseDocument* doc, std::unique_ptr<ViewState> state)
      : doc_(doc), state_(std::move(state)) {}

  void SetCamera(const ViewCamera& camera) override { camera_ = camera; }
  void SetBackground(double r, double g, double b) override { SetGradient(Vector(r, g, b), Vector(r, g, b)); }
  void SetGradient(const Vector& top, const Vector& bottom) override {
    background_ = top;
    bottom_ = bottom;
  }
  void SetEyeDome(const EyeDome* settings) override {
    eyeDome_.reset();
    if (settings) eyeDome_ = *settings;
  }
  void SetDrawPortType(LONG type) override { state_->drawPortType = type; }

  bool Draw(std::string* error) override {
    state_->context->ClearErrors();
    const gl::CurrentScope current(*state_->context, error);
    if (!current.Ok() || !state_->target->Bind(error) ||
        !state_->target->Clear((float)background_.x, (float)background_.y, (float)background_.z, 1.0f, error))
      return false;
    if (!drawer_) drawer_ = gl::PrimitiveDrawer::Create(state_->context, error);
    if (!drawer_) return false;
    UpdateAllCaches(doc_, BUILDFLAGS_0);
    state_->pointsDrawn = 0;
    state_->frame = MakeFrame(camera_, Aspect());
    FitSceneRange();
    for (BaseObject* op : AllObjects(doc_))
      if (IsShownInViews(op)) DrawOne(op);
    state_->pointsDrawn += DrawGeometry(doc_, *drawer_, state_->frame);
    if (state_->context->ErrorCount() == 0) return true;
    *error = "OpenGL reported " + std::to_string(state_->context->ErrorCount()) +
             " errors, the first: " + GlErrors().front();
    return false;
  }

  long long VerticesDrawn() const override { return state_->pointsDrawn; }

  gl::Image Read(std::vector<float>* distances) override {
    gl::Image image;
    std::string error;
    if (!state_->target->Read(3, &image, &error) || !Finish(&image, distances, &error))
      TheServices().console.Print("GL: " + error);
    return image;
  }
  const std::vector<std::string>& GlErrors() const override { return state_->context->Errors(); }

private:
  double Aspect() const { return (double)state_->target->Width() / state_->target->Height(); }

  /** What a picture gets from its depths: shading, and a background with more than one colour. */
  bool Finish(gl::Image* image, std::vector<float>* distances, std::string* error) {
    if (!eyeDome_ && !distances && bottom_ == background_) return true;
    std::vector<float> depth, own;
    if (!state_->target->ReadDepth(&depth, error)) return false;
    if (!distances) distances = &own;
    if (eyeDome_ || distances != &own) *distances = EyeDistances(state_->frame, depth);
    if (eyeDome_) ShadeByDepth(image, *distances, *eyeDome_);
    if (!(bottom_ == background_)) FillBackground(image, depth, background_, bottom_);
    return true;
  }

  void DrawOne(BaseObject* op) {
    DrawHelp help;
    help.document = doc_;
    help.global = op->GetMg();
    state_->objectMatrix = help.global;
    DrawObject(op, DRAWPASS_OBJECT, state_->Api(), reinterpret_cast<BaseDrawHelp*>(&help));
    state_->CheckBalance(op->GetName());
  }

  void FitSceneRange() {
    Box box = GeometryBox(doc_);
    for (BaseObject* op : AllObjects(doc_))
      for (const Matrix& global : ObjectInstances(op)) box.Add(global * ObjectBox(op));
    if (!box.IsEmpty()) FitRange(&state_->frame, box);
  }

  BaseDocument* doc_;
  std::unique_ptr<ViewState> state_;
  std::unique_ptr<gl::PrimitiveDrawer> drawer_; ///< made by the first Draw
  ViewCamera camera_;
  Vector background_{0.5, 0.5, 0.5}, bottom_{0.5, 0.5, 0.5};
  std::optional<EyeDome> eyeDome_;
};

} // namespace

std::unique_ptr<Viewport> Viewport::Create(BaseDocument* doc, int width, int height, std::string* error) {
  std::shared_ptr<gl::Context> context = gl::Context::Create(error);
  if (!context) return nullptr;
  std::unique_ptr<gl::Framebuffer> target = gl::Framebuffer::Create(context, width, height, 1, error);
  if (!target) return nullptr;
  return std::make_unique<OffscreenViewport>(doc, std::make_unique<ViewState>(context, std::move(target)));
}

Box WorldBox(BaseObject* op) {
  Box box;
  const auto add = [&box](BaseObject* object, const auto& self) -> void {
    box.Add(object->GetMg() * ObjectBox(object));
    for (BaseObject* child = object->GetDown(); child; child = child->GetNext()) self(child, self);
  };
  add(op, add);
  return box;
}

Box GeometryBox(BaseDocument* doc) {
  Box box;
  VisitVisibleObjects(doc, [&box](BaseObject* op, const Matrix& global) {
    const Matrix space = ElementSpace(*Impl(op), global);
    VisitElements(*Impl(op), [&](const Vector& p) { box.Add(space * p); });
  });
  for (const ParticleGroup* group : GroupsWithParticles(*Impl(doc)))
    for (const ParticleSlot* slot = group->first; slot; slot = slot->next) box.Add(slot->values.position);
  return box;
}

} // namespace host
