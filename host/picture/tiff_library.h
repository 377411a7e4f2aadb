// What writing and reading TIFF files share: an open file of libtiff whose complaints reach only us.
#pragma once

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <tiffio.h>

namespace host {

struct FreeTiffOptions {
  void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};
struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffOptions = std::unique_ptr<TIFFOpenOptions, FreeTiffOptions>;
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

/** Options under which the first complaint goes into *complaint, which must outlive the file; NULL when
 * memory is refused. */
inline TiffOptions ComplainingTo(std::string* complaint) {
  TiffOptions options(TIFFOpenOptionsAlloc());
  if (!options) return options;
  const auto onError = [](TIFF*, void* data, const char*, const char* format, va_list arguments) {
    std::string& first = *static_cast<std::string*>(data);
    char text[300];
    std::vsnprintf(text, sizeof text, format, arguments);
    if (first.empty()) first = text;
    return 1;
  };
  const auto onWarning = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, complaint);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), onWarning, nullptr);
  return options;
}

} // namespace host
