#include "support/gl_fixture.h"

#include <epoxy/gl.h>
#include <thread>

namespace host::gl {
namespace {

class ContextTest : public GlTest {};

TEST_F(ContextTest, BelongsToTheThreadThatMadeIt) {
  std::string reason, releaseReason;
  bool current = true, released = true;
  std::thread([&] {
    current = context_->MakeCurrent(&reason);
    released = context_->Release(&releaseReason);
  }).join();
  EXPECT_FALSE(current);
  EXPECT_NE(reason.find("another thread"), std::string::npos) << reason;
  EXPECT_FALSE(released);
  EXPECT_NE(releaseReason.find("not current"), std::string::npos) << releaseReason;
  EXPECT_TRUE(context_->IsCurrent());
}

TEST_F(ContextTest, ScopeBringsBackTheContextBefore) {
  std::shared_ptr<Context> second = Context::Create(&error_);
  ASSERT_TRUE(second) << error_;
  EXPECT_TRUE(context_->IsCurrent()) << "creating a context must not change the current one";
  {
    CurrentScope scope(*second, &error_);
    EXPECT_TRUE(second->IsCurrent());
    CurrentScope inner(*context_, &error_);
    EXPECT_TRUE(context_->IsCurrent());
  }
  EXPECT_TRUE(context_->IsCurrent());
  second.reset();
  EXPECT_NE(glGetString(GL_VERSION), nullptr) << "the display must outlive the context that shared it";
}

TEST_F(ContextTest, GlErrorsAreCountedKeptAndDelivered) {
  std::vector<std::string> heard;
  context_->SetErrorCallback([&](const std::string& text) { heard.push_back(text); });
  for (int i = 0; i < 100; ++i) {
    glEnable(0xdead);
    EXPECT_EQ(context_->TakeError("the test"), "GL_INVALID_ENUM");
  }
  EXPECT_EQ(context_->ErrorCount(), 100);
  EXPECT_EQ(heard.size(), 100u);
  EXPECT_EQ(context_->Errors().size(), 64u);
  context_->ClearErrors();
}

TEST_F(ContextTest, RefusesPictureSizesThatCannotBe) {
  for (const auto& [width, height, samples] :
       {std::array<int, 3>{0, 4, 1}, {4, -1, 1}, {1 << 20, 4, 1}, {4, 4, 0}, {4, 4, 1000}}) {
    std::string reason;
    EXPECT_FALSE(Framebuffer::Create(context_, width, height, samples, &reason));
    EXPECT_NE(reason.find("1 to "), std::string::npos) << reason;
  }
}

} // namespace
} // namespace host::gl
