#include "host/geometry/geometry_types.h"

#include "host/geometry/clone_tag.h"
#include "host/geometry/point_nodes.h"
#include "host/geometry/variable_tag.h"
#include "host/nodes/node_types.h"

namespace host {

void RegisterGeometry(NodeTypes& types) {
  types.Add({NodeKind::Object, Opolygon, "Polygon", Opoint, MakeOwn<PolygonNode>});
  types.Add({NodeKind::Object, Ospline, "Spline", Opoint, MakeOwn<SplineNode>});
  types.Add({NodeKind::Tag, Tsegment, "Segments", Tvariable, MakeOwn<VariableTagNode>});
  types.Add({NodeKind::Tag, Tvertexmap, "Vertex Map", Tvariable, MakeOwn<VariableTagNode>});
  types.Add({NodeKind::Tag, ID_MOTAGDATA, "MoGraph Data", 0, MakeCloneTag});
}

} // namespace host
