// The preferences file: what is damaged is set aside and reported, what cannot be read is left alone.
#include "host/plugins/world_data.h"
#include "support/folder.h"

namespace {

namespace fs = std::filesystem;

class PreferencesFile : public Scratch {
protected:
  std::string File() const { return Path("preferences.json"); }
  /** The line that opening gives; saves one value afterwards. */
  std::string Open() {
    host::WorldData data;
    std::string error, unsaved;
    data.Open(folder_.Name(), &error);
    BaseContainer bc;
    bc.SetLong(1, 7);
    data.Set(5, bc, true);
    saved_ = data.Save(&unsaved);
    return error;
  }
  bool saved_ = false;
};

TEST_F(PreferencesFile, DamagedOnesAreSetAsideAndReported) {
  const std::string deep = std::string(200000, '[') + std::string(200000, ']');
  const std::pair<std::string, std::string> cases[] = {
      {"{\"5\":{\"1\":{\"long\":99999999999}}}", "99999999999"},
      {"{\"5\":{\"1\":{\"long\":1e300}}}", "expected an integer"},
      {"{\"5x\":{}}", "\"5x\""},
      {"{\"99999999999999999999\":{}}", "32-bit"},
      {"[]", "found array"},
      {"{\"5\":{\"1\":" + deep + "}}", "found array"},
      {"{\"5\":", "unexpected end"}};
  int aside = 0;
  for (const auto& [text, part] : cases) {
    SCOPED_TRACE(part);
    folder_.Write("preferences.json", text);
    const std::string error = Open();
    EXPECT_NE(error.find(part), std::string::npos) << error.substr(0, 300);
    EXPECT_LT(error.size(), 600u);
    EXPECT_TRUE(saved_);
    const std::string name = "preferences.json.damaged" + (++aside == 1 ? "" : std::to_string(aside));
    EXPECT_EQ(Read(folder_ / name), text) << "none takes the place of an earlier one";
    EXPECT_EQ(Open(), "") << "the new file is whole";
  }
}

TEST_F(PreferencesFile, NobodyElseMayReadThem) {
#ifdef _WIN32
  GTEST_SKIP() << "the folder's access list protects them there";
#endif
  for (const bool earlier : {false, true}) {
    fs::remove(File());
    if (earlier) Write("preferences.json", "{}");
    Open();
    ASSERT_TRUE(saved_);
    EXPECT_EQ(fs::status(File()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  }
}

TEST_F(PreferencesFile, WhatIsNoRegularFileStays) {
  fs::create_directory(File());
  EXPECT_NE(Open().find("not a regular file"), std::string::npos);
  EXPECT_TRUE(fs::is_directory(File()));
  fs::remove(File());
  Write("preferences.json", "{}");
  fs::resize_file(File(), 17 << 20);
  EXPECT_NE(Open().find("expected at most"), std::string::npos);
  EXPECT_EQ(fs::file_size(File()), (std::uintmax_t)(17 << 20));
}

} // namespace
