#include "cli/commands/sequence/file_work.h"

#include "cli/commands/commands.h"
#include "cli/commands/output/json_text.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/sequence/fingerprint.h"
#include "cli/session/file_kinds.h"
#include "cli/system/child_process.h"
#include "cli/system/exit_status.h"
#include "cli/system/program_path.h"
#include "cli/text/line.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

/** Exit statuses from here on are those of a child that a signal ended. */
constexpr int kSignalled = 128;

void Replace(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

std::string ReadText(const std::string& path) {
  std::error_code ignored;
  // Opening a pipe would wait for its writer.
  if (!fs::is_regular_file(fs::u8path(path), ignored)) return std::string();
  std::ifstream file(fs::u8path(path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/** A line of words with blanks between them; quotes of either kind hold words together. Throws UsageError. */
std::vector<std::string> WordsOf(const std::string& line) {
  std::vector<std::string> words;
  std::string word;
  bool inWord = false;
  char quote = 0;
  for (const char c : line) {
    if (quote ? c == quote : c == '"' || c == '\'') {
      quote = quote ? 0 : c;
      inWord = true;
    } else if (!quote && c == ' ') {
      if (inWord) words.push_back(word);
      word.clear();
      inWord = false;
    } else {
      word += c;
      inWord = true;
    }
  }
  if (quote) throw UsageError{"--do " + line + ": a quote is not closed"};
  if (inWord) words.push_back(word);
  return words;
}

} // namespace

FileWork::FileWork(const std::string& folder, const std::string& command, const std::string& output)
    : command_(command), output_(output), words_(WordsOf(command)), folder_(output) {
  const std::vector<Command>& commands = Commands();
  const std::string name = words_.empty() ? "" : words_[0];
  if (name == "sequence" ||
      std::none_of(commands.begin(), commands.end(), [&](const Command& c) { return c.name == name; }))
    throw UsageError{"--do " + command +
                     ": expected a command of kelvra other than sequence, as in \"info --json\""};
  std::error_code failed;
  if (!fs::is_directory(fs::u8path(folder), failed) && failed != std::errc::permission_denied)
    throw UsageError{"--each " + folder + ": no such folder"};
  const std::string obstacle = ReadObstacle(folder);
  if (!obstacle.empty()) throw std::runtime_error(folder + ": " + obstacle);
  files_ = CloudFiles(folder, &others_);
  LeaveOutResults();
  if (files_.empty())
    throw std::runtime_error(
        folder + ": the folder holds no point clouds; expected LAS, LAZ, CSV or text with points");
  if (std::none_of(words_.begin(), words_.end(),
                   [](const std::string& word) { return word.find("{}") != std::string::npos; }))
    words_.push_back("{}");
}

void FileWork::LeaveOutResults() {
  // What the command writes into the folder must not become work, nor change the numbers of the other files.
  std::set<fs::path> results = {fs::u8path(output_).lexically_normal()};
  for (const std::string& file : files_)
    for (std::string word : words_) {
      if (word.find("{}") != std::string::npos) continue;
      Replace(word, "{name}", fs::u8path(file).stem().u8string());
      results.insert(fs::u8path(word).lexically_normal());
    }
  const auto isResult = [&](const std::string& file) {
    return results.count(fs::u8path(file).lexically_normal()) > 0;
  };
  for (std::vector<std::string>* files : {&files_, &others_})
    files->erase(std::remove_if(files->begin(), files->end(), isResult), files->end());
}

std::string FileWork::Name(int item) const {
  return fs::u8path(File(item)).filename().u8string();
}

std::string FileWork::Names(const std::vector<int>& items) const {
  std::string names = items.size() == 1 ? "file " : "files ";
  for (const int item : items) names += (item == items[0] ? "" : ", ") + Name(item);
  return names;
}

std::string FileWork::FingerprintOf(int item) const {
  // Folders of clouds are large: size and time tell whether a file is still the same, without reading it.
  const fs::path file = fs::u8path(File(item));
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(file, failed);
  const auto written = fs::last_write_time(file, failed).time_since_epoch().count();
  return cli::FingerprintOf(FingerprintOfProgram() + command_ + "\n" + File(item) + "\n" +
                            std::to_string(size) + " " + std::to_string(written));
}

std::vector<std::string> FileWork::WordsFor(int item) const {
  std::vector<std::string> words = words_;
  const std::string name = fs::u8path(File(item)).stem().u8string();
  for (std::string& word : words) {
    Replace(word, "{name}", name);
    Replace(word, "{}", File(item));
  }
  words.insert(words.begin(), ProgramPath());
  return words;
}

nlohmann::json FileWork::Result(int item) const {
  const nlohmann::json result = nlohmann::json::parse(ReadText(ResultPath(item)), nullptr, false);
  const bool ours = result.is_object() && result.value("fingerprint", "") == FingerprintOf(item);
  return ours ? result : nlohmann::json();
}

ItemState FileWork::Look(int item) {
  const nlohmann::json result = Result(item);
  if (result.is_null()) return ItemState::Missing;
  return result["status"] == (int)kExitWhole ? ItemState::Whole : ItemState::Flawed;
}

int FileWork::Make(int first, int last) {
  for (int item = first; item <= last; ++item)
    if (Look(item) == ItemState::Missing) MakeOne(item);
  return kExitWhole;
}

void FileWork::MakeOne(int item) const {
  const std::string printed = ResultPath(item) + ".out";
  std::error_code ignored;
  fs::remove(fs::u8path(printed), ignored);
  const std::string fingerprint = FingerprintOf(item);
  const int status = ChildProcess(WordsFor(item), printed, "", ChildProcess::Group::Shared).Status();
  if (status >= kSignalled)
    throw std::runtime_error(File(item) + ": the command was ended by signal " +
                             std::to_string(status - kSignalled));
  const std::string text = ReadText(printed);
  nlohmann::json output = nlohmann::json::parse(text, nullptr, false);
  if (output.is_discarded()) output = text;
  WriteText(
      ResultPath(item),
      JsonText({{"fingerprint", fingerprint}, {"file", File(item)}, {"status", status}, {"output", output}}));
  fs::remove(fs::u8path(printed), ignored);
  Line(std::cout) << File(item) << ": status " << status;
  std::cout.flush(); // the log of a job is read while it runs
}

void FileWork::Finish() {
  nlohmann::json files = nlohmann::json::array();
  for (int item = 0; item < Count(); ++item) {
    nlohmann::json result = Result(item);
    result.erase("fingerprint");
    files.push_back(result);
  }
  WriteText(output_, JsonText({{"command", command_}, {"files", files}}, 2) + "\n");
}

} // namespace cli
