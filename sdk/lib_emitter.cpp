#include "c4d_os.h"

EmitterLibrary* EmitterLibrary::Get() {
  return C4DOS.Em->Get();
}
Bool EmitterLibrary::SetCount(BaseObject* emitter, LONG count) {
  return C4DOS.Em->SetCount(emitter, count);
}
Bool EmitterLibrary::Reserve(BaseObject* emitter, LONG count) {
  return C4DOS.Em->Reserve(emitter, count);
}
void EmitterLibrary::SetOption(BaseObject* emitter, LONG option) {
  C4DOS.Em->SetOption(emitter, option);
}
void EmitterLibrary::Prepare(BaseObject* emitter) {
  C4DOS.Em->Prepare(emitter);
}
void EmitterLibrary::SetParticle(BaseObject* emitter, LONG index, const Vector& position,
                                 const Vector& color) {
  C4DOS.Em->SetParticle(emitter, index, position, color);
}
void EmitterLibrary::Update(BaseObject* emitter) {
  C4DOS.Em->Update(emitter);
}
