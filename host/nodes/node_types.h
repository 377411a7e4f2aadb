// Which types of nodes there are: the host's own, which its libraries register, and those of plug-ins.
#pragma once

#include "host/nodes/node.h"

#include <list>
#include <type_traits>

namespace host {

/** A type of nodes of the host itself. */
struct OwnType {
  NodeKind kind;
  LONG type;
  const char* name; ///< as users see it
  LONG base;        ///< a type between it and the base of its kind, 0 for none
  Node* (*make)(LONG type);
};

/** The host's own types. Every library registers its types when the application starts. */
class NodeTypes {
public:
  void Add(const OwnType& type);
  /** NULL for a type that no library registered. */
  const OwnType* Find(NodeKind kind, LONG type) const;
  /** NULL likewise; stays valid as long as the registry. */
  const String* NameOf(NodeKind kind, LONG type) const;

private:
  struct Entry {
    OwnType type;
    String name;
  };
  const Entry* FindEntry(NodeKind kind, LONG type) const;

  std::list<Entry> entries_;
};

/** For OwnType::make: a new node of a class that is constructed from its type, or from nothing. */
template <class T>
Node* MakeOwn(LONG type) {
  if constexpr (std::is_constructible_v<T, LONG>)
    return new T(type);
  else
    return new T;
}

/** The types of nodes that hold nothing of their own: null, camera and light objects, render settings. */
void RegisterPlainTypes(NodeTypes& types);

/** Kind of node of a kind of plug-in; false when such plug-ins have none. */
bool KindOfPlugin(PLUGINTYPE plugin, NodeKind* kind);
/** The registered plug-in of a type, NULL without one. */
Plugin* FindTypePlugin(NodeKind kind, LONG type);
/** A node of one of the host's own types, NULL when it is none. */
Node* MakeOwnNode(NodeKind kind, LONG type);
const String& TypeName(NodeKind kind, LONG type);

} // namespace host
