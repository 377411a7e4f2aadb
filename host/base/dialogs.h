// Dialogs without windows of their own: a driver queues answers or shows the questions itself.
#pragma once

#include "c4d_enums.h"
#include "ge_filename.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace host {

/** What a module asked and the answer that it got. */
struct DialogRecord {
  bool file = false; ///< file dialog, else a message
  int kind = 0;      ///< FILESELECT or GEMB value
  std::string text;  ///< title or message
  std::string answer;
};

class Dialogs {
public:
  /** Queues the path for the next file dialog; an empty path cancels it. */
  void AnswerFile(const std::string& path) { files_.push_back(path); }
  /** Queues the answer to the next question. */
  void AnswerQuestion(GEMB_R answer) { answers_.push_back(answer); }
  /** Asked when no answer is queued; without it a message is confirmed. */
  void SetInteractive(std::function<GEMB_R(const std::string& text, GEMB flags)> ask) {
    ask_ = std::move(ask);
  }
  /** What a file dialog asks for. */
  struct FileQuestion {
    FILESELECT kind;
    std::string title, suffix; ///< the suffix that a saved file gets, or empty
  };
  /** Asked when no path is queued; returns an empty one to cancel. */
  void SetFileChooser(std::function<std::string(const FileQuestion&)> choose) { choose_ = std::move(choose); }
  const std::vector<DialogRecord>& Shown() const { return shown_; }
  void Clear();

  bool SelectFile(FILESELECT kind, const std::string& title, const std::string& forceSuffix,
                  std::string* path);
  GEMB_R Show(const std::string& text, GEMB flags);

private:
  std::deque<std::string> files_;
  std::deque<GEMB_R> answers_;
  std::function<GEMB_R(const std::string&, GEMB)> ask_;
  std::function<std::string(const FileQuestion&)> choose_;
  std::vector<DialogRecord> shown_;
};

} // namespace host
