#include "cli/view/document_stamp.h"

#include "cli/view/companions.h"
#include "host/application.h"

#include <functional>

namespace cli {

std::size_t DocumentStamp(BaseDocument* doc) {
  std::size_t stamp = 0;
  const auto mix = [&stamp](std::size_t value) {
    stamp ^= value + 0x9e3779b97f4a7c15ull + (stamp << 6) + (stamp >> 2);
  };
  const auto add = [&mix](BaseList2D* node) {
    mix(std::hash<void*>()(node));
    mix(node->GetDirty(DIRTYFLAGS_DATA | DIRTYFLAGS_MATRIX));
    mix(std::hash<void*>()(node->GetUp()));
    mix(std::hash<std::string>()(host::Utf8(node->GetName())));
  };
  VisitObjects(doc->GetFirstObject(), add);
  for (BaseList2D* group : ParticleGroupsOf(doc)) mix(std::hash<void*>()(group));
  RenderData* settings = doc->GetActiveRenderData();
  for (BaseVideoPost* post = settings ? settings->GetFirstVideoPost() : nullptr; post; post = post->GetNext())
    add(post);
  return stamp;
}

} // namespace cli
