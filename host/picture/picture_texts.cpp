#include "host/picture/picture.h"
#include "host/picture/png_chunks.h"

#include <new>

namespace host {

namespace {

/** More than any entry that we write; longer ones of other programs are passed over. */
constexpr std::size_t kLongestEntry = 1 << 16;

PictureTexts ReadTexts(BufferedFile& file) {
  gl::PngChunkReader chunks(file);
  chunks.Signature();
  PictureTexts texts;
  do {
    chunks.Next();
    if (chunks.Is("tEXt") && chunks.left > 0 && chunks.left <= kLongestEntry) {
      const std::vector<std::uint8_t> bytes = chunks.Whole(kLongestEntry);
      const auto zero = std::find(bytes.begin(), bytes.end(), 0);
      if (zero != bytes.end())
        texts.push_back({std::string(bytes.begin(), zero), std::string(zero + 1, bytes.end())});
    }
    chunks.Skip();
  } while (!chunks.Is("IEND"));
  return texts;
}

} // namespace

bool ReadPictureTexts(const std::string& path, PictureTexts* texts, std::string* error) {
  texts->clear();
  std::string reason;
  BufferedFile file(nullptr);
  try {
    if (file.Open(path, disk::Access::Read)) {
      *texts = ReadTexts(file);
      return true;
    }
    reason = file.Error();
  } catch (const std::bad_alloc&) {
    reason = "not enough memory";
  } catch (const std::runtime_error& e) {
    reason = e.what();
  }
  *error = path + ": cannot read the picture: " + reason;
  return false;
}

} // namespace host
