#include "support/resource_files.h"

#include "host/resource/resource_check.h"
#include "host/resource/resource_folder.h"

using namespace host::resource;

TEST(ResourceFolder, FallsBackTextByText) {
  ResourceFiles temporary;
  temporary.Write("c4d_symbols.h", "enum { IDS_A = 10000, IDS_B, IDS_C };");
  temporary.Write("strings_us/c4d_strings.str", "STRINGTABLE { IDS_A \"one\"; IDS_B \"two\"; }");
  temporary.Write("strings_de/c4d_strings.str", "STRINGTABLE { IDS_A \"eins\"; }");
  ResourceFolder folder;
  std::string error;
  ASSERT_TRUE(folder.Open(temporary.Path(), "de", &error)) << error;
  EXPECT_EQ(folder.LoadString(10000), "eins");
  EXPECT_EQ(folder.LoadString(10001), "two");
  EXPECT_EQ(folder.LoadString(10002), "[10002]");
  EXPECT_EQ(folder.FindString(99), nullptr);
  ASSERT_TRUE(folder.Open(temporary.Path(), "fr", &error)) << error; // a language that is not there at all
  EXPECT_EQ(folder.LoadString(10000), "one");
}

TEST(ResourceFolder, ReportsWhatIsMissingOrMisnamed) {
  ResourceFiles temporary;
  ResourceFolder folder;
  std::string error;
  EXPECT_FALSE(folder.Open(temporary.Path() / "nowhere", "us", &error));
  EXPECT_NE(error.find("c4d_symbols.h: No such file"), std::string::npos) << error;
  EXPECT_FALSE(folder.Open(temporary.Path(), "../us", &error));
  ASSERT_TRUE(folder.Open(temporary.Path(), "us", &error)) << error;
  EXPECT_FALSE(folder.LoadDescription("../../etc/passwd", &error));
  EXPECT_EQ(error, "'../../etc/passwd' is not a description's name: expected letters, digits and '_'");
  temporary.WriteDescription("xother", "enum { A = 1000 };", "CONTAINER Xother { }",
                             "STRINGTABLE Xother { }");
  EXPECT_FALSE(folder.LoadDescription("XOther", &error));
  EXPECT_NE(error.find("expected CONTAINER XOther, found CONTAINER Xother"), std::string::npos) << error;
  // A failure is not kept: the file may have been mended since.
  EXPECT_TRUE(folder.LoadDescription("Xother", &error)) << error;
  EXPECT_EQ(folder.LoadDescription("Xother", &error), folder.LoadDescription("Xother", &error));
  for (const char* name : {"Obase", "Tbase", "Xbase", "VPbase", "Mpreview"}) {
    const Description* base = folder.LoadDescription(name, &error);
    ASSERT_TRUE(base) << error;
    EXPECT_TRUE(base->missingTexts.empty()) << name << ": " << base->missingTexts[0];
  }
}

TEST(ResourceCheck, TheModulesResourcesAreSound) {
  for (const std::string& complaint : CheckResourceFolder(KELVRA_SOURCE_DIR "/res"))
    ADD_FAILURE() << complaint;
}

TEST(ResourceCheck, FindsSlips) {
  const struct {
    const char* body;
    const char* strings;
    const char* complaint;
  } cases[] = {
      {"REAL A { MIN 2; MAX 1; }", "A \"a\";", "Xtest: A: MIN 2.000000 is above MAX 1.000000"},
      {"REAL A { UNIT PERCENT; MAX 100; DEFAULT 101; }", "A \"a\";",
       "Xtest: A: DEFAULT 1.010000 is above MAX 1.000000"},
      {"REAL A { MINEX 0; DEFAULT 0; }", "A \"a\";", "Xtest: A: DEFAULT is an excluded limit"},
      {"LONG A { CYCLE { B; } DEFAULT 0; }", "A \"a\"; B \"b\";", "Xtest: A: DEFAULT is not in the list"},
      {"LONG A { CYCLE { B; C; } DEFAULT B; }", "A \"a\"; B \"b\"; C \"b\";",
       "Xtest: A: \"b\" is in the list twice"},
      {"REAL A { }", "", "Xtest: A has no text in strings_us"},
      {"REAL A { }", "A \"a\"; Z \"z\";", "xtest.str: Z is not defined"},
  };
  for (const auto& each : cases) {
    ResourceFiles temporary;
    temporary.WriteDescription("xtest", "enum { A = 1000, B, C };",
                               std::string("CONTAINER Xtest { NAME Xtest; ") + each.body + " }",
                               std::string("STRINGTABLE Xtest { Xtest \"x\"; ") + each.strings + " }");
    std::string all;
    for (const std::string& complaint : CheckResourceFolder(temporary.Path())) all += complaint + "\n";
    EXPECT_NE(all.find(each.complaint), std::string::npos)
        << "wanted: " << each.complaint << "\ngot: " << all;
  }
}
