#include "support/gl_fixture.h"

namespace host::gl {
namespace {

class ProgramFactoryTest : public GlTest {};

TEST_F(ProgramFactoryTest, UniformsOfEveryTypeReachTheProgram) {
  const float reals[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  const int ints[4] = {-1, 2, -3, 4};
  const unsigned uints[4] = {4000000000u, 2, 3, 4};
  struct {
    UniformType type;
    const char* condition;
    int count; // components, or the dimension of a matrix
  } const cases[] = {
      {UniformType::Float1, "U == 1.0", 1},
      {UniformType::Float4, "U == vec4(1, 2, 3, 4)", 4},
      {UniformType::Int1, "U == -1", 1},
      {UniformType::Int4, "U == ivec4(-1, 2, -3, 4)", 4},
      {UniformType::Uint4, "U == uvec4(4000000000u, 2u, 3u, 4u)", 4},
      {UniformType::Matrix2, "U[0] == vec2(1, 2) && U[1] == vec2(3, 4)", 2},
      {UniformType::Matrix3, "U[2] == vec3(7, 8, 9)", 3},
      {UniformType::Matrix4, "U[3] == vec4(13, 14, 15, 16)", 4},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.condition);
    auto factory = NewFactory();
    ASSERT_TRUE(factory->AddParameters(kParameterColor) && factory->Init(0)) << factory->LastError();
    const std::string name = factory->AddUniformParameter(Stage::Vertex, test.type, "u");
    ASSERT_TRUE(factory->HeaderFinished());
    factory->AddLine(Stage::Vertex, "#define U " + name);
    factory->AddLine(Stage::Vertex, std::string("if (") + test.condition +
                                        ") oposition = vec4(iposition, 1.0); ocolor = vec4(1.0);");
    factory->AddLine(Stage::Fragment, "ocolor = icolor;");
    ASSERT_TRUE(factory->CompilePrograms()) << factory->LastError();
    const int handle = factory->GetParameterHandle(Stage::Vertex, name);
    ASSERT_TRUE(factory->BindPrograms()) << factory->LastError();
    const bool set[4] = {factory->SetParameterReals(handle, reals, test.count),
                         factory->SetParameterInts(handle, ints, test.count),
                         factory->SetParameterUints(handle, uints, test.count),
                         factory->SetParameterMatrix(handle, reals, test.count)};
    EXPECT_EQ(set[0] + set[1] + set[2] + set[3], 1) << "exactly the declared type can be set";
    ASSERT_TRUE(factory->UnbindPrograms());
    ASSERT_TRUE(target_->Clear(0, 0, 0, 0, &error_));
    Draw(*factory, {{-0.875f, 0.75f, 0, 1, 1, 1}});
    EXPECT_EQ(Rows()[0], "7.......");
  }
}

TEST_F(ProgramFactoryTest, NamesAreDifferentForEachDeclaration) {
  auto factory = NewFactory();
  ASSERT_TRUE(factory->AddParameters(kParameterColor) && factory->Init(0));
  std::map<std::string, int> names;
  for (int i = 0; i < 20; ++i)
    ++names[factory->AddUniformParameter(Stage::Vertex, UniformType::Float1, "size")];
  ++names[factory->AddUniformParameter(Stage::Fragment, UniformType::Int1, "size")];
  ++names[factory->GetUniqueID()];
  EXPECT_EQ(names.size(), 22u);
  EXPECT_FALSE(NewFactory()->AddParameters(0x44)) << "a flag that this host does not have";
  for (const char* bad : {"", "1a", "a b", "gl_Position", "a;"})
    EXPECT_EQ(factory->AddUniformParameter(Stage::Vertex, UniformType::Float1, bad), "") << bad;
  EXPECT_EQ(factory->AddUniformParameter(Stage::Vertex, (UniformType)16, "texture"), "");
  EXPECT_NE(factory->LastError().find("type 16"), std::string::npos) << factory->LastError();
  EXPECT_EQ(factory->AddUniformParameter((Stage)4, UniformType::Float1, "geometry"), "");
}

TEST_F(ProgramFactoryTest, CallsOutOfOrderAreRefusedByName) {
  const struct {
    const char* name;
    bool (*call)(ProgramFactory&);
  } steps[] = {
      {"AddParameters", [](ProgramFactory& f) { return f.AddParameters(kParameterColor); }},
      {"Init", [](ProgramFactory& f) { return f.Init(0); }},
      {"HeaderFinished", [](ProgramFactory& f) { return f.HeaderFinished(); }},
      {"CompilePrograms", [](ProgramFactory& f) { return f.CompilePrograms(); }},
      {"BindPrograms", [](ProgramFactory& f) { return f.BindPrograms(); }},
      {"SetParameterMatrix", [](ProgramFactory& f) { return f.SetParameterMatrix(0, kIdentity, 4); }}};
  for (std::size_t done = 0; done < std::size(steps); ++done)
    for (std::size_t next = 0; next < std::size(steps); ++next) {
      SCOPED_TRACE(std::string(steps[next].name) + " after " + std::to_string(done) + " steps");
      auto factory = NewFactory();
      for (std::size_t i = 0; i < done; ++i) ASSERT_TRUE(steps[i].call(*factory)) << factory->LastError();
      const bool again = next == 0 && done == 1; // parameters may be added in parts
      const bool expected = next == done || again;
      EXPECT_EQ(steps[next].call(*factory), expected) << factory->LastError();
      EXPECT_EQ(factory->LastError().find(std::string(steps[next].name) + ": ") == 0, !expected);
    }
  auto early = NewFactory();
  EXPECT_EQ(early->AddUniformParameter(Stage::Vertex, UniformType::Int1, "u"), "");
  EXPECT_FALSE(early->AddLine(Stage::Vertex, ""));
}

TEST_F(ProgramFactoryTest, CompilerAndLinkerMessagesReachTheHandlers) {
  struct {
    const char *vertex, *fragment, *word;
    std::vector<Stage> heard;
  } const cases[] = {
      {"oposition = no_such_name;", "", "no_such_name", {Stage::Vertex}},
      {"", "ocolor = 1 +;", "", {Stage::Fragment}},
      {"oposition = missing_a;", "ocolor = missing_b;", "missing_a", {Stage::Vertex, Stage::Fragment}},
      {"missing_function();", "", "missing_function", {Stage::Vertex}}, // declared below
  };
  auto factory = NewFactory(); // the same one: a failed build does not block the next
  for (const auto& test : cases) {
    SCOPED_TRACE(test.vertex);
    ASSERT_TRUE(factory->AddParameters(kParameterColor) && factory->Init(0)) << factory->LastError();
    std::vector<Stage> heard;
    std::string messages;
    factory->AddErrorHandler([&](Stage stage, const std::string& message) {
      heard.push_back(stage);
      messages += message;
    });
    factory->AddLine(Stage::Vertex, "void missing_function();");
    factory->HeaderFinished();
    factory->AddLine(Stage::Vertex, test.vertex);
    factory->AddLine(Stage::Fragment, test.fragment);
    EXPECT_FALSE(factory->CompilePrograms());
    EXPECT_EQ(heard, test.heard);
    EXPECT_NE(messages.find(test.word), std::string::npos) << messages;
    EXPECT_FALSE(factory->BindPrograms());
    EXPECT_TRUE(factory->UnbindPrograms()) << "callers unbind after a failed bind";
  }
}

TEST_F(ProgramFactoryTest, UnusedUniformsCanBeSet) {
  auto factory = NewFactory();
  ASSERT_TRUE(factory->AddParameters(kParameterColor) && factory->Init(0));
  const std::string name = factory->AddUniformParameter(Stage::Vertex, UniformType::Float1, "unused");
  factory->HeaderFinished();
  ASSERT_TRUE(factory->CompilePrograms()) << factory->LastError();
  ASSERT_TRUE(factory->BindPrograms());
  const int handle = factory->GetParameterHandle(Stage::Vertex, name);
  EXPECT_GE(handle, 0);
  const float value = 1.0f;
  const int whole = 1;
  EXPECT_TRUE(factory->SetParameterReals(handle, &value, 1)) << factory->LastError();
  EXPECT_FALSE(factory->SetParameterInts(handle, &whole, 1));
  EXPECT_TRUE(
      factory->SetParameterMatrix(factory->GetParameterHandle(Stage::Vertex, "transmatrix"), kIdentity, 4));
  EXPECT_EQ(factory->GetParameterHandle(Stage::Vertex, "unused"), -1);
  EXPECT_EQ(factory->GetParameterHandle(Stage::Fragment, name), -1);
  for (const int bad : {-1, 2, 1000}) EXPECT_FALSE(factory->SetParameterReals(bad, &value, 1));
  EXPECT_TRUE(factory->UnbindPrograms());
}

TEST_F(ProgramFactoryTest, OneProgramIsBoundAtATimeInItsOwnContext) {
  auto first = PlainProgram(), second = PlainProgram();
  ASSERT_TRUE(first->BindPrograms());
  EXPECT_FALSE(second->BindPrograms());
  EXPECT_TRUE(second->UnbindPrograms());
  EXPECT_TRUE(first->DestroyPrograms()) << "unbinds it too";
  EXPECT_TRUE(second->BindPrograms()) << second->LastError();
  EXPECT_TRUE(second->UnbindPrograms());
  ASSERT_TRUE(context_->Release(&error_));
  EXPECT_FALSE(second->BindPrograms());
  EXPECT_NE(second->LastError().find("not current"), std::string::npos) << second->LastError();
  ASSERT_TRUE(context_->MakeCurrent(&error_));
}

} // namespace
} // namespace host::gl
