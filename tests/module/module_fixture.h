// The module loaded from its file into a running application, one cloud object, and what that object saves.
#pragma once

#include "environment.h"
#include "host/application.h"
#include "host/scene/stream_visitor.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

constexpr LONG kCloud = 1037074, kRecorder = 1037073, kShader = 1037072, kVoxelPost = 1037077,
               kBuilder = 1037178, kHook = 1037078, kTimer = 1037771, kPrefs = 1037080;
constexpr LONG kLoadFolder = 1600, kLoadFile = 1602;
inline const std::string kModule = KELVRA_MODULE;

struct StoredBlock {
  LONG group = 0, count = 0;
  std::vector<SReal> positions; ///< x, height, y
  std::vector<SReal> colors;
  std::vector<UWORD> rgb, flags;
  std::vector<LVector> corners; ///< first two: the box
  std::vector<LReal> reals;     ///< four of the block, then slots 7 to 14
  LONG key = -1;

  std::array<double, 3> Point(std::size_t i) const { ///< in file axes
    return {positions[3 * i], positions[3 * i + 2], positions[3 * i + 1]};
  }
  std::array<int, 3> Rgb(std::size_t i) const { return {rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2]}; }
};

/** Reads what an object saves, value by value. */
class StoredCloud : public host::StreamVisitor {
public:
  std::vector<StoredBlock> blocks;

  long long Points() const {
    long long points = 0;
    for (const StoredBlock& block : blocks) points += block.count;
    return points;
  }

  void BeginNode(const std::string&, LONG, const std::string&, LONG) override {}
  void EndNode() override {}
  void Value(HYPERFILEVALUE type, const void* data) override {
    if (blocksLeft_ == 0 && type == HYPERFILEVALUE_LONG) {
      if (groups_++ >= 0) blocksLeft_ = *(const LONG*)data; // the first number counts the groups
      return;
    }
    if (arrays_ == 0 && type == HYPERFILEVALUE_LONG) {
      blocks.emplace_back();
      blocks.back().group = groups_ - 1;
      blocks.back().count = *(const LONG*)data;
      return;
    }
    StoredBlock& block = blocks.back();
    if (type == HYPERFILEVALUE_LVECTOR) block.corners.push_back(*(const LVector*)data);
    if (type == HYPERFILEVALUE_LREAL) block.reals.push_back(*(const LReal*)data);
    if (type == HYPERFILEVALUE_UWORD) block.key = *(const UWORD*)data;
    // The last four values count lines and points.
    if (type != HYPERFILEVALUE_LLONG || ++counts_ < 4) return;
    counts_ = arrays_ = 0;
    --blocksLeft_;
  }
  void Array(HYPERFILEARRAY type, const void* data, LONG, LONG count) override {
    StoredBlock& block = blocks.back();
    const int index = arrays_++;
    if (type == HYPERFILEARRAY_SREAL)
      (index == 0 ? block.positions : block.colors).assign((const SReal*)data, (const SReal*)data + count);
    else
      (index == 2 ? block.rgb : block.flags).assign((const UWORD*)data, (const UWORD*)data + count);
  }

private:
  LONG groups_ = -1, blocksLeft_ = 0;
  int arrays_ = 0, counts_ = 0;
};

class ModuleTest : public testing::Test {
protected:
  void SetUp() override {
    // Nothing is sent anywhere, whatever the user's environment says.
    for (const char* name : {"KELVRA_GEOMETRY_SERVICE", "KELVRA_UPDATE_SERVER"}) SetVariable(name, nullptr);
    folder_ = std::filesystem::temp_directory_path() / ("kelvra-module-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_);
    std::string error;
    ASSERT_TRUE(application_.LoadModule(kModule, &error)) << error;
    doc_ = application_.NewDocument();
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    ASSERT_NE(op_, nullptr);
  }
  /** Nothing may be left, whatever the test did. */
  void TearDown() override {
    std::vector<std::string> reports = application_.Misbehaviour();
    for (const std::string& line : application_.Close()) reports.push_back(line);
    EXPECT_EQ(reports, std::vector<std::string>());
    std::filesystem::remove_all(folder_);
  }

  std::string Path(const std::string& name) const {
    return (folder_ / std::filesystem::u8path(name)).make_preferred().u8string();
  }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }

  /** Presses a load button and answers its dialog; gives the lines printed meanwhile. */
  std::vector<std::string> Load(const std::string& path, LONG button = kLoadFile) {
    const std::size_t before = application_.GetConsole().Lines().size();
    application_.GetDialogs().AnswerFile(path);
    application_.PressButton(op_, button);
    const std::vector<std::string> lines = application_.GetConsole().Lines();
    return {lines.begin() + (std::ptrdiff_t)before, lines.end()};
  }

  static StoredCloud Stored(BaseList2D* op) {
    StoredCloud cloud;
    EXPECT_TRUE(host::VisitNode(op, cloud));
    return cloud;
  }
  StoredCloud Stored() const { return Stored(op_); }

  void Set(LONG id, const GeData& value) {
    EXPECT_TRUE(op_->SetParameter(DescID(id), value, DESCFLAGS_SET_0)) << id;
  }

  host::Application application_;
  BaseDocument* doc_ = NULL;
  BaseObject* op_ = NULL;
  std::filesystem::path folder_;
};
