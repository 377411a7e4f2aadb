#include "cli/view/height_panel.h"

#include "cli/text/format.h"
#include "cli/view/fitted_text.h"
#include "host/application.h"
#include "host/parameters/node_parameters.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <imgui.h>

namespace cli {

namespace {

constexpr float kBarsHeight = 90.0f; ///< of an ordinary screen, pixels
constexpr double kUsualShare = 0.01; ///< of the points, beyond each end of a ramp

/** The height below which that share of the points lies, to the width of a bin. */
double HeightAt(const HeightHistogram& histogram, double share) {
  double points = (double)histogram.below + histogram.above;
  for (const LONG inBin : histogram.bins) points += inBin;
  double below = histogram.below;
  std::size_t bin = 0;
  while (bin + 1 < histogram.bins.size() && below + histogram.bins[bin] < points * share)
    below += histogram.bins[bin++];
  const double width = (histogram.to - histogram.from) / (double)histogram.bins.size();
  return histogram.from + ((double)bin + 0.5) * width;
}

ImU32 Packed(const Vector& color) {
  return ImGui::GetColorU32(ImVec4((float)color.x, (float)color.y, (float)color.z, 1.0f));
}

} // namespace

bool HeightPanel::Read(BaseObject* cloud) {
  const ULONG dirty = cloud->GetDirty(DIRTYFLAGS_DATA);
  // While a widget is held, the parameters change with every frame; the points do not.
  if (cloud == cloud_ && (dirty == dirty_ || ImGui::IsAnyItemActive())) return true;
  cloud_ = nullptr;
  if (!CountHeights(cloud, &histogram_)) return false;
  cloud_ = cloud;
  dirty_ = dirty;
  held_ = End::kNone;
  ReadColors(cloud);
  return true;
}

void HeightPanel::ReadColors(BaseObject* cloud) {
  const BaseContainer* data = cloud->GetDataInstance();
  GeData ramp;
  cloud->GetParameter(DescID(KELVRA_RAMP), ramp, DESCFLAGS_GET_0);
  ramp_ = {HeightAt(histogram_, kUsualShare), HeightAt(histogram_, 1.0 - kUsualShare), ramp.GetLong()};
  colors_.clear();
  KelvraLegend legend = {};
  legend.version = 1;
  if (!cloud->Message(KELVRA_MESSAGE_LEGEND, &legend) || legend.kind != KELVRA_LOAD_COLOR_HEIGHT) return;
  for (LONG i = 0; i < legend.count; ++i) colors_.push_back(legend.entries[i].color);
  ramp_.from = data->GetReal(KELVRA_RAMP_FROM);
  ramp_.to = data->GetReal(KELVRA_RAMP_TO);
}

Vector HeightPanel::ColorAt(double height) const {
  if (colors_.empty()) return Vector(0.55);
  const double width = ramp_.to - ramp_.from;
  const double share = width > 0.0 ? std::clamp((height - ramp_.from) / width, 0.0, 1.0) : 0.5;
  return colors_[(std::size_t)std::lround(share * (double)(colors_.size() - 1))];
}

double HeightPanel::At(float x, float left, float width) const {
  const double share = std::clamp((double)(x - left) / width, 0.0, 1.0);
  return histogram_.from + share * (histogram_.to - histogram_.from);
}

void HeightPanel::ShowBars(float scale) {
  const ImVec2 corner = ImGui::GetCursorScreenPos();
  const ImVec2 size(std::max(40.0f, ImGui::GetContentRegionAvail().x), kBarsHeight * scale);
  const ImVec2 end(corner.x + size.x, corner.y + size.y);
  ImGui::InvisibleButton("##bars", size);
  const float mouse = ImGui::GetIO().MousePos.x;
  const double range = histogram_.to - histogram_.from;
  const auto pixel = [&](double height) {
    const double share = range > 0.0 ? (height - histogram_.from) / range : 0.5;
    return corner.x + size.x * (float)std::clamp(share, 0.0, 1.0);
  };
  // The end that is nearer to the pointer.
  const auto nearer = [&] {
    const float middle = (pixel(ramp_.from) + pixel(ramp_.to)) / 2;
    return mouse < middle ? End::kLow : End::kHigh;
  };
  if (ImGui::IsItemActivated()) held_ = nearer();
  if (held_ != End::kNone) {
    const double height = At(mouse, corner.x, size.x);
    if (held_ == End::kLow)
      ramp_.from = std::min(height, ramp_.to);
    else
      ramp_.to = std::max(height, ramp_.from);
  }
  letGo_ = held_ != End::kNone && !ImGui::IsItemActive();
  const End marked = held_ != End::kNone ? held_ : ImGui::IsItemHovered() ? nearer() : End::kNone;
  if (letGo_) held_ = End::kNone;
  if (marked != End::kNone) {
    ImGui::SetMouseCursor(ImGuiMouseCursor_ResizeEW);
    const int decimals = DecimalsFor(range);
    ImGui::SetTooltip("%s\ndrag the ends of the colours",
                      Fixed(At(mouse, corner.x, size.x), decimals).c_str());
  }

  ImDrawList& list = *ImGui::GetWindowDrawList();
  list.AddRectFilled(corner, end, ImGui::GetColorU32(ImGuiCol_FrameBg), 3.0f);
  const LONG most = *std::max_element(histogram_.bins.begin(), histogram_.bins.end());
  const std::size_t count = histogram_.bins.size();
  for (std::size_t i = 0; i < count && most > 0; ++i) {
    if (histogram_.bins[i] == 0) continue;
    const float left = corner.x + size.x * (float)i / (float)count, width = size.x / (float)count;
    // Few points are seen beside many: the bars grow as the root.
    const float height = std::max(1.0f, (size.y - 4.0f) * std::sqrt((float)histogram_.bins[i] / (float)most));
    const double middle = histogram_.from + ((double)i + 0.5) / (double)count * range;
    list.AddRectFilled(ImVec2(left, end.y - height), ImVec2(left + std::max(1.0f, width), end.y),
                       Packed(ColorAt(middle)));
  }
  for (const End which : {End::kLow, End::kHigh}) {
    const float x = pixel(which == End::kLow ? ramp_.from : ramp_.to);
    const ImU32 color = which == marked ? IM_COL32(255, 220, 60, 255) : ImGui::GetColorU32(ImGuiCol_Text);
    list.AddLine(ImVec2(x, corner.y), ImVec2(x, end.y), color, 2.0f * scale);
    list.AddTriangleFilled(ImVec2(x - 5 * scale, corner.y), ImVec2(x + 5 * scale, corner.y),
                           ImVec2(x, corner.y + 7 * scale), color);
  }
}

bool HeightPanel::ShowFields(float scale) {
  bool changed = false;
  const float room = ImGui::GetContentRegionAvail().x, gap = 6 * scale;
  const std::string format = "%." + std::to_string(DecimalsFor(histogram_.to - histogram_.from)) + "f";
  const float speed = (float)((histogram_.to - histogram_.from) / 400.0);
  const auto field = [&](const char* name, const char* explanation, double* value, double low, double high) {
    ImGui::SetNextItemWidth((room - 2 * gap) / 3);
    ImGui::DragScalar(name, ImGuiDataType_Double, value, std::max(speed, 1e-6f), &low, &high, format.c_str(),
                      ImGuiSliderFlags_AlwaysClamp);
    if (ImGui::IsItemHovered()) ImGui::SetTooltip("%s", explanation);
    changed = changed || ImGui::IsItemDeactivatedAfterEdit();
  };
  field("##from", "Height of the first colour, in the units of the file", &ramp_.from, histogram_.lowest,
        ramp_.to);
  ImGui::SameLine(0, gap);
  field("##to", "Height of the last colour, in the units of the file", &ramp_.to, ramp_.from,
        histogram_.highest);
  ImGui::SameLine(0, gap);
  const DescID id(KELVRA_RAMP);
  const host::resource::Description* description = host::FindDescription(*host::Impl(cloud_), &id);
  const host::resource::Parameter* ramps = description ? description->FindParameter(KELVRA_RAMP) : nullptr;
  if (!ramps) return changed;
  std::string current;
  for (const host::resource::CycleEntry& entry : ramps->cycle)
    if (entry.id == ramp_.ramp) current = entry.text;
  ImGui::SetNextItemWidth(-1);
  if (ImGui::BeginCombo("##ramp", current.c_str())) {
    for (const host::resource::CycleEntry& entry : ramps->cycle) {
      if (!ImGui::Selectable(entry.text.c_str(), entry.id == ramp_.ramp)) continue;
      ramp_.ramp = entry.id;
      changed = true;
    }
    ImGui::EndCombo();
  }
  return changed;
}

void HeightPanel::Show(BaseObject* cloud, float scale) {
  if (!Read(cloud)) return;
  ImGui::PushID("heights");
  ShowBars(scale);
  bool apply = letGo_;
  if (colors_.empty()) {
    apply = ImGui::Button("Color by Height", ImVec2(-1, 0)) || apply;
    if (ImGui::IsItemHovered()) ImGui::SetTooltip("Replaces the points' colours; Undo brings them back.");
  } else {
    apply = ShowFields(scale) || apply;
  }
  const LONG outside = histogram_.below + histogram_.above;
  if (outside > 0) {
    const int decimals = DecimalsFor(histogram_.to - histogram_.from);
    ShowFitted(Counted(outside, "point") + (outside == 1 ? " lies" : " lie") + " outside, from " +
                   Fixed(histogram_.lowest, decimals) + " to " + Fixed(histogram_.highest, decimals),
               ImGui::GetContentRegionAvail().x);
  }
  if (apply) apply_(cloud, ramp_);
  ImGui::PopID();
}

} // namespace cli
