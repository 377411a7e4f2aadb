// Tags that carry values: segments of splines and weights of points.
#pragma once

#include "host/geometry/host_array.h"
#include "host/nodes/node.h"

namespace host {

/** Bytes of one value of a type of variable tags; 0 for types without values. */
LONG VariableTagSize(LONG type);

struct VariableTagNode : Tag {
  explicit VariableTagNode(LONG tagType) : Tag(tagType) {}
  HostArray<UCHAR> bytes;

  LONG Size() const { return VariableTagSize(type); }
  LONG Count() const {
    const LONG size = Size();
    return size > 0 ? (LONG)(bytes.Count() / size) : 0;
  }
  /** False for a negative count or refused memory. */
  bool Resize(LONG count) { return count >= 0 && bytes.Resized((VLONG)count * Size(), &bytes); }
  const Segment* Segments() const { return (const Segment*)bytes.Data(); }

  bool HasOwnData() const override { return true; }
  bool WriteOwn(HyperFile* hf) override;
  bool ReadOwn(HyperFile* hf, LONG level) override;
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;
};

/** NULL for tags without values. */
VariableTagNode* AsVariable(Tag* tag);
const VariableTagNode* AsVariable(const Tag* tag);

/** In no list; NULL for a type without values, a negative count or refused memory. */
VariableTagNode* MakeVariableTag(LONG type, LONG count);

/** Reports a vertex map whose length differs from the number of points of the object that carries it. */
void CheckVertexMap(const Tag& tag);

} // namespace host
