#include "c4d_os.h"

Bool InitThinkingParticles() {
  return C4DOS.Tp->Init();
}

LONG TP_ParticleNode::GetParticleID() {
  return C4DOS.Tp->GetNodeParticle(this);
}
TP_ParticleNode* TP_ParticleNode::GetNext() {
  return C4DOS.Tp->GetNextNode(this);
}
TP_ParticleNode* TP_ParticleNode::GetPrev() {
  return C4DOS.Tp->GetPrevNode(this);
}

TP_ParticleNode* TP_PGroup::GetFirstNode() {
  return C4DOS.Tp->GetFirstNode(this);
}
LONG TP_PGroup::NumParticles() {
  return C4DOS.Tp->GetGroupSize(this);
}
Vector TP_PGroup::GetColor() {
  Vector color;
  C4DOS.Tp->GetColor(this, &color);
  return color;
}
void TP_PGroup::SetColor(const Vector& color) {
  C4DOS.Tp->SetColor(this, color);
}

LONG TP_MasterSystem::AllocParticle() {
  return C4DOS.Tp->AllocParticle(this);
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
  C4DOS.Tp->FreeParticle(this, pid);
}
void TP_MasterSystem::FreeAllParticles() {
  C4DOS.Tp->FreeAllParticles(this);
}
LONG TP_MasterSystem::NumParticles() {
  return C4DOS.Tp->NumParticles(this);
}
Bool TP_MasterSystem::Alive(LONG pid) {
  return C4DOS.Tp->Alive(this, pid);
}

TP_PGroup* TP_MasterSystem::AllocParticleGroup() {
  return C4DOS.Tp->AllocParticleGroup(this);
}
void TP_MasterSystem::FreeParticleGroup(TP_PGroup*& group) {
  C4DOS.Tp->FreeParticleGroup(this, group);
  group = NULL;
}
Bool TP_MasterSystem::SetPGroupHierarchy(TP_PGroup* parent, TP_PGroup* group, TP_InsertMode mode) {
  return C4DOS.Tp->SetPGroupHierarchy(this, parent, group, mode);
}
LONG TP_MasterSystem::GetParticleGroups(TP_PGroup* ingroup, TP_PGroupArray* tab, TP_GetPGroupMode mode,
                                        Bool subgroups) {
  return C4DOS.Tp->GetParticleGroups(this, ingroup, tab, mode, subgroups);
}
LONG TP_MasterSystem::GetGroupParticleCount(TP_PGroup* group, Bool subgroups) {
  return C4DOS.Tp->GetGroupParticleCount(this, group, subgroups);
}

void TP_MasterSystem::SetGroup(LONG pid, TP_PGroup* group) {
  C4DOS.Tp->SetGroup(this, pid, group);
}
TP_PGroup* TP_MasterSystem::Group(LONG pid) {
  return C4DOS.Tp->Group(this, pid);
}
void TP_MasterSystem::SetPosition(LONG pid, const Vector& position) {
  C4DOS.Tp->SetPosition(this, pid, position);
}
Vector TP_MasterSystem::Position(LONG pid) {
  Vector position;
  C4DOS.Tp->GetPosition(this, pid, &position);
  return position;
}
void TP_MasterSystem::SetVelocity(LONG pid, const Vector& velocity) {
  C4DOS.Tp->SetVelocity(this, pid, velocity);
}
Vector TP_MasterSystem::Velocity(LONG pid) {
  Vector velocity;
  C4DOS.Tp->GetVelocity(this, pid, &velocity);
  return velocity;
}
void TP_MasterSystem::SetSize(LONG pid, Real size) {
  C4DOS.Tp->SetSize(this, pid, size);
}
Real TP_MasterSystem::Size(LONG pid) {
  return C4DOS.Tp->GetSize(this, pid);
}
void TP_MasterSystem::SetAge(LONG pid, const BaseTime& age) {
  C4DOS.Tp->SetAge(this, pid, age);
}
BaseTime TP_MasterSystem::Age(LONG pid) {
  BaseTime age;
  C4DOS.Tp->GetAge(this, pid, &age);
  return age;
}
void TP_MasterSystem::SetLife(LONG pid, const BaseTime& life) {
  C4DOS.Tp->SetLife(this, pid, life);
}
BaseTime TP_MasterSystem::Life(LONG pid) {
  BaseTime life;
  C4DOS.Tp->GetLife(this, pid, &life);
  return life;
}
