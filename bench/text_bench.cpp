// The text driver beside a plain loop of the C library's conversions over the same bytes, in the same run.
//
//   text_bench [MEGABYTES]      size of each generated file, 16 by default
//
// Both must give the same records, bit for bit. Then both are timed in turn, best of seven, in processor
// time, so that other work on the machine counts less. Files lie in memory; the plain loop works on them in
// place, the driver through its reads.
#include "fuzz/text_reference.h"

#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>

namespace {

using kelvra::TextPoint;

double Seconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return (double)(std::clock() - start) / CLOCKS_PER_SEC;
}

struct Sample {
  const char* name;
  bool pts;
  std::function<int(char* line, std::size_t size)> write; ///< one line, its length is returned
};

std::mt19937_64 random(20);
double Uniform(double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}
int Channel() {
  return (int)(random() % 256);
}

int WriteOdd(char* line, std::size_t size) {
  static constexpr const char* kReals[] = {"0x1.8p3",
                                           "nan",
                                           "inf",
                                           "-Infinity",
                                           "1e",
                                           "1e400",
                                           "4.9e-324",
                                           "1e-400",
                                           "+.5",
                                           "5.",
                                           "0x",
                                           "nan(7)",
                                           "9007199254740993",
                                           "2.2250738585072011e-308",
                                           "-0",
                                           "1,5"};
  const auto odd = [] { return kReals[random() % (sizeof kReals / sizeof *kReals)]; };
  if (random() % 8 == 0)
    return std::snprintf(line, size, "%.*f\t%0400d %s \r\n", 300, Uniform(-9, 9), 7, odd());
  if (random() % 2 == 0)
    return std::snprintf(line, size, " %.17g %.19g %.3e 99999999999 -1 +7\n", Uniform(-1, 1),
                         Uniform(-1e20, 1e20), Uniform(-1e-30, 1e-30));
  return std::snprintf(line, size, "%s %s %s %d %d %d\n", odd(), odd(), odd(), Channel(), Channel(),
                       Channel());
}

const Sample kSamples[] = {
    {"x y z", false,
     [](char* line, std::size_t size) {
       return std::snprintf(line, size, "%.3f %.3f %.3f\n", Uniform(665000, 666000),
                            Uniform(5648000, 5649000), Uniform(200, 300));
     }},
    {"x y z, 17 digits", false,
     [](char* line, std::size_t size) {
       return std::snprintf(line, size, "%.17g\t%.17g\t%.17g\n", Uniform(-1, 1), Uniform(-1, 1),
                            Uniform(-1, 1));
     }},
    {"x y z r g b", false,
     [](char* line, std::size_t size) {
       return std::snprintf(line, size, "%.6f %.6f %.6f %d %d %d\n", Uniform(665000, 666000),
                            Uniform(5648000, 5649000), Uniform(200, 300), Channel(), Channel(), Channel());
     }},
    {"nine columns", false,
     [](char* line, std::size_t size) {
       return std::snprintf(line, size, "%.4f %.4f %.4f %.6f %.6f %.6f %d %d %d\n", Uniform(-50, 50),
                            Uniform(-50, 50), Uniform(-5, 5), Uniform(-1, 1), Uniform(-1, 1), Uniform(-1, 1),
                            Channel(), Channel(), Channel());
     }},
    {"pts", true,
     [](char* line, std::size_t size) {
       return std::snprintf(line, size, "%.6f %.6f %.6f %d %d %d %d\n", Uniform(-50, 50), Uniform(-50, 50),
                            Uniform(-5, 5), Channel() * 16 - 2048, Channel(), Channel(), Channel());
     }},
    {"adversarial", false, WriteOdd},
};

std::string Generate(const Sample& sample, std::size_t bytes) {
  std::string text;
  text.reserve(bytes + 4096);
  char line[2048];
  while (text.size() < bytes) text.append(line, (std::size_t)sample.write(line, sizeof line));
  return text;
}

/** The array is as large as the text allows, so that no growth is part of the time of either. */
kelvra::TextResult Drive(const std::string& text, bool pts, std::vector<TextPoint>& store) {
  const kelvra::TextLoader_XYZ xyz;
  const kelvra::TextLoader_PTS ptsLoader;
  std::size_t at = 0;
  kelvra::TextInput input;
  input.read = [&](char* buffer, std::size_t size) {
    const std::size_t part = std::min(size, text.size() - at);
    std::memcpy(buffer, text.data() + at, part);
    at += part;
    return part;
  };
  input.fileSize = (std::int64_t)text.size();
  input.reallocate = [&](void*, std::size_t) -> void* { return store.data(); };
  input.progress = [](int) { return true; };
  return kelvra::LoadText(pts ? (const kelvra::TextLoader&)ptsLoader : xyz, input);
}

bool Agree(const reference::Reading& plain, const kelvra::TextResult& ours) {
  return plain.points.size() == (std::size_t)ours.count && plain.rejected == ours.rejected &&
         plain.noData == ours.noData && plain.notFinite == ours.notFinite &&
         (plain.points.empty() ||
          std::memcmp(plain.points.data(), ours.points, plain.points.size() * sizeof(TextPoint)) == 0);
}

} // namespace

int main(int argc, char** argv) {
  const std::size_t bytes = (std::size_t)(argc > 1 ? std::max(1, std::atoi(argv[1])) : 16) << 20;
  std::printf("%-18s %10s | %8s %8s | %8s %8s | %s\n", "file", "points", "plain", "", "driver", "", "ratio");
  std::printf("%-18s %10s | %8s %8s | %8s %8s |\n", "", "", "MB/s", "M pts/s", "MB/s", "M pts/s");
  for (const Sample& sample : kSamples) {
    const std::string text = Generate(sample, bytes);
    std::vector<char> copy(text.begin(), text.end());
    copy.push_back(0);
    reference::Reading plain = reference::Read(copy.data(), text.size(), 1, sample.pts);
    std::vector<TextPoint> store(plain.points.size() + 1);
    kelvra::TextResult ours = Drive(text, sample.pts, store);
    if (!Agree(plain, ours)) {
      std::printf("%-18s the records differ: nothing is timed\n", sample.name);
      return 1;
    }
    const std::size_t points = plain.points.size();
    double slow = 1e30, fast = 1e30;
    for (int round = 0; round < 7; ++round) {
      std::memcpy(copy.data(), text.data(), text.size());
      slow = std::min(slow,
                      Seconds([&] { reference::ReadInto(plain, copy.data(), text.size(), 1, sample.pts); }));
      fast = std::min(fast, Seconds([&] { ours = Drive(text, sample.pts, store); }));
    }
    const double megabytes = (double)text.size() / 1e6, millions = (double)points / 1e6;
    std::printf("%-18s %10zu | %8.0f %8.2f | %8.0f %8.2f | %.2f\n", sample.name, points, megabytes / slow,
                millions / slow, megabytes / fast, millions / fast, slow / fast);
  }
  return 0;
}
