// Entries for objects of the scene and their tags.
#include "host/base/misbehaviour.h"
#include "host/base/user_break.h"
#include "host/geometry/variable_tag.h"
#include "host/nodes/hierarchy_help.h"
#include "host/nodes/node.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

Node* FindTag(Object& op, LONG type, LONG nr) {
  for (Node* tag = op.tags.first; tag; tag = tag->next)
    if (tag->type == type && nr-- == 0) return tag;
  return nullptr;
}

/** A pred of another object is nobody's place. */
void PlaceTag(Object& op, Node& tag, BaseTag* pred) {
  Node* after = Impl(pred);
  if (after && after->list != &op.tags) {
    ReportCaller("a tag is inserted after a tag of another object");
    after = nullptr;
  }
  RemoveNode(tag);
  InsertNode(op.tags, tag, after);
}

struct ObjectEntries {
  static constexpr bool kDocumentThread = true;

  static void GetMl(const BaseObject* op, Matrix* m) { *m = Impl(op)->ml; }
  static void SetMl(BaseObject* op, const Matrix& m) {
    Impl(op)->ml = m;
    ++Impl(op)->matrixDirty;
  }
  static void GetMg(const BaseObject* op, Matrix* m) { *m = Impl(op)->Global(); }
  static void SetMg(BaseObject* op, const Matrix& m) {
    const Object* up = Impl(op)->Up();
    SetMl(op, up ? !up->Global() * m : m);
  }
  static BaseTag* GetFirstTag(BaseObject* op) { return Api((Tag*)Impl(op)->tags.first); }
  static BaseTag* GetTag(BaseObject* op, LONG type, LONG nr) {
    return Api((Tag*)FindTag(*Impl(op), type, nr));
  }
  static BaseTag* MakeTag(BaseObject* op, LONG type, BaseTag* pred) {
    Node* tag = MakeNode(NodeKind::Tag, type);
    if (tag) PlaceTag(*Impl(op), *tag, pred);
    return Api((Tag*)tag);
  }
  static void InsertTag(BaseObject* op, BaseTag* tag, BaseTag* pred) {
    if (!tag) return;
    PlaceTag(*Impl(op), *Impl(tag), pred);
    CheckVertexMap(*Impl(tag));
  }
  static void KillTag(BaseObject* op, LONG type, LONG nr) { FreeNode(FindTag(*Impl(op), type, nr)); }
  static BaseObject* GetTagObject(BaseTag* tag) { return Api(Impl(tag)->Carrier()); }
  static BaseObject* GetCache(BaseObject* op, HierarchyHelp*) { return Api((Object*)Impl(op)->cache.first); }
  static BaseObject* GetDeformCache(BaseObject* op) { return Api((Object*)Impl(op)->deformCache.first); }
  static Bool CheckCache(BaseObject* op, HierarchyHelp*) { return NeedsCache(*Impl(op)); }
  static Bool IsDirty(BaseObject* op, DIRTYFLAGS flags) {
    return !Impl(op)->cacheBuilt || HasChanged(*Impl(op), Impl(op)->cacheState, flags);
  }
  static BaseThread* GetHelpThread(HierarchyHelp* hh) { return BuildHelp::From(hh)->work->Api(); }
  static BaseDocument* GetHelpDocument(HierarchyHelp* hh) { return Api(BuildHelp::From(hh)->document); }
  static BUILDFLAGS GetHelpFlags(HierarchyHelp* hh) { return BuildHelp::From(hh)->flags; }
};

} // namespace

HOST_BIND(Object, ObjectEntries)

} // namespace host
