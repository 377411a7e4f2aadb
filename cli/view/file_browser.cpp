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

namespace {

std::string Lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = (char)(c - 'A' + 'a');
  return text;
}

/** ".png, .tif or .exr" */
std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (std::size_t i = 0; i < names.size(); ++i)
    list += (i == 0 ? "" : i + 1 < names.size() ? ", " : " or ") + names[i];
  return list;
}

/** Puts the cursor behind a name that was entered before: selected, it would be gone with the next key. */
int GoOn(ImGuiInputTextCallbackData* data) {
  data->ClearSelection();
  data->CursorPos = data->BufTextLen;
  *static_cast<bool*>(data->UserData) = false;
  return 0;
}

} // namespace

void FileBrowser::Open(const Question& question, const std::string& folder, const Expected& expected) {
  question_ = question;
  expected_ = expected;
  name_ = expected.name;
  path_.clear();
  open_ = typing_ = true;
  goesOn_ = false;
  std::error_code failed;
  Enter(fs::is_directory(fs::u8path(folder), failed) ? folder : fs::current_path(failed).u8string());
}

std::vector<std::string> FileBrowser::Paths() const {
  std::vector<std::string> paths;
  for (const std::string& name : others_)
    paths.push_back((fs::u8path(folder_) / fs::u8path(name)).u8string());
  paths.push_back(path_);
  return paths;
}

bool FileBrowser::IsChosen(const std::string& name) const {
  return name == name_ || std::find(others_.begin(), others_.end(), name) != others_.end();
}

/** Chooses a name, beside those that are chosen already or instead of them. */
void FileBrowser::Take(const std::string& name, bool add) {
  // A name may also be a few letters that were typed to find others.
  const bool isFile = std::any_of(entries_.begin(), entries_.end(),
                                  [this](const Entry& entry) { return entry.name == name_; });
  if (!add) others_.clear();
  if (add && isFile && !IsChosen(name)) others_.push_back(name_);
  others_.erase(std::remove(others_.begin(), others_.end(), name), others_.end());
  name_ = name;
  replaceAsked_ = false;
}

bool FileBrowser::IsExpected(const std::string& name) const {
  const std::string suffix = Lower(fs::u8path(name).extension().u8string());
  return expected_.suffixes.empty() ||
         std::find(expected_.suffixes.begin(), expected_.suffixes.end(), suffix) != expected_.suffixes.end();
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
  sought_.clear();
  others_.clear();
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
    typing_ = true; // for the next part of the path
    return Enter(path.u8string());
  }
  problem_ = Obstacle(path);
  if (problem_.empty()) return Close(path.u8string());
  typing_ = goesOn_ = true; // the name wants another try
}

std::string FileBrowser::Obstacle(const fs::path& path) {
  std::error_code ignored;
  const bool exists = fs::exists(path, ignored);
  const std::string name = path.filename().u8string();
  if (question_.kind != FILESELECT_SAVE)
    return exists ? std::string() : path.u8string() + ": no such file or folder";
  const std::string folder = path.parent_path().u8string();
  if (!fs::is_directory(path.parent_path(), ignored)) return folder + ": no such folder";
  if (path.has_extension() && !IsExpected(name))
    return name + ": " + path.extension().u8string() + " is not written here; end the name with " +
           Listed(expected_.suffixes);
  const std::string suffix = Lower(path.extension().u8string());
  if (exists && (suffix == ".las" || suffix == ".laz"))
    return name + " is a scan, which would be lost; choose another name";
  if (!exists || std::exchange(replaceAsked_, true)) return std::string();
  return name + " exists; press Save again to replace it";
}

bool FileBrowser::ShowEntry(const Entry& entry) {
  const std::string bytes = entry.isFolder ? std::string() : Bytes(entry.bytes);
  const float room = ImGui::GetContentRegionAvail().x - ImGui::CalcTextSize(bytes.c_str()).x;
  const std::string name = entry.isFolder ? entry.name + "/" : entry.name;
  const std::string shown = Shortened(name, room - ImGui::GetFontSize()) + "###" + entry.name;
  bool chosen = false;
  const bool bright = entry.isFolder || IsExpected(entry.name);
  ImGui::PushStyleColor(ImGuiCol_Text,
                        ImGui::GetStyleColorVec4(bright ? ImGuiCol_Text : ImGuiCol_TextDisabled));
  if (ImGui::Selectable(shown.c_str(), IsChosen(entry.name), ImGuiSelectableFlags_AllowDoubleClick)) {
    Take(entry.name, expected_.many && !entry.isFolder && ImGui::GetIO().KeyCtrl);
    const bool byKey =
        !ImGui::IsMouseClicked(ImGuiMouseButton_Left) && !ImGui::IsMouseReleased(ImGuiMouseButton_Left);
    chosen = entry.isFolder || byKey || ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left);
    typing_ = typing_ || !chosen; // Enter opens what was clicked
  }
  ImGui::PopStyleColor();
  ExplainShortened(name, room - ImGui::GetFontSize());
  if (entry.isFolder) return chosen;
  ImGui::SameLine(room);
  ImGui::TextDisabled("%s", bytes.c_str());
  return chosen;
}

void FileBrowser::ShowEntries(float height) {
  ImGui::BeginChild("entries", ImVec2(0, height), true);
  if (ImGui::Selectable("..")) Enter(folder_ + "/..");
  bool chosen = false;
  for (const Entry& entry : entries_) {
    if (question_.kind == FILESELECT_DIRECTORY && !entry.isFolder) {
      ImGui::TextDisabled("%s", entry.name.c_str()); // so that people recognise the folder
      continue;
    }
    if (Lower(entry.name).find(sought_) != std::string::npos) chosen = ShowEntry(entry) || chosen;
  }
  ImGui::EndChild();
  if (chosen) Choose();
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
  if (std::exchange(typing_, false)) ImGui::SetKeyboardFocusHere();
  ImGui::SetNextItemWidth(-1);
  const char* hint = question_.kind == FILESELECT_DIRECTORY ? "this folder"
                     : expected_.many                       ? "name or path; Ctrl+click chooses several files"
                                                            : "name or path";
  const int flags = ImGuiInputTextFlags_EnterReturnsTrue |
                    (goesOn_ ? ImGuiInputTextFlags_CallbackAlways : ImGuiInputTextFlags_AutoSelectAll);
  const bool entered = ImGui::InputTextWithHint("##name", hint, &name_, flags, GoOn, &goesOn_);
  if (ImGui::IsItemEdited()) {
    sought_ = name_.find('/') == std::string::npos ? Lower(name_) : std::string();
    replaceAsked_ = false;
    others_.clear();
  }
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
