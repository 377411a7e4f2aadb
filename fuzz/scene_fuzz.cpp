// A scene of any bytes neither crashes the load nor makes it differ from itself: what loads is saved and loads again.
#include "host/application.h"
#include "host/scene/checksum.h"
#include "host/scene/scene_file.h"
#include "host/scene/scene_walk.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

/** The values in a frame with the right length and checksum, so that they are read at all. */
std::string Framed(const std::uint8_t* data, std::size_t size) {
  const LONG version = 1, ident = C4D_FOUR_BYTE('S', 'C', 'N', 'E');
  const std::uint64_t length = size + 32;
  std::string bytes = "HSCN" + std::string((const char*)&version, 4) + std::string((const char*)&ident, 4);
  bytes += std::string((const char*)data, size) + "HEND" + std::string((const char*)&length, 8);
  host::Checksum checksum;
  checksum.Update(bytes.data(), bytes.size());
  const std::uint64_t sum = checksum.Value();
  return bytes + std::string((const char*)&sum, 8);
}

class Ignore : public host::StreamVisitor {
public:
  void BeginNode(const std::string&, LONG, const std::string&, LONG) override {}
  void EndNode() override {}
  void Value(HYPERFILEVALUE, const void*) override {}
  void Array(HYPERFILEARRAY, const void*, LONG, LONG) override {}
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static host::Application application;
  const std::string bytes = Framed(data, size);
  std::string error;
  host::ByteSource walked, loaded;
  Ignore ignore;
  if (!walked.OpenMemory(bytes.data(), bytes.size()) || !loaded.OpenMemory(bytes.data(), bytes.size())) return 0;
  const bool visible = host::VisitSceneStream(walked, ignore, &error);
  BaseDocument* doc = host::ReadSceneStream(loaded, &error);
  application.GetConsole().Clear();
  if (!doc) return 0;
  // What loads has nothing that a walk could stumble over, except values that nobody reads.
  if (!visible && error.empty()) std::abort();
  const std::string path = "/tmp/scene_fuzz." + std::to_string(std::rand()) + ".scene";
  if (!host::WriteScene(doc, path, nullptr, &error)) std::abort();
  BaseDocument::Free(doc);
  doc = host::ReadScene(path, &error);
  std::remove(path.c_str());
  if (!doc) std::abort();
  BaseDocument::Free(doc);
  return 0;
}
