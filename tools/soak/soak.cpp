// One application that works for a long time: each cycle loads a cloud, undoes, redoes, copies, draws,
// renders, converts, saves, opens the scene again and deletes everything. What the process holds after a
// cycle must not grow with their number: memory, open files, files on the disk, and the host's own counts.
//
//   soak CYCLES FILE...
#include "host/application.h"
#include "host/render.h"
#include "host/viewport.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

/** What the process holds between two cycles. */
struct Holding {
  long long memory = 0; ///< resident bytes
  long long heap =
      0;            ///< bytes that are allocated; the console and the list of dialogs grow with what is said
  long files = 0;   ///< open
  long entries = 0; ///< in the folder of the scenes
  host::LiveCounts live;
};

/** Cycles after which caches, pools and the driver hold what they keep. */
constexpr int kWarmUp = 100;
/** Growth that is not a leak: pages that the allocator has not given back, and a cycle's lines on the
 * console. */
constexpr long long kMemorySlack = 16 << 20, kHeapPerCycle = 1024;

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what);
}
void Require(bool good, const std::string& what) {
  if (!good) Fail(what);
}

long CountEntries(const fs::path& folder) {
  return (long)std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

long long ResidentMemory() {
  long long pages = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

class Soak {
public:
  Soak(const std::string& module, const fs::path& folder) : folder_(folder) {
    std::string error;
    Require(application_.LoadModule(module, &error), error);
  }

  void Cycle(int number, const std::string& file) {
    BaseDocument* doc = application_.NewDocument();
    BaseObject* cloud = host::CreateObjectFromMenu(doc, KELVRA_CLOUD);
    Require(cloud, "no cloud object");
    Load(cloud, file);
    Require(Points(cloud) > 0, file + ": no points");
    Require(doc->DoUndo() && Points(cloud) == 0, "undo left points");
    Require(doc->DoRedo() && Points(cloud) > 0, "redo brought no points");
    BaseObject* copy = (BaseObject*)cloud->GetClone(COPYFLAGS_0, nullptr);
    Require(copy, "no copy");
    doc->InsertObject(copy, nullptr, cloud);
    Draw(doc);
    Render(doc);
    const LONG modes[] = {KELVRA_CONVERT_MODE_POINTS, KELVRA_CONVERT_MODE_HAIR,
                          KELVRA_CONVERT_MODE_THINKING_PARTICLES, KELVRA_CONVERT_MODE_EMITTER,
                          KELVRA_CONVERT_MODE_SPLINE};
    copy->SetParameter(DescID(KELVRA_CONVERT_MODE), GeData(modes[number % 5]), DESCFLAGS_SET_0);
    Draw(doc); // brings the result up to date
    SaveAndOpen(doc);
    application_.CloseDocument(doc);
  }

  Holding Now() {
    return {ResidentMemory(), (long long)mallinfo2().uordblks, CountEntries("/proc/self/fd"),
            CountEntries(folder_), application_.Live()};
  }
  const std::vector<std::string>& Misbehaviour() const { return application_.Misbehaviour(); }

private:
  void Load(BaseObject* cloud, const std::string& file) {
    application_.GetDialogs().AnswerFile(file);
    application_.PressButton(cloud, KELVRA_LOAD_FILE);
  }

  static LLONG Points(BaseObject* cloud) {
    KelvraCloudReport report = {};
    report.version = 2;
    Require(cloud->Message(KELVRA_MESSAGE_REPORT, &report), "the cloud gives no report");
    LLONG points = 0;
    for (LONG i = 0; i < report.blockCount; ++i) points += report.blocks[i].points;
    return points;
  }

  static host::ViewCamera CameraFor(BaseDocument* doc) {
    host::Box box = host::GeometryBox(doc);
    if (box.IsEmpty()) box = host::WorldBox(doc->GetFirstObject());
    Require(!box.IsEmpty(), "an empty scene");
    host::ViewCamera camera;
    camera.target = box.Centre();
    camera.position = camera.target + Vector(0.0, 1.0, -2.0) * box.Size().GetLength();
    return camera;
  }

  static void Draw(BaseDocument* doc) {
    std::string error;
    const std::unique_ptr<host::Viewport> view = host::Viewport::Create(doc, 160, 90, &error);
    Require(view != nullptr, error);
    view->SetCamera(CameraFor(doc));
    Require(view->Draw(&error), error);
  }

  static void Render(BaseDocument* doc) {
    host::RenderOptions options;
    options.width = 48;
    options.height = 27;
    options.camera = CameraFor(doc);
    host::RenderJob job(doc, options);
    const host::RenderOutcome outcome = job.RenderFrame();
    Require(outcome.Ok(), outcome.message);
  }

  void SaveAndOpen(BaseDocument* doc) {
    const std::string scene = (folder_ / "soak.scene").string();
    std::string error;
    Require(application_.SaveScene(doc, scene, &error), error);
    BaseDocument* opened = application_.LoadScene(scene, &error);
    Require(opened, error);
    Require(Points(opened->GetFirstObject()) > 0, "the scene lost its points");
    application_.CloseDocument(opened);
    fs::remove(scene);
  }

  fs::path folder_;
  host::Application application_;
};

void Print(int cycle, const Holding& now) {
  std::printf("%6d cycles: %7.1f MB, %.3f MB allocated, %ld open files, %ld files, %lld nodes, %lld blocks, "
              "%lld bytes\n",
              cycle, (double)now.memory / 1e6, (double)now.heap / 1e6, now.files, now.entries,
              (long long)now.live.nodes, (long long)now.live.blocks, (long long)now.live.bytes);
  std::fflush(stdout);
}

int Run(int cycles, const std::vector<std::string>& files) {
  char folder[] = "/tmp/soak.XXXXXX";
  Require(mkdtemp(folder), "no temporary folder");
  bool clean = true;
  {
    Soak soak(KELVRA_SOAK_MODULE, folder);
    Holding warm;
    const int warmUp = std::min(kWarmUp, cycles / 2);
    for (int cycle = 1; cycle <= cycles; ++cycle) {
      soak.Cycle(cycle, files[(std::size_t)cycle % files.size()]);
      const Holding now = soak.Now();
      if (cycle == warmUp) warm = now;
      if (cycle % 100 == 0 || cycle == cycles) Print(cycle, now);
      if (cycle < cycles) continue;
      const bool same =
          now.files == warm.files && now.entries == warm.entries && now.live.nodes == warm.live.nodes &&
          now.live.blocks == warm.live.blocks && now.live.bytes == warm.live.bytes &&
          now.live.vertexBuffers == warm.live.vertexBuffers && now.live.bitmaps == warm.live.bitmaps;
      const long long growth = now.memory - warm.memory;
      const double heap = (double)(now.heap - warm.heap) / std::max(1, cycles - warmUp);
      std::printf(
          "after the warm-up: memory grew by %.2f MB (limit %.0f MB), the heap by %.0f bytes a cycle (limit "
          "%lld)\n",
          (double)growth / 1e6, (double)kMemorySlack / 1e6, heap, kHeapPerCycle);
      if (!same) std::printf("counts of the host, open files or files grew\n");
      clean = same && growth < kMemorySlack && heap < (double)kHeapPerCycle;
    }
    for (const std::string& line : soak.Misbehaviour()) {
      std::printf("%s\n", line.c_str());
      clean = false;
    }
  }
  fs::remove_all(folder);
  return clean ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
  const int cycles = argc > 2 ? std::atoi(argv[1]) : 0;
  if (cycles < 2) {
    std::fprintf(stderr, "usage: soak CYCLES FILE...\n");
    return 2;
  }
  try {
    return Run(cycles, std::vector<std::string>(argv + 2, argv + argc));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "soak: %s\n", e.what());
    return 1;
  }
}
