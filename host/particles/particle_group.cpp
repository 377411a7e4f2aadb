#include "host/geometry/geometry_file.h"
#include "host/geometry/geometry_rules.h"
#include "host/particles/particle_system.h"

#include <cmath>

namespace host {

namespace {

static_assert(sizeof(ParticleValues) == 9 * sizeof(LReal), "particles are saved as nine numbers each");

std::string WrongValues(const HostArray<ParticleValues>& particles) {
  for (VLONG i = 0; i < particles.Count(); ++i) {
    const ParticleValues& values = particles[i];
    for (const Vector& v : {values.position, values.velocity, Vector(values.size, values.age, values.life)}) {
      std::string wrong = WrongVector("particle", i, v);
      if (!wrong.empty()) return wrong;
    }
  }
  return std::string();
}

bool Refuse(HyperFile* hf, FILEERROR error, const std::string& text) {
  return HyperFileImpl::From(hf)->Refuse(error, text);
}

bool Accept(HyperFile* hf, const std::string& wrong) {
  return wrong.empty() || Refuse(hf, FILEERROR_INVALID, wrong);
}

} // namespace

ParticleGroup::~ParticleGroup() {
  FreeParticles();
}

ParticleSystem* ParticleGroup::System() const {
  Node* top = Owner();
  while (top && top->kind == NodeKind::ParticleGroup) top = top->Owner();
  return dynamic_cast<ParticleSystem*>(top);
}

void ParticleGroup::Append(ParticleSlot& slot) {
  slot.group = this;
  slot.next = nullptr;
  slot.pred = last;
  (last ? last->next : first) = &slot;
  last = &slot;
  ++count;
}

void ParticleGroup::Take(ParticleSlot& slot) {
  (slot.pred ? slot.pred->next : first) = slot.next;
  (slot.next ? slot.next->pred : last) = slot.pred;
  slot.next = slot.pred = nullptr;
  --count;
}

void ParticleGroup::FreeParticles() {
  while (ParticleSlot* slot = first) {
    Take(*slot);
    pool->Free(*slot);
  }
}

bool ParticleGroup::MoveTo(const std::shared_ptr<ParticlePool>& to) {
  if (pool == to) return true;
  if (!to->Reserve(count)) return false;
  for (LONG left = count; left > 0; --left) {
    ParticleSlot* slot = first;
    ParticleSlot* made = to->Make();
    made->values = slot->values;
    Take(*slot);
    pool->Free(*slot);
    Append(*made);
  }
  pool = to;
  return true;
}

bool ParticleGroup::Settle() {
  if (const ParticleSystem* system = System()) return MoveTo(system->pool);
  return pool.use_count() == 1 || MoveTo(std::make_shared<ParticlePool>());
}

bool ParticleGroup::Values(HostArray<ParticleValues>* values) const {
  if (!values->Resized(count, values)) return false;
  VLONG i = 0;
  for (const ParticleSlot* slot = first; slot; slot = slot->next) (*values)[i++] = slot->values;
  return true;
}

bool ParticleGroup::Add(const HostArray<ParticleValues>& values) {
  if (!pool) pool = std::make_shared<ParticlePool>();
  if (!pool->Reserve(values.Count())) return false;
  for (VLONG i = 0; i < values.Count(); ++i) {
    ParticleSlot* slot = pool->Make();
    slot->values = values[i];
    Append(*slot);
  }
  return true;
}

bool ParticleGroup::WriteOwn(HyperFile* hf) {
  HostArray<ParticleValues> values;
  if (!Values(&values)) return Refuse(hf, FILEERROR_OUTOFMEMORY, "out of memory for particles");
  return Accept(hf, WrongVector("colour of group", 0, color)) && Accept(hf, WrongValues(values)) &&
         hf->WriteVector(color) && WriteElements(hf, HYPERFILEARRAY_LREAL, 9, "particles", values);
}

bool ParticleGroup::ReadOwn(HyperFile* hf, LONG) {
  HostArray<ParticleValues> values;
  if (!hf->ReadVector(&color) || !ReadElements(hf, HYPERFILEARRAY_LREAL, 9, "particles", &values))
    return false;
  if (!Accept(hf, WrongVector("colour of group", 0, color)) || !Accept(hf, WrongValues(values))) return false;
  return Add(values) || Refuse(hf, FILEERROR_OUTOFMEMORY,
                               "out of memory for " + std::to_string(values.Count()) + " particles");
}

bool ParticleGroup::CopyOwn(Node& dest) const {
  ParticleGroup& copy = static_cast<ParticleGroup&>(dest);
  HostArray<ParticleValues> values;
  copy.FreeParticles();
  copy.color = color;
  return Values(&values) && copy.Add(values);
}

void ParticleGroup::SwapOwn(Node& other) {
  ParticleGroup& group = static_cast<ParticleGroup&>(other);
  std::swap(color, group.color);
  std::swap(pool, group.pool);
  std::swap(first, group.first);
  std::swap(last, group.last);
  std::swap(count, group.count);
  for (ParticleGroup* owner : {this, &group}) {
    for (ParticleSlot* slot = owner->first; slot; slot = slot->next) slot->group = owner;
    if (!owner->pool) owner->pool = std::make_shared<ParticlePool>();
  }
  // What undo keeps leaves the system's pool before that is filled again: the groups below, too, which change
  // places next. Those that come settle when they are asked for.
  for (ParticleGroup* owner : {this, &group})
    for (Node* node : Hierarchy(*owner))
      if (node != owner && owner->System())
        static_cast<ParticleGroup*>(node)->MoveTo(std::make_shared<ParticlePool>());
  for (ParticleGroup* owner : {this, &group})
    if (!owner->System()) owner->Settle();
  for (ParticleGroup* owner : {this, &group}) owner->Settle();
}

} // namespace host
