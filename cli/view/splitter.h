// Panes with fixed places, and the bars between them.
#pragma once

#include <imgui.h>

namespace cli {

constexpr int kPane = ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoCollapse |
                      ImGuiWindowFlags_NoBringToFrontOnFocus | ImGuiWindowFlags_NoSavedSettings;
constexpr float kSplitter = 5.0f; ///< width, pixels of an ordinary screen

/** Of the next window. */
void Place(float x, float y, float width, float height);

/** A bar to take hold of: `growth` is added to the size for each pixel to the right or down. */
void DrawBar(bool upright, const ImVec2& room, float growth, float* size);

/** Where a bar between two panes lies. */
struct Splitter {
  const char* name;
  bool upright;
  float x, y, length;
  float growth; ///< of its pane, as DrawBar has it
};

void DrawSplitter(const Splitter& splitter, float scale, float* size);

} // namespace cli
