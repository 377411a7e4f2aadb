// Numbers out of text, beside the C library's own reading of the same bytes.
#include "support/common.h"
#include "text/number_parse.h"

#include <random>

namespace {

void ExpectAsLibrary(const std::string& text) {
  const char* end = nullptr;
  char* libraryEnd = nullptr;
  const double value = kelvra::ParseReal(text.c_str(), text.c_str() + text.size(), &end);
  double expected = std::strtod(text.c_str(), &libraryEnd);
  if (libraryEnd == text.c_str()) expected = 0.0; // not every library remembers that no number is 0
  EXPECT_EQ(end, libraryEnd) << '"' << text << '"';
  // What follows "nan" in brackets is the library's own affair.
  if (std::isnan(value) && std::isnan(expected))
    EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
  else
    EXPECT_EQ(std::memcmp(&value, &expected, sizeof value), 0) << text << " gives " << value;
  // Integers as where a long has 32 bits.
  const std::int32_t integer = kelvra::ParseInteger(text.c_str(), &end);
  const long long wide = std::strtoll(text.c_str(), &libraryEnd, 10);
  EXPECT_EQ(integer, std::clamp(wide, -2147483648LL, 2147483647LL)) << text;
  EXPECT_EQ(end, libraryEnd) << '"' << text << '"';
}

TEST(NumberParse, OddTextsAreReadAsTheLibraryReadsThem) {
  const std::string many(400, '7'), zeros(400, '0');
  const std::string cases[] = {
      // no number, or an end that comes early; signs, white space, points
      "", " ", "+", "-.", "e5", ".e5", "+-1", " - 5", "1e", "1e+", "1e-x", "1,5", "1.2.3", "1d5", "-0",
      "+0.0", " \t\n\v\f\r-1.5", "5.", ".5", "+.5e1", "1-2", "\xA0", "0x", "0x.", "0xg", "0x1.8p3",
      "-0X.8P-1", "00x1", "0x1p-1080", "0x1p-1074", "0x1p-1075", "0x1.8p-1074", "0x1.fffffffffffff8p0",
      "0x1.fffffffffffff7p0", "0x10000000000000801", "0x.00000000000000000001p80", "0x1.fffffffffffff8p1023",
      "0x1p99999999999", "0x1p+", "nan", "-NaN", "nan(7)", "nan(", "inf", "-Infinity", "infinit", "in",
      // limits of the exact ways
      "9007199254740992", "9007199254740993", "9007199254740993e1", "1e22", "1e23", "1e-22", "1e-23",
      "8.5e-1", "9007199254740991e22", "0.1e-21", "1234567890123456789", "12345678901234567890",
      "18446744073709551615", "18446744073709551617", "5e-324", "2.4703282292062327e-324",
      "2.4703282292062328e-324", "1e400", "-1e-400", "2.2250738585072011e-308", "1.7976931348623157e308",
      "1.7976931348623159e308", "0e99999", "1e-99999999999999999999", "2147483647", "2147483648",
      "-2147483648", "-2147483649", "99999999999",
      // eight digits at a time, with neighbours of the digits; long ones
      "0.1234567", "0.12345678", "0.1234567/", "0.1234567:", "0.12345678e2", "0.1234567890123456", many,
      "-" + many, "0." + many, zeros + "42.5", "0." + zeros + "1", many + "e-400", many + "." + many};
  for (const std::string& text : cases) ExpectAsLibrary(text);
}

TEST(NumberParse, RandomTextsAreReadAsTheLibraryReadsThem) {
  std::mt19937 random(7);
  const std::string alphabets[] = {"0123456789.", "0123456789.eE+-", "01.5e-+ \txXpPaAnNiIfF()"};
  for (int round = 0; round < 60000; ++round) {
    const std::string& alphabet = alphabets[round % 3];
    std::string text(random() % 26, ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    ExpectAsLibrary(text);
    char decimal[64];
    const double value = std::ldexp((double)(int)random(), (int)(random() % 200) - 100);
    std::snprintf(decimal, sizeof decimal, "%.*g", (int)(random() % 20) + 1, value);
    ExpectAsLibrary(decimal);
  }
}

} // namespace
