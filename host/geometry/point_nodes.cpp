#include "host/geometry/point_nodes.h"

#include "host/geometry/geometry_file.h"
#include "host/geometry/geometry_rules.h"
#include "host/geometry/variable_tag.h"

namespace host {

namespace {

/** True for an empty text; else the stream refuses with it. */
bool Accept(HyperFile* hf, const std::string& wrong) {
  return wrong.empty() || HyperFileImpl::From(hf)->Refuse(FILEERROR_INVALID, wrong);
}

} // namespace

PointNode* AsPoints(Object* op) {
  return dynamic_cast<PointNode*>(op);
}
const PointNode* AsPoints(const Object* op) {
  return dynamic_cast<const PointNode*>(op);
}

Box PointNode::OwnBox() const {
  Box box;
  for (VLONG i = 0; i < points.Count(); ++i) box.Add(points[i]);
  return box;
}

bool PointNode::OwnMessage(LONG number, void*) {
  if (number != MSG_UPDATE) return false;
  ++dataDirty;
  return true;
}

bool PointNode::CopyOwn(Node& dest) const {
  return points.CopyTo(&static_cast<PointNode&>(dest).points);
}

void PointNode::SwapOwn(Node& other) {
  points.Swap(static_cast<PointNode&>(other).points);
}

bool PointNode::WritePoints(HyperFile* hf) {
  return Accept(hf, WrongPoint(points)) && WriteElements(hf, HYPERFILEARRAY_LREAL, 3, "points", points);
}

bool PointNode::ReadPoints(HyperFile* hf) {
  return ReadElements(hf, HYPERFILEARRAY_LREAL, 3, "points", &points) && Accept(hf, WrongPoint(points));
}

bool PolygonNode::Resize(LONG pointCount, LONG parts) {
  HostArray<Vector> newPoints;
  HostArray<CPolygon> newPolygons;
  if (!points.Resized(pointCount, &newPoints)) return false;
  if (parts != NOTOK) {
    if (!polygons.Resized(parts, &newPolygons)) return false;
    polygons.Swap(newPolygons);
  }
  points.Swap(newPoints);
  ++dataDirty;
  return true;
}

bool PolygonNode::WriteOwn(HyperFile* hf) {
  return WritePoints(hf) && Accept(hf, WrongPolygon(polygons, points.Count())) &&
         WriteElements(hf, HYPERFILEARRAY_LONG, 4, "polygons", polygons);
}

bool PolygonNode::ReadOwn(HyperFile* hf, LONG) {
  return ReadPoints(hf) && ReadElements(hf, HYPERFILEARRAY_LONG, 4, "polygons", &polygons) &&
         Accept(hf, WrongPolygon(polygons, points.Count()));
}

bool PolygonNode::CopyOwn(Node& dest) const {
  PolygonNode& copy = static_cast<PolygonNode&>(dest);
  HostArray<CPolygon> copied;
  if (!polygons.CopyTo(&copied) || !PointNode::CopyOwn(dest)) return false;
  copy.polygons.Swap(copied);
  return true;
}

void PolygonNode::SwapOwn(Node& other) {
  PointNode::SwapOwn(other);
  polygons.Swap(static_cast<PolygonNode&>(other).polygons);
}

const VariableTagNode* SplineNode::Segments() const {
  for (const Node* tag = tags.first; tag; tag = tag->next)
    if (tag->type == Tsegment) return AsVariable(static_cast<const Tag*>(tag));
  return nullptr;
}

bool SplineNode::Resize(LONG pointCount, LONG parts) {
  HostArray<Vector> newPoints;
  if (!points.Resized(pointCount, &newPoints)) return false;
  VariableTagNode* tag = const_cast<VariableTagNode*>(Segments());
  if (parts > 0) {
    if (tag && !tag->Resize(parts)) return false;
    if (!tag) {
      tag = MakeVariableTag(Tsegment, parts);
      if (!tag) return false;
      AppendNode(tags, *tag);
    }
  } else if (parts == 0) {
    FreeNode(tag);
  }
  points.Swap(newPoints);
  ++dataDirty;
  return true;
}

bool SplineNode::WriteOwn(HyperFile* hf) {
  return hf->WriteLong(interpolation) && WritePoints(hf);
}

bool SplineNode::ReadOwn(HyperFile* hf, LONG) {
  LONG found = 0;
  if (!hf->ReadLong(&found)) return false;
  if (found < SPLINETYPE_LINEAR || found > SPLINETYPE_BEZIER)
    return Accept(hf, "found interpolation " + std::to_string(found) + ", expected 0 to 4");
  interpolation = (SPLINETYPE)found;
  return ReadPoints(hf);
}

bool SplineNode::CopyOwn(Node& dest) const {
  static_cast<SplineNode&>(dest).interpolation = interpolation;
  return PointNode::CopyOwn(dest);
}

void SplineNode::SwapOwn(Node& other) {
  PointNode::SwapOwn(other);
  std::swap(interpolation, static_cast<SplineNode&>(other).interpolation);
}

} // namespace host
