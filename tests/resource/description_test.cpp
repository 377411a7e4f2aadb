#include "support/resource_files.h"

#include "host/resource/resource_folder.h"

using namespace host::resource;

namespace {

constexpr const char* kHeader =
    "enum { A = 1000, B, C, D, E, F, G, GROUP_X = 2000, GROUP_Y, ON = 0, OFF = 1 };";
constexpr const char* kStrings =
    R"(STRINGTABLE Xtest { Xtest "Test"; A "Long A" "A"; B "B"; C "C"; D "D"; E "E"; F "F";
  G "G"; GROUP_X "X"; GROUP_Y "Y"; ON "On"; OFF "Off"; })";

class DescriptionTest : public testing::Test {
protected:
  const Description* Load(const std::string& body) {
    temporary_.WriteDescription("xtest", kHeader, "CONTAINER Xtest { NAME Xtest; " + body + " }", kStrings);
    EXPECT_TRUE(folder_.Open(temporary_.Path(), "us", &error_)) << error_;
    return folder_.LoadDescription("Xtest", &error_);
  }

  ResourceFiles temporary_;
  ResourceFolder folder_;
  std::string error_;
};

} // namespace

TEST_F(DescriptionTest, TurnsShownUnitsIntoStoredOnes) {
  const Description* description = Load("REAL A { MIN 0; MAX 150.0; STEP 1; UNIT PERCENT; DEFAULT 100; } "
                                        "VECTOR B { UNIT DEGREE; DEFAULT 180 0 -90; }"
                                        "LONG C { UNIT PERCENT; MAX 100; } REAL D { UNIT METER; MINEX 0; "
                                        "MAXEX; MAX 5; MINSLIDER 1; MAXSLIDER 2; }");
  ASSERT_TRUE(description) << error_;
  const Parameter& share = *description->FindParameter("A");
  EXPECT_EQ(share.id, 1000);
  EXPECT_EQ(share.longName, "Long A");
  EXPECT_EQ((*share.max)[0], 1.5);
  EXPECT_EQ((*share.defaultNumbers)[0], 1.0);
  const Parameter& angles = *description->FindParameter(1001);
  EXPECT_NEAR((*angles.defaultNumbers)[0], M_PI, 1e-15);
  EXPECT_EQ((*angles.defaultNumbers)[1], 0.0);
  EXPECT_NEAR((*angles.defaultNumbers)[2], -M_PI / 2, 1e-15);
  EXPECT_EQ((*description->FindParameter("C")->max)[0], 100.0);
  const Parameter& depth = *description->FindParameter("D");
  EXPECT_TRUE(depth.minExclusive && depth.maxExclusive);
  EXPECT_EQ((*depth.min)[0], 0.0);
  EXPECT_EQ((*depth.max)[0], 5.0);
}

TEST_F(DescriptionTest, ReadsListsLinksAndTexts) {
  const Description* description = Load("LONG A { CYCLE { ON; -1; OFF~500; } DEFAULT OFF; ANIM MIX; } LINK B "
                                        "{ ACCEPT { Obase; 1037074; } REFUSE { Olight; } }"
                                        "STRING C { CUSTOMGUI MULTISTRING; DEFAULT \"text\"; HIDDEN; } "
                                        "FILENAME D { DIRECTORY; SAVE; } BUTTON E { }"
                                        "GRADIENT F { COLOR; } BOOL G;");
  ASSERT_TRUE(description) << error_;
  const Parameter& list = *description->FindParameter("A");
  ASSERT_EQ(list.cycle.size(), 3u);
  EXPECT_EQ(list.cycle[0].text, "On");
  EXPECT_TRUE(list.cycle[1].isDivider);
  EXPECT_EQ(list.cycle[2].id, 1);
  EXPECT_EQ((*list.defaultNumbers)[0], 1.0);
  EXPECT_EQ(description->FindParameter("B")->accept, std::vector<std::int32_t>{1037074});
  EXPECT_EQ(description->FindParameter("C")->defaultText, "text");
  EXPECT_TRUE(description->FindParameter("C")->hidden);
  EXPECT_EQ(description->FindParameter("G")->type, ElementType::kBool);
}

TEST_F(DescriptionTest, ReopensIncludedGroupsAndHidesElements) {
  const Description* description = Load(
      "INCLUDE Obase; HIDE ID_BASELIST_NAME; GROUP ID_OBJECTPROPERTIES { DEFAULT 1; COLUMNS 2; BOOL B { }"
      "GROUP GROUP_X { GROUP { BOOL C { } } } } BOOL E { PARENTID A; } HIDE GROUP_X;");
  ASSERT_TRUE(description) << error_;
  EXPECT_TRUE(description->FindParameter(900)->hidden);
  EXPECT_EQ((*description->FindParameter(905)->defaultNumbers)[2], 1.0);
  EXPECT_TRUE(description->FindParameter("B") && description->FindParameter("C"));
  EXPECT_TRUE(description->missingTexts.empty());
}

TEST_F(DescriptionTest, PutsAnIncludedDescriptionWhereItIsIncluded) {
  temporary_.WriteDescription("xpart", "enum { PART = 1500, REPLACED = 1501 };",
                              "CONTAINER XPart { NAME XPart; GROUP { REAL PART { } } REAL REPLACED { } }",
                              "STRINGTABLE XPart { XPart \"Part\"; PART \"Part\"; REPLACED \"Old\"; }");
  const Description* description =
      Load("BOOL A; GROUP GROUP_X { INCLUDE XPart; } GROUP { LONG REPLACED { } }");
  ASSERT_TRUE(description) << error_;
  EXPECT_LT(description->FindParameter("A"), description->FindParameter("PART"));
  EXPECT_EQ(description->FindParameter(1501)->type, ElementType::kLong);
  EXPECT_EQ(description->FindParameter(1501)->longName, "[REPLACED]"); // texts do not travel with an include
}

TEST_F(DescriptionTest, NamesThePlaceOfEveryFault) {
  const struct {
    const char* body;
    const char* error; // after the file's name; columns count from "CONTAINER Xtest { NAME Xtest; "
  } cases[] = {
      {"SLIDER A { }", ":1:31: expected an element type, INCLUDE, SHOW, HIDE, NAME or '}', found 'SLIDER'"},
      {"REAL { }", ":1:36: expected an identifier for this REAL, found '{'"},
      {"REAL A }", ":1:38: expected '{', found '}'"},
      {"REAL A { COLOUR 1; }", ":1:40: expected an attribute or '}', found 'COLOUR'"},
      {"REAL A { REAL B { } }", ":1:40: expected an attribute or '}', found 'REAL'"},
      {"REAL A { CYCLE { } }", ":1:40: CYCLE does not belong to a REAL"},
      {"GROUP { MIN 1; }", ":1:39: MIN does not belong to a GROUP"},
      {"REAL A { MIN; }", ":1:43: expected a number, found ';'"},
      {"REAL A { MIN 1 }", ":1:46: expected ';', found '}'"},
      {"REAL A { MIN 1; MIN 2; }", ":1:47: MIN is given twice"},
      {"REAL A { MIN 1 2 3; }", ":1:46: expected ';': only VECTOR and COLOR take three numbers, found '2'"},
      {"VECTOR A { MIN 1 2; }", ":1:49: expected a third number, found ';'"},
      {"LONG A { MIN 0.5; }", ":1:44: expected a whole number of 32 bits, found '0.5'"},
      {"LONG A { MAX 3000000000; }", ":1:44: expected a whole number of 32 bits, found '3000000000'"},
      {"REAL A { UNIT FOOT; }",
       ":1:45: expected one of REAL, LONG, PERCENT, DEGREE, METER, TIME, found 'FOOT'"},
      {"REAL A { DEFAULT \"x\"; }", ":1:48: expected a number as the default of this REAL, found 'x'"},
      {"STRING A { DEFAULT 1; }",
       ":1:50: expected a text in quotes as the default of this STRING, found '1'"},
      {"LONG A { CYCLE { ON OFF; } }", ":1:51: expected ';', found 'OFF'"},
      {"LONG A { CYCLE { NONE; } }", ":1:48: 'NONE' is not defined in the header of Xtest or of an include"},
      {"REAL NONE { }", ":1:36: 'NONE' is not defined in the header of Xtest or of an include"},
      {"REAL 0 { }", ":1:31: a parameter's number must be above 0, found 0"},
      {"REAL A { } REAL 1000 { }", ":1:42: parameter 1000 is declared twice: A and 1000"},
      {"REAL 5000000000 { }", ":1:36: '5000000000' does not fit in 32 bits"},
      {"HIDE A;", ":1:36: 'A' is not an element before this line"},
      {"INCLUDE Onothing;", ":1:39: cannot include Onothing: "},
      {"INCLUDE Xtest;", ":1:39: cannot include Xtest: Xtest includes itself"},
      {"INCLUDE Obase; INCLUDE Obase;", ":1:54: Obase is included twice"},
      {"NAME Other;", ":1:31: NAME is given twice"},
      {"REAL A { } } REAL B { }", ":1:44: expected the end of the file, found 'REAL'"},
  };
  const std::string file = (temporary_.Path() / "description" / "xtest.res").string();
  for (const auto& each : cases) {
    EXPECT_FALSE(Load(each.body)) << each.body;
    const std::string expected = file + each.error;
    EXPECT_EQ(error_.substr(0, expected.size()), expected);
  }
}

TEST_F(DescriptionTest, RefusesEndlessNestingAndCrowdsOfElements) {
  std::string nested, closing, crowd;
  for (int level = 0; level < 100000; ++level) nested += "GROUP{", closing += "}";
  EXPECT_FALSE(Load(nested + closing));
  EXPECT_NE(error_.find("nested deeper than the 32 levels"), std::string::npos) << error_;
  for (int element = 0; element < 5000; ++element) crowd += "BOOL " + std::to_string(3000 + element) + ";\n";
  EXPECT_FALSE(Load(crowd));
  EXPECT_NE(error_.find("may hold 4096 elements"), std::string::npos) << error_;
  EXPECT_FALSE(Load(std::string(2 << 20, ' ')));
  EXPECT_NE(error_.find("longer than the 1048576 bytes"), std::string::npos) << error_;
}
