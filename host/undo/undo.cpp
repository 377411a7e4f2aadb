#include "host/undo/undo.h"

#include "host/base/module_scope.h"
#include "host/nodes/services.h"
#include "host/plugins/plugin_registry.h"

#include <algorithm>
#include <thread>
#include <unordered_map>

namespace host {

namespace {

/** From the number of a node to that of the kept node that stands for it. */
typedef std::unordered_map<LULONG, LULONG> StandIns;

void SwapData(Node& a, Node& b) {
  std::swap(a.data, b.data);
  for (Node* node : {&a, &b})
    if (node->data) CallModule("Attach", node->plugin->Node().Attach, node->data, Api(node));
}

void SwapContent(Node& a, Node& b) {
  std::swap(a.name, b.name);
  std::swap(a.container, b.container);
  std::swap(a.bits, b.bits);
  if (a.kind == NodeKind::Object) {
    std::swap(static_cast<Object&>(a).ml, static_cast<Object&>(b).ml);
    static_cast<Object&>(a).cacheBuilt = static_cast<Object&>(b).cacheBuilt = false;
  }
  if (a.kind == NodeKind::Document)
    std::swap(static_cast<Document&>(a).settings, static_cast<Document&>(b).settings);
  SwapData(a, b);
  a.SwapOwn(b);
  ++a.dataDirty;
  ++a.matrixDirty;
}

void MoveAll(NodeList& from, NodeList& to) {
  while (Node* node = from.first) {
    RemoveNode(*node);
    AppendNode(to, *node);
  }
}

void SwapLists(NodeList& a, NodeList& b) {
  NodeList aside(a.owner);
  MoveAll(a, aside);
  MoveAll(b, a);
  MoveAll(aside, b);
}

/** Links lead to numbers: the nodes that come take over those of the nodes that they stand for. */
void SwapLinkIds(Node& first, Node& second) {
  const LULONG a = first.linkId, b = second.linkId;
  SetLinkId(first, ReserveLinkId());
  SetLinkId(second, a);
  SetLinkId(first, b);
}

/** The node's content, as a clone that changes places with it. */
class ContentChange : public Change {
public:
  /** hierarchy: child objects too. */
  static std::unique_ptr<Change> Make(Node& node, bool hierarchy) {
    std::unique_ptr<ContentChange> change(new ContentChange(node.linkId, hierarchy));
    const COPYFLAGS flags = hierarchy ? COPYFLAGS_0 : COPYFLAGS_NO_HIERARCHY;
    // A document's own content has no branches: its objects are changed by changes of their own.
    change->kept_ = CloneNode(node, node.kind == NodeKind::Document ? COPYFLAGS_NO_BRANCHES : flags);
    if (!change->kept_) return nullptr;
    change->branches_ = node.kind != NodeKind::Document;
    change->UndoLinkChanges(node);
    return change;
  }
  ~ContentChange() override {
    const Services* services = FindServices();
    if (services && services->freesCopiesElsewhere)
      std::thread(FreeNode, kept_).join();
    else
      FreeNode(kept_);
  }

  void Exchange(bool) override {
    Node* node = FindNode(target_);
    if (!node) return; // freed in the meantime
    SwapContent(*node, *kept_);
    if (!branches_) return;
    // Both nodes are of one type: their lists come in the same order.
    const std::vector<NodeList*> lists = ListsOf(*node), others = ListsOf(*kept_);
    for (std::size_t i = 0; i < lists.size(); ++i) {
      if (!hierarchy_ && node->kind == NodeKind::Object && lists[i] == &static_cast<Object*>(node)->children)
        continue;
      SwapLists(*lists[i], *others[i]);
    }
    for (LULONG& id : origins_) ExchangeId(id);
  }

private:
  ContentChange(LULONG target, bool hierarchy) : target_(target), hierarchy_(hierarchy) {}

  /**
   * The clone's links lead to its own parts. It stands for the node itself, so they have to lead where
   * the node's links do; which clone stands for which node is kept by number.
   */
  void UndoLinkChanges(Node& node) {
    const std::vector<Node*> originals = Counterparts(node), clones = Counterparts(*kept_);
    std::vector<LinkChange> changes;
    for (std::size_t i = 0; i < clones.size() && i < originals.size(); ++i) {
      changes.push_back({clones[i]->linkId, originals[i]->linkId});
      if (i > 0) origins_.push_back(originals[i]->linkId), stands_[originals[i]->linkId] = clones[i]->linkId;
    }
    for (Node* clone : clones) ChangeLinks(clone->container, changes);
  }

  /** The node and what of it is kept, in one order for original and clone. */
  std::vector<Node*> Counterparts(Node& root) const {
    std::vector<Node*> nodes{&root};
    if (root.kind == NodeKind::Document) return nodes;
    for (NodeList* list : ListsOf(root)) {
      const bool children = root.kind == NodeKind::Object && list == &static_cast<Object&>(root).children;
      if (children && !hierarchy_) continue;
      for (Node* below = list->first; below; below = below->next) {
        const std::vector<Node*> all = Hierarchy(*below);
        nodes.insert(nodes.end(), all.begin(), all.end());
      }
    }
    return nodes;
  }

  void ExchangeId(LULONG original) {
    Node* standIn = FindNode(stands_[original]);
    Node* holder = FindNode(original);
    if (standIn && holder)
      SwapLinkIds(*standIn, *holder);
    else if (standIn)
      SetLinkId(*standIn, original);
  }

  LULONG target_;
  bool hierarchy_, branches_ = true;
  Node* kept_ = nullptr;
  std::vector<LULONG> origins_;
  StandIns stands_;
};

bool SameValue(const GeData* a, const GeData* b) {
  return a && b ? *a == *b : a == b;
}

/** The numbers of values that the two differ in. */
std::vector<LONG> Differences(const BaseContainer& a, const BaseContainer& b) {
  std::vector<LONG> ids;
  for (const BaseContainer* bc : {&a, &b})
    for (LONG i = 0; i < bc->GetCount(); ++i) {
      const LONG id = bc->GetIndexId(i);
      const bool known = bc == &b && a.GetDataPointer(id);
      if (!known && !SameValue(a.GetDataPointer(id), b.GetDataPointer(id))) ids.push_back(id);
    }
  return ids;
}

/**
 * The node's parameters, name and place in space. The plug-in's data stay: a step for each slider would
 * otherwise copy all that the node holds. The plug-in hears of each parameter that went back.
 */
class ParameterChange : public Change {
public:
  static std::unique_ptr<Change> Make(const Node& node) {
    std::unique_ptr<ParameterChange> change(new ParameterChange(node));
    return change->container_.GetCount() == node.container.GetCount() ? std::move(change) : nullptr;
  }

  void Exchange(bool) override {
    Node* node = FindNode(target_);
    if (!node) return; // freed in the meantime
    const std::vector<LONG> changed = Differences(node->container, container_);
    std::swap(node->name, name_);
    std::swap(node->container, container_);
    std::swap(node->bits, bits_);
    if (node->kind == NodeKind::Object) {
      std::swap(static_cast<Object*>(node)->ml, ml_);
      static_cast<Object*>(node)->cacheBuilt = false;
    }
    ++node->dataDirty;
    ++node->matrixDirty;
    for (LONG number : changed) {
      const DescID id(number);
      DescriptionPostSetValue message;
      message.descid = &id;
      SendMessage(*node, MSG_DESCRIPTION_POSTSETPARAMETER, &message);
    }
  }

private:
  explicit ParameterChange(const Node& node)
      : target_(node.linkId), name_(node.name), container_(node.container), bits_(node.bits) {
    if (node.kind == NodeKind::Object) ml_ = static_cast<const Object&>(node).ml;
  }

  LULONG target_;
  String name_;
  BaseContainer container_;
  LONG bits_;
  Matrix ml_;
};

/** A node that came or went: where it lies, or lay. While it is away this keeps it. */
class PlaceChange : public Change {
public:
  PlaceChange(Node& node, bool came) : node_(node.linkId), came_(came), keeps_(!came) {
    Remember(node);
    node.keptByUndo = keeps_; // freeing it then only takes it out
  }
  ~PlaceChange() override {
    Node* node = FindNode(node_);
    if (!node || !keeps_) return;
    node->keptByUndo = false;
    if (!node->list) FreeNode(node);
  }

  void Exchange(bool undo) override {
    Node* node = FindNode(node_);
    if (!node) return;
    if (undo != came_) return Restore(*node);
    if (!node->list) return;
    Remember(*node);
    RemoveNode(*node);
    node->keptByUndo = keeps_ = true;
  }

private:
  void Remember(const Node& node) {
    owner_ = node.Owner() ? node.Owner()->linkId : 0;
    pred_ = node.pred ? node.pred->linkId : 0;
  }

  void Restore(Node& node) {
    Node* owner = FindNode(owner_);
    NodeList* list = owner ? ListFor(*owner, node.kind) : nullptr;
    if (!list || node.list) return;
    Node* pred = FindNode(pred_);
    InsertNode(*list, node, pred && pred->list == list ? pred : nullptr);
    node.keptByUndo = keeps_ = false;
  }

  LULONG node_, owner_ = 0, pred_ = 0;
  bool came_;
  bool keeps_; ///< this change, not one of another step, has the node that is away
};

/** Bits, and which object is the active one. */
class BitsChange : public Change {
public:
  BitsChange(Document& doc, const Node& node)
      : doc_(doc), node_(node.linkId), bits_(node.bits), active_(doc.activeObject) {}
  void Exchange(bool) override {
    if (Node* node = FindNode(node_)) std::swap(node->bits, bits_);
    std::swap(doc_.activeObject, active_);
  }

private:
  Document& doc_;
  LULONG node_;
  LONG bits_;
  LULONG active_;
};

} // namespace

UndoHistory::~UndoHistory() {
  UndoHistory::Clear();
}

bool UndoHistory::Begin() {
  if (open_) return false;
  open_ = true;
  return true;
}

bool UndoHistory::End() {
  if (!open_) return false;
  open_ = false;
  if (current_.empty()) return true;
  if (extending_) {
    if (!done_.empty()) std::move(current_.begin(), current_.end(), std::back_inserter(done_.back().changes));
    current_.clear();
    return true;
  }
  undone_.clear();
  if (!hasJoined_) done_.emplace_back();
  std::move(current_.begin(), current_.end(), std::back_inserter(done_.back().changes));
  done_.back().state = ++states_;
  hasJoined_ = joining_;
  current_.clear();
  if (done_.size() > kMostSteps) {
    oldest_ = done_.front().state;
    done_.pop_front();
  }
  return true;
}

std::unique_ptr<Change> UndoHistory::MakeChange(UNDOTYPE type, Node& node) {
  if (type == kUndoParameters) return ParameterChange::Make(node);
  switch (type) {
  case UNDOTYPE_CHANGE:
    return ContentChange::Make(node, true);
  case UNDOTYPE_CHANGE_NOCHILDREN:
  case UNDOTYPE_CHANGE_SMALL:
    return ContentChange::Make(node, false);
  case UNDOTYPE_NEW:
  case UNDOTYPE_DELETE:
    return std::make_unique<PlaceChange>(node, type == UNDOTYPE_NEW);
  case UNDOTYPE_CHANGE_SELECTION:
  case UNDOTYPE_ACTIVATE:
  case UNDOTYPE_DEACTIVATE:
  case UNDOTYPE_BITS:
    return std::make_unique<BitsChange>(doc_, node);
  default:
    return nullptr;
  }
}

bool UndoHistory::Add(UNDOTYPE type, Node* node, std::string* why) {
  if (!open_)
    *why = "AddUndo outside of StartUndo and EndUndo";
  else if (!node || node->GetDocument() != &doc_)
    *why = "AddUndo of a node that does not lie in the document";
  else if (!keeping_) {
    return true;
  } else if (std::unique_ptr<Change> change = MakeChange(type, *node)) {
    current_.push_back(std::move(change));
    return true;
  } else {
    why->clear(); // running out of memory breaks no rule
  }
  return false;
}

void UndoHistory::Join(bool join) {
  joining_ = join;
  hasJoined_ = false;
}

bool UndoHistory::Undo() {
  if (open_ || joining_ || extending_ || done_.empty()) return false;
  Step step = std::move(done_.back());
  done_.pop_back();
  std::for_each(step.changes.rbegin(), step.changes.rend(), [](auto& change) { change->Exchange(true); });
  undone_.push_back(std::move(step));
  return true;
}

bool UndoHistory::Redo() {
  if (open_ || joining_ || extending_ || undone_.empty()) return false;
  Step step = std::move(undone_.back());
  undone_.pop_back();
  std::for_each(step.changes.begin(), step.changes.end(), [](auto& change) { change->Exchange(false); });
  done_.push_back(std::move(step));
  return true;
}

UndoPlace UndoHistory::Place() const {
  return {done_.empty() ? oldest_ : done_.back().state, !done_.empty(), !undone_.empty()};
}

void UndoHistory::Clear() {
  undone_.clear();
  current_.clear();
  while (!done_.empty()) done_.pop_back(); // newest first: each step counts on those before it
  open_ = hasJoined_ = false;
  oldest_ = ++states_;
}

void RegisterDocuments(NodeTypes& types) {
  types.Add({NodeKind::Document, Tbasedocument, "Untitled", 0, [](LONG) -> Node* {
               Document* doc = new Document;
               doc->undo = std::make_unique<UndoHistory>(*doc);
               return doc;
             }});
}

} // namespace host
