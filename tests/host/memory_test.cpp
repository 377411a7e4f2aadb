#include "host/base/module_scope.h"
#include "host/memory/memory.h"
#include "support/probe_plugins.h"

#include <thread>

namespace {

constexpr VLONG kGiB = (VLONG)1 << 30;

long long ResidentBytes() {
  std::ifstream file("/proc/self/statm");
  long long total = 0, resident = 0;
  file >> total >> resident;
  return resident * 4096;
}

class HostMemory : public HostTest {
protected:
  /** Runs as plug-in code. */
  template <class F>
  static void InModule(F work) {
    const host::ModuleScope scope;
    work();
  }
};

TEST_F(HostMemory, SizesOutsideTheBoundsAreRefused) {
  for (const VLONG size : {(VLONG)0, (VLONG)-1, host::kLargestBlock + 1, (VLONG)1 << 62}) {
    EXPECT_EQ(GeAlloc(size), nullptr) << size;
    EXPECT_EQ(GeAllocNC(size), nullptr) << size;
  }
  unsigned char* block = GeAllocTypeNC(unsigned char, 100);
  std::fill(block, block + 100, (unsigned char)7);
  EXPECT_EQ(GeReallocNC(block, -5), nullptr);
  EXPECT_EQ(block[99], 7) << "a refused realloc leaves the block";
  GeFree(block);
  EXPECT_EQ(block, nullptr);
}

TEST_F(HostMemory, ClearedMeansCleared) {
  for (int i = 0; i < 50; ++i) {
    unsigned char* block = GeAllocType(unsigned char, 4000 + i);
    EXPECT_EQ(std::count(block, block + 4000 + i, 0), 4000 + i);
    std::fill(block, block + 4000, (unsigned char)0xff);
    GeFree(block);
  }
}

TEST_F(HostMemory, PagesOfFreedBlocksServeOneBlockEach) {
  constexpr VLONG kMiB = 1 << 20;
  unsigned char* first = GeAllocTypeNC(unsigned char, 64 * kMiB);
  ASSERT_NE(first, nullptr);
  std::fill(first, first + 64 * kMiB, (unsigned char)0x55);
  GeFree(first);
  unsigned char* clear = GeAllocType(unsigned char, 20 * kMiB + 1);
  EXPECT_EQ(std::count(clear, clear + 20 * kMiB + 1, 0), 20 * kMiB + 1);
  std::fill(clear, clear + 20 * kMiB + 1, (unsigned char)0xaa);
  GeFree(clear);
  unsigned char* blocks[6];
  for (int i = 0; i < 6; ++i) {
    blocks[i] = GeAllocTypeNC(unsigned char, 7 * kMiB + i);
    ASSERT_NE(blocks[i], nullptr);
    std::fill(blocks[i], blocks[i] + 7 * kMiB + i, (unsigned char)i);
  }
  for (const int i : {1, 4}) blocks[i] = (unsigned char*)GeReallocNC(blocks[i], (i == 1 ? 30 : 5) * kMiB);
  std::fill(blocks[1] + 7 * kMiB, blocks[1] + 30 * kMiB, (unsigned char)1);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(std::count(blocks[i], blocks[i] + 5 * kMiB, i), 5 * kMiB) << i;
  for (unsigned char*& block : blocks) GeFree(block);
}

TEST_F(HostMemory, UntouchedGigabytesCostNothing) {
  const long long before = ResidentBytes();
  char* block = GeAllocTypeNC(char, 16 * kGiB);
  ASSERT_NE(block, nullptr);
  block[0] = 1;
  block[7 * kGiB + 5] = 2;
  block[16 * kGiB - 1] = 3;
  for (const VLONG size : {20 * kGiB + 1, 32 * kGiB, 512 * kGiB, 16 * kGiB}) { // not whole pages, too
    char* moved = (char*)GeReallocNC(block, size);
    ASSERT_NE(moved, nullptr) << size;
    block = moved;
    EXPECT_EQ(block[0] + block[7 * kGiB + 5] + block[16 * kGiB - 1], 6);
  }
  EXPECT_LT(ResidentBytes() - before, 32 << 20);
  block = (char*)GeReallocNC(block, 1000); // back to an ordinary block
  block = (char*)GeReallocNC(block, 2 * kGiB);
  ASSERT_NE(block, nullptr);
  EXPECT_TRUE(block[0] == 1 && block[2 * kGiB - 1] == 0);
  GeFree(block);
  EXPECT_LT(ResidentBytes() - before, 32 << 20);
}

TEST_F(HostMemory, ForeignAddressesAreReportedAndLeftAlone) {
  int local = 0;
  void* foreign = &local;
  C4DOS.general->Free(foreign);
  EXPECT_NE(Reported().find("host misbehaves: free of"), std::string::npos) << Reported();
  EXPECT_EQ(C4DOS.general->ReallocNC(foreign, 10, 0, ""), nullptr);
  EXPECT_EQ(application_->Misbehaviour().size(), 2u);
}

TEST_F(HostMemory, CountsComeBackToWhereTheyWere) {
  const host::LiveCounts before = application_->Live();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([] {
      std::vector<void*> blocks;
      for (int i = 1; i < 3000; ++i) {
        blocks.push_back(GeAllocNC(i % 97 + 1));
        if (i % 3 == 0) blocks.back() = GeReallocNC(blocks.back(), i % 1013 + 1);
        if (i % 2 == 0) GeFree(blocks[(std::size_t)i / 2]);
      }
      for (void*& block : blocks) GeFree(block);
    });
  for (std::thread& thread : threads) thread.join();
  ExpectLive(*application_, before);
}

TEST_F(HostMemory, BlocksBeyondWhatIsFreeAreRefusedWhenAskedFor) {
  host::memory::RefuseBeyondFree(true);
  char* block = GeAllocTypeNC(char, kGiB);
  EXPECT_NE(block, nullptr);
  for (char* const refused : {(char*)GeAllocNC(host::kLargestBlock), (char*)GeReallocNC(block, 600 * kGiB)})
    EXPECT_EQ(refused, nullptr);
  host::memory::RefuseBeyondFree(false);
  EXPECT_EQ(host::memory::LastShortage().wanted, 599 * kGiB);
  EXPECT_GT(host::memory::LastShortage().free, 0);
  GeFree(block);
}

TEST_F(HostMemory, TheNthCallOfAKindFailsInModulesOnly) {
  const struct {
    host::Fault kind;
    int from, count;
    const char* got; ///< of five blocks
  } cases[] = {{host::Fault::LargeBlock, 2, 1, "yyyny"},
               {host::Fault::Allocation, 2, 2, "ynnyy"},
               {host::Fault::TemporaryBlock, 1, -1, "yyyyy"}}; // nothing is being drawn
  for (const auto& c : cases) {
    std::string got;
    application_->GetFaults().FailAt(c.kind, c.from, c.count);
    EXPECT_EQ(String("the host's own text").GetLength(), 19);
    InModule([&] {
      for (const VLONG size : {(VLONG)1, kGiB, (VLONG)2, 2 * kGiB, 3 * kGiB}) {
        void* block = GeAllocNC(size);
        got += block ? 'y' : 'n';
        GeFree(block);
      }
    });
    application_->GetFaults().Clear();
    EXPECT_EQ(got, c.got);
  }
}

TEST_F(HostMemory, ArraysThatCannotGrowSaySo) {
  GeDynamicArray<LONG> array;
  Bool grown = TRUE;
  application_->GetFaults().FailAt(host::Fault::Allocation, 1);
  InModule([&] { grown = array.Push(5); });
  EXPECT_FALSE(grown);
  const std::vector<std::string> lines = application_->GetConsole().Lines();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_NE(lines[0].find("array could not grow"), std::string::npos) << lines[0];
}

} // namespace
