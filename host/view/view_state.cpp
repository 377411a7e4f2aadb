#include "host/view/view_state.h"

#include "host/base/misbehaviour.h"
#include "host/base/text.h"
#include "host/nodes/node.h"

#include <algorithm>
#include <atomic>

namespace host {

namespace {

std::atomic<LLONG> liveFactories{0}, liveBuffers{0};

std::vector<ViewState*>& Views() {
  static std::vector<ViewState*> views;
  return views;
}

/** Frees GL objects with their context current. */
template <class List, class Match>
void RemoveMatching(ViewState* view, List& list, Match match) {
  if (std::none_of(list.begin(), list.end(), [&](const auto& entry) { return match(*entry); })) return;
  std::string ignored;
  const gl::CurrentScope current(*view->context, &ignored);
  list.remove_if([&](const auto& entry) { return match(*entry); });
}

} // namespace

ViewFactory::ViewFactory(ViewState* v, std::vector<gl::VertexAttribute> attributes,
                         std::vector<gl::InputVector> inputs)
    : view(v), program(v->context, std::move(attributes), std::move(inputs)) {
  ++liveFactories;
}
ViewFactory::~ViewFactory() {
  --liveFactories;
}

ViewBuffer::ViewBuffer(ViewState* v) : view(v), data(v->context) {
  ++liveBuffers;
}
ViewBuffer::~ViewBuffer() {
  --liveBuffers;
}

ViewState::ViewState(std::shared_ptr<gl::Context> c, std::unique_ptr<gl::Framebuffer> t)
    : context(std::move(c)), target(std::move(t)) {
  Views().push_back(this);
}

ViewState::~ViewState() {
  std::string ignored;
  const gl::CurrentScope current(*context, &ignored);
  factories.clear();
  buffers.clear();
  target.reset();
  Views().erase(std::remove(Views().begin(), Views().end(), this), Views().end());
}

bool ViewState::IsAlive(const ViewState* view) {
  return std::find(Views().begin(), Views().end(), view) != Views().end();
}

void ViewState::RemoveFactories(const C4DAtom* object, LULONG index) {
  for (ViewState* view : Views())
    RemoveMatching(view, view->factories, [&](const ViewFactory& f) {
      return f.object == object && (index == (LULONG)NOTOK || f.index == index);
    });
}

void ViewState::RemoveBuffers(const C4DAtom* object, LONG index) {
  for (ViewState* view : Views())
    RemoveMatching(view, view->buffers, [&](const ViewBuffer& b) {
      return b.object == object && (index == NOTOK || b.index == index);
    });
}

void ViewState::CheckBalance(const String& object) {
  const std::string of = " after the draw of \"" + Utf8(object) + "\"";
  for (const auto& factory : factories) {
    if (factory->program.IsBound()) {
      ReportModule("the programs of a factory are still bound" + of);
      factory->program.UnbindPrograms();
    }
    if (factory->bound) ReportModule("a factory is still bound to its view" + of);
    if (factory->locks > 0) ReportModule("a factory is still locked" + of);
    factory->bound = false;
    factory->locks = 0;
  }
}

void ViewState::NodeDies(Node& node) {
  const C4DAtom* object = host::Api(&node);
  RemoveMatching(this, factories, [object](const ViewFactory& f) { return f.object == object; });
  RemoveMatching(this, buffers, [object](const ViewBuffer& b) { return b.object == object; });
}

GlCounts LiveGlObjects() {
  GlCounts counts;
  counts.factories = liveFactories;
  counts.vertexBuffers = liveBuffers;
  return counts;
}

} // namespace host
