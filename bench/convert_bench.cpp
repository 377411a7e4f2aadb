// The cloud as a point object of the application: the module's build of 10 million points with their colour
// maps, against a plain copy of as many bytes (24 of position, 12 of colour a point) into fresh memory that
// the same allocator gives.
//
//   convert_bench [points]
#include "bench_timer.h"
#include "host/application.h"
#include "host/nodes/object_calls.h"
#include "object/rerenderobject.h"
#include "otallyframe.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kRuns = 7;

[[noreturn]] void Stop(const std::string& what) {
  std::fprintf(stderr, "convert_bench: %s\n", what.c_str());
  std::exit(1);
}

/** Two blocks as LAS files leave them: with a key, so that positions are fitted to the object's size. */
void Give(BaseObject* op, LONG points) {
  kelvra::PointDelivery delivery;
  delivery.state = kelvra::kDeliverStream;
  op->GetDataInstance()->SetLong(KELVRA_LOAD_STATE, kelvra::kDeliverStream);
  delivery.points.blocks.ReSize(2);
  unsigned random = 1;
  for (LONG b = 0; b < 2; ++b) {
    kelvra::PointBlock& block = delivery.points.blocks[b];
    if (!block.Allocate(b == 0 ? points / 2 : points - points / 2)) Stop("not enough memory for the points");
    for (VLONG i = 0; i < (VLONG)block.count * 3; ++i) {
      random = random * 1664525u + 1013904223u;
      block.positions[i] = (SReal)(random >> 8);
      block.attrib3[i] = (UWORD)(random >> 16);
      block.colors[i] = 0.0f;
    }
    std::fill_n(block.attrib1, block.count, (UWORD)0);
    block.header.SetBounds(LVector(0.0), LVector(16777216.0));
    block.header.key = 1;
    block.Finish(kelvra::kFinishRecomputeBox);
  }
  op->Message(kelvra::kMessageDeliverPoints, &delivery);
  op->GetDataInstance()->SetLong(KELVRA_LOAD_STATE, 0);
}

/** Every point and weight against what the object's messages export. */
void Prove(BaseObject* op, BaseObject* built, LONG points) {
  if (!built || built->GetType() != Opolygon || ((PolygonObject*)built)->GetPointCount() != points)
    Stop("the build gave no point object of the right size");
  kelvra::PointArray positions, colors;
  op->Message(kelvra::kMessageExportPositions, &positions);
  op->Message(kelvra::kMessageExportColors, &colors);
  if (positions.count != points || colors.count != points)
    Stop("the export gave a different number of points");
  if (std::memcmp(((PolygonObject*)built)->GetPointR(), positions.data, (std::size_t)points * sizeof(Vector)))
    Stop("positions differ");
  for (LONG channel = 0; channel < 3; ++channel) {
    VertexMapTag* map = (VertexMapTag*)built->GetTag(Tvertexmap, channel);
    if (!map || map->GetDataCount() != points) Stop("a colour map is missing");
    for (LONG i = 0; i < points; ++i)
      if (map->GetDataAddressR()[i] != (SReal)colors.data[i][channel]) Stop("colours differ");
  }
  GeFree(positions.data);
  GeFree(colors.data);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/** One part at a time, as the point array and the three maps are. */
double PlainCopy(const std::vector<unsigned char>& source, LONG points) {
  const std::size_t parts[] = {24, 4, 4, 4};
  void* copies[4];
  const bench::Timer timer;
  std::size_t at = 0;
  for (int i = 0; i < 4; ++i) {
    const std::size_t bytes = parts[i] * (std::size_t)points;
    copies[i] = GeAllocNC((VLONG)bytes);
    if (!copies[i]) Stop("not enough memory for the copy");
    std::memcpy(copies[i], source.data() + at, bytes);
    at += bytes;
  }
  const double seconds = timer.Seconds();
  for (void* copy : copies) GeFree(copy);
  return seconds;
}

} // namespace

int main(int argc, char** argv) {
  const LONG points = argc > 1 ? std::atoi(argv[1]) : 10000000;
  if (points < 2) Stop("expected a number of points of at least 2");
  host::Application application;
  std::string error;
  if (!application.LoadModule(KELVRA_BENCH_BIN "/kelvra.so", &error)) Stop(error);
  BaseDocument* doc = application.NewDocument();
  BaseObject* op = host::CreateObjectFromMenu(doc, kelvra::kPointCloudId);
  if (!op) Stop("the object was refused");
  Give(op, points);
  const std::vector<unsigned char> source((std::size_t)points * 36, 1);

  struct Case {
    const char* name;
    LONG mode;
    std::vector<double> seconds;
  } cases[] = {{"points", KELVRA_CONVERT_MODE_POINTS, {}},
               {"hair", KELVRA_CONVERT_MODE_HAIR, {}},
               {"spline", KELVRA_CONVERT_MODE_SPLINE, {}}};
  std::vector<double> plain;
  for (int run = 0; run < kRuns; ++run)
    for (Case& each : cases) {
      // Both sides free the previous result outside the measured time.
      op->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, KELVRA_CONVERT_MODE_EMPTY);
      host::UpdateCache(op, doc, BUILDFLAGS_0);
      plain.push_back(PlainCopy(source, points));
      op->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, each.mode);
      const bench::Timer timer;
      BaseObject* built = host::UpdateCache(op, doc, BUILDFLAGS_0);
      each.seconds.push_back(timer.Seconds());
      if (run == 0 && each.mode == KELVRA_CONVERT_MODE_POINTS) Prove(op, built, points);
    }

  const double copy = Median(plain);
  std::printf("plain copy of %d points' bytes: %.3f s, %.1f GB/s\n", (int)points, copy,
              points * 36e-9 / copy);
  for (const Case& each : cases) {
    const double seconds = Median(each.seconds);
    std::printf("%-7s %.3f s, %.1f M points/s, ratio to the copy %.2f\n", each.name, seconds,
                points / seconds * 1e-6, seconds / copy);
  }
  return 0;
}
