// A running host, stores with known points, and recorded streams.
#pragma once

#include "cloud/point_store.h"

#include "c4d_os.h"
#include "host/base/module_scope.h"
#include "host/scene/hyper_file.h"
#include "host/scene/value_kinds.h"
#include "support/clean.h"
#include "support/folder.h"

namespace kelvra {

/** Point i of a test block: (i, 10 i, 100 i) above `start`, colour (i, i + 1, i + 2). */
inline PointBlock MakeBlock(LONG count, UWORD key = 0, SReal start = 0.0f) {
  PointBlock block;
  EXPECT_TRUE(block.Allocate(count));
  for (LONG i = 0; i < count * 3; ++i) {
    const SReal steps[3] = {1.0f, 10.0f, 100.0f};
    block.positions[i] = start + (SReal)(i / 3) * steps[i % 3];
    block.colors[i] = (SReal)i / 4.0f;
    block.attrib3[i] = (UWORD)(i / 3 + i % 3);
    block.attrib1[i / 3] = (UWORD)i;
  }
  block.Finish(kFinishRecomputeBox);
  const LVector low = block.box.min, high = block.box.max;
  block.header.SetBounds(LVector(low.x, low.z, low.y), LVector(high.x, high.z, high.y));
  block.header.key = key;
  return block;
}

inline void Add(PointStore& store, std::initializer_list<PointBlock> blocks) {
  PointGroup group;
  for (const PointBlock& block : blocks) ASSERT_TRUE(group.blocks.Push(block));
  ASSERT_TRUE(store.Merge(group));
}

/** Typed values in the order in which something wrote them; can write the first few of them again. */
class Recording : public host::StreamVisitor {
public:
  struct Item {
    int type;
    LONG increment, count; ///< of arrays; count -1 otherwise
    std::string bytes;
    String text;
  };
  std::vector<Item> items;

  template <class T>
  bool Record(const T& written) {
    host::HyperFileImpl stream(*this, nullptr);
    return written.Write(stream.Api());
  }
  void Replay(HyperFile* hf, std::size_t first) const {
    for (const Item& i : std::vector<Item>(items.begin(), items.begin() + (std::ptrdiff_t)first))
      if (i.count >= 0)
        hf->WriteArray(i.bytes.data(), (HYPERFILEARRAY)i.type, i.increment, i.count);
      else
        C4DOS.hyperFile->Write(hf, (HYPERFILEVALUE)i.type,
                               i.bytes.empty() ? &i.text : (const void*)i.bytes.data());
  }
  template <class T>
  T At(std::size_t i) const {
    T value{};
    EXPECT_EQ(items.at(i).bytes.size(), sizeof value) << "value " << i;
    std::memcpy(&value, items[i].bytes.data(), std::min(sizeof value, items[i].bytes.size()));
    return value;
  }

private:
  void BeginNode(const std::string&, LONG, const std::string&, LONG) override {}
  void EndNode() override {}
  void Value(HYPERFILEVALUE type, const void* data) override {
    const std::string bytes((const char*)data, host::FixedSize((int)type));
    items.push_back({(int)type, 0, -1, bytes, bytes.empty() ? *(const String*)data : String()});
  }
  void Array(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) override {
    const std::string bytes((const char*)data, (std::size_t)increment * (std::size_t)count);
    items.push_back({(int)type, increment, count, bytes, String()});
  }
};

class StoreTest : public Scratch {
protected:
  host::Application app;

  /** Reads the first values of a recording from a file, with the n-th request for memory refused. */
  template <class T>
  bool ReadBack(T& read, const Recording& values, std::size_t first, LONG refused = 0) {
    const Filename path(Path("stream").c_str());
    AutoAlloc<HyperFile> out, in;
    LONG id = 0, level = 0;
    EXPECT_TRUE(out->Open(1, path, FILEOPEN_WRITE, FILEDIALOG_NONE) && out->WriteChunkStart(1, 0));
    values.Replay(out, first);
    EXPECT_TRUE(out->WriteChunkEnd() && out->Close());
    EXPECT_TRUE(in->Open(1, path, FILEOPEN_READ, FILEDIALOG_NONE) && in->ReadChunkStart(&id, &level));
    return WithRefusal(refused, [&] { return read.Read(in, level); }) != FALSE;
  }
  /** Runs a module's code with its n-th request for memory refused. */
  template <class Call>
  Bool WithRefusal(LONG n, Call call) {
    if (n > 0) app.GetFaults().FailAt(host::Fault::Allocation, n);
    const host::ModuleScope scope;
    const Bool result = call();
    app.GetFaults().Clear();
    return result;
  }
};

} // namespace kelvra
