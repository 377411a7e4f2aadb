// Entries for documents, undo and render settings.
#include "host/base/misbehaviour.h"
#include "host/base/text.h"
#include "host/nodes/services.h"
#include "host/particles/particle_system.h"
#include "host/seam/os_tables.h"
#include "host/undo/undo.h"

#include <filesystem>

namespace host {

namespace {

bool HasName(const NodeList& list, const String& name, const Node& except) {
  for (const Node* node = list.first; node; node = node->next)
    if (node != &except && node->name == name) return true;
  return false;
}

/** "Cloud", "Cloud.1", "Cloud.2"... among the nodes beside it. */
void MakeNameUnique(const NodeList& list, Node& node) {
  const String base = node.name;
  for (LONG n = 1; HasName(list, node.name, node); ++n) node.name = base + String(".") + LongToString(n);
}

/** Wrong places are reported; the object then goes to the document's top. */
void PlaceObject(Document& doc, Object& op, Object* parent, Object* pred, bool checkNames) {
  if (pred && (!pred->list || pred->GetDocument() != &doc)) {
    ReportCaller("an object is inserted after an object outside the document");
    pred = nullptr;
  }
  if (parent && parent->GetDocument() != &doc) {
    ReportCaller("an object is inserted below an object outside the document");
    parent = nullptr;
  }
  RemoveNode(op);
  NodeList& list = pred ? *pred->list : parent ? parent->children : doc.objects;
  InsertNode(list, op, pred);
  if (checkNames) MakeNameUnique(list, op);
}

void SetBit(Node& node, LONG bit, bool on) {
  node.bits = on ? node.bits | bit : node.bits & ~bit;
}

struct DocumentEntries {
  static constexpr bool kDocumentThread = true;

  static BaseDocument* Alloc() { return Api(MakeDocument()); }
  static void Free(BaseDocument* doc) { FreeNode(Impl(doc)); }
  static BaseDocument* GetActiveDocument() { return Api(TheServices().active); }
  static BaseContainer* GetSettings(const BaseDocument* doc, DOCUMENTSETTINGS type) {
    Document& impl = *const_cast<Document*>(Impl(doc));
    return &impl.settings[(std::size_t)type < impl.settings.size() ? (std::size_t)type : 0];
  }
  static BaseObject* GetFirstObject(BaseDocument* doc) { return Api((Object*)Impl(doc)->objects.first); }
  static BaseObject* GetActiveObject(BaseDocument* doc) {
    Node* node = FindNode(Impl(doc)->activeObject);
    return node && node->GetDocument() == Impl(doc) ? Api((Object*)node) : nullptr;
  }
  static void InsertObject(BaseDocument* doc, BaseObject* op, BaseObject* parent, BaseObject* pred,
                           Bool checknames) {
    if (op) PlaceObject(*Impl(doc), *Impl(op), Impl(parent), Impl(pred), checknames != FALSE);
  }
  static void SetActiveObject(BaseDocument* doc, BaseObject* op, LONG mode) {
    Document& impl = *Impl(doc);
    if (mode == SELECTION_NEW)
      for (Node* node : Hierarchy(impl)) SetBit(*node, BIT_ACTIVE, false);
    if (op) SetBit(*Impl(op), BIT_ACTIVE, mode != SELECTION_SUB);
    if (mode != SELECTION_SUB)
      impl.activeObject = op ? Impl(op)->linkId : 0;
    else if (op && impl.activeObject == Impl(op)->linkId)
      impl.activeObject = 0;
  }
  static RenderData* GetActiveRenderData(BaseDocument* doc) { return Api(Impl(doc)->ActiveRenderSettings()); }
  static BaseSceneHook* FindSceneHook(const BaseDocument* doc, LONG id) {
    if (id == ID_THINKINGPARTICLES) {
      Document& impl = *const_cast<Document*>(Impl(doc));
      return TheServices().libraries.particles ? Api((SceneHook*)SystemOf(impl)) : nullptr;
    }
    for (Node* hook = Impl(doc)->hooks.first; hook; hook = hook->next)
      if (hook->type == id) return Api((SceneHook*)hook);
    return nullptr;
  }

  static Bool StartUndo(BaseDocument* doc) {
    return Checked(Impl(doc)->undo->Begin(), "StartUndo within an undo step");
  }
  static Bool EndUndo(BaseDocument* doc) {
    return Checked(Impl(doc)->undo->End(), "EndUndo without StartUndo");
  }
  static Bool AddUndo(BaseDocument* doc, UNDOTYPE type, void* data, Bool) {
    std::string why;
    if (!RequireMainThread("Document::AddUndo")) return FALSE;
    if (Impl(doc)->undo->Add(type, static_cast<Node*>(Impl((C4DAtom*)data)), &why)) return TRUE;
    if (!why.empty()) ReportCaller(why);
    return FALSE;
  }
  static Bool DoUndo(BaseDocument* doc, Bool) { return Impl(doc)->undo->Undo(); }
  static Bool DoRedo(BaseDocument* doc) { return Impl(doc)->undo->Redo(); }
  static void GetTime(const BaseDocument* doc, BaseTime* time) {
    *time = Impl(doc)->settings[DOCUMENTSETTINGS_DOCUMENT].GetTime(kDocumentTime);
  }
  static void SetTime(BaseDocument* doc, const BaseTime& time) {
    Impl(doc)->settings[DOCUMENTSETTINGS_DOCUMENT].SetTime(kDocumentTime, time);
  }
  static LONG GetFps(const BaseDocument* doc) { return Impl(doc)->Fps(); }
  static void GetPath(const BaseDocument* doc, Filename* path, Filename* name) {
    const std::filesystem::path file = std::filesystem::u8path(Impl(doc)->path);
    *path = Filename(FromUtf8(file.parent_path().u8string()));
    *name = Filename(FromUtf8(file.filename().u8string()));
  }
  static BaseVideoPost* GetFirstVideoPost(RenderData* rd) {
    return Api((VideoPost*)Impl(rd)->videoPosts.first);
  }
  static void InsertVideoPost(RenderData* rd, BaseVideoPost* vp, BaseVideoPost* pred) {
    if (!vp) return;
    Node* after = Impl(pred);
    if (after && after->list != &Impl(rd)->videoPosts) {
      ReportCaller("a video post is inserted after one of other render settings");
      after = nullptr;
    }
    RemoveNode(*Impl(vp));
    InsertNode(Impl(rd)->videoPosts, *Impl(vp), after);
  }
  static void InsertVideoPostLast(RenderData* rd, BaseVideoPost* vp) {
    if (!vp) return;
    RemoveNode(*Impl(vp));
    AppendNode(Impl(rd)->videoPosts, *Impl(vp));
  }

private:
  static Bool Checked(bool ok, const char* breach) {
    if (!ok) ReportCaller(breach);
    return ok;
  }
};

} // namespace

HOST_BIND(Document, DocumentEntries)

} // namespace host
