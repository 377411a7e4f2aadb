// Points together with surfaces and lights.
#include "support/render_fixture.h"

namespace {

class Surfaces : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    NEEDS_SURFACES();
  }
};

TEST_F(Surfaces, WhatIsNearerCovers) {
  const struct {
    double point, wall;
    Vector color;
  } cases[] = {{0, 3, kRed}, {3, 0, Vector(0, 1, 0)}, {0, -3, Vector(0, 1, 0)}, {-3, 0, kRed}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.wall);
    BaseObject* cloud = host::CreateObjectFromMenu(doc_, kCloud);
    MakePlain(cloud->GetDataInstance());
    AddTo(cloud, {{Vector(0, 0, c.point), 255, 0, 0}});
    AddWall(c.wall).SetVector(host::kSurfaceColor, Vector(0, 1, 0));
    const Shot shot = Render();
    ExpectNear(shot.Middle(), c.color);
    ExpectNear(shot.At(24, 16), Vector(0, 1, 0));
    EXPECT_FLOAT_EQ(shot.Alpha(24, 16), 1.0f);
    for (BaseObject* op : {doc_->GetFirstObject(), cloud}) BaseObject::Free(op);
  }
}

TEST_F(Surfaces, RaysThatTheLibraryCannotTakeMeetNothing) {
  NEEDS_SURFACES();
  AddWall(0);
  std::string error;
  const std::unique_ptr<host::SurfaceScene> scene = host::SurfaceScene::Build(doc_, &error);
  ASSERT_NE(scene, nullptr) << error;
  const double none = std::nan("");
  const struct {
    Vector origin, direction;
    double least, most;
    bool met;
  } cases[] = {{Vector(1, 2, -10), Vector(0, 0, 1), 0, 100, true},
               {Vector(0, 0, -1e300), Vector(0, 0, 1), 0, 1e301, false},
               {Vector(none, 0, -10), Vector(0, 0, 1), 0, 100, false},
               {Vector(0, 0, -10), Vector(0, 0, 1e300), 0, 100, false},
               {Vector(0, 0, -10), Vector(0, 0, 1), none, 100, false},
               {Vector(0, 0, -10), Vector(0, 0, 1), 20, 10, false}};
  for (const auto& c : cases) {
    host::SurfaceHit hit;
    EXPECT_EQ(scene->Nearest(c.origin, c.direction, c.least, c.most, &hit), c.met)
        << c.origin.z << " " << c.most;
  }
}

TEST_F(Surfaces, EachKindOfSecondaryRayHasItsSwitch) {
  const struct {
    const char* name;
    double reflection, transparency, refraction, point;
    LONG flag;
  } kinds[] = {{"mirror", 1, 0, 1, -20, KELVRA_SEEN_REFLECTION},
               {"clear pane", 0, 1, 1, 10, KELVRA_SEEN_TRANSPARENCY},
               {"bending pane", 0, 1, 1.5, 10, KELVRA_SEEN_REFRACTION}};
  for (const auto& kind : kinds) {
    BaseObject* cloud = host::CreateObjectFromMenu(doc_, kCloud);
    BaseContainer& data = *cloud->GetDataInstance();
    MakePlain(&data);
    AddTo(cloud, {{Vector(0, 0, kind.point), 255, 0, 0}});
    BaseContainer& wall = AddWall(0);
    wall.SetReal(host::kSurfaceReflection, kind.reflection);
    wall.SetReal(host::kSurfaceTransparency, kind.transparency);
    wall.SetReal(host::kSurfaceRefraction, kind.refraction);
    ExpectNear(Render().Middle(), kRed);
    for (const LONG flag :
         {KELVRA_SEEN_SWITCH, KELVRA_SEEN_REFLECTION, KELVRA_SEEN_TRANSPARENCY, KELVRA_SEEN_REFRACTION}) {
      SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(flag));
      data.SetBool(flag, FALSE);
      ExpectNear(Render().Middle(), flag == kind.flag ? kBehind : kRed);
      data.SetBool(flag, TRUE);
    }
    for (BaseObject* op : {doc_->GetFirstObject(), cloud}) BaseObject::Free(op);
  }
}

TEST_F(Surfaces, SwitchesOfSecondaryRaysDoNotHideFromTheEye) {
  Add({{Vector(), 255, 0, 0}});
  for (const LONG flag :
       {KELVRA_SEEN_SWITCH, KELVRA_SEEN_REFLECTION, KELVRA_SEEN_TRANSPARENCY, KELVRA_SEEN_REFRACTION})
    Data().SetBool(flag, FALSE);
  ExpectNear(Render().Middle(), kRed);
}

TEST_F(Surfaces, PointsThrowShadowsWhereALightAsksForThem) {
  AddGround(0);
  Add({{Vector(0, 5, 0), 255, 0, 0}});
  options_.ambient = Vector();
  options_.camera.position = Vector(0, 8, -12);
  const struct {
    const char* name;
    bool linked, shadow, distant;
    double transparency, passes;
  } cases[] = {{"omni", true, true, false, 0, 0},
               {"half", true, true, false, 0.5, 0.5},
               {"no shadow", true, false, false, 0, 1},
               {"no points", false, true, false, 0, 1},
               {"distant", true, true, true, 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Data().SetReal(KELVRA_TRANSPARENCY, c.transparency);
    FirstPost()->GetDataInstance()->SetLink(KELVRA_RENDER_OBJECT, c.linked ? op_ : nullptr);
    BaseContainer& light = AddLight(Vector(0, 20, 0));
    light.SetBool(host::kLightShadow, c.shadow);
    if (c.distant) {
      light.SetLong(host::kLightType, RT_LT_DISTANT);
      doc_->GetFirstObject()->SetMl(Matrix(Vector(), Vector(1, 0, 0), Vector(0, 0, 1), Vector(0, -1, 0)));
    }
    options_.camera.target = Vector();
    ExpectNear(Render().Middle(), Vector(c.passes));
    options_.camera.target = Vector(4, 0, 0); // beside the shadow
    const double lit = c.distant ? 1.0 : 20 / std::sqrt(20 * 20 + 4 * 4);
    ExpectNear(Render().Middle(), Vector(lit), 1e-3);
    BaseObject* done = doc_->GetFirstObject();
    BaseObject::Free(done);
  }
}

class Lighting : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    options_.ambient = Vector();
  }
};

TEST_F(Lighting, SwitchesChooseBetweenOwnColourLightAndLightWithoutCosine) {
  Add({{Vector(), 255, 0, 0}});
  // Sixty degrees off the normal at the point of entry; half as bright as white.
  AddLight(Vector(10 * std::sin(Rad(60.0)), 0, -1 - 10 * std::cos(Rad(60.0))))
      .SetReal(host::kLightBrightness, 0.5);
  const struct {
    bool light, flat;
    double share;
  } cases[] = {{false, false, 1.0}, {true, false, 0.25}, {false, true, 0.5}, {true, true, 0.5}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.share);
    Data().SetBool(KELVRA_LIGHT, c.light);
    Data().SetBool(KELVRA_LIGHT_FLAT, c.flat);
    ExpectNear(Render().Middle(), kRed * c.share);
  }
}

TEST_F(Lighting, ALitPointIsShadowedByOthersOnly) {
  Data().SetBool(KELVRA_LIGHT, TRUE);
  AddLight(Vector(0, 20, -1));
  Data().SetBool(KELVRA_LIGHT_FLAT, TRUE);
  Add({{Vector(), 255, 0, 0}});
  ExpectNear(Render().Middle(), kRed);
  Add({{Vector(0, 8, -1), 255, 0, 0}});
  const Shot shot = Render();
  ExpectNear(shot.Middle(), Vector());
  EXPECT_FLOAT_EQ(shot.Alpha(16, 16), 1.0f) << "dark, yet there";
}

TEST_F(Lighting, AmbientLightReachesShadowedPoints) {
  Data().SetBool(KELVRA_LIGHT, TRUE);
  AddLight(Vector(0, 20, -1));
  Add({{Vector(), 255, 0, 0}, {Vector(0, 8, -1), 255, 0, 0}});
  BaseContainer& ambient = AddLight(Vector());
  ambient.SetLong(host::kLightType, RT_LT_AMBIENT);
  ambient.SetVector(host::kLightColor, Vector(0.5, 1, 1));
  options_.ambient = Vector(0.25);
  ExpectNear(Render().Middle(), kRed * 0.75);
}

TEST_F(Lighting, LightLosesStrengthWithTheSquareOfTheDistance) {
  Data().SetBool(KELVRA_LIGHT_FLAT, TRUE);
  Add({{Vector(), 255, 0, 0}});
  BaseContainer& light = AddLight(Vector(0, 0, -9)); // 8 from the entry
  light.SetLong(host::kLightFalloff, RT_FALLOFF_SQUARE);
  light.SetReal(host::kLightReach, 4.0);
  ExpectNear(Render().Middle(), kRed * 0.25);
}

} // namespace
