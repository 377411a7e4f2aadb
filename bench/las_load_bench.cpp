// A whole load of LAS and LAZ files through the module, beside a bare LASlib loop over the same file in the
// same run.
//
//   las_load_bench FILE...      e.g. files that make_cloud wrote
//
// Compares the stored positions with the bare loop's, then times both in turn, best of five.
#include "host/application.h"
#include "host/scene/stream_visitor.h"
#include "otallyframe.h"

#include <lasreader.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/** Count and sums of the coordinates after narrowing. */
struct Digest {
  long long points = 0;
  double sums[3] = {0, 0, 0};
  /** Narrows through memory: GCC 12 at -O3 otherwise drops the narrowing of two of the three. */
  void Add(double x, double height, double y) {
    volatile float narrowed[3] = {(float)x, (float)height, (float)y};
    for (int i = 0; i < 3; ++i) sums[i] += narrowed[i];
  }
  bool operator==(const Digest& d) const {
    return points == d.points && sums[0] == d.sums[0] && sums[1] == d.sums[1] && sums[2] == d.sums[2];
  }
};

/** The peer: opens, reads every point, touches what a loader needs. */
long long BareLoop(const std::string& path, Digest* digest) {
  LASreadOpener opener;
  opener.set_file_name(path.c_str());
  const std::unique_ptr<LASreader> reader(opener.open());
  if (!reader) return -1;
  long long count = 0;
  double touched = 0;
  while (reader->read_point()) {
    const LASpoint& p = reader->point;
    const double x = p.get_x(), y = p.get_y(), z = p.get_z();
    touched += x + y + z;
    if (digest) digest->Add(x, z, y);
    ++count;
  }
  if (digest) digest->points = count;
  volatile double keep = touched;
  (void)keep;
  reader->close();
  return count;
}

/** Sums the first array of the object's stream. */
class DigestVisitor : public host::StreamVisitor {
public:
  Digest digest;
  void BeginNode(const std::string&, LONG, const std::string&, LONG) override {}
  void EndNode() override {}
  void Value(HYPERFILEVALUE, const void*) override {}
  void Array(HYPERFILEARRAY type, const void* data, LONG, LONG count) override {
    if (arrays_++ != 0 || type != HYPERFILEARRAY_SREAL) return;
    const float* values = (const float*)data;
    digest.points = count / 3;
    for (LONG i = 0; i < count; ++i) digest.sums[i % 3] += values[i];
  }

private:
  int arrays_ = 0;
};

class Loader {
public:
  Loader() {
    std::string error;
    if (!application_.LoadModule(std::string(KELVRA_BENCH_BIN) + "/kelvra.so", &error)) {
      std::fprintf(stderr, "%s\n", error.c_str());
      std::exit(1);
    }
  }
  double Load(const std::string& path, Digest* digest) {
    BaseDocument* doc = application_.NewDocument();
    BaseObject* object = host::CreateObjectFromMenu(doc, application_.FindByDescription("Otallyframe")->id);
    application_.GetDialogs().AnswerFile(path);
    // A budget that no benchmark file reaches.
    std::string error;
    application_.SetParameterFromText(object, KELVRA_LOAD_BUDGET, "2000", &error);
    const double seconds = Seconds([&] { application_.PressButton(object, KELVRA_LOAD_FILE); });
    if (digest) {
      DigestVisitor visitor;
      host::VisitNode(object, visitor);
      *digest = visitor.digest;
    }
    application_.CloseDocument(doc);
    return seconds;
  }

private:
  host::Application application_;
};

} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: las_load_bench FILE...\n");
    return 2;
  }
  Loader loader;
  bool equal = true;
  for (int i = 1; i < argc; ++i) {
    const std::string path = argv[i];
    Digest bare, ours;
    if (BareLoop(path, &bare) < 0) return 1;
    loader.Load(path, &ours);
    if (!(bare == ours)) {
      std::fprintf(stderr, "%s: results differ: bare loop %lld points, module %lld points; not timed\n",
                   path.c_str(), bare.points, ours.points);
      for (int k = 0; k < 3; ++k)
        std::fprintf(stderr, "  sum %d: %.17g, module %.17g\n", k, bare.sums[k], ours.sums[k]);
      equal = false;
      continue;
    }
    double bestBare = 1e30, bestOurs = 1e30;
    for (int round = 0; round < 5; ++round) {
      bestBare = std::min(bestBare, Seconds([&] { BareLoop(path, nullptr); }));
      bestOurs = std::min(bestOurs, loader.Load(path, nullptr));
    }
    const double points = (double)bare.points / 1e6;
    std::printf(
        "%s: %.2f M points, bare LASlib loop %.3f s (%.1f M points/s), whole load %.3f s (%.1f M points/s), "
        "%.2f times the loop\n",
        path.c_str(), points, bestBare, points / bestBare, bestOurs, points / bestOurs, bestOurs / bestBare);
  }
  return equal ? 0 : 1;
}
