// A dialog in the window that asks for a file or folder.
#pragma once

#include "host/dialogs.h"

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

class FileBrowser {
public:
  typedef host::Dialogs::FileQuestion Question;

  /** What the caller knows about the file. */
  struct Expected {
    std::vector<std::string> suffixes; ///< with their dots, lower case; none for any
    std::string name;                  ///< offered for a file that is to be saved
    bool many = false;                 ///< more than one file will do
  };

  /** Begins to ask; folder is where it starts. */
  void Open(const Question& question, const std::string& folder, const Expected& expected);
  bool IsOpen() const { return open_; }
  /** Draws the dialog, inside a frame. */
  void Show(float scale);
  /** The answer once it is closed; empty when it was cancelled. */
  const std::string& Path() const { return path_; }
  /** All that were chosen, if there may be more than one. */
  std::vector<std::string> Paths() const;
  const std::string& Folder() const { return folder_; }

private:
  struct Entry {
    std::string name;
    bool isFolder = false;
    long long bytes = 0;
  };

  void Read();
  void Enter(const std::string& folder);
  void ShowEntries(float height);
  /** True when it was chosen for good. */
  bool ShowEntry(const Entry& entry);
  bool IsExpected(const std::string& name) const;
  bool IsChosen(const std::string& name) const;
  void Take(const std::string& name, bool add);
  void Choose();
  /** Why the path cannot be the answer, empty when it can. */
  std::string Obstacle(const std::filesystem::path& path);
  void Close(const std::string& path);

  Question question_{FILESELECT_LOAD, "", ""};
  Expected expected_;
  std::string folder_, name_, path_, problem_;
  std::vector<std::string> others_; ///< names chosen before name_
  std::string sought_;              ///< what was typed: names without it are left out
  std::vector<Entry> entries_;
  bool open_ = false, typing_ = false, replaceAsked_ = false;
  bool goesOn_ = false; ///< the name is typed on where it ended
};

} // namespace cli
