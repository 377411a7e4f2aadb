#include "videopost/tallyframe.h"

#include "host/base/text.h"
#include "host/picture/image.h"
#include "host/picture/picture.h"
#include "host/render/render_job.h"
#include "kelvra_messages.h"
#include "support/clean.h"
#include "support/folder.h"

namespace kelvra {
namespace {

/** Renders an empty document, whose pictures are all background, with the recorder among its video posts. */
class RecorderTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(RegisterTallyframe());
    doc_ = application_.NewDocument();
    options_.width = 9;
    options_.height = 5;
    options_.threads = 1;
    options_.background = Vector(0.25, 0.5, 2.0);
  }
  void TearDown() override {
    FreeTallyframe();
    ExpectReports(application_);
  }

  void Enable(const std::string& folder, const char* pattern = nullptr, Bool enabled = TRUE) {
    host::RenderJob makesThePosts(doc_, options_);
    BaseVideoPost* post = doc_->GetActiveRenderData()->GetFirstVideoPost();
    ASSERT_TRUE(post && post->GetType() == KELVRA_RECORDER);
    BaseContainer* settings = post->GetDataInstance();
    if (enabled) settings->SetBool(KELVRA_RECORDER_ENABLE, TRUE);
    settings->SetFilename(KELVRA_RECORDER_FOLDER, Filename(host::FromUtf8(folder)));
    if (pattern) settings->SetString(KELVRA_RECORDER_NAME, pattern);
  }
  /** The console's lines meanwhile. */
  std::vector<std::string> Render(LONG firstFrame, LONG lastFrame) {
    const std::size_t before = application_.GetConsole().Lines().size();
    host::RenderJob job(doc_, options_);
    for (LONG frame = firstFrame; frame <= lastFrame; ++frame) {
      doc_->SetTime(BaseTime(frame, doc_->GetFps()));
      results_.push_back(job.RenderFrame().result);
    }
    return LinesSince(application_, before);
  }

  host::Application application_;
  BaseDocument* doc_ = nullptr;
  host::RenderOptions options_;
  const TempFolder folder_;
  std::vector<RENDERRESULT> results_;
};

using Lines = std::vector<std::string>;

TEST_F(RecorderTest, IsOffUntilItIsEnabled) {
  Enable(folder_.Name(), nullptr, FALSE);
  EXPECT_EQ(Render(0, 1), Lines());
  EXPECT_EQ(folder_.Entries(), 0u);
}

TEST_F(RecorderTest, EveryFrameOfASequenceIsAFileOfItsOwn) {
  Enable(folder_.Name());
  EXPECT_EQ(Render(8, 10), Lines());
  EXPECT_EQ(FramesRecorded(), 3);
  EXPECT_EQ(folder_.Entries(), 3u);
  for (const char* name : {"frame_0008.png", "frame_0009.png", "frame_0010.png"}) {
    host::gl::Image16 image;
    std::string error;
    ASSERT_TRUE(host::gl::ReadPng((folder_ / name), &image, &error)) << error;
    ASSERT_TRUE(image.width == 9 && image.height == 5 && image.channels == 3);
    for (int y = 0; y < 5; ++y)
      for (int x = 0; x < 9; ++x)
        EXPECT_EQ((std::vector<std::uint16_t>(image.At(x, y), image.At(x, y) + 3)),
                  (std::vector<std::uint16_t>{16384, 32768, 65535}));
  }
}

TEST_F(RecorderTest, SuffixOfThePatternChoosesTheFormat) {
  for (const char* pattern : {"a.tif", "b_##.exr"}) {
    if (!host::CanSavePicture(pattern[0] == 'a' ? host::PictureFormat::Tiff16 : host::PictureFormat::Exr))
      continue;
    Enable(folder_.Name(), pattern);
    EXPECT_EQ(Render(3, 3), Lines());
    host::Picture picture;
    std::string error;
    const std::string name = pattern[0] == 'a' ? "a0003.tif" : "b_03.exr";
    ASSERT_TRUE(host::LoadPicture((folder_ / name), &picture, &error)) << error;
    EXPECT_NEAR(picture.At(8, 4)[0], 0.25, 1.0 / 65535) << "more than 8 bits";
  }
}

TEST_F(RecorderTest, MissingFolderIsReportedOnceARenderWhichGoesOn) {
  Enable((folder_ / "missing"));
  for (int render = 0; render < 2; ++render) {
    EXPECT_EQ(Render(1, 2), Lines{(folder_ / "missing/frame_0001.png") +
                                  ": the frame is not recorded: the folder does not exist"});
  }
  EXPECT_EQ(FramesRecorded(), 0);
  Enable("");
  EXPECT_EQ(Render(1, 2), Lines{"The render recorder has no folder: no frame is recorded"});
  EXPECT_EQ(results_, std::vector<RENDERRESULT>(6, RENDERRESULT_OK));
}

TEST_F(RecorderTest, FullDiskLeavesTheFramesBeforeAlone) {
  Enable(folder_.Name());
  Render(1, 1);
  const std::string path = (folder_ / "frame_0001.png"), before = TempFolder::Read(path);
  options_.background = Vector(1.0);
  application_.GetFaults().FailAt(host::Fault::FileWrite, 1, -1);
  results_.clear();
  const Lines lines = Render(1, 2);
  EXPECT_EQ(results_, std::vector<RENDERRESULT>(2, RENDERRESULT_OK));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].find(path + ": the frame is not recorded: the disk is full"), 0u) << lines[0];
  EXPECT_EQ(TempFolder::Read(path), before);
  EXPECT_EQ(folder_.Entries(), 1u) << "nothing half written stays";
  application_.GetFaults().Clear();
  application_.GetFaults().FailAt(host::Fault::FileRename, 1, -1);
  EXPECT_EQ(Render(1, 1)[0].find(path + ": the frame is not recorded: the earlier file cannot be replaced"),
            0u);
  EXPECT_EQ(TempFolder::Read(path), before);
  application_.GetFaults().Clear();
  EXPECT_EQ(Render(1, 2), Lines());
  EXPECT_NE(TempFolder::Read(path), before) << "a frame that is rendered again replaces the old one";
  EXPECT_EQ(FramesRecorded(), 3);
}

TEST_F(RecorderTest, ProbesAndStoppedRendersAreNotRecorded) {
  Enable(folder_.Name());
  Render(1, 1);
  const std::string before = TempFolder::Read(folder_ / "frame_0001.png");
  options_.probe = [](VolumeData*) {};
  EXPECT_EQ(Render(1, 2), Lines());
  EXPECT_EQ(results_, std::vector<RENDERRESULT>(3, RENDERRESULT_OK));
  EXPECT_EQ(TempFolder::Read(folder_ / "frame_0001.png"), before) << "not replaced by an empty one";
  EXPECT_EQ(folder_.Entries(), 1u);
  options_.probe = nullptr;
  results_.clear();
  application_.GetFaults().FailAt(host::Fault::UserBreak, 1, -1);
  EXPECT_EQ(Render(1, 1), Lines());
  EXPECT_NE(results_, std::vector<RENDERRESULT>{RENDERRESULT_OK});
  EXPECT_EQ(TempFolder::Read(folder_ / "frame_0001.png"), before);
}

} // namespace
} // namespace kelvra
