#include "object/convert/conversion.h"

#ifdef KELVRA_VENDOR_INTERFACE

namespace kelvra {

/** The vendor's interface has no header for the emitter library, so a build against it fills nothing. */
BaseObject* ConvertToEmitter(const ConversionRequest&) {
  return NULL;
}

} // namespace kelvra

#else

#include "lib_emitter.h"
#include "plugin_ids.h"

namespace kelvra {

namespace {

/** Parameters of the emitter, and the option that its library needs before it is filled. */
constexpr LONG kEmitterSwitch = 10080, kEmitterCount = 10020, kEmitterFlag = 10175;
constexpr LONG kEmitterOption = 16;

/** The first emitter that suits, among these objects and anywhere below them. */
template <class Suits>
BaseObject* FindEmitter(BaseObject* first, const Suits& suits) {
  for (BaseObject* op = first; op; op = op->GetNext()) {
    if (op->GetType() == Oemitter_external && suits(op)) return op;
    if (BaseObject* below = FindEmitter(op->GetDown(), suits)) return below;
  }
  return NULL;
}

/**
 * The emitter of the last build, or a new one after the generator; NULL when it cannot be made. The emitter
 * carries a link to its generator, under a key that is ours alone: two clouds may have the same name. In
 * scenes of earlier versions emitters have a name only, and are taken over.
 */
BaseObject* EmitterFor(BaseObject* op, BaseDocument* doc) {
  const LONG key = kPointCloudId;
  const auto owner = [=](BaseObject* emitter) { return emitter->GetDataInstance()->GetObjectLink(key, doc); };
  BaseObject* emitter = FindEmitter(doc->GetFirstObject(), [&](BaseObject* e) { return owner(e) == op; });
  if (emitter) return emitter;
  emitter = FindEmitter(doc->GetFirstObject(),
                        [&](BaseObject* e) { return !owner(e) && e->GetName() == op->GetName(); });
  if (!emitter) {
    emitter = BaseObject::Alloc(Oemitter_external);
    if (!emitter) return NULL;
    emitter->SetName(op->GetName());
    doc->InsertObject(emitter, op->GetUp(), op);
  }
  emitter->GetDataInstance()->SetLink(key, op);
  return emitter;
}

} // namespace

BaseObject* ConvertToEmitter(const ConversionRequest& request) {
  BaseDocument* doc = request.op->GetDocument();
  EmitterLibrary* library = EmitterLibrary::Get();
  BaseObject* emitter = doc && library ? EmitterFor(request.op, doc) : NULL;
  if (!emitter) return NULL;
  BaseContainer* data = emitter->GetDataInstance();
  data->SetLong(kEmitterSwitch, 0);
  data->SetLong(kEmitterCount, request.count);
  data->SetBool(kEmitterFlag, FALSE);
  if (!library->SetCount(emitter, request.count) || !library->Reserve(emitter, request.count)) {
    GePrint("cant set xp count");
    return NULL;
  }
  library->SetOption(emitter, kEmitterOption);
  library->Prepare(emitter);
  const Matrix global = request.op->GetMg();
  const LReal full = 65535.0;
  request.store->VisitPoints(request.count, request.size,
                             [&](const Vector& p, const UWORD* rgb, LONG number) {
                               library->SetParticle(emitter, number, global * p,
                                                    Vector(rgb[0] / full, rgb[1] / full, rgb[2] / full));
                               return !request.IsStopped(number);
                             });
  // A part would pass for the whole cloud.
  if (request.stopped) {
    data->SetLong(kEmitterCount, 0);
    library->SetCount(emitter, 0);
  }
  library->Update(emitter);
  emitter->Message(MSG_UPDATE);
  return NULL;
}

} // namespace kelvra

#endif
