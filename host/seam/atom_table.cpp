// Entries for nodes, their lists, containers and tags.
#include "host/base/misbehaviour.h"
#include "host/geometry/variable_tag.h"
#include "host/nodes/node_types.h"
#include "host/nodes/services.h"
#include "host/parameters/node_parameters.h"
#include "host/particles/particle_system.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

bool LiesBelow(const Node& node, const Node& top) {
  const Node* up = &node;
  while (up && up != &top) up = up->Owner();
  return up != nullptr;
}

void PlaceNode(Node* node, Node* other, LISTPLACE place) {
  if (!node || !other) return ReportCaller("a node is inserted at no place");
  const bool below = place == LISTPLACE_FIRSTBELOW || place == LISTPLACE_LASTBELOW;
  Node* owner = below ? other : other->Owner();
  NodeList* list = owner ? ListFor(*owner, node->kind) : nullptr;
  if (!list || (!below && list != other->list))
    return ReportCaller("a node is inserted where nodes of its kind cannot lie");
  if (LiesBelow(*owner, *node)) return ReportCaller("a node is inserted below itself");
  if (node == other) return; // beside itself is where it is
  RemoveNode(*node);
  Node* pred = place == LISTPLACE_FIRSTBELOW  ? nullptr
               : place == LISTPLACE_LASTBELOW ? list->last
               : place == LISTPLACE_AFTER     ? other
                                              : other->pred;
  InsertNode(*list, *node, pred);
  if (node->kind == NodeKind::Tag) CheckVertexMap(*static_cast<Tag*>(node));
}

struct AtomEntries {
  static constexpr bool kDocumentThread = true;

  static GeListNode* Alloc(PLUGINTYPE plugin, LONG type) {
    NodeKind kind;
    if (!KindOfPlugin(plugin, &kind) || !TheServices().libraries.Offers(type)) return nullptr;
    return Api(MakeNode(kind, type));
  }
  static void Free(GeListNode* node) {
    Node* impl = Impl(node);
    if (impl->keptByUndo)
      RemoveNode(*impl);
    else
      FreeNode(impl);
  }
  static void Insert(GeListNode* node, GeListNode* other, LISTPLACE place) {
    PlaceNode(Impl(node), Impl(other), place);
  }
  static LONG GetType(const C4DAtom* node) { return Impl(node)->type; }
  static Bool IsInstanceOf(const C4DAtom* node, LONG type) { return host::IsInstanceOf(*Impl(node), type); }
  static Bool Message(C4DAtom* node, LONG type, void* data) { return SendMessage(*Impl(node), type, data); }
  static C4DAtom* GetClone(C4DAtom* node, COPYFLAGS flags, AliasTrans*) {
    return Api(CloneNode(*Impl(node), flags));
  }
  static Bool CopyTo(C4DAtom* node, C4DAtom* dest, COPYFLAGS flags, AliasTrans*) {
    return CopyNode(*Impl(node), *Impl(dest), flags);
  }
  static Bool GetDescription(C4DAtom* node, ::Description* description, DESCFLAGS_DESC) {
    DescriptionRequest& request = *DescriptionRequest::From(description);
    request.loaded = FindDescription(*Impl(node));
    return request.loaded != nullptr;
  }
  static Bool GetParameter(C4DAtom* node, const DescID& id, GeData& data, DESCFLAGS_GET flags) {
    return host::GetParameter(*Impl(node), id, data, flags);
  }
  static Bool SetParameter(C4DAtom* node, const DescID& id, const GeData& data, DESCFLAGS_SET flags) {
    return host::SetParameter(*Impl(node), id, data, flags);
  }
  static BaseShader* GetFirstShader(const BaseList2D* bl) {
    NodeList* list = ListFor(*const_cast<Node*>(Impl(bl)), NodeKind::Shader);
    return list ? Api((Shader*)list->first) : nullptr;
  }
  static void InsertShader(BaseList2D* bl, BaseShader* shader, BaseShader* pred) {
    if (!shader) return;
    NodeList* list = ListFor(*Impl(bl), NodeKind::Shader);
    if (!list) return ReportCaller("a shader is given to a node that carries none");
    Node* after = Impl(pred);
    if (after && after->list != list) {
      ReportCaller("a shader is inserted after one of another node");
      after = nullptr;
    }
    RemoveNode(*Impl(shader));
    InsertNode(*list, *Impl(shader), after);
  }
  static ULONG GetDirty(const C4DAtom* node, DIRTYFLAGS flags) { return DirtyCount(*Impl(node), flags); }
  static void SetDirty(C4DAtom* node, DIRTYFLAGS flags) {
    Node& impl = *Impl(node);
    if (flags & DIRTYFLAGS_DATA) ++impl.dataDirty;
    if (flags & DIRTYFLAGS_MATRIX) ++impl.matrixDirty;
    if (flags & DIRTYFLAGS_CACHE) ++impl.cacheDirty;
  }
  static LULONG GetLinkID(const C4DAtomGoal* node) { return node ? Impl(node)->linkId : 0; }
  static BaseList2D* ResolveLink(LULONG id, const BaseDocument* doc, LONG instanceof) {
    Node* node = FindNode(id);
    if (!node || (doc && node->GetDocument() != Impl(doc))) return nullptr;
    return instanceof == 0 || host::IsInstanceOf(*node, instanceof) ? Api(node) : nullptr;
  }
  static GeListNode* GetNext(GeListNode* node) { return Api(Impl(node)->next); }
  static GeListNode* GetPred(GeListNode* node) { return Api(Impl(node)->pred); }
  static GeListNode* GetUp(GeListNode* node) {
    Node* impl = Impl(node);
    if (impl->kind == NodeKind::ParticleGroup) return Api(static_cast<ParticleGroup*>(impl)->Up());
    return impl->kind == NodeKind::Object ? Api(static_cast<Object*>(impl)->Up()) : nullptr;
  }
  static GeListNode* GetDown(GeListNode* node) {
    Node* impl = Impl(node);
    if (impl->kind == NodeKind::ParticleGroup) return Api(impl->Groups()->first);
    return impl->kind == NodeKind::Object ? Api(static_cast<Object*>(impl)->children.first) : nullptr;
  }
  static void Remove(GeListNode* node) { RemoveNode(*Impl(node)); }
  static NodeData* GetNodeData(GeListNode* node) { return Impl(node)->data; }
  static BaseDocument* GetDocument(GeListNode* node) { return Api(Impl(node)->GetDocument()); }
  static const String* GetName(const BaseList2D* node) { return &Impl(node)->name; }
  static void SetName(BaseList2D* node, const String& name) { Impl(node)->name = name; }
  static const String* GetTypeName(const BaseList2D* node) { return &TypeName(*Impl(node)); }
  static BaseContainer* GetDataInstance(BaseList2D* node) { return &Impl(node)->container; }
  static LONG GetBits(const BaseList2D* node) { return Impl(node)->bits; }
  static void SetBits(BaseList2D* node, LONG bits) { Impl(node)->bits = bits; }
};

} // namespace

HOST_BIND(Atom, AtomEntries)

} // namespace host
