// A scene of any bytes does no harm: a scene that loads can also be walked, and saved again it loads to the
// same scene.
#include "host/application.h"
#include "host/scene/scene_file.h"
#include "host/scene/scene_walk.h"
#include "host/scene/stream_file.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace {

template <class T>
std::string Number(T value) {
  return std::string((const char*)&value, sizeof value);
}

/** The values in a frame with the right length and checksum, so that they are read at all. */
std::string Framed(const std::uint8_t* data, std::size_t size) {
  std::string bytes = "HSCN" + Number(host::kStreamVersion) + Number(host::kSceneIdent);
  bytes += std::string((const char*)data, size) + "HEND" + Number(std::uint64_t(size + 32));
  host::Checksum checksum;
  checksum.Update(bytes.data(), bytes.size());
  return bytes + Number(checksum.Value());
}

class Ignore : public host::StreamVisitor {
  void BeginNode(const std::string&, LONG, const std::string&, LONG) override {}
  void EndNode() override {}
  void Value(HYPERFILEVALUE, const void*) override {}
  void Array(HYPERFILEARRAY, const void*, LONG, LONG) override {}
};

/** Frees the document. */
std::string Saved(BaseDocument* doc) {
  const std::string path = "/tmp/scene_fuzz." + std::to_string(::getpid()) + ".scene";
  std::string error;
  if (!doc || !host::WriteScene(doc, path, nullptr, &error)) std::abort();
  BaseDocument::Free(doc);
  std::ifstream in(path, std::ios::binary);
  std::remove(path.c_str()); // stays readable while it is open
  return std::string(std::istreambuf_iterator<char>(in), {});
}

BaseDocument* Loaded(const std::string& bytes) {
  host::ByteSource source;
  std::string error;
  return source.OpenMemory(bytes.data(), bytes.size()) ? host::ReadSceneStream(source, &error) : nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static host::Application application;
  const std::string bytes = Framed(data, size);
  BaseDocument* doc = Loaded(bytes);
  application.GetConsole().Clear();
  std::string error;
  host::ByteSource source;
  Ignore ignore;
  source.OpenMemory(bytes.data(), bytes.size());
  if (!host::VisitSceneStream(source, ignore, &error) && doc) std::abort();
  if (!doc) return 0;
  const std::string saved = Saved(doc);
  if (Saved(Loaded(saved)) != saved) std::abort();
  return 0;
}
