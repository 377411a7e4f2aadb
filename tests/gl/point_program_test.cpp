// A whole program as a point-drawing plug-in builds it: thinning, colour modes and falloff decided per
// vertex.
#include "gl_fixture.h"

#include <map>

namespace host::gl {
namespace {

// $name stands for the real name of a uniform.
constexpr const char* kBody[] = {
    "if (gl_VertexID>$index_stop)\t{gl_PointSize = 0;return;}",
    "if (mod(gl_VertexID,$index_nth)>0)\t\t\t\t{gl_PointSize = 0;return;}",
    "float size = $point_size; vec4 col = vec4(icolor.rgb, 1.0); float col_val = 1.0;",
    "switch ($vcolor_mode) {",
    "case 1: col_val = icolor.r, col = vec4(col_val,col_val,col_val, 1.0);break;",
    "case 4: col_val = (icolor.r+icolor.g+icolor.b)*(1.0/3.0), col = vec4(vec3(col_val), 1.0);break;",
    "}",
    "ocolor = col; vec3  p = iposition; oposition = (transmatrix * vec4(p.xyz, 1.0));",
    "if ($falloff_action>0)",
    "{ float dist,falloff,ifalloff; switch ($falloff_type) {",
    "case 0: dist = distance( p, $falloff_pos ); break;",
    "case 1: dist = dot( $falloff_normal, p -$falloff_pos ); break;",
    "}",
    " falloff = smoothstep( $falloff_rad,0.0, dist ); ifalloff = pow(falloff,1.0);",
    " if ($falloff_action==1 )  if (ifalloff<=0.0) size = 0.0; else size = $point_size;",
    " if ($falloff_action==2)   size = $point_size*ifalloff;",
    "}",
    "gl_PointSize = size;",
};

using Values = std::map<std::string, float>;

/** Uniforms with values that change nothing; of a vector the value is y, the others are 0. */
const struct {
  std::string name;
  UniformType type;
  float value;
} kUniforms[] = {
    {"point_size", UniformType::Float1, 1},     {"falloff_rad", UniformType::Float1, 1},
    {"vcolor_mode", UniformType::Int1, 0},      {"falloff_type", UniformType::Int1, 0},
    {"falloff_action", UniformType::Int1, 0},   {"index_stop", UniformType::Int1, 1000},
    {"index_nth", UniformType::Int1, 1},        {"falloff_pos", UniformType::Float3, 0},
    {"falloff_normal", UniformType::Float3, 1},
};

class PointProgramTest : public GlTest {
protected:
  void SetUp() override {
    GlTest::SetUp();
    if (!context_) return;
    factory_ = NewFactory();
    ASSERT_TRUE(factory_->AddParameters(0x1281040) && factory_->Init(0)) << factory_->LastError();
    for (const auto& uniform : kUniforms)
      names_[uniform.name] = factory_->AddUniformParameter(Stage::Vertex, uniform.type, uniform.name);
    factory_->AddLine(Stage::Vertex, "vec3 ranv;");
    ASSERT_TRUE(factory_->HeaderFinished());
    for (std::string line : kBody) {
      for (const auto& [name, real] : names_)
        for (std::size_t at = 0; (at = line.find("$" + name)) != std::string::npos;)
          line.replace(at, name.size() + 1, real);
      factory_->AddLine(Stage::Vertex, line);
    }
    factory_->AddLine(Stage::Fragment, "ocolor = icolor;");
    ASSERT_TRUE(factory_->CompilePrograms()) << factory_->LastError();
  }

  /** Draws with these values over the neutral ones: falloff around the origin, its plane facing up. */
  void DrawWith(const Values& changed, const std::vector<PointVertex>& vertices) {
    ASSERT_TRUE(factory_->BindPrograms()) << factory_->LastError();
    for (const auto& uniform : kUniforms) {
      const auto found = changed.find(uniform.name);
      const float value = found == changed.end() ? uniform.value : found->second;
      const int handle = factory_->GetParameterHandle(Stage::Vertex, names_[uniform.name]),
                whole = (int)value;
      const float vector[3] = {0, value, 0};
      EXPECT_TRUE(uniform.type == UniformType::Int1     ? factory_->SetParameterInts(handle, &whole, 1)
                  : uniform.type == UniformType::Float1 ? factory_->SetParameterReals(handle, &value, 1)
                                                        : factory_->SetParameterReals(handle, vector, 3))
          << factory_->LastError();
    }
    ASSERT_TRUE(factory_->UnbindPrograms());
    ASSERT_TRUE(target_->Clear(0, 0, 0, 0, &error_));
    Draw(*factory_, vertices);
  }

  std::map<std::string, std::string> names_;
  std::unique_ptr<ProgramFactory> factory_;
};

TEST_F(PointProgramTest, ThinningKeepsMultiplesUpToTheLastIndex) {
  std::vector<PointVertex> row(kWidth, PointVertex{0, 0.75f, 0, 1, 1, 1});
  for (int i = 0; i < kWidth; ++i) row[(std::size_t)i].x = -0.875f + 0.25f * (float)i;
  const std::pair<Values, const char*> cases[] = {
      {{}, "77777777"},
      {{{"index_nth", 3}}, "7..7..7."},
      {{{"index_stop", 4}, {"index_nth", 2}}, "7.7.7..."},
      {{{"index_stop", -1}}, "........"},
      {{{"point_size", 0}}, "........"},
  };
  for (const auto& [values, expected] : cases) {
    DrawWith(values, row);
    EXPECT_EQ(Rows(), (Strings{expected, "........", "........", "........"}));
  }
}

TEST_F(PointProgramTest, SwitchChoosesTheColour) {
  for (const auto& [mode, expected] : {std::pair<float, char>{0, '1'}, {7, '1'}, {1, '7'}, {4, '0'}}) {
    DrawWith({{"vcolor_mode", mode}}, {{-0.875f, 0.75f, 0, 1.0f, 0, 0.25f}});
    EXPECT_EQ(Rows()[0][0], expected) << mode;
  }
}

TEST_F(PointProgramTest, FalloffHidesOrShrinksByDistance) {
  // One above the radius, one inside, one behind the plane.
  const std::vector<PointVertex> column = {
      {-0.125f, 0.75f, 0, 1, 1, 1}, {-0.125f, 0.25f, 0, 1, 1, 1}, {-0.125f, -0.75f, 0, 1, 1, 1}};
  const std::pair<Values, const char*> cases[] = {
      {{{"falloff_rad", 0.5f}}, "77.7"},
      {{{"falloff_rad", 0.5f}, {"falloff_action", 1}}, ".7.."},
      {{{"falloff_rad", 0.5f}, {"falloff_action", 1}, {"falloff_type", 1}}, ".7.7"},
  };
  for (const auto& [values, expected] : cases) {
    DrawWith(values, column);
    for (int y = 0; y < kHeight; ++y) EXPECT_EQ(Rows()[(std::size_t)y][3], expected[y]);
  }
  // Half the radius away the size of 4 is halved.
  DrawWith({{"falloff_action", 2}, {"point_size", 4}}, {{0.5f, 0, 0, 1, 1, 1}});
  EXPECT_EQ(Rows(), (Strings{"........", ".....77.", ".....77.", "........"}));
}

} // namespace
} // namespace host::gl
