// The module loaded from its file into a running application, one cloud object, and the points in it.
#pragma once

#include "object/rerenderobject.h"
#include "support/clean.h"
#include "support/environment.h"
#include "support/folder.h"

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

/** The points of an object, whose class the module and the tests are compiled from alike. */
struct StoredCloud {
  std::vector<StoredBlock> blocks;

  explicit StoredCloud(BaseList2D* op) {
    const kelvra::PointStore& store = static_cast<kelvra::KelvraObject*>(op->GetNodeData())->store;
    for (VLONG g = 0; g < store.groups.GetCount(); ++g)
      for (VLONG b = 0; b < store.groups[g].blocks.GetCount(); ++b) {
        const kelvra::PointBlock& from = store.groups[g].blocks[b];
        StoredBlock block;
        block.group = (LONG)g;
        block.count = from.count;
        block.key = from.header.key;
        block.positions.assign(from.positions, from.positions + 3 * from.count);
        block.colors.assign(from.colors, from.colors + 3 * from.count);
        block.rgb.assign(from.attrib3, from.attrib3 + 3 * from.count);
        block.flags.assign(from.attrib1, from.attrib1 + from.count);
        block.corners = {from.box.min, from.box.max};
        block.reals.assign(from.reals, from.reals + 4);
        for (LONG slot = 7; slot < 15; ++slot) block.reals.push_back(from.header.slots[slot]);
        blocks.push_back(block);
      }
  }
  long long Points() const {
    long long points = 0;
    for (const StoredBlock& block : blocks) points += block.count;
    return points;
  }
};

class ModuleTest : public Scratch {
protected:
  void SetUp() override {
    // Nothing is sent anywhere, whatever the user's environment says.
    for (const char* name : {"KELVRA_GEOMETRY_SERVICE", "KELVRA_UPDATE_SERVER"}) SetVariable(name, nullptr);
    std::string error;
    ASSERT_TRUE(application_.LoadModule(kModule, &error)) << error;
    doc_ = application_.NewDocument();
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    ASSERT_NE(op_, nullptr);
  }
  /** Nothing may be left, whatever the test did. */
  void TearDown() override { ExpectReports(application_); }

  std::vector<std::string> Load(const std::string& path, LONG button = kLoadFile) {
    return PressWithFile(application_, op_, button, path);
  }

  static StoredCloud Stored(BaseList2D* op) { return StoredCloud(op); }
  StoredCloud Stored() const { return Stored(op_); }

  void Set(LONG id, const GeData& value) {
    EXPECT_TRUE(op_->SetParameter(DescID(id), value, DESCFLAGS_SET_0)) << id;
  }

  host::Application application_;
  BaseDocument* doc_ = nullptr;
  BaseObject* op_ = nullptr;
};
