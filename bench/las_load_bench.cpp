// A whole load of LAS and LAZ files through the module, beside a bare LASlib loop over the same file in the
// same run.
//
//   las_load_bench FILE...      e.g. files that make_cloud wrote
//
// Compares the stored positions with the bare loop's, absolute and counted from a local origin, then times
// all three in turn, best of seven, in processor time, so that other work on the machine counts less.
#include "host/application.h"
#include "host/scene/stream_visitor.h"
#include "otallyframe.h"

#include <lasreader.hpp>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

double Seconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return (double)(std::clock() - start) / CLOCKS_PER_SEC;
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
long long BareLoop(const std::string& path, Digest* digest, const LVector& origin = LVector()) {
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
    if (digest) digest->Add(x - origin.x, z - origin.z, y - origin.y);
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
  /** `mode` of the local origin; `origin` gets the one that was chosen. Both results may be left out. */
  double Load(const std::string& path, LONG mode, Digest* digest = nullptr, LVector* origin = nullptr) {
    BaseDocument* doc = application_.NewDocument();
    BaseObject* object = host::CreateObjectFromMenu(doc, application_.FindByDescription("Otallyframe")->id);
    application_.GetDialogs().AnswerFile(path);
    // A budget that no benchmark file reaches.
    std::string error;
    application_.SetParameterFromText(object, KELVRA_LOAD_BUDGET, "2000", &error);
    object->GetDataInstance()->SetLong(KELVRA_LOCAL_ORIGIN, mode);
    const double seconds = Seconds([&] { application_.PressButton(object, KELVRA_LOAD_FILE); });
    if (digest) {
      DigestVisitor visitor;
      host::VisitNode(object, visitor);
      *digest = visitor.digest;
    }
    if (origin) *origin = object->GetDataInstance()->GetVector(KELVRA_ORIGIN);
    application_.CloseDocument(doc);
    return seconds;
  }

private:
  host::Application application_;
};

/** True when the module stores what the bare loop reads; else says what differs. */
bool Agrees(const char* how, const std::string& path, const Digest& bare, const Digest& ours) {
  if (bare == ours) return true;
  std::fprintf(stderr, "%s, %s: results differ: bare loop %lld points, module %lld points; not timed\n",
               path.c_str(), how, bare.points, ours.points);
  for (int k = 0; k < 3; ++k)
    std::fprintf(stderr, "  sum %d: %.17g, module %.17g\n", k, bare.sums[k], ours.sums[k]);
  return false;
}

bool Bench(Loader& loader, const std::string& path) {
  Digest bare, ours, bareFromOrigin, fromOrigin;
  LVector origin;
  if (BareLoop(path, &bare) < 0) return false;
  loader.Load(path, KELVRA_LOCAL_ORIGIN_OFF, &ours);
  loader.Load(path, KELVRA_LOCAL_ORIGIN_AUTOMATIC, &fromOrigin, &origin);
  BareLoop(path, &bareFromOrigin, origin);
  if (!Agrees("absolute", path, bare, ours) || !Agrees("from an origin", path, bareFromOrigin, fromOrigin))
    return false;
  double bestBare = 1e30, bestOurs = 1e30, bestFromOrigin = 1e30;
  for (int round = 0; round < 7; ++round) {
    bestBare = std::min(bestBare, Seconds([&] { BareLoop(path, nullptr); }));
    bestOurs = std::min(bestOurs, loader.Load(path, KELVRA_LOCAL_ORIGIN_OFF));
    bestFromOrigin = std::min(bestFromOrigin, loader.Load(path, KELVRA_LOCAL_ORIGIN_AUTOMATIC));
  }
  const double points = (double)bare.points / 1e6;
  std::printf(
      "%s: %.2f M points, bare LASlib loop %.3f s (%.1f M points/s), whole load %.3f s (%.1f M points/s), "
      "%.2f times the loop; from the origin %.0f, %.0f, %.0f %.3f s, %.3f times the load without\n",
      path.c_str(), points, bestBare, points / bestBare, bestOurs, points / bestOurs, bestOurs / bestBare,
      origin.x, origin.y, origin.z, bestFromOrigin, bestFromOrigin / bestOurs);
  return true;
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: las_load_bench FILE...\n");
    return 2;
  }
  Loader loader;
  bool equal = true;
  for (int i = 1; i < argc; ++i) equal = Bench(loader, argv[i]) && equal;
  return equal ? 0 : 1;
}
