// A resource folder that a test writes and that goes away with it.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

class TemporaryFolder {
public:
  TemporaryFolder() {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("kelvra_") + info->name() + "_" + std::to_string(getpid());
    for (char& c : name) c = c == '/' ? '_' : c;
    path_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::remove_all(path_);
    Write("c4d_symbols.h", "enum { IDS_A = 10000 };");
    Write("strings_us/c4d_strings.str", "STRINGTABLE { IDS_A \"first\"; }");
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  void Write(const std::string& relative, const std::string& text) const {
    std::filesystem::create_directories((path_ / relative).parent_path());
    std::ofstream(path_ / relative, std::ios::binary) << text;
  }

  /** The three files of one description; `stem` in lower case. */
  void WriteDescription(const std::string& stem, const std::string& header, const std::string& container,
                        const std::string& strings) const {
    Write("description/" + stem + ".h", header);
    Write("description/" + stem + ".res", container);
    Write("strings_us/description/" + stem + ".str", strings);
  }

  const std::filesystem::path& Path() const { return path_; }

private:
  std::filesystem::path path_;
};
