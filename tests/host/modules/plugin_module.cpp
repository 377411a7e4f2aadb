// A module with one object type, and ways in which it can refuse to start.
#include "c4d.h"

#include <stdexcept>

namespace {

/** What the object does on a button: see modules_test.cpp. */
enum { kLeakBlock = 1, kLeakNode = 2, kThrow = 3, kFreeTwice = 4, kPrintPath = 5 };

class Worker : public ObjectData {
public:
  static NodeData* Alloc() { return gNew Worker; }
  Bool Message(GeListNode*, LONG type, void* data) override {
    if (type != MSG_DESCRIPTION_COMMAND) return TRUE;
    switch (((DescriptionCommand*)data)->id[0].id) {
    case kLeakBlock:
      return GeAlloc(1000) != nullptr;
    case kLeakNode:
      return BaseObject::Alloc(1099101) != nullptr;
    case kThrow:
      throw std::runtime_error("button of doom");
    case kFreeTwice: {
      void* block = GeAlloc(16);
      void* again = block;
      GeFree(block);
      GeFree(again);
      return TRUE;
    }
    case kPrintPath:
      GePrint(GeGetPluginPath().GetString());
      return TRUE;
    }
    return FALSE;
  }
};

class Listener : public MessageData {
public:
  Bool CoreMessage(LONG, const BaseContainer&) override { return TRUE; }
};

} // namespace

Bool PluginStart() {
#if MODULE_SOUND
  GePrint("start");
#endif
  RegisterObjectPlugin(1099101, "Worker", OBJECT_GENERATOR, Worker::Alloc, String(), nullptr, 2);
  RegisterMessagePlugin(1099102, String(), 0, gNew Listener);
#if MODULE_START_REFUSED
  return FALSE;
#elif MODULE_START_THROWS
  throw std::runtime_error("bad start");
#else
  return TRUE;
#endif
}

void PluginEnd() {
  GePrint("end");
}

Bool PluginMessage(LONG id, void* data) {
#if MODULE_MESSAGE_REFUSED
  if (id == C4DPL_INIT_SYS) return FALSE;
#elif MODULE_SOUND
  if (id == C4DMSG_PRIORITY) {
    GePrint("priority " + LongToString(*(LONG*)data));
    *(LONG*)data = 850;
    return TRUE;
  }
  if (id == C4DPL_INIT_SYS) GePrint("initialise");
#endif
  (void)data;
  return id == C4DPL_INIT_SYS;
}
