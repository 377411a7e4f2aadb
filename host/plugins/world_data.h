// The user's preferences: one container per plug-in id.
#pragma once

#include "c4d.h"

#include <map>
#include <string>

namespace host {

class WorldData {
public:
  /**
   * Reads the file of that folder; one that cannot be read is reported in `error` and set aside under another
   * name, so that it is never overwritten. An empty folder keeps preferences in memory only.
   */
  void Open(const std::string& folder, std::string* error);
  /**
   * Writes the file by replacing it. True when there is nothing to write; what nobody changed since it was
   * read is not written, so that a long run does not undo what another one saved meanwhile.
   */
  bool Save(std::string* error);

  /** False where Open could neither read the file nor set it aside, and without a folder. */
  bool IsKept() const { return !path_.empty(); }

  /** Forgets everything; the file stays. */
  void Clear() { containers_.clear(); }

  /** NULL when there is none. */
  BaseContainer* Get(LONG id);
  void Set(LONG id, const BaseContainer& bc, bool add);
  /** The application's own settings, made when there are none. */
  BaseContainer* World() { return &containers_[0]; }

private:
  std::string Text() const;

  std::string path_;
  std::string saved_; ///< content of the file as far as this run knows
  std::map<LONG, BaseContainer> containers_;
};

} // namespace host
