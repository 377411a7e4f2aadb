#include "c4d_plugin.h"

#include "c4d_fence.h"
#include "lib_prefs.h"

namespace {

using sdk::Thunk;

void Destroy(BaseData* data) {
  sdk::Fence("destructor", [&] { delete data; });
}

void FillNode(NODEPLUGIN& np, LONG info, DataAllocator* g, const String* description, BaseBitmap* icon,
              LONG disklevel) {
  np.info = info;
  np.Destructor = &Destroy;
  np.disklevel = disklevel;
  np.icon = icon;
  np.description = description;
  np.Allocator = g;
  np.Attach = &Thunk<&NodeData::AttachNode>::Call<NodeData>;
  np.Init = &Thunk<&NodeData::Init>::Call<NodeData>;
  np.Free = &Thunk<&NodeData::Free>::Call<NodeData>;
  np.Read = &Thunk<&NodeData::Read>::Call<NodeData>;
  np.Write = &Thunk<&NodeData::Write>::Call<NodeData>;
  np.Message = &Thunk<&NodeData::Message>::Call<NodeData>;
  np.CopyTo = &Thunk<&NodeData::CopyTo>::Call<NodeData>;
  np.GetDDescription = &Thunk<&NodeData::GetDDescription>::Call<NodeData>;
  np.GetDParameter = &Thunk<&NodeData::GetDParameter>::Call<NodeData>;
  np.GetDEnabling = &Thunk<&NodeData::GetDEnabling>::Call<NodeData>;
  np.SetDParameter = &Thunk<&NodeData::SetDParameter>::Call<NodeData>;
}

/** The description comes first: one that is refused leaves nothing registered. */
Bool Register(PLUGINTYPE type, LONG id, const String& str, const String& description, const void* data,
              LONG size) {
  if (description.Content() && !C4DOS.resource->RegisterDescription(id, description, resource.Get()))
    return FALSE;
  return C4DOS.general->RegisterPlugin(type, id, str, data, size);
}

} // namespace

Bool RegisterObjectPlugin(LONG id, const String& str, LONG info, DataAllocator* g, const String& description,
                          BaseBitmap* icon, LONG disklevel) {
  OBJECTPLUGIN op = {};
  FillNode(op, info, g, &description, icon, disklevel);
  op.GetDimension = &Thunk<&ObjectData::GetDimension>::Call<NodeData>;
  op.Draw = &Thunk<&ObjectData::Draw>::Call<NodeData>;
  // The host calls these only for the roles that the flags name.
  if (info & OBJECT_GENERATOR) op.GetVirtualObjects = &Thunk<&ObjectData::GetVirtualObjects>::Call<NodeData>;
  return Register(PLUGINTYPE_OBJECT, id, str, description, &op, sizeof op);
}

Bool RegisterShaderPlugin(LONG id, const String& str, LONG info, DataAllocator* g, const String& description,
                          LONG disklevel, void*) {
  SHADERPLUGIN sp = {};
  FillNode(sp, info, g, &description, NULL, disklevel);
  sp.InitRender = &Thunk<&ShaderData::InitRender>::Call<NodeData>;
  sp.FreeRender = &Thunk<&ShaderData::FreeRender>::Call<NodeData>;
  sp.Output = &Thunk<&ShaderData::Output>::Call<NodeData>;
  return Register(PLUGINTYPE_SHADER, id, str, description, &sp, sizeof sp);
}

Bool RegisterVideoPostPlugin(LONG id, const String& str, LONG info, DataAllocator* g,
                             const String& description, LONG disklevel, LONG priority, void*) {
  VIDEOPOSTPLUGIN vp = {};
  FillNode(vp, info, g, &description, NULL, disklevel);
  vp.priority = priority;
  vp.GetRenderInfo = &Thunk<&VideoPostData::GetRenderInfo>::Call<NodeData>;
  vp.Execute = &Thunk<&VideoPostData::Execute>::Call<NodeData>;
  vp.CalcVolumetric = &Thunk<&VideoPostData::CalcVolumetric>::Call<NodeData>;
  vp.CalcShadow = &Thunk<&VideoPostData::CalcShadow>::Call<NodeData>;
  return Register(PLUGINTYPE_VIDEOPOST, id, str, description, &vp, sizeof vp);
}

Bool RegisterSceneHookPlugin(LONG id, const String& str, LONG info, DataAllocator* g, LONG priority,
                             LONG disklevel, void*) {
  SCENEHOOKPLUGIN sh = {};
  FillNode(sh, info, g, NULL, NULL, disklevel);
  sh.draw_priority = priority;
  return Register(PLUGINTYPE_SCENEHOOK, id, str, String(), &sh, sizeof sh);
}

Bool RegisterMessagePlugin(LONG id, const String& str, LONG info, MessageData* dat) {
  MESSAGEPLUGIN mp = {};
  mp.info = info;
  mp.Destructor = &Destroy;
  mp.adr = dat;
  mp.GetTimer = &Thunk<&MessageData::GetTimer>::Call<BaseData>;
  mp.CoreMessage = &Thunk<&MessageData::CoreMessage>::Call<BaseData>;
  return dat && Register(PLUGINTYPE_COREMESSAGE, id, str, String(), &mp, sizeof mp);
}

BasePlugin* PrefsDialogObject::Register(LONG id, DataAllocator* allocfunc, const String& name,
                                        const String& description, LONG parentid, LONG sortid) {
  PREFSPLUGIN pp = {};
  FillNode(pp, 0, allocfunc, &description, NULL, 0);
  if (!::Register(PLUGINTYPE_PREFS, id, name, description, &pp, sizeof pp)) return NULL;
  BasePlugin* plugin = C4DOS.general->FindPlugin(id, PLUGINTYPE_PREFS);
  BaseContainer* container = plugin ? C4DOS.general->GetPluginContainer(plugin) : NULL;
  if (!container) return NULL;
  container->SetLong(IDPREFS_SORTID, sortid);
  container->SetLong(IDPREFS_PARENTID, parentid);
  return plugin;
}
