// The console's lines about loaded files: one a file, which scripts read.
#include "object/load/load_command.h"
#include "object/load/load_lines.h"
#include "support/las_files.h"
#include "support/object_fixture.h"

namespace {

using Lines = std::vector<std::string>;

class LoadReportTest : public ObjectTest {
protected:
  static long Containing(const Lines& lines, const std::string& text) {
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.find(text) != std::string::npos; });
  }
};

TEST_F(LoadReportTest, OneLineTellsWhatWasKept) {
  const std::string path = Write("a.xyz", "x y z\n1 2 3\n4 5 6\n7 8 -9999\n16777217 0 0\n");
  Lines lines = Load(path);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].rfind(path + ": 3 points, ", 0), 0u) << lines[0];
  for (const char* part :
       {"positions are stored to 2;", "1 line rejected (line 1)", "1 point without data dropped"})
    EXPECT_EQ(Containing(lines, part), 1) << lines[0];
  op_->GetDataInstance()->SetLong(1182, 2);
  lines = Load(path);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].rfind(path + ": 2 points, ", 0), 0u) << "lines 1, 3 and 5; " << lines[0];
  EXPECT_EQ(Containing(lines, "1 of 2 kept"), 1);
}

TEST_F(LoadReportTest, TextIsWholeOnAMachineWithoutLargeBlocks) {
  const std::string path = Write("a.xyz", "1 2 3\n4 5 6\n7 8 9\n");
  application_->GetFaults().FailAt(host::Fault::LargeBlock, 1, -1);
  const Lines lines = Load(path);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].rfind(path + ": 3 points, ", 0), 0u) << lines[0];
  EXPECT_GT(application_->GetFaults().Calls(host::Fault::LargeBlock), 0) << "a large block was asked for";
}

TEST_F(LoadReportTest, RefusalsNameTheReasonAndNoPoints) {
  const struct {
    const char *name, *content, *reason;
  } cases[] = {
    {"empty.xyz", "", "the file is empty"},
    {"comma.txt", "x,y,z\n1,2,3\n4, 5, 6\n",
     "no line holds a point: 2 lines (the first is line 2) have commas between the numbers"},
    {"de.txt", "1,5;2,5;3,5\n",
     "line 1 has semicolons between the numbers, where blanks or tabs are "
     "expected; line 1 has decimal commas, where decimal points are expected"},
    {"plain.pts", "3\n1 2 3\n", "expected x y z intensity"},
    {"wide.xyz", "\xFF\xFE\x31\x00", "UTF-16"},
#if KELVRA_HAVE_LASLIB
    {"log.las", "~VERSION INFORMATION\n VERS. 2.0\n", "this is not a point cloud (it starts with ~VERSION"},
#else
    {"cloud.las", "LASF", "this build cannot read LAS and LAZ files: it was made without LASlib"},
#endif
    {"nodata.xyz", "1 2 -9999\n", "every point is marked as no data"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path =
        Write(c.name, std::string(c.content, std::strcmp(c.name, "wide.xyz") ? std::strlen(c.content) : 4));
    const Lines lines = Load(path);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].rfind(path + ": ", 0), 0u) << lines[0];
    EXPECT_EQ(Containing(lines, c.reason), 1) << lines[0];
    EXPECT_EQ(Cloud(op_).store.groups.GetCount(), 0) << "no empty group stays";
  }
  EXPECT_FALSE(doc_->DoUndo()) << "nothing was merged";
  EXPECT_EQ(Load(Path("missing.xyz")), Lines{Path("missing.xyz") + ": the file could not be opened"});
}

TEST_F(LoadReportTest, LinesThatMeanSomethingElseAreCounted) {
  const struct {
    const char *name, *content, *finding; // "" for none
  } cases[] = {
      {"a.xyz", "1 2 3 0.52 0.3 0.2\n1 2 4 255.0 0 12.5\n1 2 5\n",
       "2 lines (the first is line 1) have colours with decimals, which are not read: whole numbers from 0 "
       "to "
       "255 are expected"},
      {"normals.xyz", "1 2 3 0.5 0.1 0.2\n1 2 4 0.5 -0.1 0.2\n", ""},
      {"nine.xyz", "1 2 3 0.5 -0.1 0.2 0.5 0.5 1\n", "line 1 has colours with decimals"},
      {"grey.pts", "2\n1 2 3 0.25 8 9 10\n1 2 4 7 0.5 0.5 1\n",
       "line 3 has colours with decimals, which are not read: whole numbers from 0 to 255 are expected; line "
       "2 has "
       "intensities with decimals"},
      {"comma.xyz", "1 2 3,25\n4 5 6 \n", "line 1 has decimal commas, where decimal points are expected"},
      {"grid.asc", "ncols 3\n1 2 3\n", "line 1 announces an Esri grid"},
      {"plain.xyz", "# a colour, lately 1.5\n1 2 3 1 2 3\n", ""},
      {"degrees.xyz", "11.501 48.101 400\n11.502 48.102 410\n", "x and y look like degrees"},
      {"mast.xyz", "0.1 0.2 0\n0.2 0.1 40\n", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    op_ = Add();
    const std::string line = Load(Write(c.name, c.content)).at(0);
    EXPECT_NE(line.find(c.finding), std::string::npos) << line;
    if (!*c.finding) {
      for (const char* word : {"decimals", "commas", "announces", "degrees"})
        EXPECT_EQ(line.find(word), std::string::npos) << line;
    }
  }
}

TEST_F(LoadReportTest, ValuesThatCannotBeTrueAreLoadedAndReported) {
  const Lines lines = Load(Write("far.xyz", "0 0 0\n1e38 1 1\n"));
  EXPECT_EQ(Containing(lines, "2 points, ") + Containing(lines, "coordinates reach 1e+38"), 2) << lines[0];
  kelvra::PointStore& store = Cloud(op_).store;
  EXPECT_TRUE(kelvra::CheckStored(store).empty());
  kelvra::PointBlock& block = store.groups[0].blocks[0];
  block.positions[4] = std::numeric_limits<SReal>::quiet_NaN();
  EXPECT_EQ(kelvra::CheckStored(store).at(0).notes.size(), 2u) << "the box is larger than what is finite";
  EXPECT_EQ(kelvra::CheckStored(store).at(0).notes.size(), 1u);
  block.box.max.y = 1e300;
  EXPECT_EQ(kelvra::CheckStored(store).at(0).notes.size(), 2u) << "no point can lie there";
  block.positions[0] = -3.0f;
  const std::vector<kelvra::LoadReport> found = kelvra::CheckStored(store);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(
      kelvra::LoadLine(found[0]),
      "2 points of a scene; 1 point without finite coordinates: never shown; the stored box does not hold "
      "the points and was made again");
  EXPECT_EQ(block.box.max, Vector(-3, 0, 0));
  block.header.key = 1;
  block.header.slots[kelvra::kSlotMinX] = std::numeric_limits<LReal>::quiet_NaN();
  EXPECT_EQ(kelvra::CheckStored(store).at(0).notes.size(), 2u) << "nothing could be placed by such bounds";
  EXPECT_EQ(block.header.slots[kelvra::kSlotMinX], -3.0);
  block.header.key = 0;
  std::string error;
  ASSERT_TRUE(application_->SaveScene(doc_, Path("far.scene"), &error)) << error;
  BaseDocument* opened = application_->LoadScene(Path("far.scene"), &error);
  ASSERT_TRUE(opened) << error;
  EXPECT_EQ(Cloud(opened->GetFirstObject()).loadReports.size(), 1u) << "drivers can ask for it";
  application_->CloseDocument(opened);

  const Filename cut(Path("cut").c_str());
  AutoAlloc<HyperFile> out, in;
  LONG id = 0, level = 0;
  ASSERT_TRUE(out->Open(1, cut, FILEOPEN_WRITE, FILEDIALOG_NONE) && out->WriteChunkStart(1, 0) &&
              out->WriteLong(1) && out->WriteLong(1) && out->WriteLong(2) && out->WriteChunkEnd() &&
              out->Close());
  ASSERT_TRUE(in->Open(1, cut, FILEOPEN_READ, FILEDIALOG_NONE) && in->ReadChunkStart(&id, &level));
  EXPECT_FALSE(Cloud(op_).Read(op_, in, level));
  EXPECT_TRUE(Cloud(op_).loadReports.empty()) << "nothing is said about points that never came";
}

TEST_F(LoadReportTest, EachFindingOfALasFileIsToldOnceInItsLine) {
  if (!kelvra::LasFile::Available()) GTEST_SKIP() << "this build has no LASlib";
  const Bytes directory = {1, 0, 1, 0, 0, 0, 1, 0, 0, 12, 0, 0, 1, 0, 0xb2, 0x0b}; // 3072: 2994
  Bytes las = MakeLas(0, Spiral(1065), {{"LASF_Projection", 34735, directory}});
  las.resize(las.size() - 2);
  const std::string path = Write("short.las", std::string(las.begin(), las.end()));
  const Lines lines = Load(path);
  ASSERT_EQ(lines.size(), 1u) << testing::PrintToString(lines);
  EXPECT_EQ(lines[0].rfind(path + ": loaded 1,064 of 1,065 points, ", 0), 0u) << lines[0];
  for (const char* part :
       {"the file ends early", "EPSG 2994 found; enter it as Coordinate System to reproject"})
    EXPECT_NE(lines[0].find(part), std::string::npos) << lines[0];
}

TEST(LoadLine, CutsSayWhatCameAndWhatWasThere) {
  using kelvra::LoadCut;
  const struct {
    std::int64_t kept, available, everyNth;
    LoadCut cut;
    const char* line;
  } cases[] = {
      {3, 3, 1, LoadCut::kFileEnd,
       "loaded 3 of 10 points, 0.00 s, positions are stored to 0; the file ends early (here)"},
      {3, 9, 3, LoadCut::kDamage,
       "loaded 3 of 4 points, 1 of 3 kept, 0.00 s, positions are stored to 0; the file is damaged (here): "
       "9 of 10 points could be read"},
      {1, 10, 20, LoadCut::kNone, "1 point, 1 of 20 kept, 0.00 s, positions are stored to 0"},
      {4, 9, 3, LoadCut::kFileEnd,
       "4 points, 1 of 3 kept, 0.00 s, positions are stored to 0; the file ends early (here): 9 of 10 "
       "points could be read"},
      {3, 10, 1, LoadCut::kBlockCap,
       "loaded 3 of 10 points, 0.00 s, positions are stored to 0; the load ended there: one file can give "
       "715,827,882 points at most"},
  };
  for (const auto& c : cases) {
    kelvra::LoadReport report;
    report.announced = 10;
    report.kept = c.kept;
    report.available = c.available;
    report.everyNth = c.everyNth;
    report.cut = c.cut;
    report.cutPlace = "here";
    report.Note(kelvra::NoteSeverity::kInfo, "left out");
    report.Conclude();
    EXPECT_EQ(kelvra::LoadLine(report), c.line);
  }
}

TEST_F(LoadReportTest, TheMessageHandsOutReportsAndBlocks) {
  KelvraCloudReport answer = {3};
  EXPECT_FALSE(op_->Message(KELVRA_MESSAGE_REPORT, &answer)) << "a later version";
  Load(Write("a.xyz", "1 2 3 1 1 1\n4 5 6 2 2 2\n"));
  const std::string bad = Write("bad.las", "~V");
  const std::string line = Load(bad).at(0);
  answer.version = 2;
  ASSERT_TRUE(op_->Message(KELVRA_MESSAGE_REPORT, &answer));
  ASSERT_EQ(answer.fileCount, 1) << "of the last command only";
  EXPECT_EQ(answer.files[0].outcome, KELVRA_LOAD_REFUSED);
  EXPECT_EQ(bad + ": " + answer.files[0].line, line);
  ASSERT_EQ(answer.blockCount, 1);
  const KelvraBlockReport& block = answer.blocks[0];
  EXPECT_EQ(block.source, Path("a.xyz"));
  EXPECT_TRUE(block.points == 2 && block.hasColor && !block.isBlack && block.reader == KELVRA_READER_XYZ);
  EXPECT_TRUE(block.hasBox && block.min == LVector(1, 2, 3) && block.max == LVector(4, 5, 6));
}

TEST_F(LoadReportTest, AStopIsOneLineAndKeepsWholeFiles) {
  for (const char* name : {"all/b.xyz", "all/a.xyz", "all/c.xyz", "all/.hidden.xyz", "all/x.lax"})
    Write(name, "1 2 3\n");
  for (int asked = 1; asked < 12; ++asked) {
    SCOPED_TRACE(asked);
    op_ = Add();
    application_->GetFaults().FailAt(host::Fault::UserBreak, asked, -1);
    const Lines lines = Load(Path("all"), 1600);
    application_->GetFaults().Clear();
    const LONG loaded = Cloud(op_).store.GetPointCount();
    if (loaded == 3) return; // three files: hidden ones and index files are none
    ASSERT_EQ(lines.size(), (std::size_t)loaded + 1) << testing::PrintToString(lines);
    const std::string stoppedAt = Path("all/") + "abc"[loaded] + ".xyz";
    const char* const more[] = {"; 2 more files were not loaded", "; 1 more file was not loaded", ""};
    EXPECT_EQ(lines.back(), stoppedAt + ": stopped; nothing of it was loaded" + more[loaded]);
  }
  FAIL() << "the load never came to its end";
}

TEST_F(LoadReportTest, SavingAsTextSaysWhereOrWhyNot) {
  Give(op_, {Vector(1, 2, 3), Vector(4, 5, 6)});
  op_->GetDataInstance()->SetLong(1100, 2); // every second point
  application_->GetDialogs().AnswerFile(Path("out.xyz"));
  application_->PressButton(op_, 1609);
  EXPECT_EQ(application_->GetDialogs().Shown().back().text, "Where would you like to save to?");
  EXPECT_EQ(application_->GetConsole().Lines().back(), "Saved to : " + Path("out.xyz"));
  EXPECT_EQ(Read(Path("out.xyz")), "1 3 2 255 255 255\n");
  application_->GetDialogs().AnswerFile(Path("no/such/folder.xyz"));
  application_->PressButton(op_, 1609);
  EXPECT_EQ(application_->GetDialogs().Shown().back().text,
            Path("no/such/folder.xyz") + ": the folder does not exist");
  EXPECT_EQ(application_->GetConsole().Lines().back(), "Saved to : " + Path("out.xyz"))
      << "only the dialog tells";
}

TEST_F(LoadReportTest, SavingAsTextKeepsTheEarlierFileUnlessItIsReplaced) {
  Give(op_, {Vector(1, 2, 3)});
  Write("out.xyz.old", "of the user");
  std::filesystem::create_directory(Path("folder"));
  const std::string kept = ": the earlier file cannot be replaced and is as it was; is it read-only or open "
                           "elsewhere?";
  const struct {
    const char* name;
    host::Fault fault;
    int times;
    std::string problem;
  } cases[] = {
      {"out.xyz", host::Fault::FileRename, 9, kept},
      {"out.xyz", host::Fault::FileRename, 1, ""}, // not over a file, but aside
      {"new.xyz", host::Fault::FileRename, 9, ": the new file cannot get this name"},
      {"folder", host::Fault::FileRename, 9, ": a folder has this name"},
      {"out.xyz", host::Fault::FileWrite, 9, ": the points could not all be written; is the disk full?"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name + c.problem);
    Write("out.xyz", "earlier");
    application_->GetFaults().FailAt(c.fault, 1, c.times);
    application_->GetDialogs().AnswerFile(Path(c.name));
    application_->PressButton(op_, 1609);
    application_->GetFaults().Clear();
    EXPECT_EQ(Read(Path("out.xyz")), c.problem.empty() ? "1 3 2 255 255 255\n" : "earlier");
    if (!c.problem.empty()) {
      EXPECT_EQ(application_->GetDialogs().Shown().back().text, Path(c.name) + c.problem);
    }
    EXPECT_EQ(Read(Path("out.xyz.old")), "of the user");
    EXPECT_EQ(folder_.Entries(), 3u) << "nothing else stays";
  }
}

} // namespace
