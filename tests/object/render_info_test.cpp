// What the builder asks a render for, whenever the host wants to know.
#include "object/laz_renderer.h"
#include "support/object_fixture.h"

namespace kelvra {
namespace {

using RenderInfo = ObjectTest;

TEST_F(RenderInfo, FollowsFromTheLinkOutsideARenderAndFromThePointsInIt) {
  RenderData* settings = doc_->GetActiveRenderData();
  BaseVideoPost* post = BaseVideoPost::Alloc(kVoxelBuilderId);
  settings->InsertVideoPost(post);
  VoxelVideoPost_Builder& builder = *static_cast<VoxelVideoPost_Builder*>(post->GetNodeData());
  EXPECT_EQ(builder.GetRenderInfo(post), VIDEOPOSTINFO_0) << "nothing is linked";
  op_->Message(MSG_MENUPREPARE, doc_);
  const VIDEOPOSTINFO both = VIDEOPOSTINFO_CALCVOLUMETRIC | VIDEOPOSTINFO_CALCSHADOW;
  EXPECT_EQ(builder.GetRenderInfo(post), both) << "before the render";
  VideoPostStruct vps;
  vps.vp = VIDEOPOSTCALL_RENDER;
  vps.doc = doc_;
  vps.vd = reinterpret_cast<VolumeData*>(8); // nobody may look at it yet
  vps.open = TRUE;
  EXPECT_EQ(builder.Execute(post, &vps), RENDERRESULT_OK);
  EXPECT_EQ(builder.GetRenderInfo(post), VIDEOPOSTINFO_0) << "no points were gathered";
  vps.open = FALSE;
  EXPECT_EQ(builder.Execute(post, &vps), RENDERRESULT_OK);
  EXPECT_EQ(builder.GetRenderInfo(post), both) << "after the render";
}

} // namespace
} // namespace kelvra
