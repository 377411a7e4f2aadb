// Values of the plug-in interface: text, paths, containers, arrays, vectors.
#include "c4d.h"
#include "host/application.h"
#include "support/common.h"

namespace {

class SdkValues : public testing::Test {
protected:
  host::Application application;
};

std::string Utf8(const String& s) {
  CHAR text[256];
  s.GetCString(text, sizeof text, STRINGENCODING_UTF8);
  return text;
}

TEST_F(SdkValues, TextKeepsCharactersBeyondAscii) {
  // Two, three and four bytes; the last one becomes a pair of units.
  const String s("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(s.GetLength(), 4);
  EXPECT_EQ(Utf8(s), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(Utf8(String("a\xFFz")), "a\xC3\xBFz") << "a byte that is not UTF-8 is taken as Latin-1";
  EXPECT_EQ(String("a\xC0\x80z").GetLength(), 4) << "an overlong form is not a character";
  EXPECT_EQ(String("a\xE0\x80\x80z").GetLength(), 5);
}

TEST_F(SdkValues, TextOutsideItsPreconditionsEndsTheProgram) {
  const String s("point");
  EXPECT_EQ(Utf8(s.SubStr(1, 3)), "oin");
  EXPECT_FALSE(s.SubStr(2, 0).Content());
  EXPECT_EQ(Utf8(s.Left(99)), "point");
  LONG at = 0;
  EXPECT_DEATH(s.SubStr(3, 3), "outside the text");
  EXPECT_DEATH(s.SubStr(5, 0), "outside the text");
  EXPECT_DEATH(s.SubStr(-1, 2), "outside the text");
  EXPECT_DEATH(at += s[5], "outside the text");
  EXPECT_DEATH(s.FindFirst('i', nullptr), "no place for its hit");
}

TEST_F(SdkValues, FindingStartsAtTheGivenPlace) {
  const String s("a{b}{c}");
  LONG at = -1;
  ASSERT_TRUE(s.FindFirst("{", &at, 2));
  EXPECT_EQ(at, 4);
  ASSERT_TRUE(s.FindLast("{", &at, 3));
  EXPECT_EQ(at, 1);
  at = 77;
  EXPECT_FALSE(s.FindFirst("x", &at));
  EXPECT_DEATH(s.FindFirst("{", &at, 99), "outside the text");
  EXPECT_EQ(at, 77) << "untouched without a hit";
}

TEST_F(SdkValues, NumbersToTextAndBack) {
  const struct {
    Real value;
    LONG digits;
    const char* text;
  } cases[] = {{1.5, 9, "1.500000000"}, {-0.25, 2, "-0.25"}, {1e6, 0, "1000000"}, {2.0 / 3.0, 3, "0.667"}};
  for (const auto& c : cases) EXPECT_EQ(Utf8(RealToString(c.value, -1, c.digits)), c.text);
  EXPECT_EQ(Utf8(RealToString(0.1)), "0.1");
  EXPECT_EQ(Utf8(RealToString(-7, 3, 1)), "-007.0");
  LONG error = 7;
  EXPECT_EQ(String(" 12.5 ").ToReal(&error), 12.5);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(String("12.5x").ToReal(&error), 12.5);
  EXPECT_NE(error, 0);
  EXPECT_EQ(String("").ToReal(&error), 0.0);
  EXPECT_NE(error, 0);
  EXPECT_EQ(String("1e300").ToLong(), 2147483647);
  EXPECT_EQ(String("nan").ToLong(), 0);
}

TEST_F(SdkValues, PathsFallApartAndJoin) {
#ifdef _WIN32
  const std::string separator = "\\";
#else
  const std::string separator = "/";
#endif
  const Filename path("/clouds/tile.01/scan.tar.LAZ");
  EXPECT_EQ(Utf8(path.GetDirectory().GetString()), "/clouds/tile.01");
  EXPECT_EQ(Utf8(path.GetFileString()), "scan.tar.LAZ");
  EXPECT_TRUE(path.CheckSuffix("laz"));
  EXPECT_EQ(Utf8((path.GetDirectory() + Filename("b.las")).GetString()),
            "/clouds/tile.01" + separator + "b.las");
  EXPECT_FALSE(Filename("/clouds/tile.01/scan").GetSuffix().Content())
      << "the folder's dot is none of the file";
  EXPECT_FALSE(Filename("/clouds/.hidden").GetSuffix().Content());
  EXPECT_EQ(Utf8(Filename("/a").GetDirectory().GetString()), "/");
}

TEST_F(SdkValues, ContainersKeepTypesOrderAndPresets) {
  BaseContainer bc;
  bc.SetReal(1009, 200.0);
  bc.SetLong(1007, 3);
  bc.SetString(1601, "2994");
  bc.SetReal(1009, 50.0);
  EXPECT_EQ(bc.GetCount(), 3);
  EXPECT_EQ(bc.GetIndexId(0), 1009);
  EXPECT_EQ(bc.GetReal(1009), 50.0);
  EXPECT_EQ(bc.GetLong(1009), 50) << "numbers convert";
  EXPECT_EQ(bc.GetReal(1601, 7.0), 0.0) << "text is not a number, and the entry is there";
  EXPECT_EQ(bc.GetLong(4711, 100), 100);
  BaseContainer inner(5), copy;
  inner.SetContainer(1, bc);
  copy = inner;
  bc.SetLong(1007, 9);
  EXPECT_EQ(copy.GetContainerInstance(1)->GetLong(1007), 3) << "copies are deep";
  EXPECT_TRUE(copy.RemoveData(1));
  EXPECT_EQ(copy.GetCount(), 0);
  const ULONG dirty = copy.GetDirty();
  copy.SetLong(1, 1);
  EXPECT_NE(copy.GetDirty(), dirty);
}

TEST_F(SdkValues, ExtremeNumbersSaturate) {
  EXPECT_EQ(GeData(1e300).GetLong(), 2147483647);
  EXPECT_EQ(GeData(-1e300).GetLong(), -2147483647 - 1);
  EXPECT_EQ(GeData(std::nan("")).GetLong(), 0);
  EXPECT_EQ(GeData((LLONG)1 << 40, LLONGVALUE_0).GetLong(), 2147483647);
}

TEST_F(SdkValues, ArraysOwnTheirElements) {
  GeDynamicArray<GeDynamicArray<LONG>> groups;
  ASSERT_TRUE(groups.ReSize(3));
  ASSERT_TRUE(groups[2].Push(7));
  GeDynamicArray<GeDynamicArray<LONG>> copy(groups);
  groups[2][0] = 8;
  EXPECT_EQ(copy[2][0], 7);
  ASSERT_TRUE(groups.Remove(0));
  EXPECT_EQ(groups.GetCount(), 2);
  EXPECT_EQ(groups[1][0], 8);
  EXPECT_FALSE(groups.ReSize(-1));
  EXPECT_FALSE(groups.ReSize((VLONG)1 << 60)) << "refused, not crashed";
  EXPECT_DEATH(groups.GetCount(), "used after its growth was refused");
  groups.FreeArray();
  EXPECT_EQ(groups.GetCount(), 0);
}

TEST_F(SdkValues, MatricesFollowTheOperatorsOfTheRelease) {
  const Matrix turn(Vector(10, 20, 30), Vector(0, 0, 2), Vector(0, 2, 0), Vector(-2, 0, 0));
  const Vector p(1, 2, 3);
  EXPECT_EQ(p * turn, Vector(4, 24, 32));
  EXPECT_EQ(p ^ turn, Vector(-6, 4, 2));
  EXPECT_EQ((p * turn) * !turn, p);
  const Matrix move = MatrixMove(Vector(1, 0, 0));
  EXPECT_EQ(p * (turn * move), (p * move) * turn) << "the right factor acts first";
  EXPECT_EQ(!Matrix(Vector(1, 1, 1), Vector(), Vector(), Vector()), Matrix()) << "singular";
  EXPECT_EQ(!Vector(), Vector());
  EXPECT_EQ(Vector(1, 2, 3) / 0.0, Vector());
}

TEST_F(SdkValues, ColourSpacesInvertEachOther) {
  for (const Real c : {0.0, 0.002, 0.2, 0.5, 1.0}) {
    const Vector there = TransformColor(Vector(c), COLORSPACETRANSFORMATION_SRGB_TO_LINEAR);
    EXPECT_NEAR(TransformColor(there, COLORSPACETRANSFORMATION_LINEAR_TO_SRGB).x, c, 1e-12);
  }
  EXPECT_NEAR(TransformColor(Vector(0.5), COLORSPACETRANSFORMATION_SRGB_TO_LINEAR).x, 0.21404114, 1e-7);
}

} // namespace
