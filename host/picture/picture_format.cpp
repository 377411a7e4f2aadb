#include "host/picture/picture.h"

namespace host {

namespace {

struct Choice {
  const char* suffix;
  int depth;
  PictureFormat format;
};

/** The smallest depth of each suffix comes first. */
const Choice kChoices[] = {
    {"png", 8, PictureFormat::Png8},       {"png", 16, PictureFormat::Png16},
    {"tif", 8, PictureFormat::Tiff8},      {"tif", 16, PictureFormat::Tiff16},
    {"tif", 32, PictureFormat::TiffFloat}, {"tiff", 8, PictureFormat::Tiff8},
    {"tiff", 16, PictureFormat::Tiff16},   {"tiff", 32, PictureFormat::TiffFloat},
    {"exr", 32, PictureFormat::Exr},
};

/** After the last dot of the file's name, in small letters; empty without one. */
std::string Suffix(const std::string& path) {
  const std::size_t dot = path.find_last_of("./\\");
  if (dot == std::string::npos || path[dot] != '.') return std::string();
  std::string suffix = path.substr(dot + 1);
  for (char& c : suffix)
    if (c >= 'A' && c <= 'Z') c = (char)(c - 'A' + 'a');
  return suffix;
}

} // namespace

bool CanSavePicture(PictureFormat format) {
#ifndef HOST_HAVE_OPENEXR
  if (format == PictureFormat::Exr) return false;
#endif
#ifndef HOST_HAVE_TIFF
  if (format == PictureFormat::Tiff8 || format == PictureFormat::Tiff16 || format == PictureFormat::TiffFloat)
    return false;
#endif
  (void)format;
  return true;
}

bool ChoosePictureFormat(const std::string& path, int depth, PictureFormat* format, std::string* error) {
  const std::string suffix = Suffix(path);
  std::string depths;
  for (const Choice& choice : kChoices) {
    if (suffix != choice.suffix) continue;
    if (depth == 0 || depth == choice.depth) {
      *format = choice.format;
      return true;
    }
    depths += (depths.empty() ? "" : " or ") + std::to_string(choice.depth);
  }
  if (depths.empty())
    *error = path + ": the name needs a suffix: .png, .tif, .tiff or .exr";
  else
    *error =
        path + ": ." + suffix + " files have " + depths + " bits per sample, not " + std::to_string(depth);
  return false;
}

} // namespace host
