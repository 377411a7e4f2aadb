// What files and servers can contain, as it is printed.
#include "host/base/printable.h"

#include <gtest/gtest.h>

namespace {

TEST(Printable, NothingCommandsTheTerminal) {
  const struct {
    std::string text, printable, json;
  } cases[] = {
      {"a \xc3\xa4 \xf0\x9f\x8c\x8d \"\\", "a \xc3\xa4 \xf0\x9f\x8c\x8d \"\\",
       "a \xc3\xa4 \xf0\x9f\x8c\x8d \"\\"},
      {"\x1b[2J\x7f", "\\x1b[2J\\x7f", "\\u001b[2J\\u007f"},
      {"a\r\nb", "a\\x0d\\x0ab", "a\\u000d\nb"},
      {std::string("\0", 1), "\\x00", "\\u0000"},
      {"\xc2\x9b\xc2\xa0", "\\u009b\xc2\xa0", "\\u009b\xc2\xa0"}, // C1; a blank that stays
      {"\xe2\x80\xae\xe2\x81\xa6\xe2\x80\xa8", "\\u202e\\u2066\\u2028", "\\u202e\\u2066\\u2028"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(host::Printable(c.text), c.printable);
    EXPECT_EQ(host::PrintableJson(c.text), c.json);
  }
  EXPECT_EQ(host::Printable("\x9b\xe4x\xc3"), "\\x9b\\xe4x\\xc3") << "not UTF-8";
  EXPECT_EQ(host::Shortened("\xc3\xa4\xc3\xb6\xc3\xbc", 2), "\xc3\xa4\xc3\xb6...");
  EXPECT_EQ(host::Shortened("\xc3\xa4\xc3\xb6", 2), "\xc3\xa4\xc3\xb6");
}

} // namespace
