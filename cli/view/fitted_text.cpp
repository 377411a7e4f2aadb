#include "cli/view/fitted_text.h"

#include <imgui.h>

namespace cli {

namespace {

constexpr const char* kEllipsis = "\u2026";

float WidthOf(const char* start, const char* end) {
  return ImGui::CalcTextSize(start, end).x;
}

bool Fits(const std::string& text, float width) {
  return WidthOf(text.data(), text.data() + text.size()) <= width;
}

} // namespace

std::string Shortened(const std::string& text, float width) {
  if (Fits(text, width)) return text;
  const float room = width - WidthOf(kEllipsis, nullptr);
  std::size_t low = 0, high = text.size();
  while (low + 1 < high) {
    const std::size_t middle = (low + high) / 2;
    (WidthOf(text.data(), text.data() + middle) <= room ? low : high) = middle;
  }
  // Not within the bytes of one letter.
  while (low > 0 && (text[low] & 0xc0) == 0x80) --low;
  return text.substr(0, low) + kEllipsis;
}

void ShowFitted(const std::string& text, float width) {
  const std::string shown = Shortened(text, width);
  ImGui::TextUnformatted(shown.data(), shown.data() + shown.size());
  ExplainShortened(text, width);
}

void ExplainShortened(const std::string& text, float width) {
  if (ImGui::IsItemHovered(ImGuiHoveredFlags_AllowWhenDisabled) && !Fits(text, width)) ShowTooltip(text);
}

void ShowTooltip(const std::string& text) {
  ImGui::BeginTooltip();
  ImGui::PushTextWrapPos(ImGui::GetFontSize() * 36.0f);
  ImGui::TextUnformatted(text.data(), text.data() + text.size());
  ImGui::PopTextWrapPos();
  ImGui::EndTooltip();
}

} // namespace cli
