// Entries for objects made of points, and variable tags.
#include "host/geometry/point_nodes.h"
#include "host/geometry/variable_tag.h"
#include "host/plugins/plugin_registry.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

/** Whether a tag passes one of CopyTagsTo's three questions: TRUE and FALSE ask, NOTOK does not care. */
bool Passes(LONG asked, bool is) {
  return asked == NOTOK || (asked != FALSE) == is;
}

enum { kTagVisible = 1 << 0, kTagHierarchical = 1 << 2 };

bool IsWanted(const Node& tag, LONG visible, LONG variable, LONG hierarchical) {
  // Of the host's own tags users see the vertex maps.
  const LONG ownInfo = tag.type == Tvertexmap ? kTagVisible : 0;
  const LONG info = tag.plugin ? tag.plugin->Base()->info : ownInfo;
  return Passes(visible, (info & kTagVisible) != 0) && Passes(variable, VariableTagSize(tag.type) > 0) &&
         Passes(hierarchical, (info & kTagHierarchical) != 0);
}

/** The new object at its size, NULL when that is refused. */
PointNode* MakePoints(LONG type, LONG pcnt, LONG parts) {
  PointNode* made = AsPoints(static_cast<Object*>(MakeNode(NodeKind::Object, type)));
  if (made && made->Resize(pcnt, parts)) return made;
  FreeNode(made);
  return nullptr;
}

template <class T>
T* ApiAs(Node* node) {
  return reinterpret_cast<T*>(Api(node));
}

struct PointEntries {
  static PolygonObject* AllocPolygon(LONG pcnt, LONG vcnt) {
    RequireDocumentThread("Point::AllocPolygon");
    return vcnt < 0 ? nullptr : ApiAs<PolygonObject>(MakePoints(Opolygon, pcnt, vcnt));
  }
  static SplineObject* AllocSpline(LONG pcnt, SPLINETYPE type) {
    RequireDocumentThread("Point::AllocSpline");
    PointNode* spline = MakePoints(Ospline, pcnt, 0);
    if (spline) static_cast<SplineNode*>(spline)->interpolation = type;
    return ApiAs<SplineObject>(spline);
  }
  static VariableTag* AllocVariableTag(LONG type, LONG count) {
    RequireDocumentThread("Point::AllocVariableTag");
    return ApiAs<VariableTag>(host::MakeVariableTag(type, count));
  }

  static PointNode* Points(const PointObject* op) {
    return const_cast<PointNode*>(AsPoints(Impl((const BaseObject*)op)));
  }
  static PolygonNode* Polygons(const PolygonObject* op) { return dynamic_cast<PolygonNode*>(Points(op)); }
  static VariableTagNode* Values(const VariableTag* tag) {
    return AsVariable(Impl(const_cast<BaseTag*>((const BaseTag*)tag)));
  }

  static LONG GetPointCount(const PointObject* op) {
    const PointNode* node = Points(op);
    return node ? (LONG)node->points.Count() : 0;
  }
  static Vector* GetPoints(PointObject* op) {
    PointNode* node = Points(op);
    return node ? node->points.Data() : nullptr;
  }
  static LONG GetPolygonCount(const PolygonObject* op) {
    const PolygonNode* node = Polygons(op);
    return node ? (LONG)node->polygons.Count() : 0;
  }
  static CPolygon* GetPolygons(PolygonObject* op) {
    PolygonNode* node = Polygons(op);
    return node ? node->polygons.Data() : nullptr;
  }
  static SPLINETYPE GetInterpolationType(const SplineObject* op) {
    const SplineNode* node = dynamic_cast<const SplineNode*>(Points(op));
    return node ? node->interpolation : SPLINETYPE_LINEAR;
  }
  static LONG GetDataCount(const VariableTag* tag) {
    const VariableTagNode* node = Values(tag);
    return node ? node->Count() : 0;
  }
  static LONG GetDataSize(const VariableTag* tag) {
    const VariableTagNode* node = Values(tag);
    return node ? node->Size() : 0;
  }
  static void* GetDataAddress(VariableTag* tag) {
    VariableTagNode* node = Values(tag);
    return node ? node->bytes.Data() : nullptr;
  }

  static Bool Resize(PointObject* op, LONG pcnt, LONG parts) {
    RequireDocumentThread("Point::Resize");
    PointNode* node = Points(op);
    return node && node->Resize(pcnt, parts);
  }
  static VariableTag* MakeVariableTag(BaseObject* op, LONG type, LONG count, BaseTag* pred) {
    RequireDocumentThread("Point::MakeVariableTag");
    VariableTagNode* tag = host::MakeVariableTag(type, count);
    if (tag) op->InsertTag(Api((Tag*)tag), pred);
    return ApiAs<VariableTag>(tag);
  }
  static Bool CopyTagsTo(BaseObject* op, BaseObject* dest, LONG visible, LONG variable, LONG hierarchical) {
    RequireDocumentThread("Point::CopyTagsTo");
    std::vector<Node*> copies;
    bool good = true;
    for (Node* tag = Impl(op)->tags.first; tag && good; tag = tag->next) {
      if (!IsWanted(*tag, visible, variable, hierarchical)) continue;
      Node* copy = CloneNode(*tag, COPYFLAGS_0);
      if (copy) copies.push_back(copy);
      good = copy != nullptr;
    }
    for (Node* copy : copies) good ? AppendNode(Impl(dest)->tags, *copy) : FreeNode(copy);
    return good;
  }
};

} // namespace

HOST_BIND(Point, PointEntries)

} // namespace host
