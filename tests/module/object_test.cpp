// The cloud object from outside: its defaults, what it does when it is made, and the points that it hands
// out.
#include "support/module_fixture.h"

#include "host/parameters/node_parameters.h"

namespace {

using ObjectTest = ModuleTest;

TEST_F(ObjectTest, StartsWithTheDefaultsOfItsDescription) {
  using namespace host::resource;
  const BaseContainer& data = *op_->GetDataInstance();
  int set = 0;
  for (const Parameter& parameter : host::FindDescription(*host::Impl((GeListNode*)op_))->parameters) {
    if (parameter.id < 1000 || data.GetType(parameter.id) == DA_NIL) continue;
    SCOPED_TRACE(parameter.identifier);
    ++set;
    const Numbers expected = parameter.defaultNumbers.value_or(Numbers{});
    const bool vector = parameter.type == ElementType::kVector, real = parameter.type == ElementType::kReal;
    EXPECT_EQ(data.GetType(parameter.id), vector ? DA_VECTOR : real ? DA_REAL : DA_LONG);
    EXPECT_EQ(vector ? data.GetVector(parameter.id) : Vector(data.GetReal(parameter.id)),
              vector ? Vector(expected[0], expected[1], expected[2]) : Vector(expected[0]));
  }
  EXPECT_GE(set, 23);
  for (const LONG id : {1003, 1005, 1012, 1014, 1203, 1251, 1601, 1603, 1604, 1605, 1606, 1607, 1608})
    EXPECT_EQ(data.GetType(id), DA_NIL) << id << " is written by nobody";
}

TEST_F(ObjectTest, ANewCloudIsLinkedByAVideoPostOfItsOwn) {
  BaseObject* second = host::CreateObjectFromMenu(doc_, kCloud);
  std::multiset<BaseObject*> linked;
  for (BaseVideoPost* post = doc_->GetActiveRenderData()->GetFirstVideoPost(); post; post = post->GetNext())
    if (post->GetType() == kVoxelPost) linked.insert(post->GetDataInstance()->GetObjectLink(1003, doc_));
  EXPECT_EQ(linked, (std::multiset<BaseObject*>{op_, second}));
  const auto posts = [this] {
    int count = 0;
    for (BaseVideoPost* p = doc_->GetActiveRenderData()->GetFirstVideoPost(); p; p = p->GetNext())
      count += p->GetType() == kVoxelPost;
    return count;
  };
  ASSERT_TRUE(doc_->DoUndo());
  EXPECT_EQ(posts(), 1) << "it goes with its cloud";
  ASSERT_TRUE(doc_->DoRedo());
  EXPECT_EQ(posts(), 2);
}

TEST_F(ObjectTest, TheRequestButtonAsksForAStream) {
  application_.PressButton(op_, 1013);
  EXPECT_EQ(op_->GetDataInstance()->GetLong(1014), 2);
  application_.GetDialogs().Clear();
  for (const LONG id : {0, 1000, 1012, 1601}) application_.PressButton(op_, id);
  EXPECT_TRUE(application_.GetDialogs().Shown().empty()) << "no button of ours";
  EXPECT_EQ(op_->GetDataInstance()->GetLong(1014), 2);
}

struct Answer {
  LONG count;
  Vector* data;
};
constexpr LONG kColors = 1037608, kPositions = 1037609;

TEST_F(ObjectTest, WithoutPointsMemoryOrRecordNothingIsHandedOut) {
  Vector untouched;
  Answer answer = {-7, &untouched};
  op_->Message(kColors, &answer);
  EXPECT_EQ(answer.count, 0);
  EXPECT_EQ(answer.data, &untouched) << "without points only the count is written";
  Load(Write("cloud.xyz", "1 2 3\n4 5 6\n"));
  for (const LONG message : {kColors, kPositions}) {
    op_->Message(message, nullptr);
    answer = {-7, nullptr};
    application_.GetFaults().FailAt(host::Fault::Allocation, 1, -1);
    op_->Message(message, &answer);
    application_.GetFaults().Clear();
    EXPECT_EQ(answer.data, nullptr);
    EXPECT_EQ(answer.count, 0);
  }
}

} // namespace
