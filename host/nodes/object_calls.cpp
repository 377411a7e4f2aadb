#include "host/nodes/object_calls.h"

#include "host/base/misbehaviour.h"
#include "host/base/module_scope.h"
#include "host/base/user_break.h"
#include "host/memory/memory.h"
#include "host/nodes/hierarchy_help.h"
#include "host/plugins/plugin_registry.h"

namespace host {

namespace {

/** NULL for objects without a plug-in. */
const OBJECTPLUGIN* PluginOf(const Object& op) {
  return op.data ? &op.plugin->As<OBJECTPLUGIN>() : nullptr;
}

} // namespace

void GetObjectBox(BaseObject* op, Vector* centre, Vector* halfSize) {
  const Box own = Impl(op)->OwnBox();
  *centre = own.Centre();
  *halfSize = own.HalfSize();
  if (const OBJECTPLUGIN* plugin = PluginOf(*Impl(op)))
    CallModule("GetDimension", plugin->GetDimension, Impl(op)->data, op, centre, halfSize);
}

DRAWRESULT DrawObject(BaseObject* op, DRAWPASS pass, BaseDraw* view, BaseDrawHelp* help) {
  const OBJECTPLUGIN* plugin = PluginOf(*Impl(op));
  if (!plugin) return DRAWRESULT_SKIP;
  const Work work;
  const memory::DrawScope scope;
  return CallModule("Draw", plugin->Draw, Impl(op)->data, op, pass, view, help);
}

bool NeedsCache(const Object& op) {
  const OBJECTPLUGIN* plugin = PluginOf(op);
  if (!plugin || !(plugin->info & OBJECT_GENERATOR)) return false;
  return !op.cacheBuilt || HasChanged(op, op.cacheState, kCacheDependence);
}

BaseObject* UpdateCache(BaseObject* api, BaseDocument* doc, BUILDFLAGS flags) {
  Object& op = *Impl(api);
  const OBJECTPLUGIN* plugin = PluginOf(op);
  if (!plugin || !plugin->GetVirtualObjects) return nullptr;
  Work work;
  BuildHelp help{&work, Impl(doc), flags};
  // What it depends on is noted before: a change while building asks for another build.
  const DirtyState state = DirtyStateOf(op);
  Object* built = Impl(CallModule("GetVirtualObjects", plugin->GetVirtualObjects, op.data, api, help.Api()));
  if (built && built != op.cache.first) {
    if (built->list) {
      ReportModule("GetVirtualObjects returned an object that lies in a list");
      built = nullptr;
    } else {
      FreeList(op.cache);
      AppendNode(op.cache, *built);
    }
  }
  if (!built) FreeList(op.cache);
  op.cacheState = state;
  op.cacheBuilt = !work.WasStopped(); // what was stopped is not what the object stands for
  return Api(built);
}

BaseObject* TakeCache(BaseObject* api) {
  Object& op = *Impl(api);
  Object* built = static_cast<Object*>(op.cache.first);
  if (!built) return nullptr;
  RemoveNode(*built);
  op.cacheBuilt = false;
  return Api(built);
}

} // namespace host
