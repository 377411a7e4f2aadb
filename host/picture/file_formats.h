// The picture formats that have a library of their own. Functions that fail say why, without the file's name;
// they may throw std::bad_alloc.
#pragma once

#include "host/base/buffered_file.h"
#include "host/picture/picture.h"

namespace host {

/** Pictures with longer sides are not read. */
constexpr int kLargestPictureSide = 32768;

enum class TiffSample { Bits8, Bits16, Float };

/** To an open empty file. */
bool EncodeTiff(const Picture& picture, TiffSample sample, BufferedFile& file, std::string* reason);
/** 8 or 16 bits or 32-bit floats, RGB or RGBA, in strips; other kinds are refused. */
bool DecodeTiff(const std::string& path, Picture* picture, std::string* reason);

/** Both are refused when the build lacks the library. */
bool EncodeExr(const Picture& picture, BufferedFile& file, std::string* reason);
/** The layer without a name, with R, G, B and, where there is one, A. */
bool DecodeExr(const std::string& path, Picture* picture, std::string* reason);

} // namespace host
