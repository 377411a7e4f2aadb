// What a sequence is made of: items that can be made apart from each other, each with a result on the disk.
#pragma once

#include <string>
#include <vector>

namespace cli {

enum class ItemState {
  Missing, ///< no result, or one that is damaged or was made from something else
  Flawed,  ///< made, but from clouds that were loaded in part, or by a command that reported a failure
  Whole
};

/** All paths are UTF-8. Functions throw std::runtime_error. */
class SequenceWork {
public:
  virtual ~SequenceWork() {}

  virtual int Count() const = 0;
  /** "frame" or "file" */
  virtual const char* Unit() const = 0;
  /** Some of the items for a message: "frames 0-4,7" or "files a.laz, b.laz" */
  virtual std::string Names(const std::vector<int>& items) const = 0;
  /** What ItemState::Flawed means for these items. */
  virtual std::string Flaw() const = 0;
  /** Stands for everything that the results depend on, apart from what Look compares itself. */
  virtual std::string Identity() const = 0;
  /** Looks at the result on the disk, which any process of any computer may have written. */
  virtual ItemState Look(int item) = 0;
  /** Makes the items from `first` to `last` that are missing, in this process. Returns the exit status. */
  virtual int Make(int first, int last) = 0;
  /** Once every result is there: what becomes of them together. */
  virtual void Finish() {}
};

} // namespace cli
