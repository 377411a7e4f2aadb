// What snapshots and renders show of each kind of geometry. The camera stands at z = -10 and looks along +z.
#include "support/hostlibs_fixture.h"

#include "host/render/render_job.h"
#include "host/viewport.h"

namespace {

const Vector kBehind(0, 0, 0.25), kRed(1, 0, 0), kGreen(0, 1, 0), kYellow(1, 1, 0), kWhite(1.0);
const double kHalfHeight = std::tan(Rad(45.0) / 2); ///< of the picture, at distance 1

class PicturesTest : public HostLibsTest {
protected:
  static constexpr int kSize = 97;
  const host::ViewCamera camera_{Vector(0, 0, -10), Vector(), 45.0};
  std::function<Vector(int, int)> pixel_; ///< of the latest picture
  LLONG vertices_ = 0;

  /** False without OpenGL. */
  bool Snapshot() {
    std::string error;
    const auto view = host::Viewport::Create(doc_, kSize, kSize, &error);
    if (!view) return false;
    view->SetCamera(camera_);
    view->SetBackground(kBehind.x, kBehind.y, kBehind.z);
    EXPECT_TRUE(view->Draw(&error)) << error;
    vertices_ = view->VerticesDrawn();
    pixel_ = [image = view->Read()](int x, int y) {
      return Vector(image.At(x, y)[0], image.At(x, y)[1], image.At(x, y)[2]) / 255.0;
    };
    return true;
  }
  /** False in a build without surfaces. */
  bool Render() {
    host::RenderOptions options;
    options.width = options.height = kSize;
    options.threads = 2;
    options.camera = camera_;
    options.background = kBehind;
    options.ambient = Vector(1.0); // surfaces show their own colour
    host::RenderJob job(doc_, options);
    if (job.RenderFrame().Ok())
      pixel_ = [picture = job.Buffer()](int x, int y) {
        return Vector(picture.At(x, y)[0], picture.At(x, y)[1], picture.At(x, y)[2]);
      };
#ifdef HAVE_SURFACES
    return true;
#else
    return false;
#endif
  }
  /** Calls check for each kind of picture that this build makes. */
  void InBoth(std::function<void()> check) {
    if (Snapshot()) check();
    if (Render()) check();
  }

  static bool IsNear(const Vector& a, const Vector& b) {
    return (a - b).GetLength() < 0.03;
  }
  /** The pixel that a place in the world falls on. */
  Vector At(const Vector& p, int dx = 0, int dy = 0) const {
    const double scale = kSize / 2.0 / ((p.z + 10) * kHalfHeight);
    return pixel_((int)(kSize / 2.0 + p.x * scale) + dx, (int)(kSize / 2.0 - p.y * scale) + dy);
  }
  /** Of the nine pixels around: thin lines and points may lie one pixel beside. */
  int CountNear(const Vector& p, const Vector& color) const {
    int count = 0;
    for (int i = 0; i < 9; ++i) count += IsNear(At(p, i % 3 - 1, i / 3 - 1), color);
    return count;
  }
  void ExpectSeen(const Vector& p, const Vector& color) const {
    EXPECT_GT(CountNear(p, color), 0)
        << "at " << p.x << " " << p.y << ": red " << At(p).x << " for " << color.x;
  }
  void ExpectEmpty(const Vector& p) const {
    EXPECT_EQ(CountNear(p, kBehind), 9) << "at " << p.x << " " << p.y;
  }

  template <class T>
  T* Placed(T* op, const Vector& color) {
    doc_->InsertObject(op, nullptr, nullptr);
    op->GetDataInstance()->SetVector(host::kSurfaceColor, color);
    op->GetDataInstance()->SetReal(host::kPointRadius, 0.2);
    return op;
  }
  /** Guides that stand at these places, `height` high. */
  HairObject* AddLawn(const std::vector<Vector>& roots, LONG segments, double height, const Vector& color) {
    HairGuides* guides = HairGuides::Alloc((LONG)roots.size(), segments);
    for (LONG i = 0; i < guides->GetPointCount(); ++i)
      guides->GetPoints()[i] =
          roots[i / (segments + 1)] + Vector(0, height * (i % (segments + 1)) / segments, 0);
    HairObject* hair = Placed(HairObject::Alloc(), color);
    EXPECT_TRUE(Give(hair, guides));
    return hair;
  }
  PolygonObject* AddPoints(const std::vector<Vector>& points, const Vector& color) {
    PolygonObject* op = PolygonObject::Alloc((LONG)points.size(), 0);
    std::copy(points.begin(), points.end(), op->GetPointW());
    return Placed(op, color);
  }
  /** A white square of that half side around a point; depth: how much farther its right side is. */
  PolygonObject* AddSquare(const Vector& p, double half, double depth = 0) {
    PolygonObject* op = AddPoints({p + Vector(-half, -half, 0), p + Vector(-half, half, 0),
                                   p + Vector(half, half, depth), p + Vector(half, -half, depth)},
                                  kWhite);
    op->ResizeObject(4, 1);
    op->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
    return op;
  }
  TP_PGroup* AddDots(const std::vector<Vector>& places, const Vector& color, TP_PGroup* parent = nullptr) {
    TP_PGroup* group = AddGroup("Dots", parent);
    group->SetColor(color);
    group->GetDataInstance()->SetReal(host::kPointRadius, 0.2);
    for (const Vector& place : places) {
      AddParticles(group, 1);
      System()->SetPosition(IdsOf(group).back(), place);
    }
    return group;
  }
};

TEST_F(PicturesTest, HairParticlesAndEmittersAreSeenWhereTheyAre) {
  // Nothing has a mirrored counterpart.
  AddLawn({Vector(-3, -2, 0), Vector(-2, -1, 0)}, 3, 2.5, kRed);
  AddDots({Vector(0, 2.25, 0), Vector(1, 2.25, 0)}, kWhite,
          AddDots({Vector(0, 3, 0), Vector(1, 3, 0)}, kGreen));
  for (const LONG option : {0, (LONG)EMITTER_OPTION_WORLD}) {
    BaseObject* emitter = AddEmitter({{Vector(3, -1, 0), kYellow}, {Vector(3, -2, 0), kRed}}, option);
    emitter->GetDataInstance()->SetReal(host::kPointRadius, 0.2);
    emitter->SetMl(MatrixMove(Vector(-1, 2.5, 0)));
  }
  InBoth([&] {
    for (const double y : {-1.9, -1.0, 0.0, 0.4}) ExpectSeen(Vector(-3, y, 0), kRed);
    for (const double y : {-0.9, 1.4}) ExpectSeen(Vector(-2, y, 0), kRed);
    for (const double x : {0, 1}) {
      ExpectSeen(Vector(x, 3, 0), kGreen);
      ExpectSeen(Vector(x, 2.25, 0), kWhite);
    }
    for (const Vector& place : {Vector(0.0), Vector(-1, 2.5, 0)}) {
      ExpectSeen(place + Vector(3, -1, 0), kYellow);
      ExpectSeen(place + Vector(3, -2, 0), kRed);
    }
    for (const Vector& p : {Vector(0.0), Vector(3, -3, 0), Vector(-3, 1.1, 0), Vector(-2, -1.6, 0),
                            Vector(-1, 3, 0), Vector(0, -3, 0)})
      ExpectEmpty(p);
  });
  if (Snapshot()) {
    EXPECT_EQ(vertices_, 2 * 3 * 2 + 2 + 4 + 4) << "segments, roots and particles";
  }
}

TEST_F(PicturesTest, SnapshotsShowPointsSplinesAndPolygons) {
  PolygonObject* points = AddPoints({Vector(-3, 3, 0), Vector(-1, 3, 0)}, kRed);
  const char* const names[] = {"Red", "Green", "Blue"};
  for (int channel = 0; channel < 3; ++channel) {
    VertexMapTag* map = (VertexMapTag*)points->MakeVariableTag(Tvertexmap, 2);
    map->SetName(names[channel]);
    map->GetDataAddressW()[0] = (SReal)kYellow[channel];
    map->GetDataAddressW()[1] = (SReal)kGreen[channel];
  }
  AddPoints({Vector(1, 3, 0)}, kRed);
  SplineObject* spline = AddSpline(); // two segments, of two points and of three, the second one closed
  const Vector corners[] = {Vector(-3, 0, 0), Vector(-3, 2, 0), Vector(-2, 0, 0), Vector(-1, 0, 0),
                            Vector(-1, 2, 0)};
  std::copy(corners, corners + 5, spline->GetPointW());
  spline->GetDataInstance()->SetVector(host::kSurfaceColor, kRed);
  AddSquare(Vector(2, 0, 0), 1);
  AddSquare(Vector(2, -3, 0), 0.75, 8);
  if (!Snapshot()) GTEST_SKIP() << "there is no viewport";
  ExpectSeen(Vector(-3, 3, 0), kYellow);
  ExpectSeen(Vector(-1, 3, 0), kGreen);
  for (const Vector& p : {Vector(1, 3, 0), Vector(-3, 1, 0), Vector(-1, 1, 0), Vector(-1.5, 1, 0)})
    ExpectSeen(p, kRed);
  ExpectEmpty(Vector(-2.5, 1, 0)); // segments do not go into each other
  ExpectEmpty(Vector(-2, -3, 0));
  const Vector bright = At(Vector(2, 0, 0)), dark = At(Vector(2, -3, 4));
  EXPECT_LT(dark.x, bright.x - 0.2) << "a polygon that is turned away is darker";
  EXPECT_TRUE(dark.x > 0.3 && IsNear(dark, Vector(dark.x))) << "and white all the same";
}

TEST_F(PicturesTest, WhatIsNearerHides) {
  for (const double z : {3.0, -3.0}) {
    AddLawn({Vector(z / 6, -1, z)}, 1, 2, kRed);
    AddDots({Vector(-z / 6, 0, z)}, kGreen);
  }
  AddSquare(Vector(), 1.5);
  InBoth([&] {
    ExpectSeen(Vector(-0.5, 0.5, -3), kRed);
    ExpectSeen(Vector(0.5, 0, -3), kGreen);
    EXPECT_EQ(CountNear(Vector(0.5, 0.5, 3), kRed) + CountNear(Vector(-0.5, 0, 3), kGreen), 0);
    EXPECT_EQ(CountNear(Vector(0, 1, 0), kWhite), 9);
  });
}

TEST_F(PicturesTest, BadCoordinatesAreLeftOut) {
  AddEmitter({});
  AddLawn({}, 2, 1, kRed);
  AddLawn({Vector(std::nan(""), 0, 0), Vector(0, INFINITY, 0), Vector(1, 0, 0)}, 2, 1, kGreen);
  AddDots({Vector(INFINITY), Vector(-1, 0, 0)}, kYellow);
  InBoth([&] {
    ExpectSeen(Vector(1, 0.5, 0), kGreen);
    ExpectSeen(Vector(-1, 0, 0), kYellow);
    ExpectEmpty(Vector(0.0));
  });
}

} // namespace
