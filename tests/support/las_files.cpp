#include "support/las_files.h"

#if KELVRA_HAVE_LASLIB
#include "lasreader_las.hpp"
#include "laswriter_las.hpp"

Bytes Compress(const Bytes& las, int chunkSize) {
  std::istringstream in(std::string(las.begin(), las.end()));
  std::ostringstream out;
  LASreaderLAS reader;
  LASwriterLAS writer;
  EXPECT_TRUE(reader.open(in));
  const bool layered = reader.header.point_data_format >= 6;
  const U32 compressor = layered     ? LASZIP_COMPRESSOR_LAYERED_CHUNKED
                         : chunkSize ? LASZIP_COMPRESSOR_POINTWISE_CHUNKED
                                     : LASZIP_COMPRESSOR_POINTWISE;
  EXPECT_TRUE(writer.open(out, &reader.header, compressor, 2, chunkSize ? chunkSize : 50000));
  while (reader.read_point()) writer.write_point(&reader.point);
  writer.close();
  const std::string bytes = out.str();
  return Bytes(bytes.begin(), bytes.end());
}

#else
Bytes Compress(const Bytes& las, int) {
  return las;
}
#endif
