// What the document holds: objects, particles and effects, as rows to choose from.
#include "c4d_particles.h"
#include "cli/text/format.h"
#include "cli/view/companions.h"
#include "cli/view/fitted_text.h"
#include "cli/view/view_application.h"
#include "host/application.h"
#include "vpkelvrarender.h"

#include <imgui.h>
#include <utility>

namespace cli {

void ViewApplication::DrawObject(BaseObject* op) {
  if (render_.IsOwn(op)) return;
  ImGui::PushID(op);
  const std::string name = TitleOf(op);
  bool visible = host::IsShownInViews(op);
  if (ImGui::Checkbox("##visible", &visible)) Edits::SetVisible(op, visible);
  if (ImGui::IsItemHovered()) ImGui::SetTooltip("shown in the view");
  ImGui::SameLine();
  const bool selected = SelectedObject() == op;
  const int flags = ImGuiTreeNodeFlags_DefaultOpen | ImGuiTreeNodeFlags_OpenOnArrow |
                    ImGuiTreeNodeFlags_SpanAvailWidth | (selected ? ImGuiTreeNodeFlags_Selected : 0) |
                    (op->GetDown() ? 0 : ImGuiTreeNodeFlags_Leaf);
  const float room = ImGui::GetContentRegionAvail().x - ImGui::GetTreeNodeToLabelSpacing();
  const bool open =
      ImGui::TreeNodeEx("##node", flags, "%s", name.empty() ? "(no name)" : Shortened(name, room).c_str());
  ExplainShortened(name, room);
  if (ImGui::IsItemClicked() || (ImGui::IsItemFocused() && ImGui::IsItemActivated())) Select(op);
  if (ImGui::BeginPopupContextItem()) {
    Select(op);
    if (ImGui::MenuItem("Duplicate")) Later([this] { DuplicateSelected(); });
    if (ImGui::MenuItem("Delete")) Later([this] { DeleteSelected(); });
    ImGui::EndPopup();
  }
  if (open) {
    for (BaseObject* child = op->GetDown(); child; child = child->GetNext()) DrawObject(child);
    ImGui::TreePop();
  }
  ImGui::PopID();
}

void ViewApplication::DrawObjects() {
  if (ImGui::SmallButton("Load Scan...")) Later([this] { LoadByDialog(false); });
  ImGui::SameLine();
  ImGui::BeginDisabled(!HasContent());
  if (ImGui::SmallButton("Render")) Later([this] { RenderPicture(); });
  ImGui::EndDisabled();
  BaseDocument* doc = session_.Document();
  for (BaseObject* op = doc->GetFirstObject(); op; op = op->GetNext()) DrawObject(op);
  bool first = true;
  for (BaseList2D* group : ParticleGroupsOf(doc)) {
    if (std::exchange(first, false)) ImGui::TextDisabled("Particles");
    const LONG count = static_cast<TP_PGroup*>(group)->NumParticles();
    DrawRow(group, host::Utf8(group->GetName()) + ": " + Counted(count, "particle"));
  }
  first = true;
  RenderData* settings = doc->GetActiveRenderData();
  for (BaseVideoPost* post = settings ? settings->GetFirstVideoPost() : nullptr; post;
       post = post->GetNext()) {
    const host::PluginInfo* plugin = PluginOf(post);
    // Every render has these by itself, and there is nothing to set.
    if (plugin && (plugin->info & PLUGINFLAG_VIDEOPOST_INHERENT) && plugin->description.empty()) continue;
    if (std::exchange(first, false)) ImGui::TextDisabled("Effects of the render");
    // Each cloud has an effect, and all of these have one name.
    BaseObject* rendered = post->GetDataInstance()->GetObjectLink(KELVRA_RENDER_OBJECT, doc);
    const bool links = session_.App().FindParameter(post, "KELVRA_RENDER_OBJECT") >= 0;
    const std::string of = rendered ? host::Utf8(rendered->GetName()) : "(no object)";
    DrawRow(post, host::Utf8(post->GetName()) + (rendered || links ? ": " + of : ""));
  }
}

const host::PluginInfo* ViewApplication::PluginOf(BaseVideoPost* post) {
  for (const host::PluginInfo& plugin : session_.App().Plugins())
    if (plugin.kind == PLUGINTYPE_VIDEOPOST && plugin.id == post->GetType()) return &plugin;
  return nullptr;
}

/** Something of the document that does not lie in its tree. */
void ViewApplication::DrawRow(BaseList2D* node, const std::string& label) {
  ImGui::PushID(node);
  const bool selected = !showsPreferences_ && selected_.GetLink(session_.Document()) == node;
  const float room = ImGui::GetContentRegionAvail().x;
  if (ImGui::Selectable((Shortened(label, room) + "###row").c_str(), selected)) Select(node);
  ExplainShortened(label, room);
  if (ImGui::BeginPopupContextItem()) {
    Select(node);
    if (ImGui::MenuItem("Delete")) Later([this] { DeleteSelected(); });
    ImGui::EndPopup();
  }
  ImGui::PopID();
}

} // namespace cli
