// A folder of its own for each test, gone afterwards, and whole files as bytes.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>

class Scratch : public ::testing::Test {
protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name =
        std::string(info->test_suite_name()) + "-" + info->name() + "-" + std::to_string(::getpid());
    for (char& c : name)
      if (c == '/') c = '_';
    folder_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const {
    return (folder_ / std::filesystem::u8path(name)).make_preferred().u8string();
  }
  std::size_t FilesInFolder() const {
    return (std::size_t)std::distance(std::filesystem::directory_iterator(folder_), {});
  }

  static std::string Bytes(const std::string& path) {
    std::ifstream in(std::filesystem::u8path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  static void PutBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(std::filesystem::u8path(path), std::ios::binary) << bytes;
  }

  std::filesystem::path folder_;
};
