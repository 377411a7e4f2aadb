// The shader that hands out one colour a point.
#include "support/object_fixture.h"

#include "host/nodes/node.h"
#include "shader/kelvra_shader.h"

namespace {

class RayShaderTest : public ObjectTest {
protected:
  void SetUp() override {
    ObjectTest::SetUp();
    node_ = host::MakeNode(host::NodeKind::Shader, kelvra::kRayShaderId);
    ASSERT_NE(node_, nullptr);
  }
  void TearDown() override {
    host::FreeNode(node_);
    ObjectTest::TearDown();
  }
  kelvra::LAZrayShader& Data() { return *static_cast<kelvra::LAZrayShader*>(node_->data); }
  INITRENDERRESULT Prepare() {
    InitRenderStruct irs;
    irs.doc = doc_;
    return Data().InitRender((BaseShader*)host::Api(node_), irs);
  }
  /** As a renderer does: asks for the record, calls what lies at byte 72. */
  Vector Color(LONG index) {
    void* fields[3] = {nullptr, nullptr, nullptr};
    EXPECT_TRUE(host::SendMessage(*node_, 1018952, fields));
    const char* record = (const char*)fields[2];
    LONG head[2];
    std::memcpy(head, record, sizeof head);
    EXPECT_EQ(head[0], 1000);
    EXPECT_EQ(head[1], 128);
    Vector (*callback)(kelvra::LAZrayShader*, LONG);
    std::memcpy(&callback, record + 72, sizeof callback);
    return callback(&Data(), index);
  }
  host::Node* node_ = nullptr;
};

TEST_F(RayShaderTest, HandsOutTheLinkedCloudsColoursWhileItRenders) {
  Give(op_, {Vector(1, 1, 1), Vector(2, 2, 2)});
  kelvra::PointBlock& block = Cloud(op_).store.groups[0].blocks[0];
  block.attrib3[3] = 0; // red of the second point
  const Vector white(1.0), cyan(0, 1, 1);
  EXPECT_EQ(Color(1), white) << "no table yet";
  EXPECT_EQ(Prepare(), INITRENDERRESULT_OK);
  EXPECT_EQ(Color(1), white) << "no link";
  node_->container.SetLink(1000, op_);
  EXPECT_EQ(Prepare(), INITRENDERRESULT_OK);
  EXPECT_EQ(Prepare(), INITRENDERRESULT_OK) << "the second table replaces the first";
  EXPECT_EQ(Color(0), white);
  EXPECT_EQ(Color(1), cyan);
  for (const LONG outside : {-1, 2, MAXLONGl}) EXPECT_EQ(Color(outside), white) << outside;
  EXPECT_EQ(Data().Output(nullptr, nullptr), Vector());
  Data().FreeRender(nullptr);
  EXPECT_EQ(Color(1), white);
  Prepare(); // freed with the shader
}

} // namespace
