#include "host/application.h"

#include "host/base/live_files.h"
#include "host/base/misbehaviour.h"
#include "host/base/printable.h"
#include "host/geometry/geometry_types.h"
#include "host/hair/hair_object.h"
#include "host/memory/memory.h"
#include "host/nodes/services.h"
#include "host/parameters/node_parameters.h"
#include "host/parameters/parameter_text.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "host/scene/base_file.h"
#include "host/scene/scene_file.h"
#include "host/seam/module.h"
#include "host/undo/undo.h"
#include "host/view/view_state.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <utility>

namespace host {

namespace {

std::map<std::string, LLONG> BlocksByPlace() {
  std::map<std::string, LLONG> blocks;
  for (const memory::Survivor& survivor : memory::ModuleSurvivors())
    blocks[survivor.place] += survivor.blocks;
  return blocks;
}

} // namespace

struct Application::Impl {
  Services services;
  std::vector<Document*> documents;
  std::map<LONG, Node*> pages; ///< of the preferences dialog
  std::vector<std::unique_ptr<Module>> modules;
  mutable std::vector<PluginInfo> plugins;
  host::Misbehaviour misbehaviour;
  std::map<std::string, LLONG> blocksBefore = BlocksByPlace();
  LiveCounts before; ///< what an earlier application of this process left
  bool closed = false, keepUndo = true;

  Document* Adopt(Document* doc) {
    documents.push_back(doc);
    doc->undo->SetKeeping(keepUndo);
    services.active = doc;
    return doc;
  }
  void FreeOwnPlugins();
};

Application::Application(const std::string& prefsFolder) : impl_(new Impl) {
  Services& services = impl_->services;
  RegisterPlainTypes(services.nodeTypes);
  RegisterDocuments(services.nodeTypes);
  RegisterGeometry(services.nodeTypes);
  RegisterHair(services.nodeTypes);
  RegisterParticles(services.nodeTypes);
  RegisterEmitter(services.nodeTypes);
  impl_->before.nodes = LiveNodes();
  impl_->before.bitmaps = Bitmap::Live();
  impl_->before.files = liveFiles;
  impl_->before.blocks = memory::LiveBlocks();
  impl_->before.bytes = memory::LiveBytes();
  SetMisbehaviour(&impl_->misbehaviour);
  memory::SetFaults(&services.faults);
  Work::SetFaults(&services.faults);
  std::string error;
  services.worldData.Open(prefsFolder, &error);
  if (!error.empty()) services.console.Print(error);
}

Application::~Application() {
  const bool reported = impl_->closed;
  const std::vector<std::string> lines = Close();
  if (!reported)
    for (const std::string& line : lines) std::fprintf(stderr, "%s\n", Printable(line).c_str());
  SetMisbehaviour(nullptr);
}

std::vector<std::string> Application::Close() {
  if (impl_->closed) return {};
  impl_->closed = true;
  const std::size_t before = Misbehaviour().size();
  impl_->services.faults.Clear();
  while (!impl_->documents.empty()) CloseDocument(Api(impl_->documents.back()));
  UnloadModules();
  std::string error;
  if (!impl_->services.worldData.Save(&error)) impl_->services.console.Print(error);
  impl_->services.worldData.Clear();
  impl_->FreeOwnPlugins();
  ReportSurvivors();
  memory::SetFaults(nullptr);
  Work::SetFaults(nullptr);
  return {Misbehaviour().begin() + (std::ptrdiff_t)before, Misbehaviour().end()};
}

/** Only plug-ins of this program itself are left then. */
void Application::Impl::FreeOwnPlugins() {
  for (const Plugin& plugin : services.plugins.All())
    for (std::vector<Node*> nodes = NodesOfPlugin(plugin); !nodes.empty(); nodes = NodesOfPlugin(plugin)) {
      ReportModule("a node of type " + std::to_string(plugin.id) + " is still alive at the end");
      FreeNode(nodes.front());
    }
  services.plugins.Remove(std::string());
}

void Application::ReportSurvivors() const {
  const LiveCounts live = Live();
  const struct {
    LLONG count;
    const char *one, *more;
  } kinds[] = {{live.nodes, "node outside of documents is", "nodes outside of documents are"},
               {live.bitmaps, "bitmap is", "bitmaps are"},
               {live.files, "file is", "files are"},
               {live.factories, "program factory is", "program factories are"},
               {live.vertexBuffers, "vertex buffer is", "vertex buffers are"}};
  for (const auto& kind : kinds)
    if (kind.count > 0)
      ReportModule(std::to_string(kind.count) + " " + (kind.count == 1 ? kind.one : kind.more) +
                   " still alive at the end");
  for (const auto& place : BlocksByPlace()) {
    const auto old = impl_->blocksBefore.find(place.first);
    const LLONG more = place.second - (old == impl_->blocksBefore.end() ? 0 : old->second);
    if (more > 0)
      ReportModule(std::to_string(more) + (more == 1 ? " block" : " blocks") +
                   " of host memory asked for at " + place.first + (more == 1 ? " was" : " were") +
                   " never freed");
  }
}

bool Application::LoadModule(const std::string& path, std::string* error) {
  const std::string file = std::filesystem::absolute(std::filesystem::u8path(path)).u8string();
  for (const auto& loaded : impl_->modules)
    if (loaded->Path() == file) {
      *error = file + ": the module is loaded already";
      return false;
    }
  std::unique_ptr<Module> module = Module::Load(file, &C4DOS, impl_->services.plugins, error);
  if (!module) return false;
  impl_->modules.push_back(std::move(module));
  impl_->modules.back()->SendMessage(C4DPL_STARTACTIVITY);
  return true;
}

void Application::UnloadModules() {
  for (const auto& page : impl_->pages) FreeNode(page.second);
  impl_->pages.clear();
  for (auto at = impl_->modules.rbegin(); at != impl_->modules.rend(); ++at)
    (*at)->SendMessage(C4DPL_ENDACTIVITY);
  while (!impl_->modules.empty()) impl_->modules.pop_back();
}

const std::vector<PluginInfo>& Application::Plugins() const {
  impl_->plugins.clear();
  for (const Plugin& plugin : impl_->services.plugins.All()) {
    PluginInfo info;
    info.kind = plugin.kind;
    info.id = plugin.id;
    info.name = Utf8(plugin.name);
    info.description = plugin.description;
    info.info = plugin.Base().info;
    info.module = plugin.module;
    if (plugin.kind == PLUGINTYPE_VIDEOPOST) info.sortId = plugin.As<VIDEOPOSTPLUGIN>().priority;
    if (plugin.kind == PLUGINTYPE_SCENEHOOK) info.sortId = plugin.As<SCENEHOOKPLUGIN>().draw_priority;
    if (plugin.kind == PLUGINTYPE_PREFS) info.sortId = plugin.container.GetLong(IDPREFS_SORTID);
    if (plugin.kind != PLUGINTYPE_COREMESSAGE) info.diskLevel = plugin.Node().disklevel;
    impl_->plugins.push_back(info);
  }
  return impl_->plugins;
}

const PluginInfo* Application::FindByDescription(const std::string& description) const {
  const std::vector<PluginInfo>& all = Plugins();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const PluginInfo& p) { return p.description == description; });
  return found == all.end() || description.empty() ? nullptr : &*found;
}

void Application::FreeCopiesElsewhere(bool elsewhere) {
  TheServices().freesCopiesElsewhere = elsewhere;
}

void Application::KeepUndo(bool keep) {
  impl_->keepUndo = keep;
}

BaseDocument* Application::NewDocument() {
  return Api(impl_->Adopt(MakeDocument()));
}

void Application::CloseDocument(BaseDocument* doc) {
  auto& all = impl_->documents;
  all.erase(std::remove(all.begin(), all.end(), host::Impl(doc)), all.end());
  FreeNode(host::Impl(doc));
  if (!impl_->services.active && !all.empty()) impl_->services.active = all.back();
}

bool Application::SaveScene(BaseDocument* doc, const std::string& path, std::string* error) {
  const Work work;
  if (!WriteScene(doc, path, &impl_->services.faults, error)) return false;
  host::Impl(doc)->path = std::filesystem::absolute(std::filesystem::u8path(path)).u8string();
  return true;
}

BaseDocument* Application::LoadScene(const std::string& path, std::string* error) {
  const Work work;
  BaseDocument* doc = ReadScene(path, error);
  if (!doc) return nullptr;
  host::Impl(doc)->path = std::filesystem::absolute(std::filesystem::u8path(path)).u8string();
  return Api(impl_->Adopt(host::Impl(doc)));
}

LONG Application::FindParameter(BaseList2D* node, const std::string& name) const {
  const resource::Description* description = FindDescription(*host::Impl(node));
  const resource::Parameter* parameter = description ? FindParameterByName(*description, name) : nullptr;
  return parameter ? parameter->id : -1;
}

bool Application::SetParameterFromText(BaseList2D* api, LONG id, const std::string& value,
                                       std::string* error) {
  Node& node = *host::Impl(api);
  const resource::Description* description = FindDescription(node);
  const resource::Parameter* parameter = description ? description->FindParameter(id) : nullptr;
  if (!parameter) {
    *error = Utf8(TypeName(node)) + " has no parameter " + std::to_string(id);
    return false;
  }
  GeData data;
  if (!ParseParameter(*parameter, value, node.GetDocument(), &data, error)) return false;
  const Work work;
  if (SetParameter(node, DescID(id), data, DESCFLAGS_SET_USERINTERACTION)) return true;
  *error = "refused by " + Utf8(TypeName(node));
  return false;
}

void Application::PressButton(BaseList2D* node, LONG id) {
  const Work work;
  const BaseContainer message;
  DescriptionCommand command;
  command.id = DescID(id);
  command.msg = &message;
  SendMessage(*host::Impl(node), MSG_DESCRIPTION_COMMAND, &command);
}

BaseList2D* Application::PreferencesPage(LONG id) {
  const auto shown = impl_->pages.find(id);
  if (shown != impl_->pages.end()) return Api(shown->second);
  const Work work;
  Node* page = MakeNode(NodeKind::Preferences, id);
  if (page) impl_->pages[id] = page;
  return Api(page);
}

bool Application::SavePreferences(std::string* error) {
  return impl_->services.worldData.Save(error);
}

bool Application::KeepsPreferences() const {
  return impl_->services.worldData.IsKept();
}

BaseObject* CreateObjectFromMenu(BaseDocument* api, LONG type) {
  Document& doc = *Impl(api);
  if (!TheServices().libraries.Offers(type)) return nullptr;
  Object* op = static_cast<Object*>(MakeNode(NodeKind::Object, type));
  if (!op) return nullptr;
  const Work work;
  const std::vector<Node*> before = Hierarchy(doc);
  SendMessage(*op, MSG_MENUPREPARE, api);
  api->StartUndo();
  // What the plug-in puts into the document at that message comes and goes with the object.
  for (Node* node : Hierarchy(doc))
    if (std::find(before.begin(), before.end(), node) == before.end()) api->AddUndo(UNDOTYPE_NEW, Api(node));
  api->InsertObject(Api(op), nullptr, nullptr, TRUE);
  api->AddUndo(UNDOTYPE_NEW, Api(op));
  api->EndUndo();
  doc.activeObject = 0;
  api->SetActiveObject(Api(op));
  return Api(op);
}

LiveCounts Application::Live() const {
  LiveCounts counts;
  counts.nodes = LiveNodes() - impl_->before.nodes;
  counts.nodeData = LiveNodeData();
  counts.bitmaps = Bitmap::Live() - impl_->before.bitmaps;
  counts.files = liveFiles - impl_->before.files;
  counts.factories = LiveGlObjects().factories;
  counts.vertexBuffers = LiveGlObjects().vertexBuffers;
  counts.blocks = memory::LiveBlocks() - impl_->before.blocks;
  counts.bytes = memory::LiveBytes() - impl_->before.bytes;
  return counts;
}

const std::vector<std::string>& Application::Misbehaviour() const {
  return impl_->misbehaviour.Lines();
}

std::string Application::TakeWriteFailure() {
  return std::exchange(BaseFileImpl::WriteFailure(), std::string());
}

Console& Application::GetConsole() {
  return impl_->services.console;
}
Dialogs& Application::GetDialogs() {
  return impl_->services.dialogs;
}
Faults& Application::GetFaults() {
  return impl_->services.faults;
}
Libraries& Application::GetLibraries() {
  return impl_->services.libraries;
}

} // namespace host
