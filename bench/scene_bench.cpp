// Saving and opening a scene whose one object holds 10 million points, against plain write() and read() of
// the same bytes on the same disk. Both sides write to a temporary file, flush it to the disk and rename it.
//
//   scene_bench [folder] [points]
#include "host/application.h"
#include "host/scene/scene_file.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr LONG kCloud = 1099011;
constexpr int kRuns = 7;

struct Part {
  HYPERFILEARRAY kind;
  LONG elementSize, perPoint;
  std::vector<unsigned char> bytes;
};

/** Positions, colours, 16-bit colours and a 16-bit scalar: 32 bytes a point. */
std::vector<Part> MakeParts(LONG points) {
  std::vector<Part> parts = {{HYPERFILEARRAY_SREAL, 4, 3, {}},
                             {HYPERFILEARRAY_SREAL, 4, 3, {}},
                             {HYPERFILEARRAY_WORD, 2, 3, {}},
                             {HYPERFILEARRAY_WORD, 2, 1, {}}};
  unsigned random = 1;
  for (Part& part : parts) {
    part.bytes.resize((std::size_t)points * (std::size_t)(part.elementSize * part.perPoint));
    for (unsigned char& byte : part.bytes)
      byte = (unsigned char)((random = random * 1664525u + 1013904223u) >> 24);
  }
  return parts;
}

class Cloud : public ObjectData {
public:
  static NodeData* Alloc() { return gNew Cloud; }
  std::vector<Part> parts;

  Bool Write(GeListNode*, HyperFile* hf) override {
    for (const Part& part : parts)
      if (!hf->WriteLong(Elements(part)) ||
          !hf->WriteArray(part.bytes.data(), part.kind, part.elementSize, Elements(part)))
        return FALSE;
    return TRUE;
  }
  Bool Read(GeListNode*, HyperFile* hf, LONG) override {
    parts = MakeParts(0);
    for (Part& part : parts) {
      LONG elements = 0;
      if (!hf->ReadLong(&elements) || elements < 0) return FALSE;
      part.bytes.resize((std::size_t)elements * (std::size_t)part.elementSize);
      if (!hf->ReadArray(part.bytes.data(), part.kind, part.elementSize, elements)) return FALSE;
    }
    return TRUE;
  }

private:
  static LONG Elements(const Part& part) { return (LONG)(part.bytes.size() / (std::size_t)part.elementSize); }
};

Cloud& CloudOf(BaseDocument* doc) {
  return *(Cloud*)doc->GetFirstObject()->GetNodeData();
}

[[noreturn]] void Stop(const std::string& what) {
  std::fprintf(stderr, "scene_bench: %s\n", what.c_str());
  std::exit(1);
}

template <class Work>
double Seconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void PlainWrite(const std::vector<Part>& parts, const std::string& folder) {
  const std::string temporary = folder + "/plain.tmp", path = folder + "/plain.raw";
  const int file = ::open(temporary.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0666);
  if (file < 0) Stop("cannot write to " + folder);
  for (const Part& part : parts)
    if (::write(file, part.bytes.data(), part.bytes.size()) != (ssize_t)part.bytes.size())
      Stop("short write");
  if (::fsync(file) != 0 || ::close(file) != 0 || ::rename(temporary.c_str(), path.c_str()) != 0)
    Stop("plain write failed");
  const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  ::fsync(directory);
  ::close(directory);
}

/** Into fresh memory, as a scene that is opened needs it. */
std::vector<Part> PlainRead(const std::vector<Part>& like, const std::string& folder) {
  std::vector<Part> parts = MakeParts(0);
  const int file = ::open((folder + "/plain.raw").c_str(), O_RDONLY);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    parts[i].bytes.resize(like[i].bytes.size());
    if (::read(file, parts[i].bytes.data(), parts[i].bytes.size()) != (ssize_t)parts[i].bytes.size())
      Stop("short read");
  }
  ::close(file);
  return parts;
}

bool Same(const std::vector<Part>& a, const std::vector<Part>& b) {
  for (std::size_t i = 0; i < a.size(); ++i)
    if (a[i].bytes != b[i].bytes) return false;
  return a.size() == b.size();
}

} // namespace

int main(int argc, char** argv) {
  const std::string folder = argc > 1 ? argv[1] : ".";
  const LONG points = argc > 2 ? std::atoi(argv[2]) : 10000000;
  const std::string path = folder + "/bench.scene";
  host::Application application;
  if (!RegisterObjectPlugin(kCloud, "Cloud", 0, Cloud::Alloc, String(), nullptr, 1))
    Stop("the object was refused");
  BaseDocument* doc = application.NewDocument();
  doc->InsertObject(BaseObject::Alloc(kCloud), nullptr, nullptr);
  CloudOf(doc).parts = MakeParts(points);
  const std::vector<Part>& parts = CloudOf(doc).parts;

  std::vector<double> save, plainSave, open, plainOpen;
  for (int run = 0; run < kRuns; ++run) {
    std::string error;
    const auto ours = [&] {
      if (!host::WriteScene(doc, path, nullptr, &error)) Stop(error);
    };
    const auto plain = [&] { PlainWrite(parts, folder); };
    // In turn: disk activity left over from the first one slows the second.
    if (run % 2) plainSave.push_back(Seconds(plain));
    save.push_back(Seconds(ours));
    if (run % 2 == 0) plainSave.push_back(Seconds(plain));
    BaseDocument* opened = nullptr;
    open.push_back(Seconds([&] { opened = host::ReadScene(path, &error); }));
    if (!opened) Stop(error);
    std::vector<Part> read;
    plainOpen.push_back(Seconds([&] { read = PlainRead(parts, folder); }));
    if (!Same(CloudOf(opened).parts, parts) || !Same(read, parts))
      Stop("the data read differs from the data written");
    BaseDocument::Free(opened);
  }
  ::unlink(path.c_str());
  ::unlink((folder + "/plain.raw").c_str());

  const auto report = [&](const char* what, const std::vector<double>& ours,
                          const std::vector<double>& plain) {
    const double a = Median(ours), b = Median(plain);
    std::printf("%-5s %d points: %.3f s, %.1f M points/s; plain %.3f s; ratio %.2f\n", what, (int)points, a,
                points / a * 1e-6, b, a / b);
  };
  report("save", save, plainSave);
  report("open", open, plainOpen);
  return 0;
}
