#include "cli/view/companions.h"

#include "cli/view/document_stamp.h"
#include "host/application.h"
#include "host/particles/particle_system.h"
#include "kelvra_messages.h"
#include "lib_emitter.h"
#include "otallyframe.h"

#include <algorithm>

namespace cli {

namespace {

std::vector<BaseList2D*> LinkedBy(BaseList2D* node) {
  std::vector<BaseList2D*> targets;
  const BaseContainer& data = *node->GetDataInstance();
  for (LONG i = 0; i < data.GetCount(); ++i) {
    const GeData& value = *data.GetIndexData(i);
    BaseList2D* target = value.GetType() == DA_ALIASLINK ? value.GetLink(node->GetDocument()) : nullptr;
    if (target) targets.push_back(target);
  }
  return targets;
}

} // namespace

std::string TitleOf(BaseList2D* node) {
  const std::string name = host::Utf8(node->GetName()), type = host::Utf8(node->GetTypeName());
  return node->GetType() == KELVRA_CLOUD || name == type ? name : name + " (" + type + ")";
}

std::set<BaseList2D*> WholeOf(BaseObject* op) {
  std::set<BaseList2D*> whole{op};
  VisitObjects(op->GetDown(), [&whole](BaseObject* below) { whole.insert(below); });
  return whole;
}

bool LinksOnly(BaseList2D* node, const std::set<BaseList2D*>& targets) {
  const std::vector<BaseList2D*> linked = LinkedBy(node);
  return !linked.empty() && std::all_of(linked.begin(), linked.end(),
                                        [&](BaseList2D* target) { return targets.count(target) > 0; });
}

std::vector<BaseVideoPost*> EffectsOf(BaseDocument* doc, const std::set<BaseList2D*>& objects) {
  std::vector<BaseVideoPost*> effects;
  RenderData* settings = doc->GetActiveRenderData();
  for (BaseVideoPost* post = settings ? settings->GetFirstVideoPost() : nullptr; post; post = post->GetNext())
    for (BaseList2D* target : LinkedBy(post))
      if (objects.count(target) > 0) {
        effects.push_back(post);
        break;
      }
  return effects;
}

std::vector<BaseList2D*> ParticleGroupsOf(BaseDocument* doc) {
  std::vector<BaseList2D*> groups;
  if (const host::ParticleSystem* system = host::FindSystem(*host::Impl(doc)))
    system->Visit(*system->root, [&](host::ParticleGroup& group) {
      if (&group != system->root) groups.push_back(host::Api(&group));
    });
  return groups;
}

std::vector<BaseList2D*> ParticlesOf(BaseObject* cloud, LONG except) {
  BaseDocument* doc = cloud->GetDocument();
  std::vector<BaseList2D*> particles;
  BaseList2D* group = cloud->GetDataInstance()->GetLink(KELVRA_PARTICLE_GROUP, doc, ID_TP_PGROUP);
  VisitObjects(doc->GetFirstObject(), [&](BaseObject* op) {
    if (except != KELVRA_CONVERT_MODE_EMITTER && op->GetType() == Oemitter_external && LinksOnly(op, {cloud}))
      particles.push_back(op);
    const std::vector<BaseList2D*> linked = LinkedBy(op);
    if (op != cloud && std::count(linked.begin(), linked.end(), group) > 0) group = nullptr;
  });
  if (group && except != KELVRA_CONVERT_MODE_THINKING_PARTICLES) particles.push_back(group);
  return particles;
}

BaseObject* MakerOf(BaseList2D* particles, const std::vector<BaseObject*>& clouds) {
  for (BaseObject* cloud : clouds) {
    const BaseContainer& data = *cloud->GetDataInstance();
    const LONG mode = data.GetLong(KELVRA_CONVERT_MODE);
    const bool isEmitter = particles->GetType() == Oemitter_external && LinksOnly(particles, {cloud});
    const bool isGroup = data.GetLink(KELVRA_PARTICLE_GROUP, cloud->GetDocument()) == particles;
    if ((isEmitter && mode == KELVRA_CONVERT_MODE_EMITTER) ||
        (isGroup && mode == KELVRA_CONVERT_MODE_THINKING_PARTICLES))
      return cloud;
  }
  return nullptr;
}

void PartFromParticles(BaseObject* copy) {
  for (BaseList2D* node : WholeOf(copy))
    node->GetDataInstance()->RemoveData(node->GetType() == Oemitter_external ? (LONG)KELVRA_CLOUD
                                                                             : (LONG)KELVRA_PARTICLE_GROUP);
}

} // namespace cli
