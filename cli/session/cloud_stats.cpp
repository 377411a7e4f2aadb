#include "cli/session/cloud_stats.h"

#include <algorithm>

namespace cli {

void Box::Add(const Box& other) {
  if (!other.valid) return;
  for (int axis = 0; axis < 3; ++axis) {
    min[axis] = valid ? std::min(min[axis], other.min[axis]) : other.min[axis];
    max[axis] = valid ? std::max(max[axis], other.max[axis]) : other.max[axis];
  }
  valid = true;
}

long long CloudStats::Points() const {
  long long total = 0;
  for (const BlockStats& block : blocks) total += block.points;
  return total;
}

Box CloudStats::Bounds() const {
  Box bounds;
  for (const BlockStats& block : blocks) bounds.Add(block.box);
  return bounds;
}

bool CloudStats::HasColor() const {
  return std::any_of(blocks.begin(), blocks.end(), [](const BlockStats& block) { return block.hasColor; });
}

bool CloudStats::IsBlack() const {
  return std::all_of(blocks.begin(), blocks.end(), [](const BlockStats& block) { return block.black; });
}

namespace {

/** Reader kinds that the loader-settings record names: colours that the module made up from classes. */
const LONG kReaderLasByClass = 2;
/** Channel of points to which the text reader gave no colour: 1 of 255, stored with 16 bits. */
const UWORD kDarkest = 257;
/** Values of a loader-settings record after its name: two corners, four of the reader, four counts. */
const int kSettingsValues = 10;

bool AllEqual(const UWORD* rgb, LONG count) {
  for (LONG i = 3; i < count; ++i)
    if (rgb[i] != rgb[i - 3]) return false;
  return true;
}

/**
 * Walks the stream's fixed order: groups; per group its blocks; per block count, four arrays, two box
 * corners, four reals, eight header slots, key, loader settings (whose name is the source path).
 */
class StoreDecoder : public host::StreamVisitor {
public:
  explicit StoreDecoder(CloudStats* stats) : stats_(stats) {}
  bool Complete() const { return state_ == State::Done && !broken_; }

  void BeginNode(const std::string&, LONG, const std::string&, LONG) override {}
  void EndNode() override {}

  void Value(HYPERFILEVALUE type, const void* data) override {
    if (broken_ || state_ == State::Done) return;
    switch (state_) {
    case State::Groups:
      ReadGroups(type, data);
      break;
    case State::Blocks:
      ReadBlocks(type, data);
      break;
    case State::Count:
      ReadCount(type, data);
      break;
    case State::Fields:
      ReadField(type, data);
      break;
    default:
      broken_ = true;
    }
  }

  void Array(HYPERFILEARRAY type, const void* data, LONG, LONG count) override {
    if (broken_) return;
    if (state_ != State::Arrays) {
      broken_ = true;
      return;
    }
    // Third array: the points' 16-bit colours.
    if (arrays_ == 2 && type == HYPERFILEARRAY_WORD) {
      const UWORD* rgb = (const UWORD*)data;
      Block().hasColor = !AllEqual(rgb, count);
      Block().black = !Block().hasColor && count >= 3 && *std::max_element(rgb, rgb + 3) <= kDarkest;
    }
    if (++arrays_ == 4) {
      state_ = State::Fields;
      vectors_ = 0;
      settingsValues_ = -1;
    }
  }

private:
  enum class State { Groups, Blocks, Count, Arrays, Fields, Done };

  BlockStats& Block() { return stats_->blocks.back(); }

  bool Is(HYPERFILEVALUE type, HYPERFILEVALUE wanted) {
    if (type != wanted) broken_ = true;
    return type == wanted;
  }

  void ReadGroups(HYPERFILEVALUE type, const void* data) {
    if (!Is(type, HYPERFILEVALUE_LONG)) return;
    stats_->groups = groupsLeft_ = *(const LONG*)data;
    state_ = groupsLeft_ > 0 ? State::Blocks : State::Done;
  }

  void ReadBlocks(HYPERFILEVALUE type, const void* data) {
    if (!Is(type, HYPERFILEVALUE_LONG)) return;
    blocksLeft_ = *(const LONG*)data;
    --groupsLeft_;
    NextBlock();
  }

  void NextBlock() {
    if (blocksLeft_ > 0) {
      --blocksLeft_;
      state_ = State::Count;
    } else {
      state_ = groupsLeft_ > 0 ? State::Blocks : State::Done;
    }
  }

  void ReadCount(HYPERFILEVALUE type, const void* data) {
    if (!Is(type, HYPERFILEVALUE_LONG)) return;
    stats_->blocks.emplace_back();
    Block().points = *(const LONG*)data;
    arrays_ = 0;
    state_ = State::Arrays;
  }

  void ReadField(HYPERFILEVALUE type, const void* data) {
    if (type == HYPERFILEVALUE_VECTOR || type == HYPERFILEVALUE_LVECTOR) ReadVector(*(const LVector*)data);
    if (type == HYPERFILEVALUE_STRING) {
      std::string path(std::size_t(((const String*)data)->GetCStringLen(STRINGENCODING_UTF8)) + 1, '\0');
      path.resize(
          (std::size_t)((const String*)data)->GetCString(&path[0], (LONG)path.size(), STRINGENCODING_UTF8));
      Block().source = path;
      settingsValues_ = 0;
      return;
    }
    if (settingsValues_ < 0) return;
    // After the name: two corners, then the reader's kind; the last of the ten values closes the block.
    if (settingsValues_ == 2 && type == HYPERFILEVALUE_LONG && *(const LONG*)data == kReaderLasByClass)
      Block().hasColor = false;
    if (++settingsValues_ == kSettingsValues) NextBlock();
  }

  void ReadVector(const LVector& v) {
    if (vectors_ < 2) {
      // Stored order is x, height, y: back to file axes.
      double* corner = vectors_ == 0 ? Block().box.min : Block().box.max;
      corner[0] = v.x;
      corner[1] = v.z;
      corner[2] = v.y;
      Block().box.valid = vectors_ == 1;
    }
    ++vectors_;
  }

  CloudStats* stats_;
  State state_ = State::Groups;
  bool broken_ = false;
  LONG groupsLeft_ = 0, blocksLeft_ = 0;
  int arrays_ = 0, vectors_ = 0, settingsValues_ = -1;
};

} // namespace

bool ReadCloudStats(BaseList2D* object, CloudStats* stats) {
  *stats = CloudStats();
  StoreDecoder decoder(stats);
  return host::VisitNode(object, decoder) && decoder.Complete();
}

} // namespace cli
