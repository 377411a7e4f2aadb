// Every request for memory refused in turn, the host's and the C++ library's, while the SDK layer's own fence
// is off: an exception that leaves the module ends this program.
#include "host/base/module_scope.h"
#include "host/nodes/object_calls.h"
#include "host/render/render_job.h"
#include "otallyframe.h"
#include "plugin_ids.h"
#include "support/data_folder.h"
#include "support/view_fixture.h"

#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>

namespace {

/** Requests of module code to operator new: counted, one refused, and those that are still held. */
std::atomic<long long> requests{0}, refused{0}, held{0};

struct Header {
  alignas(16) bool ofModule;
};

void* Take(std::size_t size) {
  if (host::inModule && ++requests == refused) return nullptr;
  Header* header = (Header*)std::malloc(size + sizeof(Header));
  if (!header) return nullptr;
  header->ofModule = host::inModule;
  if (header->ofModule) ++held;
  return header + 1;
}

void Give(void* block) {
  if (!block) return;
  Header* header = (Header*)block - 1;
  if (header->ofModule) --held;
  std::free(header);
}

} // namespace

void* operator new(std::size_t size) {
  if (void* block = Take(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Take(size);
}
void operator delete(void* block) noexcept {
  Give(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Give(block);
}

namespace {

class Fence : public ViewTest {
protected:
  void SetUp() override {
    ViewTest::SetUp();
    sdk::fenceOn = false;
  }
  void TearDown() override {
    sdk::fenceOn = true;
    ViewTest::TearDown();
  }

  struct State {
    LONG points;
    std::size_t blocks, nodes;
    long long held;
    bool operator==(const State& o) const {
      return points == o.points && blocks == o.blocks && nodes == o.nodes && held == o.held;
    }
  };
  /** What a step must leave as it was when it failed. */
  State Now() const {
    const host::LiveCounts live = application_->Live();
    return {Cloud(op_).store.GetPointCount(), (std::size_t)live.blocks, (std::size_t)live.nodes, held};
  }

  /**
   * Does the step with the 1st, 2nd, ... request refused until none is left to refuse, first of the host's,
   * then of the C++ library's. `undo` takes back what a step did that came to its end all the same.
   */
  void RefuseAll(const std::function<void()>& step, const std::function<void()>& undo) {
    host::Faults& faults = application_->GetFaults();
    step();
    undo();
    for (const bool ofHost : {true, false}) {
      const State before = Now();
      long long n = 1;
      for (bool struck = true; struck; ++n) {
        SCOPED_TRACE((ofHost ? "host " : "library ") + std::to_string(n));
        ASSERT_LT(n, 20000);
        if (ofHost) faults.FailAt(host::Fault::Allocation, n);
        requests = 0;
        refused = ofHost ? 0 : n;
        step();
        refused = 0;
        struck = ofHost ? faults.Calls(host::Fault::Allocation) >= n : requests >= n;
        faults.Clear();
        undo();
        const State after = Now();
        ASSERT_TRUE(after == before) << after.points - before.points << " points, "
                                     << (long long)(after.blocks - before.blocks) << " blocks, "
                                     << after.held - before.held << " of the library";
      }
      std::printf("  %s: %lld refused\n", ofHost ? "host" : "library", n - 2);
    }
  }

  void DropPoints() {
    host::Impl(doc_)->undo->Clear(); // each load keeps a step
    Cloud(op_).store.groups.FreeArray();
    Cloud(op_).loadReports = std::vector<kelvra::LoadReport>();
    op_->GetDataInstance()->SetString(KELVRA_EPSG, String());
  }
};

// Texts too long for a string's own buffer before and after the first point.
constexpr const char* kLines = "easting northing height red green blue\n1 2 3 4 5 6\n7 8 9 10 11 12\n"
                               "# longitude and latitude below\n-1 nan 2 0 0 0\n3 4 5 6 7 8\n";

TEST_F(Fence, HoldsWhileTextLoads) {
  const std::string blanks(70, ' '); // a line's start that is shown to people holds nothing else
  for (const std::string& text : {std::string(kLines), blanks + "1 2 3\n" + blanks + "4 5 6\n"}) {
    const std::string file = Write("points.txt", text);
    RefuseAll([&] { Load(file); }, [&] { DropPoints(); });
  }
}

TEST_F(Fence, HoldsWhileLasAndLazLoad) {
  for (const char* name : {"/1.2-with-color-clipped.las", "/1.2-with-color.copc.laz"}) {
    const std::string file = DataFolder() + name;
    if (!std::filesystem::exists(file)) GTEST_SKIP() << "no sample files";
    RefuseAll([&] { Load(file); }, [&] { DropPoints(); });
  }
}

TEST_F(Fence, HoldsWhileTextIsSaved) {
  Give(op_, kThree);
  const auto save = [&] {
    application_->GetDialogs().AnswerFile(Path("out.txt"));
    application_->PressButton(op_, KELVRA_SAVE_TEXT);
  };
  save();
  const std::string whole = Read(Path("out.txt"));
  RefuseAll(save, [&] {
    EXPECT_EQ(Read(Path("out.txt")), whole);
    EXPECT_EQ(folder_.Entries(), 1u);
  });
}

TEST_F(Fence, HoldsWhileAnObjectIsCopiedConvertedAndSaved) {
  Give(op_, kThree);
  RefuseAll(
      [&] {
        if (C4DAtom* copy = op_->GetClone(COPYFLAGS_0, nullptr)) {
          BaseObject* object = (BaseObject*)copy;
          BaseObject::Free(object);
        }
      },
      [] {});
  for (const LONG mode : {1, 3, 4, 5, 6}) {
    const auto build = [&](LONG wanted) {
      op_->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, wanted);
      host::UpdateCache(op_, doc_, BUILDFLAGS_0);
    };
    if (mode == 4 || mode == 5) continue; // they fill what outlives the step
    RefuseAll([&] { build(mode); }, [&] { build(0); });
  }
  RefuseAll(
      [&] {
        std::string error;
        application_->SaveScene(doc_, Path("scene.c4d"), &error);
      },
      [] {});
}

TEST_F(Fence, HoldsWhileAViewDraws) {
  const std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  std::string error;
  RefuseAll(
      [&] {
        GlProgramFactory::RemoveReference(op_);
        Cloud(op_).store.uploadFlag = 1;
        view->Draw(&error);
      },
      [&] { EXPECT_TRUE(view->Draw(&error)) << error; });
}

TEST_F(Fence, HoldsWhileAFrameIsRendered) {
  Give(op_, kThree);
  doc_->SetActiveObject(op_);
  op_->Message(MSG_MENUPREPARE, doc_);
  host::RenderOptions options;
  options.width = options.height = 9;
  options.threads = 1;
  options.camera = {Vector(0, 0, -100), Vector(), 45.0};
  RefuseAll(
      [&] {
        host::RenderJob job(doc_, options);
        job.RenderFrame();
      },
      [] {});
}

TEST_F(Fence, HoldsWhileAServiceIsAsked) {
  Give(op_, kThree);
  Cloud(op_).store.groups[0].blocks[0].header.key = 26913;
  ::setenv("KELVRA_GEOMETRY_SERVICE", "http://127.0.0.1:9", 1); // refuses at once
  RefuseAll([&] { op_->SetParameter(DescID(KELVRA_EPSG), GeData(String("2994")), DESCFLAGS_SET_0); }, [] {});
  ::unsetenv("KELVRA_GEOMETRY_SERVICE");
}

} // namespace
