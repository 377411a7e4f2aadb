// Thinking Particles: one pool of particles for each document, and a tree of groups that hold them. Main
// thread. Positions and velocities are in world space.
//
// A particle is a number below NumParticles; its number is reused once the particle is freed. Calls with a
// number outside the pool, or of a freed particle, are reported and change nothing.
#pragma once

#include "c4d_nodes.h"
#include "ge_dynamicarray.h"
#include "ge_time.h"

enum { ID_THINKINGPARTICLES = 1001428, ID_TP_PGROUP = 1001381 };

enum TP_InsertMode {
  TP_INSERT_NONE = 0,
  TP_INSERT_UNDERFIRST = 1,
  TP_INSERT_UNDERLAST = 2,
  TP_INSERT_BEFORE = 3,
  TP_INSERT_AFTER = 4
};
enum TP_GetPGroupMode { TP_GETPGROUP_ALL = 0, TP_GETPGROUP_WITHPARTICLES = 1, TP_GETPGROUP_SELECTED = 2 };

/** Finds the library; FALSE when it is missing. Call it before anything else in this header. */
Bool InitThinkingParticles();

/**
 * A particle as a member of its group. Freeing a particle, or giving it to another group, invalidates
 * this node and no other: a walk that calls GetNext first can go on.
 */
class TP_ParticleNode : public HostOwned {
public:
  LONG GetParticleID();
  TP_ParticleNode* GetNext();
  TP_ParticleNode* GetPrev();
};

/** Title and name of a group are one text: the name. */
class TP_PGroup : public BaseList2D {
public:
  const String GetTitle() { return GetName(); }
  void SetTitle(const String& title) { SetName(title); }
  /** NULL for a group without particles of its own; subgroups do not count. */
  TP_ParticleNode* GetFirstNode();
  /** Without those of subgroups. */
  LONG NumParticles();
  /** Colour in which its particles are drawn; white at first. */
  Vector GetColor();
  void SetColor(const Vector& color);
};

/** A list of groups that owns none of them. */
class TP_PGroupArray {
public:
  Bool Append(TP_PGroup* group) { return group && groups_.Append(group); }
  LONG GetCount() const { return (LONG)groups_.Count(); }
  /** NULL outside the list. */
  TP_PGroup* GetIndex(LONG index) const { return index >= 0 && index < GetCount() ? groups_[index] : NULL; }
  void Flush() { groups_.Clear(); }

private:
  sdk::PlainList<TP_PGroup*> groups_;
};

/** (TP_MasterSystem*)doc->FindSceneHook(ID_THINKINGPARTICLES); the document owns it. */
class TP_MasterSystem : public BaseSceneHook {
public:
  /** In the built-in group, at the origin, age 0, life 0, size 1. NOTOK when memory is refused or the pool is
   * full. */
  LONG AllocParticle();
  /** Makes as many as there is room for and puts their numbers into ids; NOTOK when there is room for none.
   */
  LONG AllocParticles(LONG num, LONG* ids);
  void FreeParticle(LONG pid);
  void FreeAllParticles();
  /** One more than the largest number in use, not the number of living particles. */
  LONG NumParticles();
  /** Asking about a freed particle is allowed; a number outside the pool is reported. */
  Bool Alive(LONG pid);

  /** White and outside the tree: the caller owns it until SetPGroupHierarchy. NULL when memory is refused. */
  TP_PGroup* AllocParticleGroup();
  /** With its subgroups and all their particles. The built-in group stays; the call is reported. */
  void FreeParticleGroup(TP_PGroup*& group);
  /**
   * Puts a group below or beside another one; parent NULL is the built-in group. TP_INSERT_NONE only removes
   * it. FALSE when it would lie below itself or beside the built-in group.
   */
  Bool SetPGroupHierarchy(TP_PGroup* parent, TP_PGroup* group, TP_InsertMode mode);
  /**
   * Appends ingroup and, when asked, all groups below it, parents first; NULL is the built-in group ("All"),
   * which then comes first in any mode. Returns their number, NOTOK when memory is refused.
   */
  LONG GetParticleGroups(TP_PGroup* ingroup, TP_PGroupArray* tab, TP_GetPGroupMode mode,
                         Bool subgroups = TRUE);
  LONG GetGroupParticleCount(TP_PGroup* group, Bool subgroups = TRUE);

  /** Appends the particle to a group; NULL is the built-in group. */
  void SetGroup(LONG pid, TP_PGroup* group);
  TP_PGroup* Group(LONG pid);
  void SetPosition(LONG pid, const Vector& position);
  Vector Position(LONG pid);
  void SetVelocity(LONG pid, const Vector& velocity);
  Vector Velocity(LONG pid);
  void SetSize(LONG pid, Real size);
  Real Size(LONG pid);
  void SetAge(LONG pid, const BaseTime& age);
  BaseTime Age(LONG pid);
  void SetLife(LONG pid, const BaseTime& life);
  BaseTime Life(LONG pid);
};
