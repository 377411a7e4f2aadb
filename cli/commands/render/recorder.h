// The module's recorder, driven by --record, and whether it did what it was asked to do.
#pragma once

#include "c4d.h"

#include <filesystem>
#include <string>

namespace cli {

/** File name of a recorded frame, without its folder. */
std::string RecordName(int frame);

/** Has the module's recorder store each finished frame in that folder, whatever a scene says of its names. */
void EnableRecorder(BaseDocument* doc, const std::string& folder);

/**
 * Looks for one frame's file. A recorder never stops a render, and without memory it has no message either,
 * so that only the disk tells whether the frame is there.
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
