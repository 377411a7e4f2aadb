// The module's recorder, which --record switches on.
#pragma once

#include "c4d.h"

#include <filesystem>
#include <string>

namespace cli {

/** File name of a recorded frame, without its folder. */
std::string RecordName(int frame);

/** Has the module's recorder store each finished frame in that folder, under names of our own. */
void EnableRecorder(BaseDocument* doc, const std::string& folder);

/**
 * Looks for one frame's file. A recorder never stops a render, and out of memory it does not even print a
 * line, so only the disk shows whether the frame was stored.
 */
class RecordWatch {
public:
  /** Before the frame is rendered. An empty folder: nothing is recorded. */
  RecordWatch(const std::string& folder, int frame);
  /** After it: false when the file is missing or still the older one of that name. */
  bool Stored() const;
  const std::string& Path() const { return path_; }

private:
  std::string path_;
  bool existed_ = false;
  std::filesystem::file_time_type written_;
};

} // namespace cli
