// Places of nodes: lists, owners, what lies below.
#include "host/nodes/node.h"

namespace host {

Document* Node::GetDocument() {
  Node* top = this;
  while (Node* owner = top->Owner()) top = owner;
  return top->kind == NodeKind::Document ? static_cast<Document*>(top) : nullptr;
}

Object* Object::Up() const {
  // What a generator built hangs below it, but is not its child.
  Node* owner = Owner();
  return owner && owner->kind == NodeKind::Object && list == &static_cast<Object*>(owner)->children
             ? static_cast<Object*>(owner)
             : nullptr;
}

Matrix Object::Global() const {
  const Object* up = Up();
  return up ? up->Global() * ml : ml;
}

std::vector<NodeList*> ListsOf(Node& node) {
  switch (node.kind) {
  case NodeKind::Document: {
    Document& doc = static_cast<Document&>(node);
    return {&doc.renderSettings, &doc.objects, &doc.hooks};
  }
  case NodeKind::Object: {
    Object& op = static_cast<Object&>(node);
    return {&op.tags, &op.shaders, &op.children};
  }
  case NodeKind::RenderSettings:
    return {&static_cast<RenderSettings&>(node).videoPosts};
  default:
    if (NodeList* groups = node.Groups()) return {groups};
    return {};
  }
}

NodeList* ListFor(Node& owner, NodeKind kind) {
  switch (owner.kind) {
  case NodeKind::Document: {
    Document& doc = static_cast<Document&>(owner);
    if (kind == NodeKind::Object) return &doc.objects;
    if (kind == NodeKind::RenderSettings) return &doc.renderSettings;
    return kind == NodeKind::SceneHook ? &doc.hooks : nullptr;
  }
  case NodeKind::Object: {
    Object& op = static_cast<Object&>(owner);
    if (kind == NodeKind::Object) return &op.children;
    if (kind == NodeKind::Shader) return &op.shaders;
    return kind == NodeKind::Tag ? &op.tags : nullptr;
  }
  case NodeKind::RenderSettings:
    return kind == NodeKind::VideoPost ? &static_cast<RenderSettings&>(owner).videoPosts : nullptr;
  default:
    return kind == NodeKind::ParticleGroup ? owner.Groups() : nullptr;
  }
}

void InsertNode(NodeList& list, Node& node, Node* pred) {
  Node* next = pred ? pred->next : list.first;
  node.list = &list;
  node.pred = pred;
  node.next = next;
  (pred ? pred->next : list.first) = &node;
  (next ? next->pred : list.last) = &node;
}

void AppendNode(NodeList& list, Node& node) {
  InsertNode(list, node, list.last);
}

void RemoveNode(Node& node) {
  if (!node.list) return;
  (node.pred ? node.pred->next : node.list->first) = node.next;
  (node.next ? node.next->pred : node.list->last) = node.pred;
  node.list = nullptr;
  node.next = node.pred = nullptr;
}

void SetDeformCache(Object& op, Object* result) {
  FreeList(op.deformCache);
  if (!result) return;
  RemoveNode(*result);
  AppendNode(op.deformCache, *result);
}

void FreeList(NodeList& list) {
  while (list.last) FreeNode(list.last);
}

std::vector<Node*> Hierarchy(Node& root) {
  std::vector<Node*> nodes{&root};
  const auto add = [&nodes](Node& node, const auto& self) -> void {
    for (NodeList* list : ListsOf(node))
      for (Node* below = list->first; below; below = below->next) {
        nodes.push_back(below);
        self(*below, self);
      }
  };
  add(root, add);
  return nodes;
}

} // namespace host
