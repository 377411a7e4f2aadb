// The files that a command reads, so that none of its outputs takes the place of one.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/** Files and folders as a command line names them; they are looked at when the first output exists. */
class FilesToRead {
public:
  FilesToRead() = default;
  FilesToRead(const std::vector<std::string>& named) : named_(named) {}

  /** Is the file, under this or another name, one of those, or one that is read with its folder? */
  bool Holds(const std::string& path) const;

private:
  void List() const;
  void Add(const std::string& path, bool ofFolder) const;

  struct File {
    std::string path;
    bool ofFolder; ///< which may hold files that are left out
  };

  std::vector<std::string> named_;
  mutable bool listed_ = false;
  /** By time and size, which names of one file have in common: few are left to compare. */
  mutable std::multimap<std::pair<long long, std::uintmax_t>, File> files_;
};

} // namespace cli
