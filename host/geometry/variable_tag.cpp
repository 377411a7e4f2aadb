#include "host/geometry/variable_tag.h"

#include "host/base/misbehaviour.h"
#include "host/geometry/geometry_file.h"
#include "host/geometry/geometry_rules.h"
#include "host/geometry/point_nodes.h"

namespace host {

namespace {

/** One value of each type: bytes in memory, and as which numbers it is saved. */
struct Layout {
  LONG type;
  LONG size;
  HYPERFILEARRAY numbers;
  LONG width;
  const char* what;
};
const Layout kLayouts[] = {
    {Tsegment, sizeof(Segment), HYPERFILEARRAY_LONG, 2, "segments"},
    {Tvertexmap, sizeof(SReal), HYPERFILEARRAY_SREAL, 1, "weights"},
};
static_assert(sizeof(Segment) == 2 * sizeof(LONG), "segments are saved as two numbers each");

const Layout* LayoutOf(LONG type) {
  for (const Layout& layout : kLayouts)
    if (layout.type == type) return &layout;
  return nullptr;
}

/** What the values of a tag break; the carrier's points have been read before its tags. */
std::string WrongValues(const VariableTagNode& tag) {
  if (tag.type == Tvertexmap) return WrongWeight((const SReal*)tag.bytes.Data(), tag.Count());
  const PointNode* spline = dynamic_cast<const SplineNode*>(tag.Carrier());
  return spline ? WrongSegment(tag.Segments(), tag.Count(), spline->points.Count()) : std::string();
}

bool Check(const VariableTagNode& tag, HyperFile* hf) {
  const std::string wrong = WrongValues(tag);
  return wrong.empty() || HyperFileImpl::From(hf)->Refuse(FILEERROR_INVALID, wrong);
}

} // namespace

LONG VariableTagSize(LONG type) {
  const Layout* layout = LayoutOf(type);
  return layout ? layout->size : 0;
}

VariableTagNode* AsVariable(Tag* tag) {
  return dynamic_cast<VariableTagNode*>(tag);
}
const VariableTagNode* AsVariable(const Tag* tag) {
  return dynamic_cast<const VariableTagNode*>(tag);
}

VariableTagNode* MakeVariableTag(LONG type, LONG count) {
  if (VariableTagSize(type) == 0) return nullptr;
  VariableTagNode* tag = static_cast<VariableTagNode*>(MakeNode(NodeKind::Tag, type));
  if (tag && tag->Resize(count)) return tag;
  FreeNode(tag);
  return nullptr;
}

void CheckVertexMap(const Tag& tag) {
  const VariableTagNode* map = AsVariable(&tag);
  const PointNode* points = AsPoints(tag.Carrier());
  if (!map || map->type != Tvertexmap || !points || map->Count() == points->points.Count()) return;
  ReportCaller("a vertex map of " + std::to_string(map->Count()) + " weights lies on an object of " +
               std::to_string(points->points.Count()) + " points");
}

bool VariableTagNode::WriteOwn(HyperFile* hf) {
  const Layout& layout = *LayoutOf(type);
  return Check(*this, hf) && WriteElements(hf, layout.numbers, layout.width, layout.what, bytes);
}

bool VariableTagNode::ReadOwn(HyperFile* hf, LONG) {
  const Layout& layout = *LayoutOf(type);
  return ReadElements(hf, layout.numbers, layout.width, layout.what, &bytes) && Check(*this, hf);
}

bool VariableTagNode::CopyOwn(Node& dest) const {
  return bytes.CopyTo(&static_cast<VariableTagNode&>(dest).bytes);
}

void VariableTagNode::SwapOwn(Node& other) {
  bytes.Swap(static_cast<VariableTagNode&>(other).bytes);
}

} // namespace host
