// Scenes small enough to know every pixel, rendered by the application with the module's own video posts.
#pragma once

#include "host/nodes/node.h"
#include "host/render/render_job.h"
#include "host/render/scene_lights.h"
#include "host/render/surface_scene.h"
#include "kelvra_messages.h"
#include "otallyframe.h"
#include "support/module_fixture.h"
#include "vpkelvrarender.h"

/** A point in world space, colours 0 to 255. */
struct Dot {
  Vector p;
  int r = 255, g = 255, b = 255;
};

class Shot {
public:
  host::RenderOutcome outcome;
  int width = 0, height = 0;
  std::vector<float> samples;

  Vector At(int x, int y) const {
    const float* pixel = &samples[((std::size_t)y * width + x) * 4];
    return Vector(pixel[0], pixel[1], pixel[2]);
  }
  Vector Middle() const { return At(width / 2, height / 2); }
  float Alpha(int x, int y) const { return samples[((std::size_t)y * width + x) * 4 + 3]; }
};

/**
 * The camera stands at z = -10 and looks along +z through the middle of an odd number of pixels. Points are
 * discs of radius 1, opaque to their edge and without light, unless a test says otherwise; surfaces show
 * their own colour. The background is dark blue.
 */
class RenderTest : public ModuleTest {
protected:
  static inline const Vector kBehind{0.0, 0.0, 0.25};
  static inline const Vector kRed{255 * 256 / 65535.0, 0, 0}, kGreen{0, 255 * 256 / 65535.0, 0};

  void SetUp() override {
    ModuleTest::SetUp();
    MakePlain(op_->GetDataInstance());
    options_.width = options_.height = 33;
    options_.threads = 1;
    options_.camera = {Vector(0, 0, -10), Vector(), 45.0};
    options_.background = kBehind;
    options_.ambient = Vector(1.0);
  }
  static void MakePlain(BaseContainer* data) {
    data->SetReal(KELVRA_POINT_RADIUS, 1.0);
    data->SetReal(KELVRA_EDGE_BIAS, 1.0);
    data->SetBool(KELVRA_LIGHT, FALSE);
    data->SetBool(KELVRA_LIGHT_FLAT, FALSE);
  }
  BaseContainer& Data() { return *op_->GetDataInstance(); }

  /** Loads points into the cloud; those loaded before stay. */
  void Add(const std::vector<Dot>& dots) { AddTo(op_, dots); }
  void AddTo(BaseObject* cloud, const std::vector<Dot>& dots) {
    std::ostringstream text;
    for (const Dot& dot : dots)
      text << dot.p.x << " " << dot.p.z << " " << dot.p.y << " " << dot.r << " " << dot.g << " " << dot.b
           << "\n";
    PressWithFile(application_, cloud, kLoadFile, Write("dots.xyz", text.str()));
  }

  /** A cloud with points that an object below the linked one built: it stands in that object's cache. */
  BaseObject* AddBuilt(const Matrix& place, const std::vector<Dot>& dots) {
    BaseObject *builder = BaseObject::Alloc(Onull), *cloud = BaseObject::Alloc(kCloud);
    doc_->InsertObject(builder, op_, nullptr);
    builder->SetMl(place);
    MakePlain(cloud->GetDataInstance());
    doc_->InsertObject(cloud, builder, nullptr);
    AddTo(cloud, dots);
    host::RemoveNode(*host::Impl(cloud));
    host::AppendNode(host::Impl(builder)->cache, *host::Impl(cloud));
    return cloud;
  }

  /** Corners clockwise as seen from the side that it faces. Gives its settings. */
  BaseContainer& AddPolygon(const std::array<Vector, 4>& corners) {
    PolygonObject* op = PolygonObject::Alloc(4, 1);
    std::copy(corners.begin(), corners.end(), op->GetPointW());
    op->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
    doc_->InsertObject(op, nullptr, nullptr);
    return *op->GetDataInstance();
  }
  /** A square that faces the camera. */
  BaseContainer& AddWall(double z) {
    return AddPolygon({Vector(-9, -9, z), Vector(-9, 9, z), Vector(9, 9, z), Vector(9, -9, z)});
  }
  BaseContainer& AddGround(double y) {
    return AddPolygon({Vector(-50, y, -50), Vector(-50, y, 50), Vector(50, y, 50), Vector(50, y, -50)});
  }
  BaseContainer& AddLight(const Vector& p) {
    BaseObject* light = BaseObject::Alloc(Olight);
    light->SetMl(MatrixMove(p));
    doc_->InsertObject(light, nullptr, nullptr);
    return *light->GetDataInstance();
  }

  static Shot Take(host::RenderJob& job) {
    Shot shot;
    shot.outcome = job.RenderFrame();
    if (!shot.outcome.Ok()) return shot;
    shot.width = job.Buffer().Width();
    shot.height = job.Buffer().Height();
    shot.samples = job.Buffer().Samples();
    return shot;
  }
  Shot TryRender() {
    host::RenderJob job(doc_, options_);
    return Take(job);
  }
  Shot Render() {
    Shot shot = TryRender();
    EXPECT_TRUE(shot.outcome.Ok()) << shot.outcome.message;
    if (!shot.outcome.Ok()) {
      shot.width = options_.width;
      shot.height = options_.height;
      shot.samples.resize((std::size_t)shot.width * shot.height * 4, -1.0f);
    }
    return shot;
  }
  BaseVideoPost* FirstPost(LONG type = kVoxelPost) {
    BaseVideoPost* post = doc_->GetActiveRenderData()->GetFirstVideoPost();
    while (post && post->GetType() != type) post = post->GetNext();
    return post;
  }

  static void ExpectNear(const Vector& found, const Vector& expected, double tolerance = 1e-4) {
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(found[i], expected[i], tolerance) << "channel " << i;
  }
  /** A message is one line that a user can read. */
  static void ExpectOneLine(const std::string& text) {
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(text.find('\n'), std::string::npos) << text;
  }

  host::RenderOptions options_;
};

#if HAVE_SURFACES
#define NEEDS_SURFACES() (void)0
#else
#define NEEDS_SURFACES() GTEST_SKIP() << "this build has no ray library"
#endif
