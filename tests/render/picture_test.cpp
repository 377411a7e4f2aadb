// What a picture shows of points: where they are, how they cover each other, whose they are.
#include "support/render_fixture.h"

namespace {

class Picture : public RenderTest {};

/** Middle of the pixels in which one channel alone is lit; count 0 without any. */
struct Blob {
  double x = 0, y = 0;
  int count = 0;
};
Blob Find(const Shot& shot, int channel) {
  Blob blob;
  for (int y = 0; y < shot.height; ++y)
    for (int x = 0; x < shot.width; ++x) {
      const Vector color = shot.At(x, y);
      if (color[channel] < 0.5 || color[(channel + 1) % 3] + color[(channel + 2) % 3] > 0.3) continue;
      blob.x += x;
      blob.y += y;
      ++blob.count;
    }
  blob.x /= std::max(blob.count, 1);
  blob.y /= std::max(blob.count, 1);
  return blob;
}

TEST_F(Picture, APointIsADiscBeforeTheBackground) {
  Add({{Vector(), 255, 0, 0}});
  const Shot shot = Render();
  // 33 pixels see 2 * 10 * tan(22.5 degrees) units at the point's distance.
  const double pixelsPerUnit = 33 / (20 * std::tan(Rad(22.5)));
  for (int x = 0; x < 33; ++x) {
    const double from = std::abs(x - 16) / pixelsPerUnit;
    if (std::abs(from - 1.0) < 0.1) continue;
    SCOPED_TRACE(x);
    ExpectNear(shot.At(x, 16), from < 1.0 ? kRed : kBehind);
    EXPECT_FLOAT_EQ(shot.Alpha(x, 16), from < 1.0 ? 1.0f : 0.0f);
    EXPECT_EQ(shot.At(x, 16), shot.At(16, x)) << "as high as wide";
  }
}

TEST_F(Picture, XIsRightYIsUpAndZIsAway) {
  Add({{Vector(2, 0, 0), 255, 0, 0}, {Vector(0, 2, 0), 0, 255, 0}, {Vector(-4, -4, 10), 0, 0, 255}});
  const Shot shot = Render();
  const Blob right = Find(shot, 0), up = Find(shot, 1), away = Find(shot, 2);
  EXPECT_GT(right.x, 20);
  EXPECT_NEAR(right.y, 16, 0.5);
  EXPECT_LT(up.y, 12);
  EXPECT_NEAR(up.x, 16, 0.5);
  ASSERT_GT(away.count, 0);
  EXPECT_LT(away.count * 3, up.count) << "twice as far is a quarter of the size";
  EXPECT_LT(away.x, 12);
  EXPECT_GT(away.y, 20);
}

TEST_F(Picture, TheShareLimitsThePoints) {
  Add({{Vector(-2, 0, 0), 255, 0, 0}, {Vector(2, 0, 0), 0, 255, 0}});
  const struct {
    double share;
    bool red, green;
  } cases[] = {{0.5, true, false},  {0.99, true, false}, {1.0, true, true},   {3.0, true, true},
               {0.4, false, false}, {0.0, false, false}, {-1.0, false, false}};
  for (const auto& c : cases) {
    Data().SetReal(KELVRA_POINT_SHARE, c.share);
    const Shot shot = Render();
    EXPECT_EQ(Find(shot, 0).count > 0, c.red) << c.share;
    EXPECT_EQ(Find(shot, 1).count > 0, c.green) << c.share;
  }
}

TEST_F(Picture, OnlyWhatAPostLinksIsRendered) {
  Add({{Vector(-2, 0, 0), 255, 0, 0}});
  BaseObject* second = host::CreateObjectFromMenu(doc_, kCloud);
  MakePlain(second->GetDataInstance());
  AddTo(second, {{Vector(2, 0, 0), 0, 255, 0}});
  const auto seen = [this] {
    const Shot shot = Render();
    return std::string(Find(shot, 0).count ? "r" : "") + (Find(shot, 1).count ? "g" : "");
  };
  EXPECT_EQ(seen(), "rg") << "a post for each";
  const auto unlink = [this](BaseObject* op) {
    for (BaseVideoPost* post = FirstPost(); post; post = post->GetNext())
      if (post->GetType() == kVoxelPost && post->GetDataInstance()->GetObjectLink(1003, doc_) == op)
        post->GetDataInstance()->SetLink(KELVRA_RENDER_OBJECT, nullptr);
  };
  unlink(op_);
  EXPECT_EQ(seen(), "g");
  unlink(second);
  EXPECT_EQ(seen(), "");
}

TEST_F(Picture, CloudsBuiltBelowALinkedOneAreRenderedWhereTheyStand) {
  Add({{Vector(), 255, 0, 0}});
  op_->SetMl(MatrixMove(Vector(-2, 0, 0)));
  AddBuilt(MatrixMove(Vector(4, 0, 0)), {{Vector(), 0, 255, 0}});
  // One that built something itself is looked for in what it built: it has a video post of its own.
  BaseObject* child = BaseObject::Alloc(kCloud);
  MakePlain(child->GetDataInstance());
  doc_->InsertObject(child, op_, nullptr);
  AddTo(child, {{Vector(2, 0, 0), 0, 0, 255}});
  const Shot shot = Render();
  const Blob red = Find(shot, 0), green = Find(shot, 1);
  ASSERT_GT(red.count, 0);
  EXPECT_LT(red.x, 12);
  EXPECT_NEAR(green.x, 32 - red.x, 0.01);
  EXPECT_EQ(green.count, red.count);
  EXPECT_EQ(Find(shot, 2).count, 0);
  // A cloud that is converted, or that receives points, is rendered alone.
  for (const LONG id : {KELVRA_CONVERT_MODE, KELVRA_LOAD_STATE}) {
    Data().SetLong(id, 2);
    const Shot alone = Render();
    EXPECT_EQ(Find(alone, 0).count, red.count) << id;
    EXPECT_EQ(Find(alone, 1).count, 0) << id;
    Data().SetLong(id, 0);
  }
}

TEST_F(Picture, PointsOfLinkedGeometryTakeTheirColoursFromVertexMaps) {
  PolygonObject* polygons = PolygonObject::Alloc(2, 0);
  SplineObject* spline = SplineObject::Alloc(2, SPLINETYPE_LINEAR);
  BaseContainer* post = FirstPost()->GetDataInstance();
  MakePlain(post);
  for (PointObject* op : {(PointObject*)polygons, (PointObject*)spline}) {
    doc_->InsertObject(op, nullptr, nullptr);
    op->GetPointW()[0] = Vector(-2, 0, 0);
    op->GetPointW()[1] = Vector(2, 0, 0);
    post->SetLink(KELVRA_RENDER_OBJECT, op);
    const Shot plain = Render();
    ExpectNear(plain.At(16 - 8, 16), Vector(1.0));
    const struct {
      const char* name;
      SReal left, right;
    } maps[] = {{"Red", 0.25f, 1.0f}, {"Green", 0.5f, 0.0f}, {"Other", 0.75f, 0.75f}};
    for (const auto& map : maps) {
      VertexMapTag* tag = VertexMapTag::Alloc(2);
      tag->SetName(map.name);
      tag->GetDataAddressW()[0] = map.left;
      tag->GetDataAddressW()[1] = map.right;
      op->InsertTag(tag);
    }
    const Shot shot = Render();
    ExpectNear(shot.At(16 - 8, 16), Vector(0.25, 0.5, 1)); // the missing map counts as white
    ExpectNear(shot.At(16 + 8, 16), Vector(1, 0, 1));
    ExpectNear(shot.Middle(), kBehind);
    PointObject* deformed = static_cast<PointObject*>(op->GetClone(COPYFLAGS_0, nullptr));
    deformed->GetPointW()[0] = Vector(0, 2, 0);
    host::SetDeformCache(*host::Impl(op), host::Impl(deformed));
    const Shot bent = Render();
    ExpectNear(bent.At(16 - 8, 16), kBehind);
    ExpectNear(bent.At(16, 16 - 8), Vector(0.25, 0.5, 1)); // its maps came along
    BaseObject* done = op;
    BaseObject::Free(done);
  }
}

/** Lit points that shadow each other over a mirror: everything that a thread could disturb. */
class Repeat : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    std::vector<Dot> dots;
    unsigned seed = 7;
    const auto next = [&seed] { return (double)((seed = seed * 1664525u + 1013904223u) >> 8) / (1 << 24); };
    for (int i = 0; i < 400; ++i)
      dots.push_back({Vector(8 * next() - 4, 6 * next() - 2, 8 * next() - 4), (int)(255 * next()),
                      (int)(255 * next()), (int)(255 * next())});
    Add(dots);
    Data().SetReal(KELVRA_POINT_RADIUS, 0.4);
    Data().SetReal(KELVRA_EDGE_BIAS, 0.5);
    Data().SetReal(KELVRA_TRANSPARENCY, 0.3);
    Data().SetReal(KELVRA_RADIUS_VARIATION, 0.5);
    Data().SetReal(KELVRA_SOFT_DEPTH, 0.5);
    Data().SetBool(KELVRA_LIGHT, TRUE);
    AddGround(-2).SetReal(host::kSurfaceReflection, 0.5);
    AddLight(Vector(5, 20, -10));
    AddLight(Vector(-15, 10, 0)).SetLong(host::kLightType, RT_LT_DISTANT);
    options_.width = 61;
    options_.height = 43;
    options_.ambient = Vector(0.1);
  }
};

TEST_F(Repeat, ThreadsTilesAndTheirOrderDoNotChangeABit) {
  const Shot expected = Render();
  int distinct = 0;
  for (std::size_t i = 4; i < expected.samples.size(); ++i)
    distinct += expected.samples[i] != expected.samples[i - 4];
  ASSERT_GT(distinct, 2000) << "there is something to compare";
  for (const int threads : {1, 2, 8, 64})
    for (const int tile : {7, 32, 100})
      for (const bool last : {false, true}) {
        options_.threads = threads;
        options_.tile = tile;
        options_.lastTileFirst = last;
        EXPECT_EQ(Render().samples, expected.samples) << threads << " threads, tile " << tile << last;
      }
}

} // namespace
