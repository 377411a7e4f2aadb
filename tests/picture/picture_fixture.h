// A folder of its own for each test, and a picture in which nothing looks right when it is wrong.
#pragma once

#include "host/picture/picture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>

class PictureFolder {
public:
  PictureFolder() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name =
        std::string(info->test_suite_name()) + "-" + info->name() + "-" + std::to_string(::getpid());
    std::replace(name.begin(), name.end(), '/', '_');
    folder_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(folder_);
  }
  ~PictureFolder() { std::filesystem::remove_all(folder_); }
  PictureFolder(const PictureFolder&) = delete;
  PictureFolder& operator=(const PictureFolder&) = delete;

  std::string Path(const std::string& name) const {
    return (folder_ / std::filesystem::u8path(name)).make_preferred().u8string();
  }
  std::size_t FileCount() const {
    return (std::size_t)std::distance(std::filesystem::directory_iterator(folder_), {});
  }
  static std::string Bytes(const std::string& path) {
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

private:
  std::filesystem::path folder_;
};

/** Noise in whole numbers of 65535ths, which does not pack; the corner on top to the left is pure red. */
inline host::Picture Marked(int width, int height, int channels) {
  host::Picture picture{width, height, channels, {}};
  unsigned state = 1;
  for (int i = 0; i < width * height * channels; ++i) {
    state = state * 1664525u + 1013904223u;
    picture.samples.push_back((float)(state >> 16) / 65535.0f);
  }
  const float red[] = {1.0f, 0.0f, 0.0f, 1.0f};
  std::copy(red, red + channels, picture.samples.begin());
  return picture;
}
