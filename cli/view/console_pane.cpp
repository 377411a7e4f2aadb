#include "cli/view/console_pane.h"

#include <algorithm>
#include <imgui.h>

namespace cli {

/** Lines are broken to fit: a scan of a large folder has too many to break all of them in each frame. */
void ConsolePane::Measure(float width) {
  if (width != width_) ends_.clear();
  width_ = width;
  const float gap = ImGui::GetStyle().ItemSpacing.y;
  while (ends_.size() < lines_.size()) {
    const std::string& line = lines_[ends_.size()];
    const float height = ImGui::CalcTextSize(line.c_str(), nullptr, false, width).y;
    ends_.push_back((ends_.empty() ? 0.0f : ends_.back()) + std::max(height, ImGui::GetFontSize()) + gap);
  }
}

void ConsolePane::Show() {
  Measure(ImGui::GetContentRegionAvail().x);
  if (lines_.empty()) return;
  const float top = ImGui::GetCursorPosY(), seen = ImGui::GetScrollY() - top;
  const float bottom = seen + ImGui::GetWindowHeight();
  std::size_t i = (std::size_t)(std::upper_bound(ends_.begin(), ends_.end(), seen) - ends_.begin());
  for (float start = i > 0 ? ends_[i - 1] : 0.0f; i < lines_.size() && start < bottom; start = ends_[i++]) {
    ImGui::SetCursorPosY(top + start);
    const bool problem = problems_.count(lines_[i]) > 0;
    if (problem) ImGui::PushStyleColor(ImGuiCol_Text, ImVec4(1.0f, 0.7f, 0.4f, 1.0f));
    ImGui::PushTextWrapPos(0.0f);
    ImGui::TextUnformatted(lines_[i].data(), lines_[i].data() + lines_[i].size());
    ImGui::PopTextWrapPos();
    if (problem) ImGui::PopStyleColor();
  }
  ImGui::SetCursorPosY(top + ends_.back());
  ImGui::Dummy(ImVec2(0.0f, 0.0f));
  if (ImGui::GetScrollY() >= ImGui::GetScrollMaxY()) ImGui::SetScrollHereY(1.0f);
}

} // namespace cli
