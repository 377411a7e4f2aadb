// Entries for emitters whose particles are placed from outside.
#include "host/base/misbehaviour.h"
#include "host/nodes/services.h"
#include "host/particles/emitter.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

/** NULL and a report for other objects than emitters. */
EmitterNode* Emitter(BaseObject* op) {
  EmitterNode* emitter = AsEmitter(Impl(op));
  if (!emitter) ReportCaller("the emitter library is called with an object that is not an emitter");
  return emitter;
}

/** NULL and a report without Prepare. */
EmitterNode* Prepared(BaseObject* op, const char* call) {
  EmitterNode* emitter = Emitter(op);
  if (!emitter || emitter->prepared) return emitter;
  ReportCaller(std::string(call) + " of an emitter without Prepare");
  return nullptr;
}

struct EmitterEntries {
  static constexpr bool kDocumentThread = true;

  static EmitterLibrary* Get() {
    Libraries& libraries = TheServices().libraries;
    return libraries.emitter ? reinterpret_cast<EmitterLibrary*>(&libraries) : nullptr;
  }
  static Bool SetCount(BaseObject* op, LONG count) {
    EmitterNode* emitter = Emitter(op);
    return emitter && emitter->SetCount(count);
  }
  static Bool Reserve(BaseObject* op, LONG count) {
    EmitterNode* emitter = Emitter(op);
    return emitter && emitter->Reserve(count);
  }
  static void SetOption(BaseObject* op, LONG option) {
    if (EmitterNode* emitter = Emitter(op)) emitter->option = option;
  }
  static void Prepare(BaseObject* op) {
    EmitterNode* emitter = Emitter(op);
    if (!emitter) return;
    emitter->Clear();
    emitter->prepared = true;
  }
  static void SetParticle(BaseObject* op, LONG index, const Vector& position, const Vector& color) {
    EmitterNode* emitter = Prepared(op, "SetParticle");
    if (!emitter) return;
    if (index < 0 || index >= emitter->count)
      return ReportCaller("SetParticle: found particle " + std::to_string(index) + ", expected one of " +
                          std::to_string(emitter->count) + ", counted from 0");
    emitter->storage[index] = {position, color};
  }
  static void Update(BaseObject* op) {
    EmitterNode* emitter = Prepared(op, "Update");
    if (!emitter) return;
    emitter->prepared = false;
    ++emitter->dataDirty;
  }
};

} // namespace

HOST_BIND(Emitter, EmitterEntries)

} // namespace host
