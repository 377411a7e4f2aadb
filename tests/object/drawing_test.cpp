// The program that draws points, the calls that a draw makes, and draws that fail.
#include "support/gl_recorder.h"
#include "support/view_fixture.h"

namespace {

using Lines = std::vector<std::string>;

using DrawingTest = ViewTest;

TEST_F(DrawingTest, TheProgramIsBuiltOnceLineByLine) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  GlRecorder gl;
  Lit(*view);
  // Uniforms in the order of declaration (stage: 1 vertex, 2 fragment; type: 0 float, 2 three floats, 4 int),
  // then the lines of each stage.
  std::string program;
  for (const std::string& call : gl.calls)
    if (call.rfind("uniform ", 0) == 0 || call.rfind("line ", 0) == 0) program += call + "\n";
  EXPECT_EQ(program, Read(KELVRA_SOURCE_DIR "/tests/data/point_program.txt"));
  gl.calls.clear();
  op_->GetDataInstance()->SetLong(1011, 5);
  Lit(*view);
  EXPECT_EQ(gl.After("line "), Lines()) << "parameters are uniforms, not text";
  EXPECT_EQ(gl.After("Compile").size(), 0u);
}

TEST_F(DrawingTest, ParametersArriveAsUniforms) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, {Vector(1), Vector(2), Vector(3), Vector(4), Vector(5)});
  doc_->SetTime(BaseTime(0.5));
  BaseContainer& data = *op_->GetDataInstance();
  data.SetReal(1000, 0.7);
  for (const LONG id : {1004, 1011, 1016, 1506}) data.SetLong(id, id == 1011 ? 6 : id == 1506 ? 2 : 1);
  data.SetVector(1501, Vector(1, 2, 3));
  data.SetVector(1502, Vector(1, 2, 8));
  data.SetReal(1504, 33);
  data.SetReal(1505, 4);
  data.SetReal(1507, 1.5);
  data.SetReal(1801, -7);
  data.SetReal(1802, 70);
  data.SetReal(1803, 2.5);
  GlRecorder gl;
  Lit(*view);
  const Lines expected = {"transmatrix",
                          "<mo_time> real 0.5",
                          "<mo_min> real 0",
                          "<mo_max> real 1",
                          "<mo_delta> real " + std::string(doc_->GetFps() == 25 ? "0.04" : "0.0333333"),
                          "<mo_nscale> real 1",
                          "<index_stop> int 2", // floor(5 * 0.7) points, the last has number 2
                          "<index_count> int 5",
                          "<index_nth> int 1", // 0 as set would leave the program undefined
                          "<falloff_normal> vector 0 0 1",
                          "<falloff_type> int 1",
                          "<falloff_action> int 2",
                          "<falloff_pos> vector 1 2 7",
                          "<falloff_rad> real 33",
                          "<falloff_func> real 1.5",
                          "<point_size> real 2.5",
                          "<vcolor_invert> int 1",
                          "<vcolor_mode> int 6",
                          "<min_height> real -7",
                          "<max_height> real 70"};
  EXPECT_EQ(gl.After("set "), expected);
  gl.calls.clear();
  data.SetVector(1502, Vector(1, 2, 3));
  data.SetLong(1100, 3);
  Lit(*view);
  const Lines set = gl.After("set ");
  EXPECT_EQ(set[9], "<falloff_normal> vector 0 0 0") << "coinciding positions";
  EXPECT_EQ(set[12], "<falloff_pos> vector 1 2 3");
  EXPECT_EQ(set[8], "<index_nth> int 3");
}

TEST_F(DrawingTest, TheProgramThinsAndColoursAndFallsOff) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  std::vector<Vector> row;
  for (int i = 0; i < 8; ++i) row.push_back(Vector(i * 4 - 14, i == 7 ? 20 : 0, 0));
  Give(op_, row);
  const struct {
    std::vector<std::pair<LONG, double>> set;
    std::size_t lit;
  } cases[] = {{{}, 8},
               {{{1100, 3}}, 3},                        // every third
               {{{1000, 0.5}}, 4},                      // the first half
               {{{1803, 0}}, 0},                        // no size
               {{{1803, 2}}, 32},                       // squares
               {{{1011, 1}}, 8},                        // white has red
               {{{1016, 1}}, 0},                        // inverted: black
               {{{1011, 5}, {1801, 0}, {1802, 40}}, 1}, // by height
               {{{1506, 1}, {1504, 8}}, 4},             // within a sphere around the origin
               {{{1506, 1}, {1004, 1}, {1504, 8}}, 7}}; // below a plane
  const BaseContainer standard = *op_->GetDataInstance();
  for (const auto& c : cases) {
    *op_->GetDataInstance() = standard;
    op_->GetDataInstance()->SetVector(1502, Vector(0, 1, 0));
    for (const auto& [id, value] : c.set)
      if (standard.GetType(id) == DA_LONG)
        op_->GetDataInstance()->SetLong(id, (LONG)value);
      else
        op_->GetDataInstance()->SetReal(id, value);
    EXPECT_EQ(Lit(*view).size(), c.lit) << testing::PrintToString(c.set);
  }
}

TEST_F(DrawingTest, ADrawThatFailsDrawsNothingAndTheNextOneTriesAgain) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  for (const host::Fault fault :
       {host::Fault::VertexBuffer, host::Fault::TemporaryBlock, host::Fault::SubBuffer,
        host::Fault::ProgramFactory, host::Fault::Compile}) {
    SCOPED_TRACE((int)fault);
    op_->Remove();
    BaseObject::Free(op_);
    op_ = Add();
    Give(op_, kThree);
    GlRecorder gl;
    application_->GetConsole().Clear();
    application_->GetFaults().FailAt(fault, 1);
    EXPECT_EQ(Lit(*view), std::vector<int>());
    EXPECT_EQ(gl.After("DrawSubBuffer"), Lines());
    EXPECT_EQ(gl.After("BindPrograms"), Lines());
    EXPECT_EQ(gl.After("Lock").size(), gl.After("Unlock").size());
    EXPECT_EQ(gl.After("BindToView").size(), gl.After("Unbind view").size());
    const Lines printed = application_->GetConsole().Lines();
    const bool compile = fault == host::Fault::Compile;
    EXPECT_EQ(!printed.empty() && printed[0].rfind("glerror", 0) == 0, compile)
        << testing::PrintToString(printed);
    application_->GetFaults().Clear();
    EXPECT_EQ(Lit(*view).size(), 3u);
  }
}

TEST_F(DrawingTest, AProgramThatMemoryCutShortIsNeverCompiled) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  long long refused = 1;
  Lines whole;
  {
    Give(op_, kThree);
    GlRecorder gl;
    Lit(*view);
    whole = gl.After("line 1 ");
  }
  ASSERT_GT(whole.size(), 20u);
  for (bool reached = true; reached; ++refused) {
    SCOPED_TRACE(refused);
    op_->Remove();
    BaseObject::Free(op_);
    op_ = Add();
    Give(op_, kThree);
    GlRecorder gl;
    application_->GetFaults().FailAt(host::Fault::TemporaryBlock, refused);
    Lit(*view);
    reached = application_->GetFaults().Calls(host::Fault::TemporaryBlock) >= refused;
    application_->GetFaults().Clear();
    if (!gl.After("Compile").empty()) {
      EXPECT_EQ(gl.After("line 1 "), whole);
    }
    EXPECT_EQ(Lit(*view).size(), 3u);
  }
  EXPECT_GT(refused, 20);
}

TEST_F(DrawingTest, WhatADrawLeavesLockedOrBoundIsReported) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  OperatingSystem* const host = t_C4DOS;
  OperatingSystem careless = *host;
  C4D_Gl gl = *host->gl;
  careless.gl = &gl;
  gl.UnlockFactory = [](GlProgramFactory*) {};
  gl.UnbindPrograms = [](GlProgramFactory*) -> Bool { return TRUE; };
  t_C4DOS = &careless;
  Lit(*view);
  t_C4DOS = host;
  const std::vector<std::string> reports = application_->Misbehaviour();
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_NE(reports[0].find("still bound"), std::string::npos);
  EXPECT_NE(reports[1].find("still locked"), std::string::npos);
  expected_ = reports;
}

TEST_F(DrawingTest, NothingIsAskedOfTheCardWithoutPointsOrOpenGl) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  GlRecorder gl;
  Lit(*view);
  Give(op_, kThree);
  view->SetDrawPortType(DRAWPORT_TYPE_SOFTWARE);
  Lit(*view);
  EXPECT_EQ(gl.calls, Lines());
}

TEST_F(DrawingTest, OnlyPointsAndSizeAreUploadedAgain) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  Lit(*view);
  GlRecorder gl;
  // Which parameters raise the upload flag, and which the conversion's.
  for (LONG id = 1000; id < 1900; ++id) {
    SCOPED_TRACE(id);
    Cloud(op_).settingsChanged = 0;
    const DescID changed(id);
    DescriptionPostSetValue message;
    message.descid = &changed;
    op_->Message(MSG_DESCRIPTION_POSTSETPARAMETER, &message);
    const bool converts = id == 1005 || id == 1006 || id == 1100 || id == 1201 || id == 1202 || id == 1501 ||
                          id == 1502 || id == 1504 || id == 1505 || id == 1601;
    EXPECT_EQ(Cloud(op_).settingsChanged, converts ? 1 : 0);
    EXPECT_EQ(Cloud(op_).store.uploadFlag, id == 1009 ? 1 : 0);
    if (Cloud(op_).store.uploadFlag) Lit(*view);
  }
  EXPECT_EQ(gl.After("AllocSubBuffer").size(), 1u);
}

} // namespace
