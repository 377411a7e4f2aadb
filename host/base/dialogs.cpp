#include "host/base/dialogs.h"

namespace host {

namespace {

/** The button of a user who only wants to go on. */
GEMB_R Confirmation(GEMB flags) {
  return (flags & 0xf) == GEMB_YESNO ? GEMB_R_YES : GEMB_R_OK;
}

std::string Name(GEMB_R answer) {
  switch (answer) {
  case GEMB_R_OK:
    return "ok";
  case GEMB_R_CANCEL:
    return "cancel";
  case GEMB_R_YES:
    return "yes";
  case GEMB_R_NO:
    return "no";
  default:
    return "";
  }
}

/** Saving under a forced suffix: another one is replaced, as in the application's own dialog. */
std::string WithSuffix(const std::string& path, const std::string& suffix) {
  const std::size_t start = path.find_last_of("/\\") + 1; // 0 without a folder
  const std::size_t dot = path.rfind('.');
  const bool hasSuffix = dot != std::string::npos && dot > start;
  return (hasSuffix ? path.substr(0, dot) : path) + "." + suffix;
}

} // namespace

void Dialogs::Clear() {
  files_.clear();
  answers_.clear();
  shown_.clear();
}

bool Dialogs::SelectFile(FILESELECT kind, const std::string& title, const std::string& forceSuffix,
                         std::string* path) {
  DialogRecord record;
  record.file = true;
  record.kind = kind;
  record.text = title;
  if (!files_.empty()) {
    record.answer = files_.front();
    files_.pop_front();
  } else if (choose_) {
    record.answer = choose_({kind, title, forceSuffix});
  }
  if (!record.answer.empty() && kind == FILESELECT_SAVE && !forceSuffix.empty())
    record.answer = WithSuffix(record.answer, forceSuffix);
  shown_.push_back(record);
  if (record.answer.empty()) return false;
  *path = record.answer;
  return true;
}

GEMB_R Dialogs::Show(const std::string& text, GEMB flags) {
  // A message that asks nothing leaves the queued answers to the questions.
  const bool question = (flags & 0xf) != GEMB_OK;
  GEMB_R answer = Confirmation(flags);
  if (question && !answers_.empty()) {
    answer = answers_.front();
    answers_.pop_front();
  } else if (ask_) {
    answer = ask_(text, flags);
  }
  DialogRecord record;
  record.kind = flags;
  record.text = text;
  record.answer = Name(answer);
  shown_.push_back(record);
  return answer;
}

} // namespace host
