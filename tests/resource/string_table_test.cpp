#include "host/resource/string_table.h"
#include "support/common.h"

using namespace host::resource;

TEST(StringTable, ReadsNamesEscapesAndShortTexts) {
  StringTable table;
  std::string error;
  const char* text = R"(STRINGTABLE Name { // a comment
    A "long // no comment" "short"; B "\"q\" \\ \n\t"; C "\u00e4 \ud83d\ude00 ä"; D ""; })";
  ASSERT_TRUE(ParseStringTable(text, "a.str", &table, &error)) << error;
  EXPECT_EQ(table.name, "Name");
  EXPECT_EQ(table.texts["A"].longText, "long // no comment");
  EXPECT_EQ(table.texts["A"].shortText, "short");
  EXPECT_EQ(table.texts["B"].longText, "\"q\" \\ \n\t");
  EXPECT_EQ(table.texts["B"].shortText, table.texts["B"].longText);
  EXPECT_EQ(table.texts["C"].longText, "\xC3\xA4 \xF0\x9F\x98\x80 \xC3\xA4");
  EXPECT_EQ(table.texts.size(), 4u);
}

TEST(StringTable, NamesThePlaceOfEveryFault) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"TABLE { }", "a.str:1:1: expected 'STRINGTABLE', found 'TABLE'"},
      {"STRINGTABLE { A 5; }", "a.str:1:17: expected a text in quotes, found '5'"},
      {"STRINGTABLE { A \"x\" }", "a.str:1:21: expected ';', found '}'"},
      {"STRINGTABLE { A \"x\"; A \"y\"; }", "a.str:1:22: 'A' has a text already"},
      {"STRINGTABLE {\n A \"x\n\"; }", "a.str:2:4: this text is not closed on its line"},
      {"STRINGTABLE { A \"\\q\"; }", "a.str:1:18: unknown escape"},
      {"STRINGTABLE { A \"\\u12\"; }", "a.str:1:18: expected four hex digits after \\u"},
      {"STRINGTABLE { A \"\\ud83d\"; }", "a.str:1:18: \\u escape is not a character"},
      {"STRINGTABLE { A \"\\ud83d\\u0041\"; }", "a.str:1:18: \\u escapes form no pair"},
      {"STRINGTABLE { A \"\xE4\"; }", "a.str:1:17: this text is not valid UTF-8"},
      {"STRINGTABLE { A \"\xED\xA0\x80\"; }", "a.str:1:17: this text is not valid UTF-8"},
      {"STRINGTABLE { } }", "a.str:1:17: expected the end of the file, found '}'"},
  };
  for (const auto& each : cases) {
    StringTable table;
    std::string error;
    EXPECT_FALSE(ParseStringTable(each.text, "a.str", &table, &error)) << each.text;
    EXPECT_EQ(error.substr(0, std::string(each.error).size()), each.error);
  }
}
