#include "support/gl_fixture.h"

namespace host::gl {
namespace {

class VertexBufferTest : public GlTest {
protected:
  void SetUp() override {
    GlTest::SetUp();
    if (context_) buffer_ = std::make_unique<VertexBuffer>(context_);
  }
  void TearDown() override {
    buffer_.reset();
    GlTest::TearDown();
  }
  SubBuffer* Vertices(std::size_t count) {
    const std::vector<PointVertex> data(count, PointVertex{-0.875f, 0.75f, 0, 1, 1, 1});
    return buffer_->Allocate(BufferType::Vertices, count * sizeof(PointVertex), data.data(), &error_);
  }
  /** Draws with a plain program; the refusal, or empty. */
  std::string TryDraw(const SubBuffer* vertices, const SubBuffer* elements,
                      const std::vector<DrawRange>& ranges,
                      const std::vector<VertexAttribute>& layout = PointLayout()) {
    auto factory = PlainProgram();
    EXPECT_TRUE(factory->BindPrograms());
    factory->SetParameterMatrix(0, kIdentity, 4);
    std::string reason;
    DrawSubBuffer(vertices, elements, ranges, layout, &reason);
    factory->UnbindPrograms();
    return reason;
  }
  std::unique_ptr<VertexBuffer> buffer_;
};

TEST_F(VertexBufferTest, RefusesDrawsBehindItsEnd) {
  const SubBuffer* sub = Vertices(4);
  ASSERT_TRUE(sub) << error_;
  const std::pair<DrawRange, std::string> cases[] = {
      {{5, 4, 0}, ""},
      {{5, 1, 3}, ""},
      {{5, 0, 1000000}, ""},
      {{5, 4, 1}, "the buffer holds 96"},
      {{5, INT32_MAX, INT32_MAX}, "the buffer holds 96"},
      {{5, 1ll << 40, 0}, "must be 0 to"},
      {{5, 1, -1}, "must be 0 to"},
      {{99, 4, 0}, "primitive kind 99"},
  };
  for (const auto& [range, expected] : cases) {
    const std::string reason = TryDraw(sub, nullptr, {range});
    EXPECT_EQ(reason.empty(), expected.empty()) << reason;
    EXPECT_NE(reason.find(expected), std::string::npos) << reason << " instead of " << expected;
  }
  ASSERT_TRUE(target_->Clear(0, 0, 0, 0, &error_));
  EXPECT_FALSE(TryDraw(sub, nullptr, {{5, 4, 0}, {5, 5, 0}}).empty());
  EXPECT_EQ(Rows()[0], "........") << "one refused range refuses them all";
}

TEST_F(VertexBufferTest, RefusesLayoutsThatCannotBe) {
  const SubBuffer* sub = Vertices(4);
  const auto with = [](void (*change)(VertexAttribute&)) {
    std::vector<VertexAttribute> layout = PointLayout();
    change(layout[1]);
    return layout;
  };
  const std::pair<std::vector<VertexAttribute>, const char*> cases[] = {
      {with([](VertexAttribute& a) { a.stride = 48; }), "bytes for attribute \"attrib2\""},
      {with([](VertexAttribute& a) { a.offset = -4; }), "offset -4"},
      {with([](VertexAttribute& a) { a.stride = 4096; }), "stride 4096"},
      {with([](VertexAttribute& a) { a.components = 5; }), "component count 5"},
      {with([](VertexAttribute& a) { a.dataType = 0x1407; }), "data type 5127"},
      {with([](VertexAttribute& a) { a.location = 0; }), "already taken by \"attrib_pos\""},
      {std::vector<VertexAttribute>(17, PointLayout()[0]), "17 vertex attributes"},
  };
  for (const auto& [layout, expected] : cases) {
    const std::string reason = TryDraw(sub, nullptr, {{5, 4, 0}}, layout);
    EXPECT_NE(reason.find(expected), std::string::npos) << reason;
  }
}

TEST_F(VertexBufferTest, WiderStrideReadsEverySecondRecord) {
  const PointVertex data[] = {
      {-0.875f, 0.75f, 0, 1, 0, 0}, {0.875f, 0.75f, 0, 0, 1, 0}, {0.125f, -0.75f, 0, 0, 0, 1}};
  const SubBuffer* sub = buffer_->Allocate(BufferType::Vertices, sizeof(data), data, &error_);
  std::vector<VertexAttribute> half = PointLayout();
  for (VertexAttribute& attribute : half) attribute.stride = 48;
  EXPECT_EQ(TryDraw(sub, nullptr, {{5, 2, 0}}, half), "");
  EXPECT_EQ(Rows(), (Strings{"1.......", "........", "........", "....4..."}));
  EXPECT_NE(TryDraw(sub, nullptr, {{5, 3, 0}}, half), "");
}

TEST_F(VertexBufferTest, IndexedDrawsAreHeldToBothBuffers) {
  const SubBuffer* sub = Vertices(4);
  const std::uint16_t good[] = {3, 0}, bad[] = {0, 4};
  const SubBuffer* goodIndices = buffer_->Allocate(BufferType::Indices16, sizeof(good), good, &error_);
  const SubBuffer* badIndices = buffer_->Allocate(BufferType::Indices16, sizeof(bad), bad, &error_);
  SubBuffer* blank = buffer_->Allocate(BufferType::Indices32, 8, nullptr, &error_);
  EXPECT_EQ(TryDraw(sub, goodIndices, {{5, 2, 0}}), "");
  EXPECT_EQ(Rows()[0], "7.......");
  EXPECT_NE(TryDraw(sub, goodIndices, {{5, 2, 2}}).find("index buffer"), std::string::npos);
  EXPECT_NE(TryDraw(sub, badIndices, {{5, 1, 0}}).find("draw of 5 vertices"), std::string::npos);
  EXPECT_NE(TryDraw(sub, blank, {{5, 1, 0}}).find("never written"), std::string::npos);
  EXPECT_NE(TryDraw(sub, sub, {{5, 1, 0}}).find("vertices given as indices"), std::string::npos);
  EXPECT_NE(TryDraw(goodIndices, nullptr, {{5, 1, 0}}).find("indices given as vertices"), std::string::npos);

  const std::uint32_t written[] = {1, 7};
  void* memory = buffer_->Map(blank, BufferAccess::WriteOnly, &error_);
  ASSERT_TRUE(memory) << error_;
  std::memcpy(memory, written, sizeof(written));
  ASSERT_TRUE(buffer_->Unmap(blank, &error_)) << error_;
  EXPECT_NE(TryDraw(sub, blank, {{5, 1, 0}}).find("draw of 8 vertices"), std::string::npos);
}

TEST_F(VertexBufferTest, RefusedAllocationsLeaveNothing) {
  EXPECT_FALSE(buffer_->Allocate(BufferType::Vertices, 0, nullptr, &error_));
  EXPECT_FALSE(buffer_->Allocate((BufferType)3, 16, nullptr, &error_));
  EXPECT_NE(error_.find("type 3"), std::string::npos) << error_;

  EXPECT_FALSE(buffer_->Allocate(BufferType::Vertices, SIZE_MAX, nullptr, &error_));
  EXPECT_NE(error_.find("GL_OUT_OF_MEMORY"), std::string::npos) << error_;
  EXPECT_FALSE(buffer_->Allocate(BufferType::Vertices, (std::size_t)1 << 46, nullptr, &error_)); // 64 TiB
  EXPECT_NE(error_.find("70368744177664 bytes cannot be allocated"), std::string::npos) << error_;
  expectedGlErrors_ = context_->ErrorCount(); // the driver's own refusal is a GL error as well

  std::size_t asked = 0;
  buffer_->SetAllocationFault([&](std::size_t bytes) { return (asked = bytes) == 24; });
  EXPECT_FALSE(Vertices(1));
  EXPECT_NE(error_.find("24 bytes cannot be allocated: refused"), std::string::npos) << error_;
  EXPECT_EQ(buffer_->Count(), 0);
  EXPECT_TRUE(Vertices(2));
  EXPECT_EQ(asked, 48u);
  EXPECT_EQ(buffer_->Count(), 1);
}

TEST_F(VertexBufferTest, FreedAndForeignHandlesAreRefused) {
  SubBuffer* first = Vertices(1);
  SubBuffer* second = Vertices(2);
  ASSERT_TRUE(buffer_->Free(first, &error_)) << error_;
  EXPECT_EQ(buffer_->Count(), 1);
  EXPECT_EQ(SubBufferSize(first), 0u);
  EXPECT_EQ(SubBufferSize(second), 48u);
  EXPECT_FALSE(buffer_->Map(first, BufferAccess::ReadOnly, &error_));
  EXPECT_NE(TryDraw(first, nullptr, {{5, 1, 0}}).find("was freed"), std::string::npos);
  EXPECT_NE(TryDraw(nullptr, nullptr, {{5, 1, 0}}).find("was freed"), std::string::npos);
  VertexBuffer other(context_);
  EXPECT_FALSE(other.Free(second, &error_));
}

TEST_F(VertexBufferTest, DrawsNeedTheirContextAProgramAndATarget) {
  const SubBuffer* sub = Vertices(1);
  const std::vector<DrawRange> all = {{5, 1, 0}};
  EXPECT_FALSE(DrawSubBuffer(sub, nullptr, all, PointLayout(), &error_));
  EXPECT_NE(error_.find("no program"), std::string::npos) << error_;

  target_.reset(); // unbinds it
  EXPECT_NE(TryDraw(sub, nullptr, all).find("no target"), std::string::npos);

  std::shared_ptr<Context> second = Context::Create(&error_);
  CurrentScope scope(*second, &error_);
  EXPECT_FALSE(DrawSubBuffer(sub, nullptr, all, PointLayout(), &error_));
  EXPECT_NE(error_.find("not current"), std::string::npos) << error_;
}

} // namespace
} // namespace host::gl
