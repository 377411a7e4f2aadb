// Writes generated clouds as LAS, LAZ, XYZ or PTS.
#pragma once

#include "tools/cloud_scene.h"

#include <memory>
#include <string>

namespace tools {

enum class ColorDepth { Eight, Sixteen };

struct WriterOptions {
  std::string path;
  long long count = 0;
  int pointFormat = 3;                         ///< LAS and LAZ, 0 to 10
  ColorDepth colorDepth = ColorDepth::Sixteen; ///< 8-bit values in the 16-bit fields, or the full range
  double scale = 0.01;                         ///< metres a step
  double east = 635000, north = 5570000;       ///< added to the local coordinates
  int columns = 6;                             ///< XYZ: 3, 6 or 9
};

/** One file being written, which has its name once it is closed; throws std::runtime_error on every failure.
 */
class CloudWriter {
public:
  virtual ~CloudWriter() {}
  virtual void Write(const ScanPoint& point) = 0;
  virtual void Close() = 0;

  /** By the file's suffix: las, laz, pts, anything else XYZ. */
  static std::unique_ptr<CloudWriter> Create(const WriterOptions& options);
};

} // namespace tools
