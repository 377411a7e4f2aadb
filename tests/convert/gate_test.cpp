// What a build asks first, the registration gate. The module's own answer is replaced in this program, as a
// build with a licence does.
#include "c4d_os.h"
#include "host/nodes/object_calls.h"
#include "otallyframe.h"
#include "registration.h"
#include "support/object_fixture.h"

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
      EXPECT_EQ(op_->GetNext() != nullptr, mode < 5 || (mode == 5 && open));
      const bool linked = op_->GetDataInstance()->GetLink(KELVRA_PARTICLE_GROUP, doc_) != nullptr;
      EXPECT_EQ(linked, mode < 4 || (mode == 4 && open));
    }
}

TEST_F(Gate, HairTakesTheCloudsVisibleTagsAlong) {
  static std::vector<LONG> asked;
  OperatingSystem* const host = t_C4DOS;
  OperatingSystem os = *host;
  C4D_Point tags = *os.point;
  os.point = &tags;
  tags.CopyTagsTo = [](BaseObject*, BaseObject*, LONG visible, LONG variable, LONG hierarchical) -> Bool {
    asked = {visible, variable, hierarchical};
    return TRUE;
  };
  allowed = true;
  Give(op_, {Vector(1, 2, 3)});
  op_->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, KELVRA_CONVERT_MODE_HAIR);
  t_C4DOS = &os;
  host::UpdateCache(op_, doc_, BUILDFLAGS_0);
  t_C4DOS = host;
  EXPECT_EQ(asked, (std::vector<LONG>{TRUE, FALSE, FALSE}));
}

} // namespace

kelvra::RegistrationState kelvra::GetRegistrationState() {
  return {allowed, "of a test"};
}
