#include "host/seam/os_tables.h"

#include "host/base/misbehaviour.h"
#include "host/nodes/services.h"

#include <cstdio>
#include <cstdlib>

namespace host {

void EntryNotImplemented(const char* entry) {
  const std::string text = std::string("entry ") + entry + " has no implementation";
  ReportHost(text);
  std::fprintf(stderr, "host: %s\n", text.c_str());
  std::abort();
}

void ReportEntryException(const char* entry, const char* what) {
  ReportHost(std::string("an exception in ") + entry + ": " + what);
}

bool RequireMainThread(const char* entry) {
  const Services* services = FindServices();
  if (!services || std::this_thread::get_id() == services->mainThread) return true;
  ReportModule(std::string(entry) + " is called on another thread than the main thread");
  return false;
}

bool RequireDocumentThread(const char* entry) {
  return DocumentThread::IsHere() || RequireMainThread(entry);
}

namespace {

constexpr OperatingSystem kTables = {
    API_VERSION,     &kGeneralTable,   &kResourceTable, &kBitmapTable,   &kAtomTable,   &kObjectTable,
    &kDocumentTable, &kHyperFileTable, &kFileTable,     &kViewTable,     &kGlTable,     &kMoGraphTable,
    &kVolumeTable,   &kPointTable,     &kHairTable,     &kParticleTable, &kEmitterTable};

} // namespace

} // namespace host

// Constant-initialised: static texts of the program use the tables before main.
OperatingSystem* t_C4DOS = const_cast<OperatingSystem*>(&host::kTables);
