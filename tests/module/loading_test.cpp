// Loading by the object's buttons: what is stored of made files, folders and failures.
#include "support/module_fixture.h"

#include "support/las_files.h"

namespace {

class LoadingTest : public ModuleTest {
protected:
  std::string WriteLas(const std::string& name, const Bytes& bytes) const {
    return Write(name, std::string(bytes.begin(), bytes.end()));
  }
  /** Ten lines, x counting from 0. */
  static std::string TenLines() {
    std::string text;
    for (int i = 0; i < 10; ++i) text += std::to_string(i) + " 1 2 3 4 5\n";
    return text;
  }
  static std::vector<double> Eastings(const StoredCloud& cloud) {
    std::vector<double> x;
    for (const StoredBlock& block : cloud.blocks)
      for (std::size_t i = 0; i < (std::size_t)block.count; ++i) x.push_back(block.Point(i)[0]);
    return x;
  }
};

/** For tests whose files are LAS or LAZ. */
class LasLoadingTest : public LoadingTest {
protected:
  void SetUp() override {
    LoadingTest::SetUp();
    if (!kelvra::LasFile::Available()) GTEST_SKIP() << "this build has no LASlib";
  }
};

bool Any(const std::vector<std::string>& lines, const std::string& part) {
  for (const std::string& line : lines)
    if (line.find(part) != std::string::npos) return true;
  return false;
}

TEST_F(LoadingTest, TheSuffixChoosesTheReaderOfText) {
  // As XYZ the fourth to sixth numbers are the colour, as PTS the fifth to seventh.
  const std::string line = "1.5 -2 3 40 50 60 70\n";
  const std::pair<const char*, int> cases[] = {{"a.xyz", 40}, {"a.ASC", 40}, {"a.dat", 40},
                                               {"a", 40},     {"a.pts", 50}, {"a.PTS", 50}};
  for (const auto& [name, red] : cases) {
    SCOPED_TRACE(name);
    const std::size_t before = Stored().blocks.size();
    Load(Write(name, line));
    const StoredCloud cloud = Stored();
    ASSERT_EQ(cloud.blocks.size(), before + 1);
    const StoredBlock& block = cloud.blocks.back();
    EXPECT_EQ(block.key, 0);
    EXPECT_EQ(block.positions, (std::vector<SReal>{1.5f, 3.0f, -2.0f}));
    EXPECT_EQ(block.rgb,
              (std::vector<UWORD>{UWORD(red * 256), UWORD((red + 10) * 256), UWORD((red + 20) * 256)}));
    EXPECT_EQ(block.flags, std::vector<UWORD>{0});
    EXPECT_EQ(block.corners[0], LVector(1.5, 3, -2));
  }
}

TEST_F(LasLoadingTest, EveryNthPointIsKept) {
  const std::vector<std::pair<LONG, std::vector<double>>> cases = {{3, {0, 3, 6, 9}},
                                                                   {1, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
                                                                   {0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
                                                                   {100, {0}}};
  std::vector<std::string> files = {Write("ten.xyz", TenLines())};
  std::vector<TestPoint> points;
  for (int i = 0; i < 10; ++i) points.push_back({i * 100, 0, 0, 2});
  files.push_back(WriteLas("ten.las", MakeLas(0, points)));
  for (const std::string& file : files)
    for (const auto& [step, expected] : cases) {
      SCOPED_TRACE(file + " " + std::to_string(step));
      op_ = host::CreateObjectFromMenu(doc_, kCloud);
      Set(1182, GeData(step));
      const bool text = file == files[0];
      Set(1100, GeData(5)); // thins the view, and text where loading is not thinned
      Load(file);
      EXPECT_EQ(Eastings(Stored()), text && step < 2 ? std::vector<double>({0, 5}) : expected);
    }
  Set(1100, GeData(0));
  op_->GetDataInstance()->RemoveData(1182);
  Load(files[0]);
  EXPECT_EQ(Stored().Points(), 1 + 10) << "without an entry every point is kept";
}

TEST_F(LasLoadingTest, TheBudgetBoundsLasFilesOnly) {
  Set(1181, GeData(0));
  Load(Write("ten.xyz", TenLines()));
  EXPECT_EQ(Stored().Points(), 10);
  Load(WriteLas("ten.las", MakeLas(0, Spiral(10))));
  EXPECT_EQ(Stored().Points(), 11) << "one more than the limit of none";
}

TEST_F(LoadingTest, AFolderIsLoadedByNameIntoOneGroup) {
  const std::pair<const char*, const char*> files[] = {
      {"b.xyz", "2 0 0\n"},   {"B2.xyz", "1 0 0\n"},
      {"c.txt", "3 0 0\n"},   {"a.lax", "9 0 0\n"},
      {"a.wdp", "9 0 0\n"},   {".hidden.xyz", "9 0 0\n"},
      {"bad.csv", "1,2,3\n"}, {"d.pts", "4 0 0 1\n"},
      {"empty.xyz", ""},      {"a_folder.xyz/in.xyz", "9 0 0\n"}};
  for (const auto& [name, text] : files) Write(std::string("all/") + name, text);
  const std::vector<std::string> lines = Load(Path("all"), kLoadFolder);
  const StoredCloud cloud = Stored();
  EXPECT_EQ(Eastings(cloud), (std::vector<double>{1, 2, 3, 4}));
  for (const StoredBlock& block : cloud.blocks) EXPECT_EQ(block.group, 0);
  EXPECT_TRUE(Any(lines, Path("all/bad.csv") + ": "));
  EXPECT_TRUE(Any(lines, Path("all/empty.xyz") + ": "));
  const host::DialogRecord& dialog = application_.GetDialogs().Shown().back();
  EXPECT_EQ(dialog.text, "Point Cloud");
  EXPECT_EQ(dialog.kind, (int)FILESELECT_DIRECTORY);
}

TEST_F(LoadingTest, ACancelledDialogDoesNothing) {
  const ULONG dirty = op_->GetDirty(DIRTYFLAGS_DATA);
  for (const LONG button : {kLoadFile, kLoadFolder}) EXPECT_EQ(Load("", button), std::vector<std::string>());
  EXPECT_EQ(application_.GetDialogs().Shown().size(), 2u);
  EXPECT_EQ(op_->GetDirty(DIRTYFLAGS_DATA), dirty);
  EXPECT_TRUE(doc_->DoUndo()); // the step that made the object, not one of a load
  EXPECT_EQ(doc_->GetFirstObject(), nullptr);
  EXPECT_TRUE(doc_->DoRedo());
}

TEST_F(LoadingTest, ALoadIsOneUndoStepThatCopiesNoPoint) {
  Write("two/a.xyz", "1 0 0\n");
  Write("two/b.xyz", "2 0 0\n");
  std::string many;
  for (int i = 0; i < 10000; ++i) many += std::to_string(i) + " 0 0\n";
  Load(Write("many.xyz", many));
  const LLONG before = application_.Live().bytes;
  Load(Path("two"), kLoadFolder);
  EXPECT_LT(application_.Live().bytes, before + 10000 * 32 / 2);
  const auto now = [&] { return Eastings(Stored(doc_->GetFirstObject())); };
  const std::vector<double> whole = now();
  ASSERT_EQ(whole.size(), 10002u);
  EXPECT_TRUE(doc_->DoUndo());
  EXPECT_EQ(now(), std::vector<double>(whole.begin(), whole.end() - 2));
  EXPECT_TRUE(doc_->DoUndo());
  EXPECT_EQ(now(), (std::vector<double>{}));
  EXPECT_TRUE(doc_->DoRedo() && doc_->DoRedo());
  EXPECT_EQ(now(), whole);
  EXPECT_EQ(doc_->GetFirstObject(), op_);
}

TEST_F(LasLoadingTest, ProgressIsShownWhenThePercentageChanges) {
  Load(WriteLas("many.las", MakeLas(0, Spiral(5000))));
  std::vector<std::string> loading;
  for (const std::string& text : application_.GetConsole().StatusTexts())
    if (text.rfind("Loading", 0) == 0) loading.push_back(text);
  EXPECT_EQ(loading, (std::vector<std::string>{"Loading : 1024 of 5000", "Loading : 2048 of 5000",
                                               "Loading : 3072 of 5000", "Loading : 4096 of 5000"}));
  std::deque<int> bars = application_.GetConsole().StatusBars();
  bars.erase(std::remove(bars.begin(), bars.end(), 0), bars.end());
  EXPECT_EQ(bars, (std::deque<int>{20, 40, 61, 81}));
}

class RefusedMemory : public LasLoadingTest {
protected:
  /** Refuses each allocation of a load in turn: the store holds all points or none, and a console line tells.
   */
  void SweepAllocations(const std::string& file, long long points) {
    int abandoned = 0;
    std::vector<std::string> lines;
    const auto load = [&] { lines = Load(file); };
    const auto check = [&](bool struck) {
      const StoredCloud cloud = Stored();
      if (Any(lines, "not enough memory for")) {
        ++abandoned;
        EXPECT_TRUE(cloud.blocks.empty());
      }
      // A text point whose growth is refused is dropped, and the load goes on.
      const bool dropped = Any(lines, "dropped: not enough memory");
      EXPECT_TRUE(cloud.Points() == points || (struck && cloud.Points() == 0) || dropped) << cloud.Points();
      for (const StoredBlock& block : cloud.blocks) {
        EXPECT_EQ(block.positions.size(), 3u * (std::size_t)block.count);
        EXPECT_EQ(block.flags.size(), (std::size_t)block.count);
      }
      op_ = host::CreateObjectFromMenu(doc_, kCloud);
    };
    FailEach(application_, host::Fault::Allocation, load, check);
    EXPECT_GE(abandoned, 4) << "each of the four arrays of a block";
  }
};

TEST_F(RefusedMemory, AbandonsATextFile) {
  SweepAllocations(Write("ten.xyz", TenLines()), 10);
}

TEST_F(RefusedMemory, AbandonsALasFile) {
  SweepAllocations(WriteLas("ten.las", MakeLas(2, Spiral(10))), 10);
}

} // namespace
