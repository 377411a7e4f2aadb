// Copies of nodes. Links within what is copied lead to the copies, as long as they lie in containers.
#include "host/base/module_scope.h"
#include "host/nodes/node.h"
#include "host/plugins/plugin_registry.h"

namespace host {

namespace {

bool Has(COPYFLAGS flags, COPYFLAGS flag) {
  return (flags & flag) != 0;
}

/** Without what lies below. */
bool CopyContent(Node& source, Node& dest, COPYFLAGS flags) {
  dest.name = source.name;
  dest.container = source.container;
  dest.kept = source.kept;
  if (!Has(flags, COPYFLAGS_NO_BITS)) dest.bits = source.bits;
  if (source.kind == NodeKind::Object) static_cast<Object&>(dest).ml = static_cast<Object&>(source).ml;
  if (source.kind == NodeKind::Document) {
    static_cast<Document&>(dest).settings = static_cast<Document&>(source).settings;
    static_cast<Document&>(dest).path = static_cast<Document&>(source).path;
  }
  ++dest.dataDirty;
  ++dest.matrixDirty;
  if (!source.CopyOwn(dest)) return false;
  if (!source.data) return true;
  AliasTrans* const noTranslation = nullptr; // links of plug-in data are the plug-in's own affair
  return CallModule("CopyTo", source.plugin->Node().CopyTo, source.data, dest.data, Api(&source), Api(&dest),
                    flags, noTranslation) != FALSE;
}

bool IsLeftOut(const Node& below, COPYFLAGS flags) {
  // Objects below objects are the hierarchy; everything else on a node is a branch.
  const bool child = below.kind == NodeKind::Object && below.Owner()->kind == NodeKind::Object;
  return Has(flags, child ? COPYFLAGS_NO_HIERARCHY : COPYFLAGS_NO_BRANCHES);
}

bool CopyBelow(Node& source, Node& dest, COPYFLAGS flags, std::vector<LinkChange>* changes);

Node* CloneOne(Node& source, COPYFLAGS flags, std::vector<LinkChange>* changes) {
  Node* clone = source.kept ? MakePlainNode(source.kind, source.type) : MakeNode(source.kind, source.type);
  if (!clone) return nullptr;
  changes->push_back({source.linkId, clone->linkId});
  if (CopyContent(source, *clone, flags) && CopyBelow(source, *clone, flags, changes)) return clone;
  FreeNode(clone);
  return nullptr;
}

bool CopyBelow(Node& source, Node& dest, COPYFLAGS flags, std::vector<LinkChange>* changes) {
  for (NodeList* list : ListsOf(source))
    for (Node* below = list->first; below; below = below->next) {
      if (IsLeftOut(*below, flags)) continue;
      Node* clone = CloneOne(*below, flags, changes);
      if (!clone) return false;
      AppendNode(*ListFor(dest, below->kind), *clone);
    }
  return true;
}

void ChangeLinksBelow(Node& root, const std::vector<LinkChange>& changes) {
  for (Node* node : Hierarchy(root)) ChangeLinks(node->container, changes);
}

} // namespace

void ChangeLinks(BaseContainer& container, const std::vector<LinkChange>& changes) {
  for (LONG i = 0; i < container.GetCount(); ++i) {
    GeData& value = *container.GetIndexData(i);
    if (value.GetType() == DA_CONTAINER) ChangeLinks(*value.GetContainer(), changes);
    if (value.GetType() != DA_ALIASLINK) continue;
    BaseLink link = value.GetBaseLink();
    for (const LinkChange& change : changes)
      if (link.target == change.from) {
        link.target = change.to;
        value.SetBaseLink(&link);
        break;
      }
  }
}

Node* CloneNode(Node& node, COPYFLAGS flags) {
  std::vector<LinkChange> changes;
  Node* clone = CloneOne(node, flags, &changes);
  if (!clone) return nullptr;
  ChangeLinksBelow(*clone, changes);
  if (clone->kind == NodeKind::Document)
    for (const LinkChange& change : changes)
      if (change.from == static_cast<Document&>(node).activeObject)
        static_cast<Document*>(clone)->activeObject = change.to;
  return clone;
}

bool CopyNode(Node& source, Node& dest, COPYFLAGS flags) {
  if (&source == &dest) return true;
  for (Node* owner = dest.Owner(); owner; owner = owner->Owner())
    if (owner == &source && !Has(flags, COPYFLAGS_NO_HIERARCHY)) return false; // it would hold itself
  if (source.kind != dest.kind || source.type != dest.type ||
      (source.data != nullptr) != (dest.data != nullptr))
    return false;
  std::vector<LinkChange> changes{{source.linkId, dest.linkId}};
  if (!CopyContent(source, dest, flags)) return false;
  for (NodeList* list : ListsOf(dest))
    for (Node *below = list->first, *next; below; below = next) {
      next = below->next;
      if (!IsLeftOut(*below, flags)) FreeNode(below);
    }
  if (!CopyBelow(source, dest, flags, &changes)) return false;
  ChangeLinksBelow(dest, changes);
  return true;
}

} // namespace host
