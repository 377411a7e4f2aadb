// The plug-ins in this process, and one cloud object in a document.
#pragma once

#include "c4d_fence.h"
#include "cloud/block_fill.h"
#include "object/rerenderobject.h"
#include "support/clean.h"
#include "support/folder.h"

class ObjectTest : public Scratch {
protected:
  void SetUp() override {
    application_.reset(new host::Application);
    // Resources are looked for beside the module's file.
    sdk::SetPluginFile(Filename(KELVRA_SOURCE_DIR "/kelvra.so"));
    ASSERT_TRUE(PluginMessage(C4DPL_INIT_SYS, nullptr));
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
    ExpectReports(*application_, expected_);
    application_.reset();
  }

  BaseObject* Add(BaseObject* parent = nullptr) {
    BaseObject* op = BaseObject::Alloc(kelvra::kPointCloudId);
    doc_->InsertObject(op, parent, nullptr);
    return op;
  }

  /** White points, as a block of its own. */
  static kelvra::PointGroup Group(const std::vector<Vector>& points) {
    std::vector<kelvra::SourceRecord> records;
    for (const Vector& p : points) records.push_back({p.x, p.z, p.y, {0, 0, 1}, 0, 65535, 65535, 65535, 0});
    kelvra::PointGroup group;
    group.blocks.ReSize(1);
    EXPECT_TRUE(kelvra::FillBlock(records.data(), (LONG)records.size(), 1, LVector(), group.blocks[0]));
    return group;
  }
  void Give(BaseObject* op, const std::vector<Vector>& points) {
    kelvra::PointGroup group = Group(points);
    EXPECT_TRUE(Cloud(op).store.Merge(group));
  }
  static kelvra::KelvraObject& Cloud(BaseObject* op) { return *kelvra::GetCloudData(op); }

  std::vector<std::string> Load(const std::string& path, LONG button = 1602) {
    return PressWithFile(*application_, op_, button, path);
  }

  std::unique_ptr<host::Application> application_;
  BaseDocument* doc_ = nullptr;
  BaseObject* op_ = nullptr;
  std::vector<std::string> expected_; ///< reports of misbehaviour
};
