// One command for each cloud of a folder as a sequence. What the commands print is put together as JSON.
#pragma once

#include "cli/commands/sequence/sequence_work.h"
#include "cli/commands/sequence/work_folder.h"

#include <nlohmann/json.hpp>
#include <vector>

namespace cli {

class FileWork : public SequenceWork {
public:
  /**
   * `command` is one of this program with its options, as a shell would take it apart. In each word "{}"
   * stands for the file and "{name}" for its name without folder and suffix; without "{}" the file comes
   * last. Throws UsageError.
   */
  FileWork(const std::string& folder, const std::string& command, const std::string& output);

  /** Files of the folder that the command is not run on. */
  const std::vector<std::string>& Others() const { return others_; }

  int Count() const override { return (int)files_.size(); }
  const char* Unit() const override { return "file"; }
  std::string Names(const std::vector<int>& items) const override;
  std::string Flaw() const override { return "the command reported a failure"; }
  std::string Identity() const override { return command_ + " " + output_; }
  ItemState Look(int item) override;
  int Make(int first, int last) override;
  /** Writes the output: {"command", "files": [{"file", "status", "output"}]}. */
  void Finish() override;

private:
  const std::string& File(int item) const { return files_[(std::size_t)item]; }
  std::string Name(int item) const;
  std::string ResultPath(int item) const { return folder_.Path(Name(item) + ".json"); }
  std::string FingerprintOf(int item) const;
  std::vector<std::string> WordsFor(int item) const;
  /** Null without one that was made from the file as it is now. */
  nlohmann::json Result(int item) const;
  void MakeOne(int item) const;
  void LeaveOutResults();

  std::vector<std::string> files_, others_;
  std::string command_, output_;
  std::vector<std::string> words_;
  WorkFolder folder_;
};

} // namespace cli
