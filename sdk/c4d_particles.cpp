#include "c4d_os.h"

Bool InitThinkingParticles() {
  return C4DOS.particle->Init();
}

LONG TP_ParticleNode::GetParticleID() {
  return C4DOS.particle->GetNodeParticle(this);
}
TP_ParticleNode* TP_ParticleNode::GetNext() {
  return C4DOS.particle->GetNextNode(this);
}
TP_ParticleNode* TP_ParticleNode::GetPrev() {
  return C4DOS.particle->GetPrevNode(this);
}

TP_ParticleNode* TP_PGroup::GetFirstNode() {
  return C4DOS.particle->GetFirstNode(this);
}
LONG TP_PGroup::NumParticles() {
  return C4DOS.particle->GetGroupSize(this);
}
Vector TP_PGroup::GetColor() {
  Vector color;
  C4DOS.particle->GetColor(this, &color);
  return color;
}
void TP_PGroup::SetColor(const Vector& color) {
  C4DOS.particle->SetColor(this, color);
}

LONG TP_MasterSystem::AllocParticle() {
  return C4DOS.particle->AllocParticle(this);
}
LONG TP_MasterSystem::AllocParticles(LONG num, LONG* ids) {
  LONG made = 0;
  for (; made < num; ++made) {
    const LONG id = AllocParticle();
    if (id == NOTOK) break;
    ids[made] = id;
  }
  return made > 0 || num <= 0 ? made : NOTOK;
}
void TP_MasterSystem::FreeParticle(LONG pid) {
  C4DOS.particle->FreeParticle(this, pid);
}
void TP_MasterSystem::FreeAllParticles() {
  C4DOS.particle->FreeAllParticles(this);
}
LONG TP_MasterSystem::NumParticles() {
  return C4DOS.particle->NumParticles(this);
}
Bool TP_MasterSystem::Alive(LONG pid) {
  return C4DOS.particle->Alive(this, pid);
}

TP_PGroup* TP_MasterSystem::AllocParticleGroup() {
  return C4DOS.particle->AllocParticleGroup(this);
}
void TP_MasterSystem::FreeParticleGroup(TP_PGroup*& group) {
  C4DOS.particle->FreeParticleGroup(this, group);
  group = NULL;
}
Bool TP_MasterSystem::SetPGroupHierarchy(TP_PGroup* parent, TP_PGroup* group, TP_InsertMode mode) {
  return C4DOS.particle->SetPGroupHierarchy(this, parent, group, mode);
}
LONG TP_MasterSystem::GetParticleGroups(TP_PGroup* ingroup, TP_PGroupArray* tab, TP_GetPGroupMode mode,
                                        Bool subgroups) {
  return C4DOS.particle->GetParticleGroups(this, ingroup, tab, mode, subgroups);
}
LONG TP_MasterSystem::GetGroupParticleCount(TP_PGroup* group, Bool subgroups) {
  return C4DOS.particle->GetGroupParticleCount(this, group, subgroups);
}

void TP_MasterSystem::SetGroup(LONG pid, TP_PGroup* group) {
  C4DOS.particle->SetGroup(this, pid, group);
}
TP_PGroup* TP_MasterSystem::Group(LONG pid) {
  return C4DOS.particle->Group(this, pid);
}
void TP_MasterSystem::SetPosition(LONG pid, const Vector& position) {
  C4DOS.particle->SetPosition(this, pid, position);
}
Vector TP_MasterSystem::Position(LONG pid) {
  Vector position;
  C4DOS.particle->GetPosition(this, pid, &position);
  return position;
}
void TP_MasterSystem::SetVelocity(LONG pid, const Vector& velocity) {
  C4DOS.particle->SetVelocity(this, pid, velocity);
}
Vector TP_MasterSystem::Velocity(LONG pid) {
  Vector velocity;
  C4DOS.particle->GetVelocity(this, pid, &velocity);
  return velocity;
}
void TP_MasterSystem::SetSize(LONG pid, Real size) {
  C4DOS.particle->SetSize(this, pid, size);
}
Real TP_MasterSystem::Size(LONG pid) {
  return C4DOS.particle->GetSize(this, pid);
}
void TP_MasterSystem::SetAge(LONG pid, const BaseTime& age) {
  C4DOS.particle->SetAge(this, pid, age);
}
BaseTime TP_MasterSystem::Age(LONG pid) {
  BaseTime age;
  C4DOS.particle->GetAge(this, pid, &age);
  return age;
}
void TP_MasterSystem::SetLife(LONG pid, const BaseTime& life) {
  C4DOS.particle->SetLife(this, pid, life);
}
BaseTime TP_MasterSystem::Life(LONG pid) {
  BaseTime life;
  C4DOS.particle->GetLife(this, pid, &life);
  return life;
}
