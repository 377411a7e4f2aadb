// The rendered picture, and beside a pixel what made it.
#include "cli/view/fitted_text.h"
#include "cli/view/splitter.h"
#include "cli/view/view_application.h"

#include <algorithm>
#include <imgui.h>

namespace cli {

namespace {

constexpr float kLeastExplanation = 160.0f; ///< width, pixels of an ordinary screen

} // namespace

void ViewApplication::DrawPicture() {
  ImGui::BeginDisabled(!HasContent());
  if (ImGui::Button(render_.HasPicture() ? "Render again" : "Render")) Later([this] { RenderPicture(); });
  ImGui::EndDisabled();
  ImGui::SameLine();
  ImGui::BeginDisabled(!render_.HasPicture());
  if (ImGui::Button("Save Picture...")) Later([this] { SavePicture(); });
  ImGui::EndDisabled();
  ImGui::SameLine();
  const char* hint = IsBusy()                ? ""
                     : !render_.HasPicture() ? "Renders what the view shows, with light and shadow."
                     : IsPictureCurrent()    ? "Click a pixel to see what made it."
                                             : "The scene has changed since. Render again to ask its pixels.";
  ImGui::PushStyleColor(ImGuiCol_Text, ImGui::GetStyleColorVec4(ImGuiCol_TextDisabled));
  ShowFitted(hint, ImGui::GetContentRegionAvail().x);
  ImGui::PopStyleColor();
  const ImVec2 corner = ImGui::GetCursorScreenPos(), room = ImGui::GetContentRegionAvail();
  if (ImGui::BeginChild("picture", room))
    if (const auto pixel = render_.Show(window_.Scale()))
      if (IsPictureCurrent()) Later([this, pixel] { Explain(*pixel); });
  ImGui::EndChild();
  if (!explanation_.IsEmpty()) DrawExplanation(corner, room);
}

/** Beside the pixel and above the picture, which stays where it is: the next click may mean its neighbour. */
void ViewApplication::DrawExplanation(const ImVec2& corner, const ImVec2& room) {
  const float scale = window_.Scale(), bar = kSplitter * scale;
  const float before = render_.MarkedAt() - corner.x, beyond = room.x - before;
  const bool left = before > beyond;
  float& kept = kept_.panes.explained;
  kept = std::max(kept, kLeastExplanation);
  const float free = std::max(before, beyond) - 2 * ImGui::GetFontSize();
  const float width = std::min(kept * scale, std::max(free, kLeastExplanation * scale));
  ImGui::SetCursorScreenPos(ImVec2(left ? corner.x : corner.x + room.x - width, corner.y));
  ImGui::PushStyleColor(ImGuiCol_ChildBg, ImGui::GetStyleColorVec4(ImGuiCol_PopupBg));
  const float height = std::min(room.y, explainedHeight_);
  if (ImGui::BeginChild("explanation", ImVec2(width, height), true)) DrawExplained();
  ImGui::EndChild();
  ImGui::PopStyleColor();
  ImGui::SetCursorScreenPos(ImVec2(left ? corner.x + width : corner.x + room.x - width - bar, corner.y));
  if (ImGui::BeginChild("explanation bar", ImVec2(bar, height)))
    DrawBar(true, ImVec2(bar, height), (left ? 1.0f : -1.0f) / scale, &kept);
  ImGui::EndChild();
}

void ViewApplication::DrawExplained() {
  bool close = false;
  ImGui::TextUnformatted(explanation_.title.c_str());
  ImGui::SameLine(ImGui::GetWindowContentRegionMax().x - ImGui::GetFrameHeight());
  close = ImGui::SmallButton("x");
  if (ImGui::IsItemHovered()) ImGui::SetTooltip("close (Esc)");
  ImGui::PushTextWrapPos(0.0f);
  const float indent = 4 * ImGui::GetFontSize();
  for (const PixelReport::Part& part : explanation_.parts) {
    const float size = ImGui::CalcTextSize(part.share.c_str()).x;
    ImGui::SetCursorPosX(ImGui::GetCursorPosX() + indent - ImGui::GetFontSize() - size);
    ImGui::TextUnformatted(part.share.c_str());
    ImGui::SameLine(indent);
    ImGui::TextUnformatted(part.text.c_str());
  }
  if (!explanation_.steps.empty() && ImGui::TreeNode("How it was traced")) {
    ImGui::TextUnformatted(explanation_.steps.c_str());
    ImGui::TreePop();
  }
  ImGui::PopTextWrapPos();
  // No larger than its text, to leave the rest of the picture free.
  explainedHeight_ = ImGui::GetCursorPosY() + ImGui::GetScrollY() + ImGui::GetStyle().WindowPadding.y;
  if (close) explanation_ = PixelReport();
}

} // namespace cli
