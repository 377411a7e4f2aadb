// Entries for particles and their groups.
#include "host/base/misbehaviour.h"
#include "host/nodes/services.h"
#include "host/particles/particle_system.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

ParticleSystem& System(TP_MasterSystem* system) {
  return static_cast<ParticleSystem&>(*Impl((C4DAtom*)system));
}

/** NULL and a report for other nodes than particle groups; NULL stays NULL. */
ParticleGroup* GroupOf(TP_PGroup* group) {
  ParticleGroup* impl = dynamic_cast<ParticleGroup*>(Impl((C4DAtom*)group));
  if (group && !impl) ReportCaller("the particle library is called with a node that is not a particle group");
  return impl;
}

/** NULL and a report for a number that no living particle has. */
ParticleSlot* Living(TP_MasterSystem* system, LONG pid, const char* call) {
  ParticlePool& pool = *System(system).pool;
  ParticleSlot* slot = pool.Find(pid);
  if (slot) return slot;
  if (pid < 0 || pid >= pool.Bound())
    ReportCaller(std::string(call) + ": found particle " + std::to_string(pid) + ", expected one of " +
                 std::to_string(pool.Bound()) + ", counted from 0");
  else
    ReportCaller(std::string(call) + ": particle " + std::to_string(pid) + " was freed");
  return nullptr;
}

LONG CountOf(const ParticleSystem& system, ParticleGroup& group, bool below) {
  LONG count = 0;
  if (!below) return group.count;
  system.Visit(group, [&count](const ParticleGroup& each) { count += each.count; });
  return count;
}

bool IsWanted(const ParticleGroup& group, TP_GetPGroupMode mode) {
  return mode == TP_GETPGROUP_ALL || (mode == TP_GETPGROUP_WITHPARTICLES && group.count > 0) ||
         (mode == TP_GETPGROUP_SELECTED && (group.bits & BIT_ACTIVE));
}

bool LiesBelow(const Node* node, const Node& top) {
  while (node && node != &top) node = node->Owner();
  return node != nullptr;
}

/** The list and the place in it that a mode names; false where no group can lie. */
bool FindPlace(ParticleGroup& other, TP_InsertMode mode, NodeList** list, Node** pred) {
  *list = mode == TP_INSERT_BEFORE || mode == TP_INSERT_AFTER ? other.list : &other.children;
  *pred = mode == TP_INSERT_UNDERLAST ? other.children.last
          : mode == TP_INSERT_BEFORE  ? other.pred
          : mode == TP_INSERT_AFTER   ? &other
                                      : nullptr;
  return *list && (*list)->owner->kind == NodeKind::ParticleGroup;
}

struct ParticleEntries {
  static constexpr bool kDocumentThread = true;

  static Bool Init() { return TheServices().libraries.particles; }

  static LONG AllocParticle(TP_MasterSystem* api) {
    ParticleSystem& system = System(api);
    ParticleSlot* slot = system.pool->IsFull() ? nullptr : system.pool->Make();
    if (!slot) return NOTOK;
    system.root->Append(*slot);
    return slot->id;
  }
  static void FreeParticle(TP_MasterSystem* system, LONG pid) {
    ParticleSlot* slot = Living(system, pid, "FreeParticle");
    if (!slot) return;
    slot->group->Take(*slot);
    System(system).pool->Free(*slot);
  }
  static void FreeAllParticles(TP_MasterSystem* api) {
    ParticleSystem& system = System(api);
    // Groups that were loaded may still have pools of their own.
    system.Visit(*system.root, [](ParticleGroup& group) { group.FreeParticles(); });
    for (LONG pid = 0; pid < system.pool->Bound(); ++pid)
      if (ParticleSlot* slot = system.pool->Find(pid)) slot->group->Take(*slot);
    system.pool->Clear();
  }
  static LONG NumParticles(TP_MasterSystem* system) {
    System(system).SettleGroups();
    return System(system).pool->Bound();
  }
  static Bool Alive(TP_MasterSystem* system, LONG pid) {
    ParticlePool& pool = *System(system).pool;
    if (pid >= 0 && pid < pool.Bound()) return pool.Find(pid) != nullptr;
    return Living(system, pid, "Alive") != nullptr;
  }

  static TP_PGroup* AllocParticleGroup(TP_MasterSystem* system) {
    ParticleGroup* group = static_cast<ParticleGroup*>(MakeNode(NodeKind::ParticleGroup, ID_TP_PGROUP));
    group->pool = System(system).pool;
    return group->Api();
  }
  static void FreeParticleGroup(TP_MasterSystem*, TP_PGroup* api) {
    ParticleGroup* group = GroupOf(api);
    if (!group) return;
    if (group->System() && group == group->System()->root)
      return ReportCaller("the built-in particle group is freed");
    group->keptByUndo ? RemoveNode(*group) : FreeNode(group);
  }
  static Bool SetPGroupHierarchy(TP_MasterSystem* api, TP_PGroup* parent, TP_PGroup* child,
                                 TP_InsertMode mode) {
    ParticleSystem& system = System(api);
    ParticleGroup *group = GroupOf(child), *other = parent ? GroupOf(parent) : system.root;
    if (!group || !other) return FALSE;
    NodeList* list = nullptr;
    Node* pred = nullptr;
    const char* wrong = nullptr;
    if (group == system.root)
      wrong = "the built-in particle group is given another place";
    else if (mode != TP_INSERT_NONE && other->System() != &system)
      wrong = "a particle group is inserted at one that does not lie in the system";
    else if (mode != TP_INSERT_NONE && LiesBelow(other, *group))
      wrong = "a particle group is inserted at itself or below itself";
    else if (mode != TP_INSERT_NONE && !FindPlace(*other, mode, &list, &pred))
      wrong = "a particle group is inserted beside the built-in one";
    if (wrong) {
      ReportCaller(wrong);
      return FALSE;
    }
    // The place is named by what lies there, which may be the group itself.
    if (pred == group) pred = group->pred;
    RemoveNode(*group);
    if (list) InsertNode(*list, *group, pred);
    return mode == TP_INSERT_NONE || system.SettleGroups();
  }
  static LONG GetParticleGroups(TP_MasterSystem* api, TP_PGroup* in, TP_PGroupArray* tab,
                                TP_GetPGroupMode mode, Bool subgroups) {
    ParticleSystem& system = System(api);
    ParticleGroup* top = in ? GroupOf(in) : system.root;
    if (!top || !tab || !system.SettleGroups()) return NOTOK;
    const ScopeSwitch asCaller(inModule || calledByModule);
    LONG found = 0;
    bool good = true;
    system.Visit(*top, [&](ParticleGroup& group) {
      const bool asked = &group == top || subgroups;
      if (!asked || (&group != system.root && !IsWanted(group, mode))) return;
      good = good && tab->Append(group.Api());
      ++found;
    });
    return good ? found : NOTOK;
  }
  static LONG GetGroupParticleCount(TP_MasterSystem* system, TP_PGroup* api, Bool subgroups) {
    ParticleGroup* group = api ? GroupOf(api) : System(system).root;
    return group ? CountOf(System(system), *group, subgroups != FALSE) : 0;
  }

  static void SetGroup(TP_MasterSystem* api, LONG pid, TP_PGroup* to) {
    ParticleSystem& system = System(api);
    ParticleSlot* slot = Living(api, pid, "SetGroup");
    ParticleGroup* group = to ? GroupOf(to) : system.root;
    if (!slot || !group || slot->group == group) return;
    if (!group->MoveTo(system.pool)) return; // without memory for the group's own particles it stays outside
    slot->group->Take(*slot);
    group->Append(*slot);
  }
  static TP_PGroup* Group(TP_MasterSystem* system, LONG pid) {
    ParticleSlot* slot = Living(system, pid, "Group");
    return slot ? slot->group->Api() : nullptr;
  }
  static void SetPosition(TP_MasterSystem* system, LONG pid, const Vector& position) {
    if (ParticleSlot* slot = Living(system, pid, "SetPosition")) slot->values.position = position;
  }
  static void GetPosition(TP_MasterSystem* system, LONG pid, Vector* position) {
    if (ParticleSlot* slot = Living(system, pid, "Position")) *position = slot->values.position;
  }
  static void SetVelocity(TP_MasterSystem* system, LONG pid, const Vector& velocity) {
    if (ParticleSlot* slot = Living(system, pid, "SetVelocity")) slot->values.velocity = velocity;
  }
  static void GetVelocity(TP_MasterSystem* system, LONG pid, Vector* velocity) {
    if (ParticleSlot* slot = Living(system, pid, "Velocity")) *velocity = slot->values.velocity;
  }
  static void SetSize(TP_MasterSystem* system, LONG pid, Real size) {
    if (ParticleSlot* slot = Living(system, pid, "SetSize")) slot->values.size = size;
  }
  static Real GetSize(TP_MasterSystem* system, LONG pid) {
    const ParticleSlot* slot = Living(system, pid, "Size");
    return slot ? slot->values.size : 0.0;
  }
  static void SetAge(TP_MasterSystem* system, LONG pid, const BaseTime& age) {
    if (ParticleSlot* slot = Living(system, pid, "SetAge")) slot->values.age = age.Get();
  }
  static void GetAge(TP_MasterSystem* system, LONG pid, BaseTime* age) {
    if (ParticleSlot* slot = Living(system, pid, "Age")) *age = BaseTime(slot->values.age);
  }
  static void SetLife(TP_MasterSystem* system, LONG pid, const BaseTime& life) {
    if (ParticleSlot* slot = Living(system, pid, "SetLife")) slot->values.life = life.Get();
  }
  static void GetLife(TP_MasterSystem* system, LONG pid, BaseTime* life) {
    if (ParticleSlot* slot = Living(system, pid, "Life")) *life = BaseTime(slot->values.life);
  }

  static TP_ParticleNode* GetFirstNode(TP_PGroup* api) {
    ParticleGroup* group = GroupOf(api);
    // Numbers are handed out of the system's pool only.
    if (!group || (group->System() && !group->Settle())) return nullptr;
    return group->first ? group->first->Api() : nullptr;
  }
  static LONG GetGroupSize(TP_PGroup* group) {
    const ParticleGroup* impl = GroupOf(group);
    return impl ? impl->count : 0;
  }
  static void GetColor(TP_PGroup* group, Vector* color) {
    if (const ParticleGroup* impl = GroupOf(group)) *color = impl->color;
  }
  static void SetColor(TP_PGroup* group, const Vector& color) {
    if (ParticleGroup* impl = GroupOf(group)) impl->color = color;
  }
  static LONG GetNodeParticle(TP_ParticleNode* node) { return ParticleSlot::From(node)->id; }
  static TP_ParticleNode* GetNextNode(TP_ParticleNode* node) {
    ParticleSlot* next = ParticleSlot::From(node)->next;
    return next ? next->Api() : nullptr;
  }
  static TP_ParticleNode* GetPrevNode(TP_ParticleNode* node) {
    ParticleSlot* pred = ParticleSlot::From(node)->pred;
    return pred ? pred->Api() : nullptr;
  }
};

} // namespace

HOST_BIND(Particle, ParticleEntries)

} // namespace host
