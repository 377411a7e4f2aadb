#include "host/particles/emitter.h"

#include "host/geometry/geometry_file.h"
#include "host/geometry/geometry_rules.h"
#include "host/nodes/node_types.h"

namespace host {

namespace {

static_assert(sizeof(EmitterParticle) == 6 * sizeof(LReal), "particles are saved as six numbers each");

const EmitterParticle kNewParticle = {Vector(), Vector(1.0)};

std::string WrongParticle(const EmitterNode& emitter) {
  for (LONG i = 0; i < emitter.count; ++i)
    for (const Vector& v : {emitter.storage[i].position, emitter.storage[i].color}) {
      std::string wrong = WrongVector("particle", i, v);
      if (!wrong.empty()) return wrong;
    }
  return std::string();
}

bool Check(const EmitterNode& emitter, HyperFile* hf) {
  std::string wrong = WrongParticle(emitter);
  return wrong.empty() || HyperFileImpl::From(hf)->Refuse(FILEERROR_INVALID, wrong);
}

} // namespace

EmitterNode* AsEmitter(Object* op) {
  return dynamic_cast<EmitterNode*>(op);
}
const EmitterNode* AsEmitter(const Object* op) {
  return dynamic_cast<const EmitterNode*>(op);
}

bool EmitterNode::Reserve(LONG wanted) {
  return wanted >= 0 && (wanted <= storage.Count() || storage.Resized(wanted, &storage));
}

bool EmitterNode::SetCount(LONG wanted) {
  if (!Reserve(wanted)) return false;
  for (LONG i = count; i < wanted; ++i) storage[i] = kNewParticle;
  count = wanted;
  ++dataDirty;
  return true;
}

void EmitterNode::Clear() {
  for (LONG i = 0; i < count; ++i) storage[i] = kNewParticle;
}

Box EmitterNode::OwnBox() const {
  const Matrix toOwn = IsInWorldSpace() ? !Global() : Matrix();
  Box box;
  for (LONG i = 0; i < count; ++i) box.Add(toOwn * storage[i].position);
  return box;
}

bool EmitterNode::WriteOwn(HyperFile* hf) {
  HostArray<EmitterParticle> exact; // without what is only reserved
  if (!storage.Resized(count, &exact))
    return HyperFileImpl::From(hf)->Refuse(FILEERROR_OUTOFMEMORY, "out of memory for particles");
  return Check(*this, hf) && hf->WriteLong(option) &&
         WriteElements(hf, HYPERFILEARRAY_LREAL, 6, "particles", exact);
}

bool EmitterNode::ReadOwn(HyperFile* hf, LONG) {
  if (!hf->ReadLong(&option) || !ReadElements(hf, HYPERFILEARRAY_LREAL, 6, "particles", &storage))
    return false;
  count = (LONG)storage.Count();
  return Check(*this, hf);
}

bool EmitterNode::CopyOwn(Node& dest) const {
  EmitterNode& copy = static_cast<EmitterNode&>(dest);
  if (!storage.Resized(count, &copy.storage)) return false;
  copy.count = count;
  copy.option = option;
  return true;
}

void EmitterNode::SwapOwn(Node& other) {
  EmitterNode& emitter = static_cast<EmitterNode&>(other);
  storage.Swap(emitter.storage);
  std::swap(count, emitter.count);
  std::swap(option, emitter.option);
}

void RegisterEmitter(NodeTypes& types) {
  types.Add({NodeKind::Object, Oemitter_external, "Particle Emitter", 0, MakeOwn<EmitterNode>});
}

} // namespace host
