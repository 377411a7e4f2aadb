// The types of nodes that hold geometry.
#pragma once

namespace host {

class NodeTypes;

/** Polygon and spline objects, tags of values, clone tags. */
void RegisterGeometry(NodeTypes& types);

} // namespace host
