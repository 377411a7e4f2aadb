// What video posts hear from a render, in which order, and that every open is closed whatever happens.
#include "host/nodes/services.h"
#include "support/render_fixture.h"
#include "xkelvra_shader.h"

#include <thread>

namespace {

constexpr LONG kFirstWitness = 1099301, kSecondWitness = 1099302;

struct Heard {
  LONG post;
  VIDEOPOSTCALL call;
  bool open;
  bool volume; ///< vd is there
  bool usable; ///< and holds what it should
  bool good;   ///< *error at that time
  LONG asked;  ///< posts that were asked for their render info so far
};

/** Notes what it hears; fails at a call and asks for a break when told to. */
class Witness : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew Witness; }
  static inline std::vector<Heard> heard;
  static inline std::size_t failAt = 0; ///< the n-th call fails, 0 for none
  static inline bool asksForBreak = false;
  static inline VIDEOPOSTINFO info = VIDEOPOSTINFO_0;
  static inline LONG asked = 0;
  static inline std::atomic<long> volumetric, shadow;

  static void Reset() {
    heard.clear();
    failAt = 0;
    asksForBreak = false;
    info = VIDEOPOSTINFO_0;
    asked = 0;
    volumetric = shadow = 0;
  }

  RENDERRESULT Execute(BaseVideoPost* node, VideoPostStruct* vps) override {
    const bool usable = vps->vd && vps->vd->fps == vps->fps;
    heard.push_back({node->GetType(), vps->vp, vps->open != FALSE, vps->vd != nullptr, usable,
                     *vps->error == RENDERRESULT_OK, asked});
    EXPECT_NE(vps->doc, nullptr);
    EXPECT_NE(vps->thread, nullptr);
    if (asksForBreak) vps->thread->TestBreak();
    return heard.size() == failAt ? RENDERRESULT_ASSETMISSING : RENDERRESULT_OK;
  }
  VIDEOPOSTINFO GetRenderInfo(BaseVideoPost*) override {
    ++asked;
    return info;
  }
  void CalcVolumetric(BaseVideoPost*, VolumeData*) override { ++volumetric; }
  void CalcShadow(BaseVideoPost*, VolumeData*) override { ++shadow; }
};

class LifeCycle : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    options_.width = options_.height = 5;
    Witness::Reset();
    for (const LONG id : {kFirstWitness, kSecondWitness})
      ASSERT_TRUE(RegisterVideoPostPlugin(id, "Witness", PLUGINFLAG_VIDEOPOST_INHERENT, Witness::Alloc,
                                          String(), 0, 0));
  }

  /** Each close answers the latest open that has none yet, and none is left; calls nest in their order. */
  static void ExpectMatched() {
    std::vector<Heard> open;
    for (const Heard& one : Witness::heard) {
      const bool inRender = one.call == VIDEOPOSTCALL_RENDER || one.call == VIDEOPOSTCALL_INNER;
      EXPECT_EQ(one.volume, inRender) << "call " << one.call << " open " << one.open;
      EXPECT_EQ(one.usable, one.call == VIDEOPOSTCALL_INNER) << "call " << one.call << " open " << one.open;
      if (one.open) {
        const VIDEOPOSTCALL outer = open.empty() ? VIDEOPOSTCALL_FRAMESEQUENCE : open.back().call;
        EXPECT_TRUE(one.call == outer || (LONG)one.call == (LONG)outer + 1) << one.call << " in " << outer;
        EXPECT_TRUE(one.good) << "nothing is opened after an error";
        open.push_back(one);
        continue;
      }
      ASSERT_FALSE(open.empty()) << "close without open, call " << one.call;
      EXPECT_EQ(one.call, open.back().call);
      EXPECT_EQ(one.post, open.back().post);
      open.pop_back();
    }
    EXPECT_TRUE(open.empty()) << "never closed: call " << open.back().call;
  }
  static std::vector<int> CallsOf(LONG post) {
    std::vector<int> calls;
    for (const Heard& one : Witness::heard)
      if (one.post == post) calls.push_back(one.open ? one.call : -one.call);
    return calls;
  }
};

TEST_F(LifeCycle, OpensFromTheSequenceInwardsAndClosesBackForEveryFrame) {
  {
    host::RenderJob job(doc_, options_);
    for (LONG frame = 0; frame < 3; ++frame) {
      doc_->SetTime(BaseTime((Real)frame, (Real)doc_->GetFps()));
      EXPECT_TRUE(job.RenderFrame().Ok());
    }
  }
  ExpectMatched();
  std::vector<int> expected = {VIDEOPOSTCALL_FRAMESEQUENCE};
  for (int frame = 0; frame < 3; ++frame) expected.insert(expected.end(), {2, 3, 4, 5, -5, -4, -3, -2});
  expected.push_back(-VIDEOPOSTCALL_FRAMESEQUENCE);
  for (const LONG post : {kFirstWitness, kSecondWitness}) EXPECT_EQ(CallsOf(post), expected);
}

TEST_F(LifeCycle, PostsAreAskedWhatTheyWantBeforeAllAndBetweenRenderAndInner) {
  Render();
  for (const Heard& one : Witness::heard) {
    const bool before = one.open && one.call <= VIDEOPOSTCALL_RENDER, after = !one.open && one.call <= 2;
    EXPECT_EQ(one.asked, before ? 2 : after ? 6 : 4) << "call " << one.call << " open " << one.open;
  }
}

TEST_F(LifeCycle, LegalButUnfriendlyOrdersGiveTheSamePicture) {
  Add({{Vector()}, {Vector(1, 1, 2)}});
  Data().SetReal(KELVRA_TRANSPARENCY, 0.5);
  const Shot whole = Render();
  ExpectNear(whole.At(0, 0), kBehind);
  EXPECT_NE(whole.Middle(), kBehind);
  options_.subframes = 2;
  EXPECT_EQ(Render().samples, whole.samples) << "two renders in a frame";
  options_.subframes = 1;
  options_.threads = 64;
  EXPECT_EQ(Render().samples, whole.samples);
  options_.dropsCloses = true;
  for (const LLONG n : {3, 6, 9, 12}) {
    Witness::asksForBreak = true;
    application_.GetFaults().FailAt(host::Fault::UserBreak, n);
    TryRender();
    application_.GetFaults().Clear();
    Witness::asksForBreak = false;
    EXPECT_EQ(Render().samples, whole.samples) << "after a break without closes, " << n;
  }
  BaseDocument* copy = static_cast<BaseDocument*>(doc_->GetClone(COPYFLAGS_0, nullptr));
  ASSERT_NE(copy, nullptr);
  Shot inner;
  host::RenderOptions plain = options_;
  options_.progress = [&](double) {
    if (!inner.samples.empty()) return;
    host::RenderJob job(copy, plain);
    inner = Take(job);
  };
  EXPECT_EQ(Render().samples, whole.samples) << "while a copy of the document is rendered";
  EXPECT_EQ(inner.samples, whole.samples);
  BaseDocument::Free(copy);
}

using TwoRenders = RenderTest;

TEST_F(TwoRenders, OfCopiesOfADocumentOnTwoThreadsAreLikeOne) {
  std::vector<Dot> dots;
  for (int i = 0; i < 9000; ++i) dots.push_back({Vector(i % 7 - 3, i % 5 - 2, i % 3)});
  Add(dots);
  Data().SetReal(KELVRA_TRANSPARENCY, 0.5);
  BaseShader* shader = BaseShader::Alloc(kShader);
  shader->GetDataInstance()->SetLink(KELVRA_SHADER_OBJECT, op_);
  op_->InsertShader(shader);
  options_.threads = 2;
  host::RenderJob(doc_, options_); // makes the recorder
  BaseContainer& recorder = *FirstPost(kRecorder)->GetDataInstance();
  recorder.SetBool(KELVRA_RECORDER_ENABLE, TRUE);
  recorder.SetFilename(KELVRA_RECORDER_FOLDER, Filename(host::FromUtf8(Path("recorded"))));
  std::filesystem::create_directory(Path("recorded"));
  const Shot whole = Render();
  const std::string recorded = Read(Path("recorded/frame_0000.png"));
  EXPECT_FALSE(recorded.empty());
  EXPECT_NE(whole.Middle(), kBehind);

  const std::size_t lines = application_.GetConsole().Lines().size();
  BaseDocument* copies[2];
  std::vector<std::thread> threads;
  for (BaseDocument*& copy : copies) copy = static_cast<BaseDocument*>(doc_->GetClone(COPYFLAGS_0, nullptr));
  for (BaseDocument* copy : copies)
    threads.emplace_back([&, copy] {
      const host::DocumentThread here;
      for (int frame = 0; frame < 8; ++frame) {
        host::RenderJob job(copy, options_);
        EXPECT_EQ(Take(job).samples, whole.samples) << frame;
      }
    });
  for (std::thread& thread : threads) thread.join();
  for (BaseDocument*& copy : copies) BaseDocument::Free(copy);
  EXPECT_EQ(LinesSince(application_, lines), std::vector<std::string>()) << "both record under one name";
  EXPECT_EQ(Read(Path("recorded/frame_0000.png")), recorded);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Path("recorded")), {}), 1);
}

TEST_F(LifeCycle, OnlyWhatWasAskedForIsCalled) {
  NEEDS_SURFACES();
  AddWall(0);
  AddLight(Vector(0, 0, -10));
  const struct {
    LONG info;
    bool volumetric, shadow;
  } cases[] = {{0, false, false},
               {VIDEOPOSTINFO_CALCVOLUMETRIC, true, false},
               {VIDEOPOSTINFO_CALCSHADOW, false, true},
               {VIDEOPOSTINFO_CALCVOLUMETRIC | VIDEOPOSTINFO_CALCSHADOW, true, true}};
  for (const auto& c : cases) {
    Witness::Reset();
    Witness::info = (VIDEOPOSTINFO)c.info;
    Render();
    EXPECT_EQ(Witness::volumetric > 0, c.volumetric) << c.info;
    EXPECT_EQ(Witness::shadow > 0, c.shadow) << c.info;
  }
}

TEST_F(LifeCycle, APostThatFailsAnywhereLeavesNothingOpen) {
  Add({{Vector()}});
  Data().SetReal(KELVRA_TRANSPARENCY, 0.75);
  const Shot whole = Render();
  const std::size_t calls = Witness::heard.size();
  ASSERT_EQ(calls, 20u);
  const LLONG blocks = application_.Live().blocks;
  for (std::size_t n = 1; n <= calls; ++n) {
    SCOPED_TRACE(n);
    Witness::Reset();
    Witness::failAt = n;
    host::RenderOutcome outcome;
    {
      host::RenderJob job(doc_, options_);
      outcome = Take(job).outcome;
      Witness::failAt = 0;
      EXPECT_EQ(Take(job).samples, whole.samples) << "points of the frame that failed are left";
    }
    ExpectMatched();
    EXPECT_EQ(application_.Live().blocks, blocks);
    if (n > 18) continue; // the sequence closes when the job is gone
    EXPECT_EQ(outcome.result, RENDERRESULT_ASSETMISSING);
    ExpectOneLine(outcome.message);
    EXPECT_NE(outcome.message.find("Witness"), std::string::npos) << outcome.message;
  }
}

TEST_F(LifeCycle, ABreakAnywhereEndsTheFrameAndLeavesNothingOpen) {
  std::vector<Dot> dots;
  for (int i = 0; i < 2200; ++i) dots.push_back({Vector(i % 7, i % 5, i % 3)});
  Add(dots);
  Render();
  const LLONG blocks = application_.Live().blocks;
  int broken = 0, rounds = 0;
  host::RenderOutcome outcome;
  const auto render = [&] {
    Witness::Reset();
    Witness::asksForBreak = true;
    outcome = TryRender().outcome;
  };
  FailEach(application_, host::Fault::UserBreak, render, [&](bool struck) {
    ExpectMatched();
    EXPECT_EQ(application_.Live().blocks, blocks);
    if (!struck) return;
    // The pixels were complete where only closes were left.
    const bool closing = outcome.Ok();
    EXPECT_EQ(outcome.result, closing ? RENDERRESULT_OK : RENDERRESULT_USERBREAK);
    EXPECT_TRUE(closing || broken == rounds) << "a later question cannot end what an earlier one did not";
    broken += !closing;
    ++rounds;
    if (!closing) ExpectOneLine(outcome.message);
  });
  EXPECT_GE(broken, 10 + 2) << "each open, and the gathering of 2200 points twice";
}

} // namespace
