// Plug-ins that live in the test program, registered as a module registers its own.
#pragma once

#include "c4d_os.h"
#include "support/clean.h"
#include "support/common.h"

#include "host/base/text.h"

constexpr LONG kProbe = 1099201, kProbePost = 1099202, kProbeHook = 1099203, kStubborn = 1099204;

inline std::string Text(const String& s) {
  return host::Utf8(s);
}

/** An object with a number of its own; `onMessage` runs as plug-in code. */
class Probe : public ObjectData {
public:
  static NodeData* Alloc() { return gNew Probe; }
  static inline int freed = 0;
  static inline bool failCopy = false;
  static inline std::function<Bool(Probe&, GeListNode*, LONG, void*)> onMessage;

  LONG number = 0;
  Bool Init(GeListNode* node) override {
    ((BaseList2D*)node)->GetDataInstance()->SetReal(1000, 1.5);
    return TRUE;
  }
  void Free(GeListNode*) override { ++freed; }
  Bool Message(GeListNode* node, LONG type, void* data) override {
    return onMessage ? onMessage(*this, node, type, data) : TRUE;
  }
  Bool CopyTo(NodeData* dest, GeListNode*, GeListNode*, COPYFLAGS, AliasTrans*) override {
    ((Probe*)dest)->number = number;
    return !failCopy;
  }
};

/** Refuses to be made. */
class Stubborn : public ObjectData {
public:
  static NodeData* Alloc() { return gNew Stubborn; }
  Bool Init(GeListNode*) override { return FALSE; }
};

class ProbePost : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew ProbePost; }
};
class ProbeHook : public SceneHookData {
public:
  static NodeData* Alloc() { return gNew ProbeHook; }
};

class HostTest : public testing::Test {
protected:
  void SetUp() override {
    Probe::onMessage = nullptr;
    Probe::failCopy = false;
    Probe::freed = 0;
    application_.reset(new host::Application);
    ASSERT_TRUE(RegisterObjectPlugin(kProbe, "Probe", OBJECT_GENERATOR, Probe::Alloc, String(), nullptr, 0));
    ASSERT_TRUE(RegisterObjectPlugin(kStubborn, "Stubborn", 0, Stubborn::Alloc, String(), nullptr, 0));
    ASSERT_TRUE(RegisterVideoPostPlugin(kProbePost, "Post", PLUGINFLAG_VIDEOPOST_INHERENT, ProbePost::Alloc,
                                        String(), 0, 7));
    ASSERT_TRUE(RegisterSceneHookPlugin(kProbeHook, "Hook", 0, ProbeHook::Alloc, 0, 0));
    doc_ = application_->NewDocument();
  }
  /** A test that expects reports looks at them itself and clears this. */
  void TearDown() override {
    if (cleanExpected_) ExpectReports(*application_);
    application_->Close();
    Probe::onMessage = nullptr;
  }

  BaseObject* Add(LONG type, const char* name, BaseObject* parent = nullptr, BaseObject* pred = nullptr) {
    BaseObject* op = BaseObject::Alloc(type);
    op->SetName(String(name));
    doc_->InsertObject(op, parent, pred);
    return op;
  }
  static LONG& NumberOf(BaseObject* op) { return ((Probe*)op->GetNodeData())->number; }
  /** The one report so far, empty for none. */
  std::string Reported() {
    cleanExpected_ = false;
    const std::vector<std::string>& all = application_->Misbehaviour();
    EXPECT_LE(all.size(), 1u);
    return all.empty() ? "" : all.front();
  }

  std::unique_ptr<host::Application> application_;
  BaseDocument* doc_ = nullptr;
  bool cleanExpected_ = true;
};
