#include "support/folder.h"

#include "host/scene/value_reader.h"
#include "host/scene/value_writer.h"

using namespace host;

namespace {

class ValueStream : public Scratch {
protected:
  /** Bytes that `write` leaves behind. */
  std::string Written(const std::function<bool(ValueWriter&)>& write, LinkNumbers links = LinkNumbers()) {
    BufferedFile file(nullptr);
    EXPECT_TRUE(file.Open(Path("values"), disk::Access::Write)) << file.Error();
    ByteSink sink(file);
    ValueWriter writer(sink, links);
    EXPECT_TRUE(write(writer)) << writer.Error().text;
    EXPECT_TRUE(file.Close()) << file.Error();
    return Read(Path("values"));
  }

  template <class T>
  void ExpectSame(HYPERFILEVALUE kind, const T& value) {
    const std::string bytes = Written([&](ValueWriter& w) { return w.Value(kind, &value); });
    ByteSource source;
    ASSERT_TRUE(source.OpenMemory(bytes.data(), bytes.size()));
    ValueReader reader(source);
    T back{};
    EXPECT_TRUE(reader.Value(kind, &back)) << reader.Error().text;
    EXPECT_TRUE(back == value) << KindName(kind);
    EXPECT_EQ(source.Remaining(), 0);

    ByteSource again;
    ASSERT_TRUE(again.OpenMemory(bytes.data(), bytes.size()));
    ValueReader skipper(again);
    EXPECT_TRUE(skipper.SkipValue()) << skipper.Error().text;
    EXPECT_EQ(again.Remaining(), 0) << "skipping passes exactly one value";
  }
};

BaseContainer EveryEntry(LULONG linkTarget) {
  BaseContainer bc(77);
  bc.SetLong(1, -5);
  bc.SetLLong(2, (LLONG)1 << 60);
  bc.SetReal(3, 0.1);
  bc.SetTime(4, BaseTime(1, 3));
  bc.SetVector(5, Vector(1, 2, 3));
  bc.SetMatrix(6, MatrixMove(Vector(4, 5, 6)));
  bc.SetString(7, String("h\xc3\xb6he \xf0\x9f\x8c\x8d"));
  bc.SetFilename(8, Filename("/tmp/\xc3\xa4.txt"));
  bc.SetData(9, GeData());
  BaseLink link;
  link.target = linkTarget;
  bc.SetData(10, GeData(&link));
  BaseContainer inner(3);
  inner.SetString(1, String(""));
  inner.SetContainer(2, BaseContainer(4));
  bc.SetContainer(11, inner);
  return bc;
}

BaseContainer Nested(int depth) {
  BaseContainer bc(depth);
  if (depth > 1) bc.SetContainer(1, Nested(depth - 1));
  return bc;
}

TEST_F(ValueStream, EveryKindComesBack) {
  ExpectSame<CHAR>(HYPERFILEVALUE_CHAR, -128);
  ExpectSame<UCHAR>(HYPERFILEVALUE_UCHAR, 255);
  ExpectSame<SWORD>(HYPERFILEVALUE_WORD, -32768);
  ExpectSame<UWORD>(HYPERFILEVALUE_UWORD, 65535);
  ExpectSame<LONG>(HYPERFILEVALUE_LONG, MINLONGl);
  ExpectSame<ULONG>(HYPERFILEVALUE_ULONG, MAXULONG);
  ExpectSame<LLONG>(HYPERFILEVALUE_LLONG, INT64_MIN);
  ExpectSame<LULONG>(HYPERFILEVALUE_LULONG, UINT64_MAX);
  ExpectSame<Real>(HYPERFILEVALUE_REAL, MAXREALr);
  ExpectSame<LReal>(HYPERFILEVALUE_LREAL, -INFINITY);
  ExpectSame<SReal>(HYPERFILEVALUE_SREAL, 1e-40f);
  ExpectSame<Bool>(HYPERFILEVALUE_BOOL, TRUE);
  ExpectSame<BaseTime>(HYPERFILEVALUE_TIME, BaseTime(7, 25));
  ExpectSame<Vector>(HYPERFILEVALUE_VECTOR, Vector(1, -2, 3e300));
  ExpectSame<LVector>(HYPERFILEVALUE_LVECTOR, LVector(1, -2, 3));
  ExpectSame<SVector>(HYPERFILEVALUE_SVECTOR, SVector(1, -2, 3));
  ExpectSame<Matrix>(HYPERFILEVALUE_MATRIX, MatrixScale(Vector(1, 2, 3)));
  ExpectSame<String>(HYPERFILEVALUE_STRING, String());
  ExpectSame<String>(HYPERFILEVALUE_STRING, String("\xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x8c\x8d"));
  ExpectSame<String>(HYPERFILEVALUE_STRING, String(5000, 0x416)); // longer than one piece of the transfer
  ExpectSame<Filename>(HYPERFILEVALUE_FILENAME, Filename("/a/\xc3\xbc.las"));
  ExpectSame<BaseContainer>(HYPERFILEVALUE_CONTAINER, BaseContainer());
  ExpectSame<BaseContainer>(HYPERFILEVALUE_CONTAINER, EveryEntry(0));
  ExpectSame<BaseContainer>(HYPERFILEVALUE_CONTAINER, Nested(kMaxContainerDepth));
}

TEST_F(ValueStream, LinksChangeNumbersBothWays) {
  const BaseContainer bc = EveryEntry(500);
  const std::string bytes = Written([&](ValueWriter& w) { return w.Value(HYPERFILEVALUE_CONTAINER, &bc); },
                                    [](LULONG node) { return node == 500 ? 2 : 0; });
  ByteSource source;
  ASSERT_TRUE(source.OpenMemory(bytes.data(), bytes.size()));
  ValueReader reader(source, [](LULONG number) { return number == 2 ? 900 : 0; });
  BaseContainer back;
  ASSERT_TRUE(reader.Value(HYPERFILEVALUE_CONTAINER, &back));
  EXPECT_EQ(back.GetDataPointer(10)->GetBaseLink().target, 900u);
}

TEST_F(ValueStream, ArraysOfEveryKindComeBackPackedOrInterleaved) {
  unsigned char data[24 * 1001];
  for (std::size_t i = 0; i < sizeof data; ++i) data[i] = (unsigned char)(i * 37);
  for (int kind = HYPERFILEARRAY_CHAR; kind <= HYPERFILEARRAY_REAL; ++kind) {
    const LONG size = (LONG)ElementSize(kind);
    for (LONG count : {0, 1, 1001}) {
      for (const auto& [written, read] : {std::pair(size, size), {size, 17}, {24, size}, {24, 17}}) {
        const std::string bytes =
            Written([&](ValueWriter& w) { return w.Array(data, (HYPERFILEARRAY)kind, written, count); });
        ByteSource source;
        ASSERT_TRUE(source.OpenMemory(bytes.data(), bytes.size()));
        ValueReader reader(source);
        std::string back((std::size_t)read * 1001 + 8, '\x5a');
        ASSERT_TRUE(reader.Array(&back[0], (HYPERFILEARRAY)kind, read, count)) << reader.Error().text;
        for (LONG i = 0; i < count; ++i)
          ASSERT_EQ(std::memcmp(&back[(std::size_t)(i * read)], data + i * written, (std::size_t)size), 0)
              << ElementName(kind) << " " << i;
        // What lies between and behind the elements belongs to somebody else.
        EXPECT_TRUE((count > 0 && read == size) || back[(std::size_t)(count ? size : 0)] == '\x5a');
      }
    }
  }
}

struct Refusal {
  std::string bytes;
  std::function<bool(ValueReader&)> read;
  FILEERROR code;
  const char* text;
};

std::string Raw(std::initializer_list<int> bytes) {
  std::string s;
  for (int b : bytes) s += (char)b;
  return s;
}

template <class T, HYPERFILEVALUE kind>
bool Read(ValueReader& r) {
  T value{};
  return r.Value(kind, &value);
}
const auto ReadText = Read<String, HYPERFILEVALUE_STRING>;
const auto ReadContainer = Read<BaseContainer, HYPERFILEVALUE_CONTAINER>;
const auto ReadLong = Read<LONG, HYPERFILEVALUE_LONG>;
bool ReadFloats(ValueReader& r) {
  SReal data[2] = {};
  return r.Array(data, HYPERFILEARRAY_SREAL, 4, 2);
}

const Refusal kRefusals[] = {
    {Raw({15, 1, 0, 0, 0}), ReadText, FILEERROR_WRONG_VALUE, "offset 0: found 32-bit integer, expected text"},
    {Raw({99}), ReadText, FILEERROR_UNKNOWN_VALUE, "offset 0: found unknown kind 99, expected text"},
    {Raw({2}), ReadLong, FILEERROR_WRONG_VALUE, "offset 0: found end of chunk, expected 32-bit integer"},
    {Raw({}), ReadLong, FILEERROR_FILE_END, "offset 0: found end of file, expected 32-bit integer"},
    {Raw({15, 1, 2}), ReadLong, FILEERROR_FILE_END, "offset 1: found 2 bytes up to the end, expected 4"},
    {Raw({130, 255, 255, 255, 127, 65}), ReadText, FILEERROR_FILE_END,
     "offset 1: found a count of 2147483647 characters, expected at most 0 in the rest of the file"},
    {Raw({132, 0, 0, 0, 0, 255, 255, 255, 255, 1, 0, 0, 0, 0, 0, 0, 0}), ReadContainer, FILEERROR_FILE_END,
     "offset 5: found a count of 4294967295 container entries, expected at most 1 in the rest of the file"},
    {Raw({132, 0, 0, 0, 0, 1, 0, 0, 0, 7, 0, 0, 0, 99, 0, 0, 0}), ReadContainer, FILEERROR_UNKNOWN_VALUE,
     "offset 17: found a container entry of type 99, expected a known one"},
    {Raw({140, 5, 4, 255, 255, 255, 127, 0, 0, 0, 0}), ReadFloats, FILEERROR_FILE_END,
     "offset 3: found a count of 2147483647 32-bit reals, expected at most 1 in the rest of the file"},
    {Raw({140, 2, 2, 2, 0, 0, 0, 0, 0, 0, 0}), ReadFloats, FILEERROR_WRONG_VALUE,
     "offset 0: found an array of 2 16-bit integers, expected one of 2 32-bit reals"},
    {Raw({140, 5, 4, 1, 0, 0, 0, 0, 0, 0, 0}), ReadFloats, FILEERROR_WRONG_VALUE,
     "offset 0: found an array of 1 32-bit reals, expected one of 2 32-bit reals"},
    {Raw({140, 5, 8, 0, 0, 0, 0}), ReadFloats, FILEERROR_INVALID,
     "offset 1: found an element size of 8 for 32-bit reals, expected 4"},
    {Raw({2}), [](ValueReader& r) { return r.ChunkEnd(); }, FILEERROR_CHUNK_NUMBER,
     "offset 0: no chunk is open that could end"},
};

TEST_F(ValueStream, RefusalsNameOffsetFoundAndExpected) {
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(refusal.text);
    ByteSource source;
    ASSERT_TRUE(source.OpenMemory(refusal.bytes.data(), refusal.bytes.size()));
    ValueReader reader(source);
    EXPECT_FALSE(refusal.read(reader));
    EXPECT_EQ(reader.Error().code, refusal.code);
    EXPECT_EQ(reader.Error().text, refusal.text);
    EXPECT_FALSE(ReadLong(reader)) << "the first failure sticks";
    EXPECT_EQ(reader.Error().text, refusal.text);
  }
}

TEST_F(ValueStream, NestingBeyondTheLimitsIsRefusedOnBothSides) {
  BufferedFile file(nullptr);
  ASSERT_TRUE(file.Open(Path("deep"), disk::Access::Write));
  ByteSink sink(file);
  ValueWriter writer(sink);
  const BaseContainer deep = Nested(kMaxContainerDepth + 1);
  EXPECT_FALSE(writer.Value(HYPERFILEVALUE_CONTAINER, &deep));
  EXPECT_NE(writer.Error().text.find("deeper than 64"), std::string::npos) << writer.Error().text;

  std::string chunks, containers(1, (char)HYPERFILEVALUE_CONTAINER);
  for (int i = 0; i <= kMaxChunkDepth; ++i) chunks += Raw({1, 0, 0, 0, 0, 0, 0, 0, 0});
  for (int i = 0; i < 100000; ++i) containers += Raw({0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 132, 0, 0, 0});
  for (const std::string* bytes : {&chunks, &containers}) {
    ByteSource source;
    ASSERT_TRUE(source.OpenMemory(bytes->data(), bytes->size()));
    ValueReader reader(source);
    EXPECT_FALSE(reader.SkipToChunkEnd(0));
    EXPECT_NE(reader.Error().text.find("nested deeper than"), std::string::npos) << reader.Error().text;
  }
}

TEST_F(ValueStream, ArraysThatCannotBeAreRefusedBeforeTheyAreTouched) {
  const LReal data[2] = {};
  const std::tuple<const LReal*, LONG, LONG> cases[] = {
      {data, 8, -1}, {data, 7, 2}, {data, -8, 2}, {nullptr, 8, 2}};
  for (const auto& [from, increment, count] : cases) {
    BufferedFile file(nullptr);
    ASSERT_TRUE(file.Open(Path("array"), disk::Access::Write));
    ByteSink sink(file);
    ValueWriter writer(sink);
    EXPECT_FALSE(writer.Array(from, HYPERFILEARRAY_LREAL, increment, count));
    EXPECT_EQ(writer.Error().code, FILEERROR_INVALID);
  }
}

} // namespace
