#include "cli/session/preferences_page.h"
#include "cli/text/format.h"
#include "cli/view/fitted_text.h"
#include "cli/view/splitter.h"
#include "cli/view/view_application.h"
#include "host/application.h"
#include "host/parameter_step.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <filesystem>
#include <imgui.h>
#include <imgui_stdlib.h>
#include <utility>

namespace cli {

namespace {

// Key numbers of the window system.
constexpr int kF1 = 290, kF10 = 299, kF12 = 301, kDeleteKey = 261, kEscapeKey = 256;

struct Side {
  const char* name;
  const char* key;
  Vector direction;
};
const Side kSides[] = {{"From the usual side", "0", host::Framing::UsualDirection()},
                       {"From the top", "1", Vector(0, -1, 0)},
                       {"From the south", "2", Vector(0, 0, 1)},
                       {"From the north", "3", Vector(0, 0, -1)},
                       {"From the west", "4", Vector(1, 0, 0)},
                       {"From the east", "5", Vector(-1, 0, 0)}};

constexpr const char* kHelp =
    "Load           Ctrl+L, or drop files onto the window\n"
    "Turn           drag, or the arrow keys\n"
    "Move           drag with the right button, or W A S D, Q and E\n"
    "Zoom           the wheel, to the pointer; or + and -\n"
    "Whole cloud    F; Shift+F the selected object; from the sides: 0 to 5\n"
    "Ask a point    click it\n"
    "Render         Ctrl+R; then click a pixel to see what made it\n"
    "Stop           Esc; it also closes this help and what explains a pixel\n"
    "Objects        Ctrl+D duplicates the selected one, Del deletes it\n"
    "Undo, redo     Ctrl+Z, Ctrl+Y\n"
    "Scene          Ctrl+N new, Ctrl+O open, Ctrl+S save, Ctrl+Q quit\n"
    "Screenshot     F12\n"
    "Panes          hold Ctrl, press Tab until the one you want is marked; F10 for the menu\n"
    "Widgets        the arrow keys choose, Enter or Space presses, Tab goes to the next";

} // namespace

void ViewApplication::DrawAll() {
  console_.Add(session_.App().GetConsole().Lines(console_.Count()));

  window_.SetTitle(Title());
  const float scale = window_.Scale();
  const ImVec2 size = ImGui::GetIO().DisplaySize;
  const bool modal = browser_.IsOpen() || !question_.text.empty();
  for (const Window::Key& key : window_.TakeKeys())
    if (!modal) TakeShortcuts(key);
  float top = 0.0f;
  const float status = panels_ ? ImGui::GetFrameHeight() + 8 * scale : 0.0f;
  ImGui::BeginDisabled(IsBusy() && !modal);
  if (panels_) {
    DrawMenu();
    top = ImGui::GetFrameHeight();
  }
  DrawPanes(top, status);
  ImGui::EndDisabled();
  if (panels_ || IsBusy()) {
    Place(0, size.y - ImGui::GetFrameHeight() - 8 * scale, size.x, ImGui::GetFrameHeight() + 8 * scale);
    const int bare = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoNavFocus;
    if (ImGui::Begin("Status", nullptr, kPane | bare)) DrawStatus();
    ImGui::End();
  }
  browser_.Show(scale);
  DrawQuestion();
  DrawHelp();
}

/** Objects and parameters at the left, the view above the console at the right. */
void ViewApplication::DrawPanes(float top, float status) {
  const float scale = window_.Scale(), bar = kSplitter * scale;
  const ImVec2 size = ImGui::GetIO().DisplaySize;
  const float bottom = size.y - status;
  PaneSizes& panes = kept_.panes;
  float left = 0.0f, console = 0.0f;
  if (panels_) {
    // A small window leaves the view half of it; the sizes are kept for a large one.
    const auto fit = [scale](float* kept, float low, float room) {
      return std::min((*kept = std::max(*kept, low)) * scale, room);
    };
    left = fit(&panes.left, 200, size.x * 0.5f);
    console = fit(&panes.console, 60, (bottom - top) * 0.5f);
    const float objects = fit(&panes.objects, 90, (bottom - top) * 0.7f);
    Place(0, top, left - bar, objects - bar);
    if (ImGui::Begin("Objects", nullptr, kPane)) DrawObjects();
    ImGui::End();
    Place(0, top + objects, left - bar, bottom - top - objects);
    const std::string parameters =
        Selected() ? "Parameters of " + host::Utf8(Selected()->GetName()) : std::string("Parameters");
    if (ImGui::Begin((parameters + "###Parameters").c_str(), nullptr, kPane)) DrawParameters();
    ImGui::End();
    Place(left, bottom - console + bar, size.x - left, console - bar);
    if (ImGui::Begin("Console", nullptr, kPane)) console_.Show();
    ImGui::End();
    DrawSplitter({"##left", true, left - bar, top, bottom - top, 1.0f}, scale, &panes.left);
    DrawSplitter({"##objects", false, 0, top + objects - bar, left - bar, 1.0f}, scale, &panes.objects);
    DrawSplitter({"##console", false, left, bottom - console, size.x - left, -1.0f}, scale, &panes.console);
  }
  Place(left, top, size.x - left, bottom - top - console);
  ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(panels_ ? 4.0f : 0.0f, panels_ ? 4.0f : 0.0f));
  if (ImGui::Begin("View", nullptr, kPane | ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoNavInputs))
    DrawCentre();
  ImGui::End();
  ImGui::PopStyleVar();
}

void ViewApplication::TakeShortcuts(const Window::Key& key) {
  if (IsBusy()) {
    if (key.number == kEscapeKey) Stop();
    return;
  }
  if (key.number == kF12) Later([this] { Screenshot(); });
  if (key.number == kF1) showsHelp_ = !showsHelp_;
  if (key.number == kF10) wantsMenu_ = true;
  if (ImGui::GetIO().WantTextInput) return;
  if (key.number == kEscapeKey) {
    if (showsHelp_)
      showsHelp_ = false;
    else
      explanation_ = PixelReport();
  }
  if (key.control) {
    switch (key.number) {
    case 'N':
      return Later([this] { NewScene(); });
    case 'O':
      return Later([this] { OpenScene(std::string()); });
    case 'S':
      return Later([this, asNew = key.shift] { SaveScene(asNew); });
    case 'L':
      return Later([this] { LoadByDialog(false); });
    case 'R':
      return Later([this] { RenderPicture(); });
    case 'D':
      return Later([this] { DuplicateSelected(); });
    case 'Z':
      return Later([this, redo = key.shift] { Undo(redo); });
    case 'Y':
      return Later([this] { Undo(true); });
    case 'Q':
      quit_ = true;
      return;
    default:
      return;
    }
  }
  if (key.number == 'F' && key.shift && SelectedObject())
    viewport_.FrameOnly(SelectedObject());
  else if (key.number == 'F')
    viewport_.FrameAll(viewport_.Direction());
  if (key.number == kDeleteKey) Later([this] { DeleteSelected(); });
  for (const Side& side : kSides)
    if (key.number == side.key[0]) viewport_.FrameAll(side.direction);
}

void ViewApplication::Stop() {
  host::RequestInterrupt();
  busy_.text = kStopping;
}

/** Of the window: the scene's name, and whether it has changes that were not saved. */
std::string ViewApplication::Title() const {
  if (path_.empty()) return "Kelvra";
  return std::filesystem::u8path(path_).filename().u8string() + (stamp_ != saved_.stamp ? "*" : "") +
         " - Kelvra";
}

void ViewApplication::DrawMenu() {
  if (!ImGui::BeginMainMenuBar()) return;
  const auto item = [this](const char* name, const char* keys, auto action, bool enabled = true) {
    if (ImGui::MenuItem(name, keys, false, enabled)) Later(action);
  };
  if (std::exchange(wantsMenu_, false)) ImGui::OpenPopup("File");
  if (ImGui::BeginMenu("File")) {
    item("Load Scan...", "Ctrl+L", [this] { LoadByDialog(false); });
    item("Load Folder of Scans...", "", [this] { LoadByDialog(true); });
    ImGui::Separator();
    item("New Scene", "Ctrl+N", [this] { NewScene(); });
    item("Open Scene...", "Ctrl+O", [this] { OpenScene(std::string()); });
    item("Save Scene", "Ctrl+S", [this] { SaveScene(false); });
    item("Save Scene As...", "Ctrl+Shift+S", [this] { SaveScene(true); });
    ImGui::Separator();
    item("Screenshot", "F12", [this] { Screenshot(); });
    item("Quit", "Ctrl+Q", [this] { quit_ = true; });
    ImGui::EndMenu();
  }
  if (ImGui::BeginMenu("Edit")) {
    const bool object = SelectedObject() != nullptr, node = object || (!showsPreferences_ && Selected());
    const host::UndoPlace place = host::PlaceInHistory(session_.Document());
    item(
        "Undo", "Ctrl+Z", [this] { Undo(false); }, place.canUndo);
    item(
        "Redo", "Ctrl+Y", [this] { Undo(true); }, place.canRedo);
    ImGui::Separator();
    item(
        "Duplicate Object", "Ctrl+D", [this] { DuplicateSelected(); }, object);
    item(
        "Delete", "Del", [this] { DeleteSelected(); }, node);
    ImGui::Separator();
    item("Preferences", "", [this] { showsPreferences_ = true; });
    ImGui::EndMenu();
  }
  if (ImGui::BeginMenu("View")) {
    if (ImGui::MenuItem("Whole Cloud", "F")) viewport_.FrameAll(viewport_.Direction());
    BaseObject* object = SelectedObject();
    if (ImGui::MenuItem("Selected Object", "Shift+F", false, object != nullptr)) viewport_.FrameOnly(object);
    for (const Side& side : kSides)
      if (ImGui::MenuItem(side.name, side.key)) viewport_.FrameAll(side.direction);
    ImGui::Separator();
    if (ImGui::MenuItem("Shade by Depth", "", &viewport_.EyeDome())) viewport_.Redraw();
    ImGui::EndMenu();
  }
  if (ImGui::BeginMenu("Render")) {
    item(
        "Render Picture", "Ctrl+R", [this] { RenderPicture(); }, HasContent());
    item(
        "Save Picture...", "", [this] { SavePicture(); }, render_.HasPicture());
    ImGui::Separator();
    ImGui::SetNextItemWidth(120 * window_.Scale());
    ImGui::InputInt("Width in pixels", &render_.Plan().view.size.width, 160);
    render_.Plan().view.size.width = std::clamp(render_.Plan().view.size.width, 16, 16384);
    ImGui::SetNextItemWidth(120 * window_.Scale());
    ImGui::SliderInt("Rays a pixel and axis", &render_.Plan().supersample, 1, 8);
    ImGui::EndMenu();
  }
  if (ImGui::BeginMenu("Help")) {
    if (ImGui::MenuItem("Mouse and Keys", "F1")) showsHelp_ = true;
    ImGui::EndMenu();
  }
  ImGui::EndMainMenuBar();
}

void ViewApplication::DrawParameters() {
  BaseList2D* node = Selected();
  if (!node) return ImGui::TextDisabled("Select an object to see its parameters.");
  const float scale = window_.Scale();
  if (node->GetType() == KELVRA_CLOUD && ImGui::CollapsingHeader("Heights", ImGuiTreeNodeFlags_DefaultOpen))
    heights_.Show(static_cast<BaseObject*>(node), scale);
  panel_.Show(node, scale);
}

void ViewApplication::DrawCentre() {
  if (!panels_) {
    viewport_.Show(!working_ && !ImGui::GetIO().WantTextInput);
    return;
  }
  if (!ImGui::BeginTabBar("centre")) return;
  const int viewFlags = std::exchange(wantsView_, false) ? ImGuiTabItemFlags_SetSelected : 0;
  if (ImGui::BeginTabItem("View", nullptr, viewFlags)) {
    const bool keys = !working_ && !ImGui::GetIO().WantTextInput && ImGui::IsWindowFocused();
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    viewport_.Show(keys);
    if (const auto click = viewport_.TakeClick()) Later([this, click] { Pick(*click); });
    if (!session_.Document()->GetFirstObject() && !working_) {
      ImGui::SetCursorScreenPos(corner);
      DrawWelcome();
    }
    ImGui::EndTabItem();
  }
  const int pictureFlags = std::exchange(wantsPicture_, false) ? ImGuiTabItemFlags_SetSelected : 0;
  if (ImGui::BeginTabItem("Picture", nullptr, pictureFlags)) {
    DrawPicture();
    ImGui::EndTabItem();
  }
  ImGui::EndTabBar();
}

void ViewApplication::DrawWelcome() {
  const ImVec2 room = ImGui::GetContentRegionAvail(), start = ImGui::GetCursorPos();
  const char* text = "Drop laser scans here: LAS, LAZ, XYZ or PTS";
  ImGui::SetCursorPos(ImVec2(start.x + (room.x - ImGui::CalcTextSize(text).x) / 2, start.y + room.y * 0.42f));
  ImGui::TextUnformatted(text);
  const float width = 160 * window_.Scale();
  ImGui::SetCursorPos(
      ImVec2(start.x + (room.x - width) / 2, start.y + room.y * 0.42f + 2 * ImGui::GetFrameHeight()));
  if (ImGui::Button("Load Scan...", ImVec2(width, 0))) Later([this] { LoadByDialog(false); });
}

void ViewApplication::DrawStatus() {
  if (IsBusy() && !browser_.IsOpen() && question_.text.empty()) {
    if (busy_.percent == kCannotStop) return ImGui::TextUnformatted((busy_.text + "...").c_str());
    const bool known = busy_.percent != kUnknown;
    const std::string done =
        known ? std::to_string(busy_.percent) + " %" : Fixed(Now() - busy_.start, 1) + " s";
    ImGui::ProgressBar(known ? (float)busy_.percent / 100.0f : 0.0f, ImVec2(300 * window_.Scale(), 0),
                       (busy_.text + ", " + done).c_str());
    ImGui::SameLine();
    if (ImGui::Button("Stop (Esc)")) Stop();
    return;
  }
  const std::string name =
      path_.empty() ? "no scene file" : std::filesystem::u8path(path_).filename().u8string();
  ShowFitted(name + (stamp_ != saved_.stamp ? ", changed" : ""), 340 * window_.Scale());
  ImGui::SameLine(360 * window_.Scale());
  const double rate = viewport_.FramesPerSecond();
  const std::string speed =
      rate >= 1.0 || rate <= 0.0 ? Fixed(rate, 0) + " frames a second" : Fixed(1.0 / rate, 1) + " s a frame";
  ImGui::Text("%s of %s drawn, %s", Grouped(viewport_.PointsDrawn()).c_str(),
              Counted(viewport_.PointsShown(), "point").c_str(), speed.c_str());
}

void ViewApplication::DrawQuestion() {
  window_.SetTabMoves(!question_.text.empty());
  if (question_.text.empty()) return;
  if (!ImGui::IsPopupOpen("Kelvra###question")) ImGui::OpenPopup("Kelvra###question");
  ImGui::SetNextWindowPos(ImGui::GetMainViewport()->GetCenter(), ImGuiCond_Appearing, ImVec2(0.5f, 0.5f));
  if (!ImGui::BeginPopupModal("Kelvra###question", nullptr, ImGuiWindowFlags_AlwaysAutoResize)) return;
  ImGui::PushTextWrapPos(460 * window_.Scale());
  ImGui::TextUnformatted(question_.text.c_str());
  ImGui::PopTextWrapPos();
  ImGui::Spacing();
  for (std::size_t i = 0; i < question_.answers.size(); ++i) {
    if (i > 0) ImGui::SameLine();
    if (ImGui::IsWindowAppearing() && i == 0) ImGui::SetKeyboardFocusHere();
    if (ImGui::Button(question_.answers[i].c_str())) question_.answer = (int)i;
  }
  if (ImGui::IsKeyPressed(kEscapeKey)) question_.answer = (int)question_.answers.size() - 1;
  if (question_.answer >= 0) ImGui::CloseCurrentPopup();
  ImGui::EndPopup();
}

void ViewApplication::DrawHelp() {
  if (!showsHelp_) return;
  ImGui::SetNextWindowPos(ImGui::GetMainViewport()->GetCenter(), ImGuiCond_Appearing, ImVec2(0.5f, 0.5f));
  if (ImGui::Begin("Mouse and Keys", &showsHelp_,
                   ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoSavedSettings)) {
    const std::string help = kHelp;
    for (std::size_t start = 0; start < help.size();) {
      const std::size_t end = std::min(help.find('\n', start), help.size());
      ImGui::TextUnformatted(help.substr(start, 14).c_str());
      ImGui::SameLine(130 * window_.Scale());
      ImGui::TextUnformatted(help.substr(start + 15, end - start - 15).c_str());
      start = end + 1;
    }
  }
  ImGui::End();
}

} // namespace cli
