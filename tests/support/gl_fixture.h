// What the GL tests share: a context with a small target, and a program that draws coloured points as given.
#pragma once

#include "host/gl/framebuffer.h"
#include "host/gl/program_factory.h"
#include "host/gl/vertex_buffer.h"
#include "support/common.h"

namespace host::gl {

struct PointVertex {
  float x, y, z, r, g, b;
};

/** Position and colour, interleaved; the colour location lies apart as the interface numbers it. */
inline std::vector<VertexAttribute> PointLayout() {
  return {{"vec3", "attrib_pos", 0x1406, 3, 0, sizeof(PointVertex), false, 0},
          {"vec3", "attrib2", 0x1406, 3, 12, sizeof(PointVertex), false, 3}};
}

inline std::vector<InputVector> PointInputs() {
  return {{"vec3 iposition = attrib_pos.xyz", "iposition"}, {"vec3 icolor = attrib2.xyz", "icolor"}};
}

constexpr float kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

class GlTest : public ::testing::Test {
protected:
  static constexpr int kWidth = 8, kHeight = 4;

  void SetUp() override {
    context_ = Context::Create(&error_);
    if (!context_) GTEST_SKIP() << error_;
    ASSERT_TRUE(context_->MakeCurrent(&error_)) << error_;
    target_ = Framebuffer::Create(context_, kWidth, kHeight, 1, &error_);
    ASSERT_TRUE(target_) << error_;
    ASSERT_TRUE(target_->Clear(0, 0, 0, 0, &error_)) << error_;
  }

  void TearDown() override {
    if (!context_) return;
    EXPECT_EQ(context_->ErrorCount(), expectedGlErrors_)
        << (context_->Errors().empty() ? "" : context_->Errors().front());
  }

  std::unique_ptr<ProgramFactory> NewFactory() {
    return std::make_unique<ProgramFactory>(context_, PointLayout(), PointInputs());
  }

  /** Calls up to the end of the declarations. */
  static void BeginBody(ProgramFactory& factory) {
    ASSERT_TRUE(factory.AddParameters(0x1281040)) << factory.LastError();
    ASSERT_TRUE(factory.Init(0)) << factory.LastError();
    ASSERT_TRUE(factory.HeaderFinished()) << factory.LastError();
  }

  /** Program that draws each vertex where and how it is, with a point size given as GLSL. */
  std::unique_ptr<ProgramFactory> PlainProgram(const std::string& pointSize = "1.0") {
    auto factory = NewFactory();
    BeginBody(*factory);
    factory->AddLine(Stage::Vertex, "oposition = transmatrix * vec4(iposition, 1.0);");
    factory->AddLine(Stage::Vertex, "ocolor = vec4(icolor.rgb, 1.0); gl_PointSize = " + pointSize + ";");
    factory->AddLine(Stage::Fragment, "ocolor = icolor;");
    EXPECT_TRUE(factory->CompilePrograms()) << factory->LastError();
    return factory;
  }

  /** Binds, sets the transform, draws all vertices in one range of that kind. */
  void Draw(ProgramFactory& factory, const std::vector<PointVertex>& vertices, int kind = 5,
            const float* transform = kIdentity) {
    VertexBuffer buffer(context_);
    const SubBuffer* sub = buffer.Allocate(BufferType::Vertices, vertices.size() * sizeof(PointVertex),
                                           vertices.data(), &error_);
    ASSERT_TRUE(sub) << error_;
    ASSERT_TRUE(factory.BindPrograms()) << factory.LastError();
    const int handle = factory.GetParameterHandle(Stage::Vertex, "transmatrix");
    EXPECT_TRUE(factory.SetParameterMatrix(handle, transform, 4)) << factory.LastError();
    EXPECT_TRUE(
        DrawSubBuffer(sub, nullptr, {{kind, (std::int64_t)vertices.size(), 0}}, PointLayout(), &error_))
        << error_;
    EXPECT_TRUE(factory.UnbindPrograms());
  }

  Image Picture() {
    Image image;
    EXPECT_TRUE(target_->Read(4, &image, &error_)) << error_;
    return image;
  }

  /** The picture as text, one character a pixel: '.' untouched, else the sum of 1 red, 2 green, 4 blue above
   * half. */
  std::vector<std::string> Rows() {
    const Image image = Picture();
    std::vector<std::string> rows;
    for (int y = 0; y < image.height; ++y) {
      rows.emplace_back();
      for (int x = 0; x < image.width; ++x) {
        const std::uint8_t* p = image.At(x, y);
        rows.back() += p[3] == 0 ? '.' : (char)('0' + (p[0] > 127) + 2 * (p[1] > 127) + 4 * (p[2] > 127));
      }
    }
    return rows;
  }

  using Strings = std::vector<std::string>;
  long long expectedGlErrors_ = 0;
  std::string error_;
  std::shared_ptr<Context> context_;
  std::unique_ptr<Framebuffer> target_;
};

} // namespace host::gl
