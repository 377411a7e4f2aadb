// Nodes of documents: what the opaque pointers of the plug-in interface point to in this host. Main thread
// only.
//
// A node lies in one list of its owner (an object's children or tags, a document's objects, render settings'
// video posts...) or in none, and then belongs to whoever made it. Lists own their nodes: FreeNode takes what
// lies below too.
#pragma once

#include "c4d.h"
#include "host/base/box.h"
#include "host/nodes/undo_steps.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace host {

struct Document;
struct KeptData; // what saving keeps of a node whose type no module knows
struct Node;
struct Plugin; // host/plugins/plugin_registry.h

enum class NodeKind {
  Document,
  RenderSettings,
  Object,
  Tag,
  VideoPost,
  SceneHook,
  Shader,
  Preferences,
  ParticleGroup
};

/** Nodes in order. The owner never changes; NodesOf gives the lists of a node. */
struct NodeList {
  explicit NodeList(Node* listOwner) : owner(listOwner) {}
  NodeList(const NodeList&) = delete;
  NodeList& operator=(const NodeList&) = delete;

  Node* const owner;
  Node* first = nullptr;
  Node* last = nullptr;
};

struct Node {
  Node(NodeKind nodeKind, LONG nodeType);
  virtual ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  const NodeKind kind;
  const LONG type;
  LULONG linkId; ///< unique among live nodes; changed through SetLinkId only
  String name;
  BaseContainer container;
  LONG bits = 0;
  ULONG dataDirty = 0, matrixDirty = 0, cacheDirty = 0;

  NodeList* list = nullptr;
  Node *next = nullptr, *pred = nullptr;

  Plugin* plugin = nullptr; ///< NULL for the host's own types and for types that nobody knows
  NodeData* data = nullptr; ///< the plug-in's part, NULL without a plug-in
  std::shared_ptr<KeptData> kept;
  bool keptByUndo = false; ///< freeing it only takes it out: an undo step may bring it back

  Node* Owner() const { return list ? list->owner : nullptr; }
  /** The document that it lies in, itself for a document, NULL outside of documents. */
  Document* GetDocument();

  // What the host's own types add; nodes of plug-ins keep the defaults.
  virtual bool OwnMessage(LONG /*type*/, void* /*data*/) { return false; }
  virtual bool HasOwnData() const { return false; }
  virtual bool WriteOwn(HyperFile*) { return true; }
  virtual bool ReadOwn(HyperFile*, LONG /*level*/) { return true; }
  /** dest is of the same type; false when memory is refused. */
  virtual bool CopyOwn(Node& /*dest*/) const { return true; }
  virtual void SwapOwn(Node& /*other*/) {}
  /** Where particle groups lie below it; NULL for nodes that hold none. */
  virtual NodeList* Groups() { return nullptr; }
};

/** Counts of changes, one for each kind of dirty flag. */
struct DirtyState {
  ULONG data = 0, matrix = 0, cache = 0, children = 0;
};

struct Object : Node {
  explicit Object(LONG objectType) : Node(NodeKind::Object, objectType) {}
  Matrix ml;
  NodeList children{this}, tags{this}, shaders{this};
  NodeList cache{this};       ///< at most one object: what the generator built last
  NodeList deformCache{this}; ///< at most one object: what deformers made of this one
  DirtyState cacheState;      ///< what the cache was built for
  bool cacheBuilt = false;

  /** Box of what the host's own types hold, in the object's own space. */
  virtual Box OwnBox() const { return Box(); }
  /** The object above, NULL on top. */
  Object* Up() const;
  Matrix Global() const;
};

struct Tag : Node {
  explicit Tag(LONG tagType) : Node(NodeKind::Tag, tagType) {}
  Object* Carrier() const { return (Object*)Owner(); }
};

struct VideoPost : Node {
  explicit VideoPost(LONG postType) : Node(NodeKind::VideoPost, postType) {}
};

struct SceneHook : Node {
  explicit SceneHook(LONG hookType) : Node(NodeKind::SceneHook, hookType) {}
};

struct Shader : Node {
  explicit Shader(LONG shaderType) : Node(NodeKind::Shader, shaderType) {}
};

struct PreferencesPage : Node {
  explicit PreferencesPage(LONG pageType) : Node(NodeKind::Preferences, pageType) {}
};

struct RenderSettings : Node {
  RenderSettings() : Node(NodeKind::RenderSettings, Rbase) {}
  NodeList videoPosts{this};
};

/** Numbers of the document settings (DOCUMENTSETTINGS_DOCUMENT) that hold time and frame rate. */
enum { kDocumentTime = 1000, kDocumentFps = 1001 };

struct Document : Node {
  Document();
  ~Document() override;

  NodeList objects{this}, renderSettings{this}, hooks{this};
  LULONG activeObject = 0;               ///< link id
  std::array<BaseContainer, 3> settings; ///< by DOCUMENTSETTINGS
  std::string path;                      ///< of the file, UTF-8; empty before it was saved
  std::unique_ptr<UndoSteps> undo;       ///< always there: the document is made with it

  RenderSettings* ActiveRenderSettings() { return (RenderSettings*)renderSettings.first; }
  LONG Fps() const;
};

// Between the interface's pointers and nodes; NULL stays NULL.
inline Node* Impl(C4DAtom* node) {
  return reinterpret_cast<Node*>(node);
}
inline const Node* Impl(const C4DAtom* node) {
  return reinterpret_cast<const Node*>(node);
}
inline Object* Impl(BaseObject* op) {
  return reinterpret_cast<Object*>(op);
}
inline const Object* Impl(const BaseObject* op) {
  return reinterpret_cast<const Object*>(op);
}
inline Tag* Impl(BaseTag* tag) {
  return reinterpret_cast<Tag*>(tag);
}
inline VideoPost* Impl(BaseVideoPost* vp) {
  return reinterpret_cast<VideoPost*>(vp);
}
inline Shader* Impl(BaseShader* shader) {
  return reinterpret_cast<Shader*>(shader);
}
inline RenderSettings* Impl(RenderData* rd) {
  return reinterpret_cast<RenderSettings*>(rd);
}
inline Document* Impl(BaseDocument* doc) {
  return reinterpret_cast<Document*>(doc);
}
inline const Document* Impl(const BaseDocument* doc) {
  return reinterpret_cast<const Document*>(doc);
}

inline BaseList2D* Api(Node* node) {
  return reinterpret_cast<BaseList2D*>(node);
}
inline BaseObject* Api(Object* op) {
  return reinterpret_cast<BaseObject*>(op);
}
inline BaseTag* Api(Tag* tag) {
  return reinterpret_cast<BaseTag*>(tag);
}
inline BaseVideoPost* Api(VideoPost* vp) {
  return reinterpret_cast<BaseVideoPost*>(vp);
}
inline BaseShader* Api(Shader* shader) {
  return reinterpret_cast<BaseShader*>(shader);
}
inline BaseSceneHook* Api(SceneHook* hook) {
  return reinterpret_cast<BaseSceneHook*>(hook);
}
inline RenderData* Api(RenderSettings* rd) {
  return reinterpret_cast<RenderData*>(rd);
}
inline BaseDocument* Api(Document* doc) {
  return reinterpret_cast<BaseDocument*>(doc);
}

/**
 * A new node in no list: its plug-in's data is made, attached and initialised, which fills the container.
 * NULL when the type is unknown, when memory is refused, or when Init fails.
 */
Node* MakeNode(NodeKind kind, LONG type);
/**
 * A node without a plug-in's data, for a type that nobody knows: it keeps name, container and place. NULL for
 * kinds of nodes that plug-ins have no types of.
 */
Node* MakePlainNode(NodeKind kind, LONG type);
/** A new document with one set of render settings and one instance of each registered scene hook. */
Document* MakeDocument();
/** Takes the node out of its list and frees it with all below; plug-in data first hears Free. NULL is
 * allowed. */
void FreeNode(Node* node);

/** The lists of a node in the order in which they are saved; caches are not among them. */
std::vector<NodeList*> ListsOf(Node& node);
/** The list of `owner` that nodes of that kind lie in, NULL when they cannot lie there. */
NodeList* ListFor(Node& owner, NodeKind kind);
/** Puts a node that is in no list after pred, at the start when pred is NULL. */
void InsertNode(NodeList& list, Node& node, Node* pred);
void AppendNode(NodeList& list, Node& node);
void RemoveNode(Node& node);
void FreeList(NodeList& list);
/** The node and all below it, parents first; caches are left out. */
std::vector<Node*> Hierarchy(Node& root);

/** A number that no node has had. */
LULONG ReserveLinkId();
/** Gives a node a reserved number; links to its old one no longer find it. */
void SetLinkId(Node& node, LULONG id);
/** The live node of a number, NULL when it is gone. */
Node* FindNode(LULONG linkId);
LLONG LiveNodes();
LLONG LiveNodeData();
/** Nodes whose type belongs to one plug-in, in any document or in none. */
std::vector<Node*> NodesOfPlugin(const Plugin& plugin);

/** Sends a message to the plug-in's data or to the host's own type. */
bool SendMessage(Node& node, LONG type, void* data);
bool IsInstanceOf(const Node& node, LONG type);
/** Name of a type as the user sees it. */
const String& TypeName(const Node& node);

/** A copy in no list; links within what is copied lead to the copies. NULL when memory is refused. */
Node* CloneNode(Node& node, COPYFLAGS flags);
/** Copies the content onto a node of the same type; what lies below as the flags say. */
bool CopyNode(Node& source, Node& dest, COPYFLAGS flags);
/** Sum of the counters that the flags name; it differs after every change. */
ULONG DirtyCount(const Node& node, DIRTYFLAGS flags);
DirtyState DirtyStateOf(const Node& node);
/** Whether one of the kinds that the flags name has changed since. */
bool HasChanged(const Node& node, const DirtyState& since, DIRTYFLAGS flags);

/** Makes links in a container, nested ones too, that lead to `from` lead to `to`. */
struct LinkChange {
  LULONG from, to;
};
void ChangeLinks(BaseContainer& container, const std::vector<LinkChange>& changes);

/** Creates the video posts that are flagged as always present and that the settings lack. */
void AddInherentVideoPosts(RenderSettings& settings);

/** Takes `result` as what deformers made of `op` and frees what was there; NULL for nothing. */
void SetDeformCache(Object& op, Object* result);

} // namespace host
