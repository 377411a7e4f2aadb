#include "c4d_os.h"

EmitterLibrary* EmitterLibrary::Get() {
  return C4DOS.emitter->Get();
}
Bool EmitterLibrary::SetCount(BaseObject* emitter, LONG count) {
  return C4DOS.emitter->SetCount(emitter, count);
}
Bool EmitterLibrary::Reserve(BaseObject* emitter, LONG count) {
  return C4DOS.emitter->Reserve(emitter, count);
}
void EmitterLibrary::SetOption(BaseObject* emitter, LONG option) {
  C4DOS.emitter->SetOption(emitter, option);
}
void EmitterLibrary::Prepare(BaseObject* emitter) {
  C4DOS.emitter->Prepare(emitter);
}
void EmitterLibrary::SetParticle(BaseObject* emitter, LONG index, const Vector& position,
                                 const Vector& color) {
  C4DOS.emitter->SetParticle(emitter, index, position, color);
}
void EmitterLibrary::Update(BaseObject* emitter) {
  C4DOS.emitter->Update(emitter);
}
