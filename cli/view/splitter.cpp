#include "cli/view/splitter.h"

#include <algorithm>

namespace cli {

void Place(float x, float y, float width, float height) {
  ImGui::SetNextWindowPos(ImVec2(x, y));
  ImGui::SetNextWindowSize(ImVec2(std::max(1.0f, width), std::max(1.0f, height)));
}

void DrawBar(bool upright, const ImVec2& room, float growth, float* size) {
  ImGui::InvisibleButton("bar", ImVec2(std::max(1.0f, room.x), std::max(1.0f, room.y)));
  const bool held = ImGui::IsItemActive();
  if (held) *size += (upright ? ImGui::GetIO().MouseDelta.x : ImGui::GetIO().MouseDelta.y) * growth;
  if (!held && !ImGui::IsItemHovered()) return;
  ImGui::SetMouseCursor(upright ? ImGuiMouseCursor_ResizeEW : ImGuiMouseCursor_ResizeNS);
  ImGui::GetWindowDrawList()->AddRectFilled(
      ImGui::GetItemRectMin(), ImGui::GetItemRectMax(),
      ImGui::GetColorU32(held ? ImGuiCol_SeparatorActive : ImGuiCol_SeparatorHovered));
}

void DrawSplitter(const Splitter& splitter, float scale, float* size) {
  const float width = kSplitter * scale;
  const ImVec2 room = splitter.upright ? ImVec2(width, splitter.length) : ImVec2(splitter.length, width);
  Place(splitter.x, splitter.y, room.x, room.y);
  ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
  ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
  ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, 0.0f);
  const int bare = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoNav;
  if (ImGui::Begin(splitter.name, nullptr, kPane | bare))
    DrawBar(splitter.upright, room, splitter.growth / scale, size);
  ImGui::End();
  ImGui::PopStyleVar(3);
}

} // namespace cli
