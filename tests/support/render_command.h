// A cloud of two colours, and the render command to run on it.
#pragma once

#include "host/picture/picture.h"
#include "support/program_run.h"

namespace cli_test {

class RenderCommand : public testing::Test {
protected:
  /** A red patch with a green one to its east, file axes. */
  std::string Cloud() {
    std::string text;
    for (int i = 0; i < 20; ++i)
      for (int j = 0; j < 20; ++j)
        text += std::to_string(i) + " " + std::to_string(j) + " 0 " + (i < 10 ? "255 0 0\n" : "0 255 0\n");
    return folder_.Write("cloud.xyz", text);
  }
  Result Render(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"render", Cloud()});
    return Kelvra(arguments);
  }
  static host::Picture Read(const std::string& path) {
    host::Picture picture;
    std::string error;
    EXPECT_TRUE(host::LoadPicture(path, &picture, &error)) << error;
    return picture;
  }
  std::vector<std::string> Files(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  std::string Sub(const std::string& name) {
    std::filesystem::create_directories(folder_ / name);
    return folder_ / name;
  }
  static long LinesOf(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

  TempFolder folder_;
};

} // namespace cli_test
