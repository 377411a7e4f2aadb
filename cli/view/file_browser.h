// A dialog in the window that asks for a file or folder.
#pragma once

#include "host/dialogs.h"

#include <string>
#include <vector>

namespace cli {

class FileBrowser {
public:
  typedef host::Dialogs::FileQuestion Question;

  /** Begins to ask; folder is where it starts. */
  void Open(const Question& question, const std::string& folder);
  bool IsOpen() const { return open_; }
  /** Draws the dialog, inside a frame. */
  void Show(float scale);
  /** The answer once it is closed; empty when it was cancelled. */
  const std::string& Path() const { return path_; }
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
  void Choose();
  void Close(const std::string& path);

  Question question_{FILESELECT_LOAD, "", ""};
  std::string folder_, name_, path_, problem_;
  std::vector<Entry> entries_;
  bool open_ = false, appearing_ = false, replaceAsked_ = false;
};

} // namespace cli
