// The cloud object from outside: its defaults, what it does when it is made, and the points that it hands
// out.
#include "support/module_fixture.h"

#include "support/las_files.h"

namespace {

using ObjectTest = ModuleTest;

struct Default {
  LONG id, type;
  double value;
};
const Default kDefaults[] = {
    {1000, DA_REAL, 1},   {1001, DA_REAL, 0},   {1004, DA_LONG, 0}, {1006, DA_REAL, 1}, {1007, DA_LONG, 0},
    {1009, DA_REAL, 200}, {1010, DA_REAL, 10},  {1011, DA_LONG, 0}, {1016, DA_LONG, 0}, {1100, DA_LONG, 0},
    {1181, DA_LONG, 60},  {1182, DA_LONG, 1},   {1201, DA_LONG, 0}, {1202, DA_LONG, 0}, {1501, DA_VECTOR, 0},
    {1502, DA_VECTOR, 0}, {1504, DA_REAL, 100}, {1505, DA_REAL, 0}, {1506, DA_LONG, 0}, {1507, DA_REAL, 1},
    {1801, DA_REAL, 0},   {1802, DA_REAL, 100}, {1803, DA_REAL, 1},
};

TEST_F(ObjectTest, StartsWithItsDefaults) {
  const BaseContainer& data = *op_->GetDataInstance();
  for (const Default& expected : kDefaults) {
    SCOPED_TRACE(expected.id);
    EXPECT_EQ(data.GetType(expected.id), expected.type);
    if (expected.type == DA_VECTOR)
      EXPECT_EQ(data.GetVector(expected.id, Vector(7.0)), Vector());
    else
      EXPECT_EQ(data.GetReal(expected.id, 7.0), expected.value);
  }
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

class ExportTest : public ModuleTest {
protected:
  /** Points (i, 2i, 3i) with colours (i mod 256, 1, 2), i from 0. */
  void LoadText(int points) {
    std::string text;
    for (int i = 0; i < points; ++i)
      text += std::to_string(i) + " " + std::to_string(2 * i) + " " + std::to_string(3 * i) + " " +
              std::to_string(i % 256) + " 1 2\n";
    Load(Write("cloud.xyz", text));
    ASSERT_EQ(Stored().Points(), points);
  }
  /** What the object hands out; the caller's record starts like a used one. */
  std::vector<Vector> Ask(LONG message, LONG* count) {
    Answer answer = {-7, NULL};
    op_->Message(message, &answer);
    *count = answer.count;
    std::vector<Vector> values;
    if (answer.data) values.assign(answer.data, answer.data + answer.count);
    GeFree(answer.data);
    return values;
  }
};

TEST_F(ExportTest, TheShareIsRoundedDown) {
  LoadText(1001);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<double, LONG> cases[] = {{0.5, 500},  {1.0, 1001}, {2.0, 2002}, {0.0, 0},
                                           {0.0009, 0}, {-1.0, 0},   {nan, 0}};
  for (const auto& [share, expected] : cases) {
    SCOPED_TRACE(share);
    Set(1000, GeData(share));
    LONG count = 0;
    const std::vector<Vector> colors = Ask(kColors, &count);
    EXPECT_EQ(count, expected);
    ASSERT_EQ(colors.size(), (std::size_t)expected);
    const std::vector<Vector> positions = Ask(kPositions, &count);
    ASSERT_EQ(positions.size(), (std::size_t)expected);
    for (std::size_t i = 0; i < colors.size(); ++i) {
      const double k = (double)i;
      // Beyond the stored points both are cleared.
      EXPECT_EQ(colors[i], i < 1001 ? Vector((double)(i % 256 * 256) / 65535.0, 256 / 65535.0, 512 / 65535.0)
                                    : Vector());
      EXPECT_EQ(positions[i], i < 1001 ? Vector(k, 3 * k, 2 * k) : Vector())
          << "text is handed out as read, height up";
    }
  }
}

TEST_F(ExportTest, NothingIsHandedOutWithoutPointsOrRecord) {
  Vector untouched;
  Answer answer = {-7, &untouched};
  op_->Message(kColors, &answer);
  EXPECT_EQ(answer.count, 0);
  EXPECT_EQ(answer.data, &untouched) << "without points only the count is written";
  LoadText(3);
  op_->Message(kColors, NULL);
  op_->Message(kPositions, NULL);
}

TEST_F(ExportTest, ARefusedArrayIsAnsweredByNone) {
  LoadText(3);
  for (const LONG message : {kColors, kPositions}) {
    Answer answer = {-7, NULL};
    application_.GetFaults().FailAt(host::Fault::Allocation, 1, -1);
    op_->Message(message, &answer);
    application_.GetFaults().Clear();
    EXPECT_EQ(answer.data, nullptr);
    EXPECT_EQ(answer.count, 0);
  }
}

} // namespace
