// What a point cloud object's own saved stream says about it.
#include "host/application.h"
#pragma once

#include <string>
#include <vector>

namespace cli {

/** Box in file axes (x east, y north, z up), in stored coordinates. */
struct Box {
  double min[3] = {0, 0, 0}, max[3] = {0, 0, 0};
  bool valid = false;
  void Add(const Box& other);
};

/** One block of the stream: the points of one file. */
struct BlockStats {
  LONG points = 0;
  Box box;
  std::string source;    ///< path of the file it came from
  bool hasColor = false; ///< its points differ in colour and the colour came from the file
  bool black = false;    ///< all its points are black, or as dark as the reader makes those without colour
};

struct CloudStats {
  LONG groups = 0;
  std::vector<BlockStats> blocks;
  long long Points() const;
  Box Bounds() const;
  bool HasColor() const;
  bool IsBlack() const;
};

/** Decodes a point cloud object's stream. False when the object does not write or the stream is none of a
 * cloud. */
bool ReadCloudStats(BaseList2D* object, CloudStats* stats);

} // namespace cli
