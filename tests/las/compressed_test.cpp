// Compressed files: the compression record, the chunk table, the layers of a chunk, and files that end early.
#include "support/las_files.h"

#include <numeric>

namespace {

using kelvra::LasFindings;

constexpr int kChunk = 50;
constexpr std::size_t kPoints = 220; // four chunks and a part of one

class Compressed : public LasTest {
protected:
  static std::size_t PointsAt(const Bytes& file) { return Take<std::uint32_t>(file, 96); }
  // The payload of the compression record, the only record of the file.
  static std::size_t RecordAt(const Bytes& file) { return Take<std::uint16_t>(file, 94) + 54u; }
  static std::size_t TableAt(const Bytes& file) { return Take<std::uint64_t>(file, PointsAt(file)); }

  std::vector<TestPoint> points_ = Spiral(kPoints);
};

TEST_F(Compressed, EveryFormatReadsBackInFileOrder) {
  for (unsigned format = 0; format <= 10; ++format) {
    const Bytes file = Compress(MakeLas(format, points_), kChunk);
    const LasFindings findings = Validate(file);
    EXPECT_TRUE(findings.complaints.empty() && findings.cutPlace.empty() && findings.patches.empty())
        << format;
    EXPECT_EQ(Heights(file), HeightsOf(points_, kPoints)) << format;
  }
  EXPECT_EQ(Heights(Compress(MakeLas(3, points_), 0)), HeightsOf(points_, kPoints)) << "pointwise";
  EXPECT_EQ(Heights(Compress(MakeLas(7, points_, {}, 5), kChunk)), HeightsOf(points_, kPoints))
      << "extra bytes";
}

TEST_F(Compressed, CompressionRecordIsCheckedFieldByField) {
  const struct {
    std::size_t field;
    std::uint16_t value;
    const char* complaint;
  } cases[] = {
      {0, 0, "compressor 0 is unknown"},
      {0, 4, "compressor 4 is unknown"},
      {0, 3, "compressor 3 does not fit"},
      {2, 1, "coder 1 is unknown"},
      {32, 2, "2 items need 46"},
      {32, 0xffff, "65535 items need"},
      {34, 22, "item 0 has type 22"},
      {36, 21, "item 0 has 21 bytes, type 6 has 20"},
      {38, 3, "version 3, which is unknown"},
      {40, 8, "item 1 has type 8, point format 3 needs 7"},
  };
  for (const auto& c : cases) {
    Bytes file = Compress(MakeLas(3, points_), kChunk);
    Put(file, RecordAt(file) + c.field, c.value);
    std::string refusal;
    EXPECT_TRUE(Heights(file, &refusal).empty());
    EXPECT_NE(refusal.find(c.complaint), std::string::npos) << refusal;
  }
  Bytes uncompressed = Compress(MakeLas(3, points_), kChunk);
  uncompressed[104] &= 127;
  EXPECT_NE(Validate(uncompressed).complaints.at(0).find("point format (byte 104) is uncompressed"),
            std::string::npos);
}

TEST_F(Compressed, DamagedTableIsNotNeededWhereChunksHaveOneSize) {
  for (const unsigned format : {1u, 6u}) {
    const Bytes sound = Compress(MakeLas(format, points_), kChunk);
    const std::size_t start = PointsAt(sound), table = TableAt(sound);
    const std::function<void(Bytes&)> changes[] = {
        [&](Bytes& f) { Put<std::uint64_t>(f, start, f.size() * 3); },
        [&](Bytes& f) { Put<std::uint64_t>(f, start, start + 7); },
        [&](Bytes& f) { Put<std::uint64_t>(f, start, start); }, // interrupted writer
        [&](Bytes& f) { Put<std::uint64_t>(f, start, ~std::uint64_t{0}); },
        [&](Bytes& f) { Put(f, table, 1u); },
        [&](Bytes& f) { Put(f, table + 4, 0xffffffffu); },
        [&](Bytes& f) { Put(f, table + 8, 0xffffffffu); },
        [&](Bytes& f) { f[table + 9] ^= 0x10; },
        [&](Bytes& f) { f.resize(table); },
    };
    for (std::size_t i = 0; i < std::size(changes); ++i) {
      Bytes file = sound;
      changes[i](file);
      EXPECT_FALSE(Validate(file).cutPlace.empty()) << format << " change " << i;
      EXPECT_EQ(Heights(file), HeightsOf(points_, kPoints)) << format << " change " << i;
    }
  }
}

TEST_F(Compressed, NothingIsReadBehindTheLastChunkHoweverManyPointsAreAnnounced) {
  Bytes file = Compress(MakeLas(1, Spiral(4 * kChunk)), kChunk);
  Put(file, 107, 5000u);
  EXPECT_EQ(Validate(file).readable, 4u * kChunk);
  EXPECT_EQ(Heights(file), HeightsOf(points_, 4 * kChunk));
}

TEST_F(Compressed, TableMayBeFoundFromTheEndOfTheFile) {
  Bytes file = Compress(MakeLas(1, points_), kChunk);
  const std::uint64_t table = TableAt(file);
  Put<std::uint64_t>(file, PointsAt(file), ~std::uint64_t{0});
  Put(file, file.size(), table);
  EXPECT_TRUE(Validate(file).cutPlace.empty());
  EXPECT_EQ(Heights(file), HeightsOf(points_, kPoints));
}

TEST_F(Compressed, VariableChunksNeedTheirTable) {
  for (const std::uint32_t size : {0u, 0xffffffffu}) {
    Bytes file = Compress(MakeLas(6, points_), kChunk);
    Put(file, RecordAt(file) + 12, size); // its table holds no point numbers then
    std::string refusal;
    EXPECT_TRUE(Heights(file, &refusal).empty());
    EXPECT_NE(refusal.find("cannot be read without it"), std::string::npos) << refusal;
  }
}

TEST_F(Compressed, ReadingStopsBeforeADamagedLayeredChunk) {
  const Bytes sound = Compress(MakeLas(7, points_), kChunk);
  constexpr std::size_t kRaw = 36, kLayers = 10;
  // The third chunk starts after two whole ones.
  std::size_t at = PointsAt(sound) + 8;
  for (int chunk = 0; chunk < 2; ++chunk) {
    std::size_t length = kRaw + 4 + 4 * kLayers;
    for (std::size_t layer = 0; layer < kLayers; ++layer)
      length += Take<std::uint32_t>(sound, at + kRaw + 4 + 4 * layer);
    at += length;
  }
  ASSERT_EQ(Take<std::uint32_t>(sound, at + kRaw), std::uint32_t{kChunk});
  for (const std::size_t field : {0u, 1u, 5u, 10u}) // the number of points, three layers
    for (const std::uint32_t value : {0xffffffffu, 0x7fffffffu, 49u}) {
      Bytes file = sound;
      Put(file, at + kRaw + 4 * field, value);
      EXPECT_EQ(Validate(file).readable, 2u * kChunk);
      EXPECT_EQ(Heights(file), HeightsOf(points_, 2 * kChunk)) << field << " " << value;
    }
}

TEST_F(Compressed, FileThatEndsEarlyGivesAPrefix) {
  for (const int chunk : {kChunk, 0})
    for (const unsigned format : {0u, 3u, 8u}) {
      if (format == 8 && chunk == 0) continue; // one layered chunk is read whole or not at all
      const Bytes sound = Compress(MakeLas(format, points_), chunk);
      const std::vector<std::int64_t> all = HeightsOf(points_, kPoints);
      std::size_t most = 0;
      for (std::size_t size = PointsAt(sound); size < sound.size(); size += 17) {
        const std::vector<std::int64_t> read =
            Heights(Bytes(sound.begin(), sound.begin() + static_cast<long>(size)));
        ASSERT_LE(read.size(), kPoints);
        EXPECT_TRUE(std::equal(read.begin(), read.end(), all.begin())) << format << " cut at " << size;
        if (format == 8 && read.size() < kPoints) {
          EXPECT_EQ(read.size() % kChunk, 0u) << "whole chunks only";
        }
        most = std::max(most, read.size());
      }
      EXPECT_GT(most, kPoints / 2) << format;
    }
}

} // namespace
