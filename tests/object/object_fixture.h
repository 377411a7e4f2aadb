// The plug-ins in this process, and one cloud object in a document.
#pragma once

#include "c4d_fence.h"
#include "cloud/block_fill.h"
#include "host/application.h"
#include "object/rerenderobject.h"
#include "scene/scratch.h"

#include <memory>
#include <string>
#include <vector>

class ObjectTest : public Scratch {
protected:
  void SetUp() override {
    Scratch::SetUp();
    application_.reset(new host::Application);
    // Resources are looked for beside the module's file.
    sdk::SetPluginFile(Filename(KELVRA_SOURCE_DIR "/kelvra.so"));
    ASSERT_TRUE(PluginMessage(C4DPL_INIT_SYS, NULL));
    ASSERT_TRUE(PluginStart());
    doc_ = application_->NewDocument();
    op_ = Add();
  }
  /** Nothing may be left or have been complained about, whatever the test did. */
  void TearDown() override {
    application_->CloseDocument(doc_);
    PluginEnd();
    resource.Free();
    sdk::SetPluginFile(Filename());
    std::vector<std::string> lines = application_->Misbehaviour();
    for (const std::string& line : application_->Close()) lines.push_back(line);
    EXPECT_EQ(lines, std::vector<std::string>());
    application_.reset();
    Scratch::TearDown();
  }

  BaseObject* Add(BaseObject* parent = NULL) {
    BaseObject* op = BaseObject::Alloc(kelvra::kPointCloudId);
    doc_->InsertObject(op, parent, NULL);
    return op;
  }

  /** White points, as a block of its own. */
  static kelvra::PointGroup Group(const std::vector<Vector>& points) {
    std::vector<kelvra::SourceRecord> records;
    for (const Vector& p : points) records.push_back({p.x, p.z, p.y, {0, 0, 1}, 0, 65535, 65535, 65535, 0});
    kelvra::PointGroup group;
    group.blocks.ReSize(1);
    EXPECT_TRUE(kelvra::FillBlock(records.data(), (LONG)records.size(), 1, group.blocks[0]));
    return group;
  }
  void Give(BaseObject* op, const std::vector<Vector>& points) {
    kelvra::PointGroup group = Group(points);
    EXPECT_TRUE(Cloud(op).store.Merge(group));
  }
  static kelvra::KelvraObject& Cloud(BaseObject* op) { return *kelvra::GetCloudData(op); }

  /** Presses a load button and answers its dialog; gives the lines printed meanwhile. */
  std::vector<std::string> Load(const std::string& path, LONG button = 1602) {
    const std::size_t before = application_->GetConsole().Lines().size();
    application_->GetDialogs().AnswerFile(path);
    application_->PressButton(op_, button);
    const std::vector<std::string> lines = application_->GetConsole().Lines();
    return {lines.begin() + (std::ptrdiff_t)before, lines.end()};
  }

  std::unique_ptr<host::Application> application_;
  BaseDocument* doc_ = NULL;
  BaseObject* op_ = NULL;
};
