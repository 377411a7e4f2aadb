#include "cli/view/curve_widget.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <imgui.h>
#include <vector>

namespace cli {

namespace {

constexpr float kReach = 9.0f; ///< pixels within which a knot is taken

/** The next power of two above all values, so that the frame stands still while a knot moves. */
double HeightOf(const std::vector<Vector>& knots) {
  double highest = 1.0;
  for (const Vector& knot : knots)
    highest = std::max(highest, std::exp2(std::ceil(std::log2(std::max(knot.y, 1e-3)))));
  return highest;
}

} // namespace

bool EditCurve(SplineData* curve, float height) {
  std::vector<Vector> knots;
  for (LONG i = 0; i < curve->GetKnotCount(); ++i) knots.push_back(curve->GetKnot(i));
  const ImVec2 corner = ImGui::GetCursorScreenPos();
  const ImVec2 size(std::max(40.0f, ImGui::GetContentRegionAvail().x), height);
  ImGui::InvisibleButton("##curve", size,
                         ImGuiButtonFlags_MouseButtonLeft | ImGuiButtonFlags_MouseButtonRight);
  const ImVec2 mouse = ImGui::GetIO().MousePos;
  ImGuiStorage& storage = *ImGui::GetStateStorage();
  const ImGuiID heldId = ImGui::GetID("held"), topId = ImGui::GetID("top");
  int held = storage.GetInt(heldId, -1);
  // The frame keeps its height while a knot is held.
  const double top = held >= 0 ? storage.GetFloat(topId, 1.0f) : HeightOf(knots);
  const auto pixel = [&](const Vector& knot) {
    return ImVec2(corner.x + (float)knot.x * size.x, corner.y + (float)(1.0 - knot.y / top) * size.y);
  };
  int near = -1;
  for (std::size_t i = 0; i < knots.size(); ++i) {
    const ImVec2 at = pixel(knots[i]);
    if (std::hypot(at.x - mouse.x, at.y - mouse.y) < kReach) near = (int)i;
  }
  const Vector place(std::clamp((double)(mouse.x - corner.x) / size.x, 0.0, 1.0),
                     std::max(0.0, (1.0 - (double)(mouse.y - corner.y) / size.y) * top), 0.0);
  bool changed = false;
  if (ImGui::IsItemActivated()) {
    if (ImGui::IsMouseDown(ImGuiMouseButton_Right)) {
      if (near >= 0) knots.erase(knots.begin() + near);
      changed = near >= 0;
      held = -1;
    } else if (near < 0) {
      const auto after =
          std::find_if(knots.begin(), knots.end(), [&](const Vector& k) { return k.x > place.x; });
      held = (int)(after - knots.begin());
      knots.insert(after, place);
      changed = true;
    } else {
      held = near;
    }
    storage.SetFloat(topId, (float)top);
  } else if (ImGui::IsItemActive() && held >= 0 && held < (int)knots.size() &&
             (ImGui::GetIO().MouseDelta.x != 0.0f || ImGui::GetIO().MouseDelta.y != 0.0f)) {
    const std::size_t i = (std::size_t)held;
    const double low = i > 0 ? knots[i - 1].x : 0.0, high = i + 1 < knots.size() ? knots[i + 1].x : 1.0;
    knots[i] = Vector(std::clamp(place.x, low, high), place.y, 0.0);
    changed = true;
  }
  if (!ImGui::IsItemActive()) held = -1;
  storage.SetInt(heldId, held);
  if (changed) {
    curve->DelAllPoints();
    for (const Vector& knot : knots) curve->InsertKnot(knot.x, knot.y);
  }

  ImDrawList& list = *ImGui::GetWindowDrawList();
  const ImVec2 end(corner.x + size.x, corner.y + size.y);
  list.AddRectFilled(corner, end, ImGui::GetColorU32(ImGuiCol_FrameBg), 3.0f);
  if (knots.empty()) {
    list.AddText(ImVec2(corner.x + 6, corner.y + 4), ImGui::GetColorU32(ImGuiCol_TextDisabled),
                 "no curve: click to add a knot");
  } else {
    std::vector<ImVec2> line;
    for (int i = 0; i <= 64; ++i) line.push_back(pixel(curve->GetPoint(i / 64.0)));
    for (std::size_t i = 0; i < line.size(); ++i) line[i].x = corner.x + size.x * (float)i / 64.0f;
    list.AddPolyline(line.data(), (int)line.size(), ImGui::GetColorU32(ImGuiCol_PlotLines), 0, 1.5f);
  }
  for (std::size_t i = 0; i < knots.size(); ++i)
    list.AddCircleFilled(pixel(knots[i]), 4.0f,
                         ImGui::GetColorU32((int)i == near ? ImGuiCol_PlotLinesHovered : ImGuiCol_Text));
  char label[32];
  std::snprintf(label, sizeof label, "%.3g", top);
  list.AddText(ImVec2(end.x - ImGui::CalcTextSize(label).x - 4, corner.y + 2),
               ImGui::GetColorU32(ImGuiCol_TextDisabled), label);
  return changed;
}

} // namespace cli
