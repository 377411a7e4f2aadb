// Looks at the typed values that nodes write, in file order, without loading them.
#pragma once

#include "c4d.h"

#include <string>

namespace host {

/** Receives values in file order. Array data is valid during the call only. */
class StreamVisitor {
public:
  virtual ~StreamVisitor() {}
  /** A node begins: its kind ("document", "object", "tag", "video post"...), type number, name and disk
   * level. */
  virtual void BeginNode(const std::string& kind, LONG type, const std::string& name, LONG level) = 0;
  /**
   * What the host itself keeps of a node, right after BeginNode and in scene files only: its number for
   * links, bits, place (objects, else NULL) and parameters.
   */
  virtual void Head(LULONG /*number*/, LONG /*bits*/, const Matrix* /*place*/,
                    const BaseContainer& /*parameters*/) {}
  virtual void EndNode() = 0;
  /** One scalar, vector, text or container; data points to the C++ type of that kind (see
   * sdk/tables/hyper_file.inc). */
  virtual void Value(HYPERFILEVALUE type, const void* data) = 0;
  virtual void Array(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) = 0;
};

/** Has a node's own Write run into the visitor (no file involved). False when Write failed. */
bool VisitNode(BaseList2D* node, StreamVisitor& visitor);

/** Reads a scene file value by value; the target of a link is the number of a node in the file. False with
 * one line naming file, offset, found and expected. */
bool VisitScene(const std::string& path, StreamVisitor& visitor, std::string* error);

} // namespace host
