// Takes any bytes as point text: the driver gives the records of the plain reading, bit for bit, however the
// input is cut into reads. The first byte chooses format and thinning, the second the size of the reads.
#include "fuzz/text_reference.h"

namespace {

kelvra::TextResult Drive(const char* text, std::size_t size, std::int32_t everyNth, bool pts,
                         std::size_t part, std::vector<kelvra::TextPoint>& store) {
  const kelvra::TextLoader_XYZ xyz;
  const kelvra::TextLoader_PTS ptsLoader;
  kelvra::TextInput input;
  std::size_t at = 0;
  input.read = [&](char* buffer, std::size_t most) {
    const std::size_t got = std::min({part, most, size - at});
    std::copy_n(text + at, got, buffer);
    at += got;
    return got;
  };
  input.fileSize = (std::int64_t)size;
  input.everyNth = everyNth;
  input.reallocate = [&](void*, std::size_t) -> void* { return store.data(); };
  int last = -1;
  input.progress = [&](int thousandths) {
    if (thousandths <= last || thousandths > 1000) std::abort();
    last = thousandths;
    return true;
  };
  return kelvra::LoadText(pts ? (const kelvra::TextLoader&)ptsLoader : xyz, input);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const bool pts = data[0] & 1;
  const std::int32_t everyNth = data[0] >> 1 & 3;
  const std::size_t part = data[1] ? data[1] : 0x10000;
  std::vector<char> text(data + 2, data + size);
  std::vector<kelvra::TextPoint> store(size);
  const kelvra::TextResult ours = Drive(text.data(), text.size(), everyNth, pts, part, store);
  text.push_back(0);
  const reference::Reading plain = reference::Read(text.data(), size - 2, everyNth, pts);
  const bool same = plain.points.size() == (std::size_t)ours.count && plain.lines == ours.lines &&
                    plain.rejected == ours.rejected && plain.firstRejected == ours.firstRejected &&
                    plain.noData == ours.noData && plain.notFinite == ours.notFinite;
  if (!same || (ours.count && std::memcmp(plain.points.data(), ours.points, plain.points.size() * 64) != 0))
    std::abort();
  return 0;
}
