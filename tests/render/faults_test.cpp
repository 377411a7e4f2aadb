// Refused memory at every place of a render, and what one ray explains of itself.
#include "support/render_fixture.h"

namespace {

class Refusals : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    options_.width = options_.height = 9;
    std::vector<Dot> dots;
    for (int i = 0; i < 60; ++i)
      dots.push_back({Vector(2 * (i % 5) - 4, i % 7 - 3, 3 * (i % 4)), 4 * i, 255 - 4 * i, i});
    Add(dots);
    Data().SetReal(KELVRA_POINT_RADIUS, 0.5);
    AddLight(Vector(0, 0, -20));
  }
  /** The next render makes the posts that are always there again. */
  void ForgetPosts() {
    for (const LONG type : {kBuilder, kRecorder})
      if (BaseVideoPost* post = FirstPost(type)) BaseVideoPost::Free(post);
  }
};

TEST_F(Refusals, ARefusalAnywhereEndsWithOneLineOrChangesNothing) {
  const Shot expected = Render();
  const StoredCloud stored = Stored();
  ForgetPosts();
  const host::LiveCounts before = application_.Live();
  int refused = 0;
  Shot shot;
  const auto render = [&] { shot = TryRender(); };
  const auto check = [&](bool) {
    if (shot.outcome.Ok()) {
      EXPECT_EQ(shot.samples, expected.samples) << "a picture without what was refused";
    } else {
      EXPECT_EQ(shot.outcome.result, RENDERRESULT_OUTOFMEMORY);
      ExpectOneLine(shot.outcome.message);
      EXPECT_NE(shot.outcome.message.find("memory"), std::string::npos) << shot.outcome.message;
      ++refused;
    }
    // What a frame gathered that never came to its render is freed when the next one begins.
    EXPECT_EQ(Render().samples, expected.samples) << "the next render";
    ForgetPosts();
    ExpectLive(application_, before);
  };
  FailEach(application_, host::Fault::Allocation, render, check, 5000);
  EXPECT_GE(refused, 12) << "posts, gathering and grid";
  const StoredCloud after = Stored();
  ASSERT_EQ(after.blocks.size(), stored.blocks.size());
  EXPECT_EQ(after.blocks[0].positions, stored.blocks[0].positions);
  EXPECT_EQ(after.blocks[0].rgb, stored.blocks[0].rgb);
}

TEST_F(Refusals, WithoutLargeBlocksThePictureIsTheSame) {
  const Shot expected = Render();
  // A machine that hands out no block of 1 GiB renders what it has room for.
  application_.GetFaults().FailAt(host::Fault::LargeBlock, 1, -1);
  EXPECT_EQ(Render().samples, expected.samples);
  application_.GetFaults().Clear();
}

class Explanation : public RenderTest {
protected:
  /** Lines about the ray through a pixel; empty when the hook does not answer. */
  std::string Explain(int x, int y) {
    std::string text;
    options_.probeX = x;
    options_.probeY = y;
    options_.probe = [&](VolumeData* vd) {
      String answer;
      KelvraRayExplanation question = {1, vd, &answer};
      if (!doc_->FindSceneHook(KELVRA_HOOK)->Message(KELVRA_MESSAGE_EXPLAIN_RAY, &question)) return;
      CHAR* utf8 = answer.GetCStringCopy(STRINGENCODING_UTF8);
      text = utf8;
      GeFree(utf8);
    };
    EXPECT_TRUE(TryRender().outcome.Ok());
    options_.probe = nullptr;
    return text;
  }
};

TEST_F(Explanation, ListsHitsFromNearToFarAndBlendsAsThePictureDoes) {
  Data().SetReal(KELVRA_TRANSPARENCY, 0.75);
  Data().SetReal(KELVRA_EDGE_BIAS, 0.5);
  Add({{Vector(0, 0, 5), 255, 0, 0}, {Vector(0.3, 0, -3), 0, 255, 0}, {Vector(0, 0.2, 1), 0, 0, 255}});
  options_.background = Vector();
  const Shot shot = Render();
  int explained = 0;
  for (int x = 10; x < 24; ++x) {
    const std::string text = Explain(x, 16);
    SCOPED_TRACE(text);
    double last = -1.0, left = -1.0;
    for (std::size_t at = 0; (at = text.find("entry ", at)) != std::string::npos; at += 6, ++explained) {
      EXPECT_GE(std::stod(text.substr(at + 6)), last);
      last = std::stod(text.substr(at + 6));
    }
    Vector color;
    ASSERT_EQ(std::sscanf(text.substr(std::min(text.find("blend: "), text.size())).c_str(),
                          "blend: colour (%lf, %lf, %lf), %lf", &color.x, &color.y, &color.z, &left),
              4);
    ExpectNear(color, shot.At(x, 16), 2e-6);
    EXPECT_NEAR(1 - left, shot.Alpha(x, 16), 2e-6);
  }
  EXPECT_GT(explained, 12);
}

TEST_F(Explanation, NumbersThePointsOfTheStore) {
  Add({{Vector(40, 0, 0)}, {Vector(50, 0, 0)}, {Vector(60, 0, 0)}, {Vector()}});
  SReal* stored = kelvra::GetCloudData(op_)->store.groups[0].blocks[0].positions;
  stored[0] = stored[7] = std::numeric_limits<SReal>::quiet_NaN(); // as a damaged scene has them
  const std::string text = Explain(16, 16);
  EXPECT_NE(text.find(", point 3 of 4, at 0 0 0"), std::string::npos) << text;
}

TEST_F(Explanation, IsOnlyGivenWhileAFrameIsRendered) {
  Add({{Vector()}});
  EXPECT_FALSE(Explain(16, 16).empty());
  String text;
  VolumeData* vd = VolumeData::Alloc();
  KelvraRayExplanation question = {1, vd, &text};
  BaseSceneHook* hook = doc_->FindSceneHook(KELVRA_HOOK);
  EXPECT_FALSE(hook->Message(KELVRA_MESSAGE_EXPLAIN_RAY, &question)) << "nothing stays in the hook";
  VolumeData::Free(vd);
  FirstPost()->GetDataInstance()->SetLink(KELVRA_RENDER_OBJECT, nullptr);
  EXPECT_TRUE(Explain(16, 16).empty()) << "no points are rendered";
}

} // namespace
