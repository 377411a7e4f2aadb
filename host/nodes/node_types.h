// Which types of nodes there are.
#pragma once

#include "host/nodes/node.h"

namespace host {

/** Kind of node of a kind of plug-in; false when such plug-ins have none. */
bool KindOfPlugin(PLUGINTYPE plugin, NodeKind* kind);
/** The registered plug-in of a type, NULL without one. */
Plugin* FindTypePlugin(NodeKind kind, LONG type);
/** A node of one of the host's own types, NULL when it is none. */
Node* MakeOwnNode(NodeKind kind, LONG type);
/** A node of that kind without anything in it. */
Node* MakeEmptyNode(NodeKind kind, LONG type);
const String& TypeName(NodeKind kind, LONG type);
/** Name of the base description of a kind ("Obase"), empty without one. */
const char* BaseDescription(NodeKind kind);

} // namespace host
