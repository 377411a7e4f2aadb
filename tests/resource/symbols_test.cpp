#include "host/resource/symbols.h"
#include "support/common.h"

using namespace host::resource;

TEST(Symbols, ReadsValuesInEverySpelling) {
  const char* text =
      "\xEF\xBB\xBF// comment\n#ifndef X\n  #define X\nenum Names\n{\n  A = 1000, B, /* C = 5, */ D = 0x10,\n"
      "  E = A, F, G = -3,\n};\n#endif\n";
  SymbolTable symbols;
  std::string error;
  ASSERT_TRUE(ParseSymbols(text, "a.h", &symbols, &error)) << error;
  const std::vector<std::pair<std::string, std::int32_t>> expected = {{"A", 1000}, {"B", 1001}, {"D", 16},
                                                                      {"E", 1000}, {"F", 1001}, {"G", -3}};
  EXPECT_EQ(symbols.Entries(), expected);
  EXPECT_FALSE(symbols.Find("C"));
}

TEST(Symbols, NamesThePlaceOfEveryFault) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"", "a.h:1:1: expected 'enum', found the end of the file"},
      {"enum { A = 1", "a.h:1:13: expected ',' or '}', found the end of the file"},
      {"enum { A = 1.5 };", "a.h:1:12: expected a whole number or an earlier name, found '1.5'"},
      {"enum { A = B, B };", "a.h:1:12: 'B' is not defined before this line"},
      {"enum {\n  A,\n  A };", "a.h:3:3: 'A' is defined twice"},
      {"enum { A = 0x7fffffff, B };", "a.h:1:24: 'B' = 2147483648 does not fit in 32 bits"},
      {"enum { A = 99999999999999999999 };",
       "a.h:1:12: expected a whole number or an earlier name, found '999"},
      {"enum { A = 'abcd' };", "a.h:1:12: unexpected '''"},
      {"enum { A } ;\nenum { B };", "a.h:2:1: expected the end of the file, found 'enum'"},
      {"enum { A /* open", "a.h:1:10: this comment is not closed"},
      {"enum { \x01 };", "a.h:1:8: unexpected byte 0x01"},
  };
  for (const auto& each : cases) {
    SymbolTable symbols;
    std::string error;
    EXPECT_FALSE(ParseSymbols(each.text, "a.h", &symbols, &error)) << each.text;
    EXPECT_EQ(error.substr(0, std::string(each.error).size()), each.error);
  }
}
