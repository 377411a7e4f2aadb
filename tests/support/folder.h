// A folder of its own for each test, gone afterwards, and whole files as bytes.
#pragma once

#include "support/common.h"

#include <random>

class TempFolder {
public:
  TempFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("kelvra-" + std::to_string(std::random_device{}()) + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string operator/(const std::string& name) const {
    return (path_ / std::filesystem::u8path(name)).make_preferred().u8string();
  }
  std::string Name() const { return path_.u8string(); }
  /** Writes a file, in a folder that is made if need be, and returns its path. */
  std::string Write(const std::string& name, const std::string& bytes) const {
    const std::filesystem::path path = std::filesystem::u8path(*this / name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return *this / name;
  }
  static std::string Read(const std::string& path) {
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  /** Files and folders directly in it. */
  std::size_t Entries() const {
    return (std::size_t)std::distance(std::filesystem::directory_iterator(path_), {});
  }

private:
  std::filesystem::path path_;
};

class Scratch : public ::testing::Test {
protected:
  std::string Path(const std::string& name) const { return folder_ / name; }
  std::string Write(const std::string& name, const std::string& bytes) const {
    return folder_.Write(name, bytes);
  }
  static std::string Read(const std::string& path) { return TempFolder::Read(path); }

  const TempFolder folder_;
};
