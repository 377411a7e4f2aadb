// The user's preferences: one container per plug-in id.
#pragma once

#include "c4d.h"

#include <map>
#include <string>

namespace host {

class WorldData {
public:
  /**
   * Reads the file of that folder; one that cannot be read is told in `error` and set aside under another
   * name, so that it is never overwritten. An empty folder keeps preferences in memory only.
   */
  void Open(const std::string& folder, std::string* error);
  /** Writes the file by replacing it. True when there is nothing to write. */
  bool Save(std::string* error);

  /** NULL when there is none. */
  BaseContainer* Get(LONG id);
  void Set(LONG id, const BaseContainer& bc, bool add);

private:
  std::string path_;
  std::map<LONG, BaseContainer> containers_;
};

} // namespace host
