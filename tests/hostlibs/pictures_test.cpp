// What snapshots and renders show of each kind of geometry. The camera stands at z = -10 and looks along +z.
#include "support/hostlibs_fixture.h"

#include "host/render/element_colors.h"
#include "host/render/render_job.h"
#include "host/viewport.h"

#include <atomic>

namespace {

constexpr LONG kFakeShader = 1099403;
const Vector kBehind(0, 0, 0.25), kRed(1, 0, 0), kGreen(0, 1, 0), kYellow(1, 1, 0), kWhite(1.0);
const double kHalfHeight = std::tan(Rad(45.0) / 2); ///< of the picture, at distance 1

class PicturesTest : public HostLibsTest {
protected:
  static const int kSize = 97;
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
    outcome_ = job.RenderFrame();
    if (outcome_.Ok())
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
  int CountNear(const Vector& p, const Vector& color) const {
    int count = 0;
    for (int i = 0; i < 9; ++i) count += IsNear(At(p, i % 3 - 1, i / 3 - 1), color);
    return count;
  }
  /** Thin lines and points may lie one pixel beside. */
  void ExpectSeen(const Vector& p, const Vector& color) const {
    const Vector found = At(p);
    EXPECT_GT(CountNear(p, color), 0)
        << "at " << p.x << " " << p.y << ": " << found.x << " " << found.y << " " << found.z << " for "
        << color.x << " " << color.y << " " << color.z;
  }
  void ExpectEmpty(const Vector& p) const {
    EXPECT_EQ(CountNear(p, kBehind), 9) << "at " << p.x << " " << p.y;
  }

  template <class T>
  T* Placed(T* op, const Vector& color) {
    doc_->InsertObject(op, NULL, NULL);
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
  TP_PGroup* AddDots(const std::vector<Vector>& places, const Vector& color, TP_PGroup* parent = NULL) {
    TP_PGroup* group = AddGroup("Dots", parent);
    group->SetColor(color);
    group->GetDataInstance()->SetReal(host::kPointRadius, 0.2);
    for (const Vector& place : places) {
      AddParticles(group, 1);
      System()->SetPosition(IdsOf(group).back(), place);
    }
    return group;
  }

  host::RenderOutcome outcome_;
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
  EXPECT_GT(bright.x, 0.9);
  EXPECT_LT(dark.x, bright.x - 0.2) << "a polygon that is turned away is darker";
  EXPECT_GT(dark.x, 0.3);
  EXPECT_TRUE(IsNear(dark, Vector(dark.x))) << "and white all the same";
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

/** What a shader answers with. */
struct ColourRecord {
  LONG version = 1000, size = sizeof(ColourRecord);
  char before[64] = {};
  Vector (*sample)(NodeData* shader, LONG index) = nullptr;
};
static_assert(offsetof(ColourRecord, sample) == 72, "where renderers look for it");

/** Answers as the test says, and notes when it is asked. */
class FakeShader : public ShaderData {
public:
  struct Question {
    LONG version, size, flags;
    void* data;
  };
  static inline ColourRecord record;
  static inline INITRENDERRESULT start;
  static inline int ready;
  static inline std::atomic<int> early, asked;

  static NodeData* Alloc() { return gNew FakeShader; }
  Bool Message(GeListNode*, LONG type, void* data) override {
    if (type == host::kMessageObjectType) ((Question*)data)->data = &record;
    return TRUE;
  }
  INITRENDERRESULT InitRender(BaseShader*, const InitRenderStruct&) override { return ++ready, start; }
  void FreeRender(BaseShader*) override { --ready; }
  static Vector Sample(NodeData*, LONG index) {
    early += ready == 0;
    ++asked;
    return index == 0 ? kRed : index == 1 ? kGreen : index == 2 ? kYellow : Vector();
  }
};

class ElementColours : public PicturesTest {
protected:
  const std::vector<Vector> places_{Vector(-2, -1, 0), Vector(0, -1, 0), Vector(2, -1, 0)};
  const Vector colors_[3] = {kRed, kGreen, kYellow};

  void SetUp() override {
    PicturesTest::SetUp();
    FakeShader::record = ColourRecord();
    FakeShader::record.sample = FakeShader::Sample;
    FakeShader::start = INITRENDERRESULT_OK;
    FakeShader::ready = FakeShader::early = FakeShader::asked = 0;
    ASSERT_TRUE(RegisterShaderPlugin(kFakeShader, "Fake", 0, FakeShader::Alloc, String(), 0));
  }
  static void Colour(BaseObject* op) { op->InsertShader(BaseShader::Alloc(kFakeShader)); }
};

TEST_F(ElementColours, EachGuideAndEachPointHasItsOwn) {
  Colour(AddLawn(places_, 4, 2, kWhite));
  PolygonObject* points = AddPoints(places_, kWhite);
  points->SetMl(MatrixMove(Vector(0, 4, 0)));
  Colour(points);
  Colour(AddSquare(Vector(0, -2.5, 0), 0.5));
  if (!Render()) GTEST_SKIP() << "this build has no ray library";
  for (int i = 0; i < 3; ++i)
    for (const double up : {0.05, 0.7, 1.0, 1.95, 4.0}) ExpectSeen(places_[i] + Vector(0, up, 0), colors_[i]);
  ExpectSeen(Vector(0, -2.5, 0), kWhite); // polygons keep their material
  EXPECT_EQ(FakeShader::early, 0) << "asked between InitRender and FreeRender only";
  EXPECT_GT(FakeShader::asked, 0);
  EXPECT_EQ(FakeShader::ready, 0);
}

TEST_F(ElementColours, WithoutASoundRecordHairKeepsItsColour) {
  Colour(AddLawn(places_, 2, 2, kGreen));
  for (const auto& [version, size] : {std::pair<LONG, LONG>{999, 80}, {1000, 79}, {1000, -1}}) {
    FakeShader::record.version = version;
    FakeShader::record.size = size;
    if (!Render()) GTEST_SKIP() << "this build has no ray library";
    for (const Vector& p : places_) ExpectSeen(p + Vector(0, 1, 0), kGreen);
  }
  EXPECT_EQ(FakeShader::asked, 0);
  FakeShader::start = INITRENDERRESULT_OUTOFMEMORY;
  Render();
  EXPECT_EQ(outcome_.result, RENDERRESULT_OUTOFMEMORY) << "a shader that cannot start";
  EXPECT_EQ(FakeShader::ready, 0);
}

} // namespace
