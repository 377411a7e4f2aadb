// Memory refused at every place of a build, and a build that is stopped, in every mode.
#include "host/base/text.h"
#include "support/convert_fixture.h"

namespace {

/** What a mode built, in the cache and beside it. */
struct Outcome {
  LONG type = NOTOK; ///< NOTOK: nothing in the cache
  std::vector<Vector> points;
  std::vector<std::pair<std::string, LONG>> tags; ///< names and lengths
  bool operator==(const Outcome& o) const { return type == o.type && points == o.points && tags == o.tags; }
};

class Refusals : public ConvertTest, public testing::WithParamInterface<Mode> {
protected:
  void SetUp() override {
    ConvertTest::SetUp();
    Give(Scatter(40));
    Data().SetReal(KELVRA_SEGMENT_BREAK, 20.0);
    Build(GetParam());
  }
  BaseObject* Again() {
    Cloud().settingsChanged = 1;
    // The group is found by its name; particles and the emitter are made again.
    Data().SetLink(KELVRA_PARTICLE_GROUP, nullptr);
    if (GetParam() == kParticles) System()->FreeAllParticles();
    if (BaseObject* emitter = op_->GetNext()) BaseObject::Free(emitter);
    return Build(GetParam());
  }
  Outcome Look(BaseObject* built) {
    Outcome found;
    if (!built) return found;
    found.type = built->GetType();
    if (found.type == Ohair) {
      HairObject* hair = (HairObject*)built;
      EXPECT_TRUE(hair->Lock(doc_, nullptr, FALSE, 0)) << "left locked";
      if (HairGuides* guides = hair->GetGuides())
        found.points.assign(guides->GetPoints(), guides->GetPoints() + guides->GetPointCount());
      hair->Unlock();
    } else if (found.type == Onull) {
      if (GetParam() == kParticles && System()) found.points = ParticlesOf(Groups().back());
      if (const host::EmitterNode* emitter = host::AsEmitter(host::Impl(op_->GetNext())))
        for (LONG i = 0; i < emitter->count; ++i) {
          found.points.push_back(emitter->storage[i].position);
          found.points.push_back(emitter->storage[i].color);
        }
    } else {
      found.points = PointsOf(built);
    }
    for (BaseTag* tag = built->GetFirstTag(); tag; tag = tag->GetNext())
      found.tags.push_back({host::Utf8(tag->GetName()), ((VariableTag*)tag)->GetDataCount()});
    return found;
  }
  /** Is that what a build may leave of `whole` when something was refused? */
  bool IsAllowed(const Outcome& found, const Outcome& whole) {
    if (found.type == Ohair) return GetParam() == kHair && found.points.empty(); // guides alone are missing
    std::size_t next = 0; // a particle alone may be missing, or all
    for (const Vector& p : whole.points)
      if (GetParam() == kParticles && next < found.points.size() && found.points[next] == p) ++next;
    return next == found.points.size() && (found.type == Onull || found.type == NOTOK);
  }
};

TEST_P(Refusals, LeaveAKnownResultAndTheNextBuildIsWhole) {
  const Outcome whole = Look(Again());
  BaseObject* null = BaseObject::Alloc(Onull); // the host keeps the name of a type from its first object on
  BaseObject::Free(null);
  const host::LiveCounts before = application_.Live();
  BaseObject* built = nullptr;
  const auto build = [&] { built = Again(); };
  FailEach(application_, host::Fault::Allocation, build, [&](bool struck) {
    const Outcome found = Look(built);
    EXPECT_TRUE(found == whole || (struck && IsAllowed(found, whole)))
        << "type " << found.type << ", " << found.points.size() << " points";
    EXPECT_TRUE(Look(Again()) == whole) << "the next one";
    ExpectLive(application_, before);
  });
  EXPECT_EQ(Stored().Points(), 40) << "the cloud itself";
}

TEST_P(Refusals, AStoppedBuildLeavesNothingAndTheNextOneIsWhole) {
  const Outcome whole = Look(Again());
  application_.GetFaults().FailAt(host::Fault::UserBreak, 1);
  const Outcome stopped = Look(Again());
  EXPECT_TRUE(stopped.type == Onull && stopped.points.empty()) << stopped.type;
  EXPECT_EQ(op_->CheckCache(nullptr), GetParam() != kEmpty);
  EXPECT_TRUE(Look(host::UpdateCache(op_, doc_, BUILDFLAGS_0)) == whole);
}

INSTANTIATE_TEST_SUITE_P(Modes, Refusals,
                         testing::Values(kPoints, kEmpty, kHair, kParticles, kEmitter, kSpline));

} // namespace
