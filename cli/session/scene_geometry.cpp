#include "cli/session/scene_geometry.h"

#include "cli/session/parameter_list.h"
#include "cli/system/exit_status.h"
#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "host/render.h"
#include "host/viewport.h"
#include "vpkelvrarender.h"

#include <memory>
#include <stdexcept>

namespace cli {

namespace {

using PostOwner = std::unique_ptr<BaseVideoPost, void (*)(BaseVideoPost*)>;

/** One in no document, which knows the parameters and judges values. */
PostOwner SparePost(const host::Application& application) {
  const host::PluginInfo* plugin = application.FindByDescription("VPkelvrarender");
  if (!plugin) throw std::runtime_error("the module registered no video post");
  PostOwner post(BaseVideoPost::Alloc(plugin->id), [](BaseVideoPost* made) { BaseVideoPost::Free(made); });
  if (!post) throw std::bad_alloc();
  return post;
}

void CollectElements(BaseObject* first, std::vector<SceneElements>* found) {
  for (BaseObject* op = first; op; op = op->GetNext()) {
    CollectElements(op->GetDown(), found);
    const host::EmitterNode* emitter = host::AsEmitter(host::Impl(op));
    const host::HairNode* hair = host::AsHair(host::Impl(op));
    const LONG count = emitter ? emitter->count : hair && hair->guides ? hair->guides->count : 0;
    if (count > 0)
      found->push_back({op->GetDataInstance(), hair ? "hair" : "particle", count, host::WorldBox(op)});
  }
}

} // namespace

std::vector<BaseVideoPost*> PostsOfGeometry(BaseDocument* doc) {
  std::vector<BaseVideoPost*> posts;
  for (BaseVideoPost* post = doc->GetActiveRenderData()->GetFirstVideoPost(); post; post = post->GetNext()) {
    const BaseObject* linked = post->GetDataInstance()->GetObjectLink(KELVRA_RENDER_OBJECT, doc);
    if (linked && (linked->GetType() == Opolygon || linked->GetType() == Ospline)) posts.push_back(post);
  }
  return posts;
}

std::vector<SceneElements> ElementsOf(BaseDocument* doc) {
  std::vector<SceneElements> found;
  CollectElements(doc->GetFirstObject(), &found);
  const host::ParticleSystem* system = host::FindSystem(*host::Impl(doc));
  if (!system) return found;
  system->Visit(*system->root, [&found](host::ParticleGroup& group) {
    if (group.count == 0) return;
    host::Box box;
    for (const host::ParticleSlot* slot = group.first; slot; slot = slot->next)
      box.Add(slot->values.position);
    found.push_back({&group.container, "particle", group.count, box});
  });
  return found;
}

LONG GeometryParameter(const host::Application& application, const std::string& name) {
  const PostOwner post = SparePost(application);
  try {
    return FindSettable(application, post.get(), name, {"render_"});
  } catch (const UsageError&) {
    return -1;
  }
}

bool SetOfGeometry(host::Application& application, BaseDocument* doc, LONG id, const std::string& value,
                   bool* used, std::string* error) {
  const std::vector<BaseVideoPost*> posts = PostsOfGeometry(doc);
  for (BaseVideoPost* post : posts)
    if (!application.SetParameterFromText(post, id, value, error)) return false;
  *used = !posts.empty();
  const PostOwner spare = SparePost(application);
  if (posts.empty() && !application.SetParameterFromText(spare.get(), id, value, error)) return false;
  if (id != KELVRA_RENDER_POINT_RADIUS) return true;
  BaseVideoPost* judge = posts.empty() ? spare.get() : posts.front();
  const double radius = judge->GetDataInstance()->GetReal(id);
  for (const SceneElements& elements : ElementsOf(doc)) {
    elements.data->SetReal(host::kPointRadius, radius);
    *used = true;
  }
  return true;
}

} // namespace cli
