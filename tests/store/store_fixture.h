// A running host, stores with known points, and recorded streams.
#pragma once

#include "point_store.h"

#include "c4d_os.h"
#include "host/application.h"
#include "host/core/module_scope.h"
#include "host/scene/hyper_file.h"
#include "scene/scratch.h"

namespace kelvra {

/** Point i of a test block: (i, 10 i, 100 i) above `start`, colour (i, i + 1, i + 2). */
inline PointBlock MakeBlock(LONG count, UWORD key = 0, SReal start = 0.0f) {
  PointBlock block;
  EXPECT_TRUE(block.Allocate(count));
  for (LONG i = 0; i < count; ++i) {
    for (LONG axis = 0; axis < 3; ++axis) {
      const SReal steps[3] = {1.0f, 10.0f, 100.0f};
      block.positions[i * 3 + axis] = start + (SReal)i * steps[axis];
      block.colors[i * 3 + axis] = (SReal)axis / 4.0f;
      block.attrib3[i * 3 + axis] = (UWORD)(i + axis);
    }
    block.attrib1[i] = (UWORD)(i & 1);
  }
  block.Finish(kFinishRecomputeBox);
  const LVector low = block.bboxMin, high = block.bboxMax;
  block.header.SetBounds(LVector(low.x, low.z, low.y), LVector(high.x, high.z, high.y));
  block.header.key = key;
  return block;
}

inline void Add(PointStore& store, std::initializer_list<PointBlock> blocks) {
  PointGroup group;
  for (const PointBlock& block : blocks) ASSERT_TRUE(group.blocks.Push(block));
  ASSERT_TRUE(store.Merge(group));
}

/** Typed values in the order in which something wrote them; can write them again, all or the first few. */
class Recording : public host::StreamVisitor {
public:
  struct Item {
    bool array;
    int type;
    LONG increment, count;
    std::string bytes;
    String text;
  };
  std::vector<Item> items;

  template <class T>
  bool Record(const T& written) {
    host::HyperFileImpl stream(*this, NULL);
    return written.Write(stream.Api());
  }
  void Replay(HyperFile* hf, std::size_t first) const {
    for (std::size_t i = 0; i < first; ++i) {
      const Item& item = items[i];
      if (item.array)
        hf->WriteArray(item.bytes.data(), (HYPERFILEARRAY)item.type, item.increment, item.count);
      else if (item.type == (int)HYPERFILEVALUE_STRING)
        hf->WriteString(item.text);
      else
        C4DOS.Hf->Write(hf, (HYPERFILEVALUE)item.type, item.bytes.data());
    }
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
    if (type == HYPERFILEVALUE_STRING)
      return items.push_back({false, (int)type, 0, 0, "", *(const String*)data});
    const std::size_t size = type == HYPERFILEVALUE_LVECTOR                                 ? 24
                             : type == HYPERFILEVALUE_UWORD                                 ? 2
                             : type == HYPERFILEVALUE_LONG                                  ? 4
                             : type == HYPERFILEVALUE_LREAL || type == HYPERFILEVALUE_LLONG ? 8
                                                                                            : 0;
    ASSERT_NE(size, 0u) << "unexpected kind " << (int)type;
    items.push_back({false, (int)type, 0, 0, std::string((const char*)data, size), String()});
  }
  void Array(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) override {
    const std::string bytes((const char*)data, (std::size_t)increment * (std::size_t)count);
    items.push_back({true, (int)type, increment, count, bytes, String()});
  }
};

class StoreTest : public Scratch {
protected:
  host::Application app;

  /** Reads what `write` put into a file. */
  template <class T, class Write>
  bool ReadBack(T& read, Write write) {
    {
      AutoAlloc<HyperFile> out;
      EXPECT_TRUE(out->Open(1, Filename(Path("stream").c_str()), FILEOPEN_WRITE, FILEDIALOG_NONE));
      out->WriteChunkStart(1, 0);
      write((HyperFile*)out);
      out->WriteChunkEnd();
      EXPECT_TRUE(out->Close());
    }
    AutoAlloc<HyperFile> in;
    LONG id = 0, level = 0;
    EXPECT_TRUE(in->Open(1, Filename(Path("stream").c_str()), FILEOPEN_READ, FILEDIALOG_NONE));
    EXPECT_TRUE(in->ReadChunkStart(&id, &level));
    return read.Read(in, level) != FALSE;
  }
  /** Runs a module's code with its n-th request for memory refused. */
  template <class Call>
  Bool WithRefusal(LONG n, Call call) {
    app.GetFaults().FailAt(host::Fault::Allocation, n);
    const host::ModuleScope scope;
    const Bool result = call();
    app.GetFaults().Clear();
    return result;
  }
};

} // namespace kelvra
