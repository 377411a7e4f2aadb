#include "cli/view/file_browser.h"

#include "cli/text/format.h"
#include "cli/view/fitted_text.h"

#include <algorithm>
#include <filesystem>
#include <imgui.h>
#include <imgui_stdlib.h>
#include <utility>

namespace fs = std::filesystem;

namespace cli {

void FileBrowser::Open(const Question& question, const std::string& folder) {
  question_ = question;
  name_.clear();
  path_.clear();
  open_ = appearing_ = true;
  std::error_code failed;
  Enter(fs::is_directory(fs::u8path(folder), failed) ? folder : fs::current_path(failed).u8string());
}

void FileBrowser::Enter(const std::string& folder) {
  std::error_code failed;
  const fs::path absolute = fs::absolute(fs::u8path(folder), failed).lexically_normal();
  folder_ = absolute.u8string();
  if (folder_.size() > 1 && folder_.back() == '/') folder_.pop_back();
  Read();
}

void FileBrowser::Read() {
  entries_.clear();
  problem_.clear();
  replaceAsked_ = false;
  std::error_code failed;
  for (fs::directory_iterator i(fs::u8path(folder_), failed), end; !failed && i != end; i.increment(failed)) {
    std::error_code ignored;
    Entry entry;
    entry.name = i->path().filename().u8string();
    entry.isFolder = i->is_directory(ignored);
    if (entry.name.empty() || entry.name[0] == '.') continue;
    if (!entry.isFolder) entry.bytes = (long long)i->file_size(ignored);
    entries_.push_back(entry);
  }
  if (failed) problem_ = folder_ + ": " + failed.message();
  std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
    return a.isFolder != b.isFolder ? a.isFolder : a.name < b.name;
  });
}

void FileBrowser::Close(const std::string& path) {
  path_ = path;
  open_ = false;
  ImGui::CloseCurrentPopup();
}

/** Takes the name that was typed or chosen: a folder is entered, a file is the answer. */
void FileBrowser::Choose() {
  std::error_code ignored;
  if (question_.kind == FILESELECT_DIRECTORY && name_.empty()) return Close(folder_);
  if (name_.empty()) return;
  const fs::path named = fs::u8path(name_);
  const fs::path path = named.is_absolute() ? named : fs::u8path(folder_) / named;
  if (fs::is_directory(path, ignored)) {
    name_.clear();
    return Enter(path.u8string());
  }
  const bool exists = fs::exists(path, ignored);
  if (question_.kind == FILESELECT_SAVE && exists && !replaceAsked_) {
    replaceAsked_ = true;
    problem_ = path.filename().u8string() + " exists; press Save again to replace it";
    return;
  }
  if (question_.kind != FILESELECT_SAVE && !exists) {
    problem_ = path.u8string() + ": no such file or folder";
    return;
  }
  Close(path.u8string());
}

void FileBrowser::ShowEntries(float height) {
  ImGui::BeginChild("entries", ImVec2(0, height), true);
  std::string enter;
  if (ImGui::Selectable("..")) enter = folder_ + "/..";
  for (const Entry& entry : entries_) {
    if (question_.kind == FILESELECT_DIRECTORY && !entry.isFolder) continue;
    const std::string bytes = entry.isFolder ? std::string() : Bytes(entry.bytes);
    const float room = ImGui::GetContentRegionAvail().x - ImGui::CalcTextSize(bytes.c_str()).x;
    const std::string name = entry.isFolder ? entry.name + "/" : entry.name;
    const std::string shown = Shortened(name, room - ImGui::GetFontSize()) + "###" + entry.name;
    if (ImGui::Selectable(shown.c_str(), entry.name == name_, ImGuiSelectableFlags_AllowDoubleClick)) {
      replaceAsked_ = false;
      if (entry.isFolder)
        enter = folder_ + "/" + entry.name;
      else {
        name_ = entry.name;
        if (ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left)) Choose();
      }
    }
    ExplainShortened(name, room - ImGui::GetFontSize());
    if (entry.isFolder) continue;
    ImGui::SameLine(room);
    ImGui::TextDisabled("%s", bytes.c_str());
  }
  ImGui::EndChild();
  if (!enter.empty()) Enter(enter);
}

void FileBrowser::Show(float scale) {
  if (!open_) return;
  const std::string title =
      (question_.title.empty() ? std::string("Choose a file") : question_.title) + "###files";
  if (!ImGui::IsPopupOpen("###files")) ImGui::OpenPopup("###files");
  const ImVec2 middle = ImGui::GetMainViewport()->GetCenter();
  ImGui::SetNextWindowPos(middle, ImGuiCond_Appearing, ImVec2(0.5f, 0.5f));
  ImGui::SetNextWindowSize(ImVec2(620 * scale, 440 * scale), ImGuiCond_Appearing);
  if (!ImGui::BeginPopupModal(title.c_str(), nullptr, ImGuiWindowFlags_NoCollapse)) return;
  ImGui::TextUnformatted(folder_.c_str());
  ShowEntries(-3.4f * ImGui::GetFrameHeightWithSpacing());
  if (std::exchange(appearing_, false)) ImGui::SetKeyboardFocusHere();
  ImGui::SetNextItemWidth(-1);
  const char* hint = question_.kind == FILESELECT_DIRECTORY ? "this folder" : "name or path";
  const bool entered = ImGui::InputTextWithHint("##name", hint, &name_, ImGuiInputTextFlags_EnterReturnsTrue);
  ImGui::TextColored(ImVec4(1.0f, 0.7f, 0.4f, 1.0f), "%s", problem_.c_str());
  const char* verb = question_.kind == FILESELECT_SAVE        ? "Save"
                     : question_.kind == FILESELECT_DIRECTORY ? "Choose this folder"
                                                              : "Open";
  const bool chosen = ImGui::Button(verb) || entered;
  ImGui::SameLine();
  if (ImGui::Button("Cancel") || ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_Escape)))
    Close(std::string());
  else if (chosen)
    Choose();
  ImGui::EndPopup();
}

} // namespace cli
