// The program that draws points, the calls that a draw makes, and draws that fail.
#include "gl_recorder.h"
#include "view_fixture.h"

namespace {

using Lines = std::vector<std::string>;

/** In the order of declaration: stage (1 vertex, 2 fragment), type (0 float, 2 three floats, 4 int), name. */
const Lines kUniforms = {
    "1 0 point_size",     "1 0 min_height",   "1 0 max_height",     "2 4 fcolor_mode", "1 4 vcolor_mode",
    "1 4 vcolor_invert",  "1 4 falloff_type", "1 4 falloff_action", "1 2 falloff_pos", "1 0 falloff_rad",
    "1 2 falloff_normal", "1 0 falloff_func", "1 0 mo_time",        "1 0 mo_min",      "1 0 mo_max",
    "1 0 mo_delta",       "1 0 mo_nscale",    "1 4 index_stop",     "1 4 index_count", "1 4 index_nth",
};

const Lines kVertexLines = {
    "vec3 ranv;",
    "if (gl_VertexID><index_stop>)\t{gl_PointSize = 0;return;}",
    "if (mod(gl_VertexID,<index_nth>)>0)\t\t\t\t{gl_PointSize = 0;return;}",
    "float size = <point_size>;",
    "vec4 col = vec4(icolor.rgb, 1.0);",
    "float col_val = 1.0;",
    "switch (<vcolor_mode>) {",
    "case 1: col_val = icolor.r, col = vec4(col_val,col_val,col_val, 1.0);break;",
    "case 2: col_val = icolor.g, col = vec4(col_val,col_val,col_val, 1.0);break;",
    "case 3: col_val = icolor.b, col = vec4(col_val,col_val,col_val, 1.0);break;",
    "case 4: col_val = (icolor.r+icolor.g+icolor.b)*(1.0/3.0), col = vec4(col_val,col_val,col_val, "
    "1.0);break;",
    "case 5: col_val = (iposition.y-<min_height>)/(<max_height>-<min_height>), col = "
    "vec4(col_val,col_val,col_val, 1.0);break;",
    "case 6: col_val = (iposition.y-<min_height>)/(<max_height>-<min_height>), col = "
    "vec4(col_val*icolor.r,col_val*icolor.g,col_val*icolor.b, 1.0);break;",
    "}",
    "if (<vcolor_invert>>0) col = vec4(1.0-col.r,1.0-col.g,1.0-col.b, 1.0);",
    "ocolor = col;",
    "col_val = (col.r+col.g+col.b)*(1.0/3.0);",
    "vec3  p = iposition;",
    "oposition = (transmatrix * vec4(p.xyz, 1.0));",
    "if (<falloff_action>>0)",
    "{",
    " float dist,falloff,ifalloff;",
    "switch (<falloff_type>) {",
    "case 0:",
    " dist = distance( p, <falloff_pos> );",
    "break;",
    "case 1:",
    " dist = dot( <falloff_normal>, p -<falloff_pos> );",
    "break;",
    "}",
    " falloff = smoothstep( <falloff_rad>,0.0, dist );",
    " ifalloff = pow(falloff,<falloff_func>);",
    " if (<falloff_action>==1 )  if (ifalloff<=0.0) size = 0.0; else size = <point_size>;",
    " if (<falloff_action>==2)   size = <point_size>*ifalloff;",
    "}",
    "gl_PointSize = size;",
};

using DrawingTest = ViewTest;

TEST_F(DrawingTest, TheProgramIsBuiltOnceLineByLine) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  GlRecorder gl;
  Lit(*view);
  EXPECT_EQ(gl.After("uniform "), kUniforms);
  EXPECT_EQ(gl.After("line 1 "), kVertexLines);
  EXPECT_EQ(gl.After("line 2 "), Lines{"ocolor = icolor;"});
  gl.calls.clear();
  op_->GetDataInstance()->SetLong(1011, 5);
  Lit(*view);
  EXPECT_EQ(gl.After("line "), Lines()) << "parameters are uniforms, not text";
  EXPECT_EQ(gl.After("Compile").size(), 0u);
}

TEST_F(DrawingTest, CallsComeInTheOrderThatTheFactoryAllows) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  GlRecorder gl;
  Lit(*view);
  Lines steps;
  for (const std::string& call : gl.calls)
    if (call.rfind("uniform", 0) && call.rfind("line", 0) &&
        (call.rfind("set ", 0) || call == "set transmatrix"))
      steps.push_back(call);
  EXPECT_EQ(steps, (Lines{"GetVertexBuffer 4", "AllocSubBuffer 0 72", "SetDirty 1", "GetFactory 4 2 2",
                          "Lock", "BindToView", "AddParameters 0x1281040", "Init 0", "AddErrorHandler",
                          "GetUniqueID", "HeaderFinished", "Compile", "BindPrograms", "set transmatrix",
                          "DrawSubBuffer 1: 5 3 0", "UnbindPrograms", "Unbind view", "Unlock"}));
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
