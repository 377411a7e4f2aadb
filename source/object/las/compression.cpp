#include "object/las/compression.h"

namespace kelvra {

namespace {

enum ItemType : std::uint16_t {
  kByte = 0,
  kPoint10 = 6,
  kGpsTime11 = 7,
  kRgb12 = 8,
  kWavePacket13 = 9,
  kPoint14 = 10,
  kRgb14 = 11,
  kRgbNir14 = 12,
  kWavePacket14 = 13,
  kByte14 = 14,
};

constexpr std::uint64_t kFixedBytes = 34, kItemBytes = 6;

struct FormatItems {
  unsigned baseLength;
  std::vector<ItemType> items;
};

const FormatItems& ItemsOf(unsigned pointFormat) {
  static const FormatItems kFormats[] = {
      {20, {kPoint10}},
      {28, {kPoint10, kGpsTime11}},
      {26, {kPoint10, kRgb12}},
      {34, {kPoint10, kGpsTime11, kRgb12}},
      {57, {kPoint10, kGpsTime11, kWavePacket13}},
      {63, {kPoint10, kGpsTime11, kRgb12, kWavePacket13}},
      {30, {kPoint14}},
      {36, {kPoint14, kRgb14}},
      {38, {kPoint14, kRgbNir14}},
      {59, {kPoint14, kWavePacket14}},
      {67, {kPoint14, kRgbNir14, kWavePacket14}},
  };
  static const FormatItems kUnknown = {0, {}};
  return pointFormat < std::size(kFormats) ? kFormats[pointFormat] : kUnknown;
}

unsigned SizeOf(ItemType type, unsigned extraBytes) {
  switch (type) {
  case kPoint10:
    return 20;
  case kGpsTime11:
    return 8;
  case kRgb12:
    return 6;
  case kWavePacket13:
    return 29;
  case kPoint14:
    return 30;
  case kRgb14:
    return 6;
  case kRgbNir14:
    return 8;
  case kWavePacket14:
    return 29;
  case kByte:
  case kByte14:
    return extraBytes;
  }
  return 0;
}

bool VersionFits(ItemType type, unsigned version) {
  switch (type) {
  case kWavePacket13:
    return version == 1;
  case kWavePacket14:
    return version == 3 || version == 4;
  case kPoint14:
  case kRgb14:
  case kRgbNir14:
  case kByte14:
    return version >= 2 && version <= 4;
  default:
    return version == 1 || version == 2;
  }
}

std::string CheckItems(const LasHeader& header, const LasCompression& compression) {
  const FormatItems& format = ItemsOf(header.PointFormat());
  std::vector<ItemType> expected = format.items;
  const bool layered = header.PointFormat() >= 6;
  const unsigned extraBytes = header.recordLength - format.baseLength;
  if (extraBytes > 0) expected.push_back(layered ? kByte14 : kByte);

  if (compression.items.size() != expected.size())
    return Text("it lists %zu items, point format %u with %u extra bytes has %zu", compression.items.size(),
                header.PointFormat(), extraBytes, expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const LasItem& item = compression.items[i];
    if (item.type != expected[i])
      return Text("item %zu has type %u, point format %u needs %u", i, unsigned{item.type},
                  header.PointFormat(), unsigned{expected[i]});
    if (item.size != SizeOf(expected[i], extraBytes))
      return Text("item %zu has %u bytes, type %u has %u", i, unsigned{item.size}, unsigned{item.type},
                  SizeOf(expected[i], extraBytes));
    if (!VersionFits(expected[i], item.version))
      return Text("item %zu of type %u has version %u, which is unknown", i, unsigned{item.type},
                  unsigned{item.version});
  }
  if (compression.Layered() != layered)
    return Text("compressor %u does not fit point format %u", unsigned(compression.compressor),
                header.PointFormat());
  return {};
}

} // namespace

std::uint64_t LasCompression::RawPointBytes() const {
  std::uint64_t bytes = 0;
  for (const LasItem& item : items) bytes += item.size;
  return bytes;
}

std::uint64_t LasCompression::Layers() const {
  std::uint64_t layers = 0;
  for (const LasItem& item : items) {
    switch (item.type) {
    case kPoint14:
      layers += 9;
      break;
    case kRgbNir14:
      layers += 2;
      break;
    case kByte14:
      layers += item.size;
      break;
    default:
      layers += 1;
    }
  }
  return layers;
}

unsigned LasBaseLength(unsigned pointFormat) {
  return ItemsOf(pointFormat).baseLength;
}

std::string CheckLasCompression(ByteSource& file, const LasHeader& header, const LasRecord& record,
                                LasCompression& compression) {
  if (record.length < kFixedBytes)
    return Text("its length is %u, at least %u are needed", unsigned(record.length), unsigned(kFixedBytes));
  std::vector<std::uint8_t> bytes(record.length);
  if (!file.Read(record.Payload(), bytes.data(), bytes.size())) return "it cannot be read";

  const unsigned compressor = LittleEndian<std::uint16_t>(&bytes[0]);
  const unsigned coder = LittleEndian<std::uint16_t>(&bytes[2]);
  const unsigned items = LittleEndian<std::uint16_t>(&bytes[32]);
  if (compressor < 1 || compressor > 3)
    return Text("compressor %u is unknown (1 to 3 are known)", compressor);
  if (coder != 0) return Text("coder %u is unknown (only 0 is known)", coder);
  if (record.length != kFixedBytes + kItemBytes * items)
    return Text("its length is %u, %u items need %u", unsigned(record.length), items,
                unsigned(kFixedBytes + kItemBytes * items));

  compression.compressor = (LasCompressor)compressor;
  compression.chunkSize = LittleEndian<std::uint32_t>(&bytes[12]);
  compression.specialRecords = LittleEndian<std::int64_t>(&bytes[kSpecialRecordsField]);
  compression.items.resize(items);
  for (unsigned i = 0; i < items; ++i) {
    const std::uint8_t* item = &bytes[kFixedBytes + kItemBytes * i];
    compression.items[i] = {LittleEndian<std::uint16_t>(item), LittleEndian<std::uint16_t>(item + 2),
                            LittleEndian<std::uint16_t>(item + 4)};
  }
  return CheckItems(header, compression);
}

} // namespace kelvra
