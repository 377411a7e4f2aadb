#include "ddoc.h"
#include "host/nodes/services.h"

namespace host {

namespace {

constexpr LONG kDefaultFps = 30, kMostFps = 1000;

} // namespace

Document::Document() : Node(NodeKind::Document, Tbasedocument) {
  BaseContainer& own = settings[DOCUMENTSETTINGS_DOCUMENT];
  own.SetTime(kDocumentTime, BaseTime());
  own.SetLong(kDocumentFps, kDefaultFps);
  own.SetLong(DOCUMENT_COLORPROFILE, DOCUMENT_COLORPROFILE_SRGB);
  own.SetBool(DOCUMENT_LINEARWORKFLOW, FALSE);
}

Document::~Document() {
  Services* services = FindServices();
  if (services && services->active == this) services->active = nullptr;
}

LONG Document::Fps() const {
  return LCut(settings[DOCUMENTSETTINGS_DOCUMENT].GetLong(kDocumentFps, kDefaultFps), 1, kMostFps);
}

Document* MakeDocument() {
  Document* doc = static_cast<Document*>(MakeNode(NodeKind::Document, Tbasedocument));
  AppendNode(doc->renderSettings, *MakeNode(NodeKind::RenderSettings, Rbase));
  for (const Plugin& plugin : TheServices().plugins.All()) {
    if (plugin.kind != PLUGINTYPE_SCENEHOOK) continue;
    if (Node* hook = MakeNode(NodeKind::SceneHook, plugin.id)) AppendNode(doc->hooks, *hook);
  }
  return doc;
}

} // namespace host
