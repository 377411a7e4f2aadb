#include "host/hair/hair_object.h"

#include "host/base/misbehaviour.h"
#include "host/base/module_scope.h"
#include "host/base/text.h"
#include "host/geometry/geometry_file.h"
#include "host/geometry/geometry_rules.h"
#include "host/nodes/node_types.h"

namespace host {

namespace {

bool Accept(HyperFile* hf, const std::string& wrong) {
  return wrong.empty() || HyperFileImpl::From(hf)->Refuse(FILEERROR_INVALID, wrong);
}

/** The number of segments in a file of an object without guides. */
constexpr LONG kNoGuides = 0;

/** Points of a guide, and of all of them, are numbers that plug-ins ask for. */
bool IsPossible(LONG count, LONG segments) {
  return count >= 0 && segments >= 1 && segments < MAXLONGl &&
         (LLONG)count * ((LLONG)segments + 1) <= MAXLONGl;
}

} // namespace

GuideSet* MakeGuides(LONG count, LONG segments) {
  if (!IsPossible(count, segments)) return nullptr;
  const ScopeSwitch asCaller(inModule || calledByModule);
  GuideSet* made = gNew GuideSet;
  if (!made) return nullptr;
  made->count = count;
  made->segments = segments;
  if (!made->points.Resized(count * made->GuidePoints(), &made->points)) FreeGuides(made);
  return made;
}

GuideSet* CopyGuides(const GuideSet& source) {
  GuideSet* copy = MakeGuides(source.count, source.segments);
  if (copy && copy->points.Count() > 0)
    MemCopy(copy->points.Data(), source.points.Data(), copy->points.Count() * (VLONG)sizeof(Vector));
  return copy;
}

void FreeGuides(GuideSet*& guides) {
  gDelete(guides);
}

HairNode* AsHair(Object* op) {
  return dynamic_cast<HairNode*>(op);
}
const HairNode* AsHair(const Object* op) {
  return dynamic_cast<const HairNode*>(op);
}

HairNode::~HairNode() {
  // Blame whoever locked it, not whoever frees it.
  const std::string text = "the hair object \"" + Utf8(name) + "\" is freed while it is locked";
  if (locked) lockedByModule_ ? ReportModule(text) : ReportHost(text);
  FreeGuides(guides);
}

void HairNode::Lock() {
  locked = true;
  lockedByModule_ = inModule || calledByModule;
}

void HairNode::TakeGuides(GuideSet* made) {
  if (made != guides) FreeGuides(guides);
  guides = made;
  if (guides) guides->owner = this;
  ++dataDirty;
}

Box HairNode::OwnBox() const {
  Box box;
  for (VLONG i = 0; guides && i < guides->points.Count(); ++i) box.Add(guides->points[i]);
  return box;
}

bool HairNode::WriteOwn(HyperFile* hf) {
  if (!guides) return hf->WriteLong(0) && hf->WriteLong(kNoGuides);
  return Accept(hf, WrongPoint(guides->points)) && hf->WriteLong(guides->count) &&
         hf->WriteLong(guides->segments) &&
         WriteElements(hf, HYPERFILEARRAY_LREAL, 3, "guide points", guides->points);
}

bool HairNode::ReadOwn(HyperFile* hf, LONG) {
  LONG count = 0, segments = 0;
  HostArray<Vector> points;
  if (!hf->ReadLong(&count) || !hf->ReadLong(&segments)) return false;
  if (segments == kNoGuides) return true;
  // A count that does not match the points makes no guides.
  if (!ReadElements(hf, HYPERFILEARRAY_LREAL, 3, "guide points", &points)) return false;
  if (!IsPossible(count, segments) || count * ((VLONG)segments + 1) != points.Count())
    return Accept(hf, "found " + std::to_string(count) + " guides of " + std::to_string(segments) +
                          " segments with " + std::to_string(points.Count()) +
                          " points, expected a point more than segments for each guide");
  if (!Accept(hf, WrongPoint(points))) return false;
  GuideSet* made = MakeGuides(0, segments);
  if (!made) return HyperFileImpl::From(hf)->Refuse(FILEERROR_OUTOFMEMORY, "out of memory for guides");
  made->count = count;
  made->points.Swap(points);
  TakeGuides(made);
  return true;
}

bool HairNode::CopyOwn(Node& dest) const {
  GuideSet* copy = guides ? CopyGuides(*guides) : nullptr;
  if (guides && !copy) return false;
  static_cast<HairNode&>(dest).TakeGuides(copy);
  return true;
}

void HairNode::SwapOwn(Node& other) {
  HairNode& hair = static_cast<HairNode&>(other);
  std::swap(guides, hair.guides);
  for (HairNode* node : {this, &hair})
    if (node->guides) node->guides->owner = node;
}

void RegisterHair(NodeTypes& types) {
  types.Add({NodeKind::Object, Ohair, "Hair", 0, MakeOwn<HairNode>});
}

} // namespace host
