// Nodes that the plug-in interface knows as PointObject, PolygonObject and SplineObject. Main thread; their
// elements may be read on any thread while nobody writes.
#pragma once

#include "host/geometry/host_array.h"
#include "host/nodes/node.h"

namespace host {

struct VariableTagNode;

struct PointNode : Object {
  explicit PointNode(LONG objectType) : Object(objectType) {}
  HostArray<Vector> points; ///< in the object's own space

  /** parts: polygons or segments, NOTOK leaves them. False when memory is refused: nothing changes then. */
  virtual bool Resize(LONG pointCount, LONG parts) = 0;
  /** Of all points that are finite. */
  Box OwnBox() const override;

  bool OwnMessage(LONG number, void* payload) override;
  bool HasOwnData() const override { return true; }
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;

protected:
  bool WritePoints(HyperFile* hf);
  bool ReadPoints(HyperFile* hf);
};

struct PolygonNode : PointNode {
  PolygonNode() : PointNode(Opolygon) {}
  HostArray<CPolygon> polygons;

  bool Resize(LONG pointCount, LONG parts) override;
  bool WriteOwn(HyperFile* hf) override;
  bool ReadOwn(HyperFile* hf, LONG level) override;
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;
};

/** Its segments lie in a tag of type Tsegment; without one all points are one segment. */
struct SplineNode : PointNode {
  SplineNode() : PointNode(Ospline) {}
  SPLINETYPE interpolation = SPLINETYPE_LINEAR;

  /** NULL without one. */
  const VariableTagNode* Segments() const;

  bool Resize(LONG pointCount, LONG parts) override;
  bool WriteOwn(HyperFile* hf) override;
  bool ReadOwn(HyperFile* hf, LONG level) override;
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;
};

/** NULL for objects that are not made of points. */
PointNode* AsPoints(Object* op);
const PointNode* AsPoints(const Object* op);

} // namespace host
