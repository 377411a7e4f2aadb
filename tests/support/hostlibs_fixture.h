// Hair, particles and emitters, and all that they hold as text.
#pragma once

#include "support/geometry_fixture.h"

#include "host/base/text.h"
#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"

class HostLibsTest : public GeometryTest {
protected:
  static TP_MasterSystem* System(BaseDocument* doc) {
    return (TP_MasterSystem*)doc->FindSceneHook(ID_THINKINGPARTICLES);
  }
  TP_MasterSystem* System() { return System(doc_); }
  void ExpectReports(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) expected_.push_back("module misbehaves: " + text);
  }

  /** Point i of the guides lies at first + (i, i * i, -i). */
  static HairGuides* Guides(LONG count, LONG segments, const Vector& first = Vector()) {
    HairGuides* guides = HairGuides::Alloc(count, segments);
    for (LONG i = 0; guides && i < guides->GetPointCount(); ++i)
      guides->GetPoints()[i] = first + Vector(i, i * i, -i);
    return guides;
  }
  static bool Give(HairObject* hair, HairGuides* guides, Bool clone = FALSE) {
    if (!hair->Lock(nullptr, nullptr, FALSE, 0)) return false;
    const Bool given = hair->SetGuides(guides, clone);
    hair->Unlock();
    return given != FALSE;
  }
  HairObject* AddHair(HairGuides* guides) {
    HairObject* hair = HairObject::Alloc();
    EXPECT_TRUE(Give(hair, guides));
    doc_->InsertObject(hair, nullptr, nullptr);
    return hair;
  }

  TP_PGroup* AddGroup(const char* name, TP_PGroup* parent = nullptr,
                      TP_InsertMode mode = TP_INSERT_UNDERLAST) {
    TP_PGroup* group = System()->AllocParticleGroup();
    group->SetName(name);
    EXPECT_TRUE(System()->SetPGroupHierarchy(parent, group, mode));
    return group;
  }
  /** Particles none of whose values is like another's. */
  void AddParticles(TP_PGroup* group, LONG count, Real seed = 0) {
    for (LONG i = 0; i < count; ++i, ++seed) {
      const LONG id = System()->AllocParticle();
      System()->SetGroup(id, group);
      System()->SetPosition(id, Vector(seed, seed + 0.125, -seed));
      System()->SetVelocity(id, Vector(seed * 2, 0, 1));
      System()->SetSize(id, seed + 10);
      System()->SetAge(id, BaseTime(seed + 20));
      System()->SetLife(id, BaseTime(seed + 30));
    }
  }
  BaseObject* AddEmitter(const std::vector<host::EmitterParticle>& particles, LONG option = 0) {
    BaseObject* emitter = BaseObject::Alloc(Oemitter_external);
    doc_->InsertObject(emitter, nullptr, nullptr);
    EmitterLibrary* library = EmitterLibrary::Get();
    EXPECT_TRUE(library->SetCount(emitter, (LONG)particles.size()));
    library->SetOption(emitter, option);
    library->Prepare(emitter);
    for (std::size_t i = 0; i < particles.size(); ++i)
      library->SetParticle(emitter, (LONG)i, particles[i].position, particles[i].color);
    library->Update(emitter);
    return emitter;
  }
  static inline const std::vector<host::EmitterParticle> kThree{{Vector(0, 0, 0), Vector(0.5)},
                                                                {Vector(1, 2, -1), Vector(1, 0, 0)},
                                                                {Vector(2, 4, -2), Vector(0, 0.25, 1)}};

  static void Put(std::string* text, const Vector& v) {
    for (int i = 0; i < 3; ++i) *text += " " + std::to_string(v[i]);
  }
  /** Of hair or an emitter. */
  static std::string Held(BaseObject* op) {
    std::string text = std::to_string(op->GetType());
    if (const host::HairNode* hair = host::AsHair(host::Impl(op))) {
      if (!hair->guides) return text;
      text += ": " + std::to_string(hair->guides->count) + " of " + std::to_string(hair->guides->segments);
      for (VLONG i = 0; i < hair->guides->points.Count(); ++i) Put(&text, hair->guides->points[i]);
    }
    if (const host::EmitterNode* emitter = host::AsEmitter(host::Impl(op))) {
      text += ": option " + std::to_string(emitter->option);
      for (LONG i = 0; i < emitter->count; ++i) {
        Put(&text, emitter->storage[i].position);
        Put(&text, emitter->storage[i].color);
      }
    }
    return text;
  }
  static std::string NameOf(GeListNode* node) {
    return node ? host::Utf8(((BaseList2D*)node)->GetName()) : "none";
  }
  /** The groups from the built-in one on, with their particles in order; numbers of particles may differ. */
  static std::string Held(TP_MasterSystem* system) {
    TP_PGroupArray groups;
    system->GetParticleGroups(nullptr, &groups, TP_GETPGROUP_ALL, TRUE);
    std::string text;
    for (LONG i = 0; i < groups.GetCount(); ++i) {
      TP_PGroup* group = groups.GetIndex(i);
      text += " [" + NameOf(group) + " in " + NameOf(group->GetUp());
      Put(&text, group->GetColor());
      for (const LONG id : IdsOf(group))
        for (const Vector& v : {system->Position(id), system->Velocity(id),
                                Vector(system->Size(id), system->Age(id).Get(), system->Life(id).Get())})
          Put(&text, v);
    }
    return text;
  }
  static std::vector<LONG> IdsOf(TP_PGroup* group) {
    std::vector<LONG> ids;
    for (TP_ParticleNode* node = group->GetFirstNode(); node; node = node->GetNext())
      ids.push_back(node->GetParticleID());
    return ids;
  }
};
