// Entries for memory, console, dialogs, threads, registration.
#include "host/base/misbehaviour.h"
#include "host/base/text.h"
#include "host/base/user_break.h"
#include "host/memory/memory.h"
#include "host/nodes/services.h"
#include "host/seam/os_tables.h"

#include <algorithm>
#include <chrono>

namespace host {

namespace {

struct GeneralEntries {
  static void* Alloc(VLONG size, LONG line, const CHAR* file) noexcept {
    return memory::Allocate(size, true, line, file);
  }
  static void* AllocNC(VLONG size, LONG line, const CHAR* file) noexcept {
    return memory::Allocate(size, false, line, file);
  }
  static void* ReallocNC(void* block, VLONG size, LONG line, const CHAR* file) noexcept {
    return memory::Reallocate(block, size, line, file);
  }
  static void Free(void* block) noexcept { memory::Free(block); }

  static void Assert(const CHAR* what, LONG line, const CHAR* file) {
    if (FindServices())
      TheServices().console.Print("assertion: " + std::string(what) + " (" + file + ":" +
                                  std::to_string(line) + ")");
  }
  static void ReportException(const CHAR* where, const CHAR* what) {
    ReportModule(std::string("an exception in ") + where + ": " + what);
  }
  static void Print(const String& text) { TheServices().console.Print(Utf8(text)); }
  static void StatusSetText(const String& text) {
    if (RequireDocumentThread("General::StatusSetText")) TheServices().console.SetStatusText(Utf8(text));
  }
  static void StatusSetBar(LONG percent) {
    if (RequireDocumentThread("General::StatusSetBar")) TheServices().console.SetStatusBar(percent);
  }
  static void StatusClear() {
    if (RequireDocumentThread("General::StatusClear")) TheServices().console.ClearStatus();
  }
  static GEMB_R OutString(const String& text, GEMB flags) {
    if (!RequireMainThread("General::OutString")) return GEMB_R_UNDEFINED;
    return TheServices().dialogs.Show(Utf8(text), flags);
  }
  static Bool FileSelect(Filename* result, FILESELECTTYPE, FILESELECT flags, const String& title,
                         const String& force_suffix) {
    std::string path;
    if (!RequireMainThread("General::FileSelect") ||
        !TheServices().dialogs.SelectFile(flags, Utf8(title), Utf8(force_suffix), &path))
      return FALSE;
    *result = Filename(FromUtf8(path));
    return TRUE;
  }
  static void EventAdd(EVENT) {
    RequireMainThread("General::EventAdd"); // drivers draw when they want a picture
  }
  static BaseThread* GetCurrentThread() {
    Work* work = Work::Current();
    return work ? work->Api() : nullptr;
  }
  static Bool IsMainThread() { return std::this_thread::get_id() == TheServices().mainThread; }
  static void StopAllThreads() {
    RequireMainThread("General::StopAllThreads"); // views draw on that thread here: nothing else runs
  }
  static Bool TestBreak(const BaseThread* thread) {
    return thread ? Work::From(thread)->TestBreak() : Interrupted();
  }
  static LONG GetCPUCount() { return (LONG)std::max(1u, std::thread::hardware_concurrency()); }
  static LReal GetMilliSeconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
  }
  static LONG GetC4DVersion() { return API_VERSION; }

  static Bool RegisterPlugin(PLUGINTYPE type, LONG id, const String& str, const void* data, LONG datasize) {
    if (!RequireMainThread("General::RegisterPlugin") || TheServices().faults.Strikes(Fault::Registration))
      return FALSE;
    std::string why;
    if (TheServices().plugins.Register(type, id, str, data, datasize, &why)) return TRUE;
    ReportModule(why);
    return FALSE;
  }
  static BasePlugin* FindPlugin(LONG id, PLUGINTYPE type) {
    Plugin* plugin = TheServices().plugins.Find(id, type);
    return plugin ? plugin->Api() : nullptr;
  }
  static BaseContainer* GetPluginContainer(BasePlugin* plugin) { return &Plugin::From(plugin)->container; }
  static BaseContainer* GetWorldPluginData(LONG id) { return TheServices().worldData.Get(id); }
  static Bool SetWorldPluginData(LONG id, const BaseContainer& bc, Bool add) {
    if (!RequireMainThread("General::SetWorldPluginData")) return FALSE;
    TheServices().worldData.Set(id, bc, add != FALSE);
    return TRUE;
  }
  static BaseContainer* GetWorldContainerInstance() { return TheServices().worldData.World(); }
};

} // namespace

HOST_BIND(General, GeneralEntries)

} // namespace host
