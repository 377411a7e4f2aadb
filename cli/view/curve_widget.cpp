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

/** Where a curve stands on the screen. */
struct Frame {
  ImVec2 corner, size;
  double top = 1.0; ///< value at the upper edge

  ImVec2 Pixel(const Vector& knot) const {
    return ImVec2(corner.x + (float)knot.x * size.x, corner.y + (float)(1.0 - knot.y / top) * size.y);
  }
  /** x and y of a pixel, moved into the frame at its sides and below; above it values go on. */
  Vector Place(const ImVec2& pixel) const {
    return Vector(std::clamp((double)(pixel.x - corner.x) / size.x, 0.0, 1.0),
                  std::max(0.0, (1.0 - (double)(pixel.y - corner.y) / size.y) * top), 0.0);
  }
};

/** The knot within reach of a pixel; -1 without one. */
int KnotAt(const Frame& frame, const std::vector<Vector>& knots, const ImVec2& pixel) {
  int found = -1;
  for (std::size_t i = 0; i < knots.size(); ++i) {
    const ImVec2 at = frame.Pixel(knots[i]);
    if (std::hypot(at.x - pixel.x, at.y - pixel.y) < kReach) found = (int)i;
  }
  return found;
}

/** The right button removes the knot that is near, the left one takes hold of it, or of a new knot. */
bool Press(const Vector& place, int near, std::vector<Vector>* knots, int* held) {
  *held = near;
  if (ImGui::IsMouseDown(ImGuiMouseButton_Right)) {
    *held = -1;
    if (near >= 0) knots->erase(knots->begin() + near);
    return near >= 0;
  }
  if (near >= 0) return false;
  const auto after =
      std::find_if(knots->begin(), knots->end(), [&](const Vector& knot) { return knot.x > place.x; });
  *held = (int)(after - knots->begin());
  knots->insert(after, place);
  return true;
}

/** Moves the held knot, at most as far as its neighbours. */
bool Drag(const Vector& place, std::size_t held, std::vector<Vector>* knots) {
  const ImVec2 delta = ImGui::GetIO().MouseDelta;
  if (held >= knots->size() || (delta.x == 0.0f && delta.y == 0.0f)) return false;
  const double low = held > 0 ? (*knots)[held - 1].x : 0.0;
  const double high = held + 1 < knots->size() ? (*knots)[held + 1].x : 1.0;
  (*knots)[held] = Vector(std::clamp(place.x, low, high), place.y, 0.0);
  return true;
}

void DrawCurve(const Frame& frame, const SplineData& curve, const std::vector<Vector>& knots, int near) {
  const ImVec2 &corner = frame.corner, end(corner.x + frame.size.x, corner.y + frame.size.y);
  ImDrawList& list = *ImGui::GetWindowDrawList();
  list.AddRectFilled(corner, end, ImGui::GetColorU32(ImGuiCol_FrameBg), 3.0f);
  if (knots.empty()) {
    list.AddText(ImVec2(corner.x + 6, corner.y + 4), ImGui::GetColorU32(ImGuiCol_TextDisabled),
                 "no curve: click to add a knot");
  } else {
    std::vector<ImVec2> line;
    for (int i = 0; i <= 64; ++i) line.push_back(frame.Pixel(curve.GetPoint(i / 64.0)));
    for (std::size_t i = 0; i < line.size(); ++i) line[i].x = corner.x + frame.size.x * (float)i / 64.0f;
    list.AddPolyline(line.data(), (int)line.size(), ImGui::GetColorU32(ImGuiCol_PlotLines), 0, 1.5f);
  }
  for (std::size_t i = 0; i < knots.size(); ++i)
    list.AddCircleFilled(frame.Pixel(knots[i]), 4.0f,
                         ImGui::GetColorU32((int)i == near ? ImGuiCol_PlotLinesHovered : ImGuiCol_Text));
  char label[32];
  std::snprintf(label, sizeof label, "%.3g", frame.top);
  list.AddText(ImVec2(end.x - ImGui::CalcTextSize(label).x - 4, corner.y + 2),
               ImGui::GetColorU32(ImGuiCol_TextDisabled), label);
}

} // namespace

bool EditCurve(SplineData* curve, float height) {
  std::vector<Vector> knots;
  for (LONG i = 0; i < curve->GetKnotCount(); ++i) knots.push_back(curve->GetKnot(i));
  Frame frame;
  frame.corner = ImGui::GetCursorScreenPos();
  frame.size = ImVec2(std::max(40.0f, ImGui::GetContentRegionAvail().x), height);
  ImGui::InvisibleButton("##curve", frame.size,
                         ImGuiButtonFlags_MouseButtonLeft | ImGuiButtonFlags_MouseButtonRight);
  ImGuiStorage& storage = *ImGui::GetStateStorage();
  const ImGuiID heldId = ImGui::GetID("held"), topId = ImGui::GetID("top");
  int held = storage.GetInt(heldId, -1);
  // The frame keeps its height while a knot is held.
  frame.top = held >= 0 ? storage.GetFloat(topId, 1.0f) : HeightOf(knots);

  const Vector place = frame.Place(ImGui::GetIO().MousePos);
  const int near = KnotAt(frame, knots, ImGui::GetIO().MousePos);
  bool changed = false;
  if (ImGui::IsItemActivated()) {
    changed = Press(place, near, &knots, &held);
    storage.SetFloat(topId, (float)frame.top);
  } else if (ImGui::IsItemActive() && held >= 0) {
    changed = Drag(place, (std::size_t)held, &knots);
  }
  if (!ImGui::IsItemActive()) held = -1;
  storage.SetInt(heldId, held);
  if (changed) {
    curve->DelAllPoints();
    for (const Vector& knot : knots) curve->InsertKnot(knot.x, knot.y);
  }
  DrawCurve(frame, *curve, knots, near);
  return changed;
}

} // namespace cli
