// What a build asks first, the registration gate, and what it asks of the hair library. The module's own
// answer of the gate is replaced in this program, as a build with a licence does.
#include "host/nodes/object_calls.h"
#include "object/object_fixture.h"
#include "otallyframe.h"
#include "registration.h"

namespace {

bool allowed = true;

class Gate : public ObjectTest {};

TEST_F(Gate, RefusesEveryModeSilentlyUntilItOpens) {
  Give(op_, {Vector(1, 2, 3), Vector(4, 5, 6)});
  const LONG results[] = {Onull, Opolygon, Onull, Ohair, Onull, Onull, Ospline};
  for (LONG mode = 6; mode >= 0; --mode)
    for (const bool open : {false, true}) {
      SCOPED_TRACE(testing::Message() << mode << " " << open);
      allowed = open;
      op_->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, mode);
      Cloud(op_).settingsChanged = 1;
      const std::size_t lines = application_->GetConsole().Lines().size();
      BaseObject* built = host::UpdateCache(op_, doc_, BUILDFLAGS_0);
      ASSERT_NE(built, nullptr);
      EXPECT_EQ(built->GetType(), open ? results[mode] : Onull);
      EXPECT_EQ(application_->GetConsole().Lines().size(), lines);
      // Nothing outside of the cache either.
      EXPECT_EQ(op_->GetNext() != NULL, mode < 5 || (mode == 5 && open));
      const bool linked = op_->GetDataInstance()->GetLink(KELVRA_PARTICLE_GROUP, doc_) != NULL;
      EXPECT_EQ(linked, mode < 4 || (mode == 4 && open));
    }
}

/** Writes down what is asked of the hair library, and whether tags may be copied. */
class HairCalls : public ObjectTest {
protected:
  void SetUp() override {
    ObjectTest::SetUp();
    calls.clear();
    copies = true;
    host_ = t_C4DOS;
    os_ = *t_C4DOS;
    tags_ = *os_.point;
    hair_ = *os_.hair;
    os_.point = &tags_;
    os_.hair = &hair_;
    tags_.CopyTagsTo = [](BaseObject* op, BaseObject* to, LONG visible, LONG variable, LONG hierarchical) {
      const LONG asked[3] = {visible, variable, hierarchical};
      Say("copy");
      for (const LONG flag : asked) calls.back() += " " + std::to_string(flag);
      return copies ? host_->point->CopyTagsTo(op, to, visible, variable, hierarchical) : FALSE;
    };
    hair_.Lock = [](HairObject* op, BaseDocument* doc, BaseThread* thread, Bool validate, LONG flags) {
      Say(doc && thread ? "lock" : "lock of nothing");
      return host_->hair->Lock(op, doc, thread, validate, flags);
    };
    hair_.SetGuides = [](HairObject* op, HairGuides* guides, Bool clone) {
      Say("set");
      return host_->hair->SetGuides(op, guides, clone);
    };
    hair_.Unlock = [](HairObject* op) {
      Say("unlock");
      host_->hair->Unlock(op);
    };
    hair_.Update = [](HairObject* op, BaseDocument* doc) {
      Say(doc ? "update" : "update of nothing");
      return host_->hair->Update(op, doc);
    };
    t_C4DOS = &os_;
  }
  void TearDown() override {
    t_C4DOS = host_;
    ObjectTest::TearDown();
  }
  static void Say(const char* call) { calls.push_back(call); }

  static inline std::vector<std::string> calls;
  static inline bool copies = true;

private:
  static inline OperatingSystem* host_ = nullptr;
  OperatingSystem os_;
  C4D_Point tags_;
  C4D_Hair hair_;
};

TEST_F(HairCalls, GuidesAreSetUnderTheLockAndVisibleTagsFollow) {
  Give(op_, {Vector(1, 2, 3)});
  op_->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, KELVRA_CONVERT_MODE_HAIR);
  std::vector<std::string> expected = {"lock", "set", "unlock", "copy 1 0 0", "update"};
  for (const bool may : {true, false}) {
    calls.clear();
    copies = may;
    if (!may) expected.pop_back();
    Cloud(op_).settingsChanged = 1;
    BaseObject* built = host::UpdateCache(op_, doc_, BUILDFLAGS_0);
    EXPECT_EQ(built->GetType(), Ohair) << "returned either way";
    EXPECT_EQ(calls, expected);
  }
}

} // namespace

kelvra::RegistrationState kelvra::GetRegistrationState() {
  return {allowed, "of a test"};
}
