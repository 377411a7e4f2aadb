// Hair, particles and emitters, and all that they hold as text.
#pragma once

#include "geometry/geometry_fixture.h"

#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"

class HostLibsTest : public GeometryTest {
protected:
  TP_MasterSystem* System() { return System(doc_); }
  static TP_MasterSystem* System(BaseDocument* doc) {
    return (TP_MasterSystem*)doc->FindSceneHook(ID_THINKINGPARTICLES);
  }
  void ExpectReport(const std::string& text) { expected_.push_back("module misbehaves: " + text); }

  /** Point i of the guides lies at first + (i, i * i, -i). */
  static HairGuides* Guides(LONG count, LONG segments, const Vector& first = Vector()) {
    HairGuides* guides = HairGuides::Alloc(count, segments);
    for (LONG i = 0; guides && i < guides->GetPointCount(); ++i)
      guides->GetPoints()[i] = first + Vector(i, i * i, -i);
    return guides;
  }
  static bool Give(HairObject* hair, HairGuides* guides, Bool clone = FALSE) {
    if (!hair->Lock(NULL, NULL, FALSE, 0)) return false;
    const Bool given = hair->SetGuides(guides, clone);
    hair->Unlock();
    return given != FALSE;
  }
  HairObject* AddHair(LONG count, LONG segments, const Vector& first = Vector()) {
    HairObject* hair = HairObject::Alloc();
    EXPECT_TRUE(Give(hair, Guides(count, segments, first)));
    doc_->InsertObject(hair, NULL, NULL);
    return hair;
  }

  TP_PGroup* AddGroup(const char* name, TP_PGroup* parent = NULL, TP_InsertMode mode = TP_INSERT_UNDERLAST) {
    TP_PGroup* group = System()->AllocParticleGroup();
    group->SetName(name);
    EXPECT_TRUE(System()->SetPGroupHierarchy(parent, group, mode));
    return group;
  }
  /** A particle none of whose values is like another's. */
  LONG AddParticle(TP_PGroup* group, Real seed) {
    const LONG id = System()->AllocParticle();
    if (id == NOTOK) return id;
    System()->SetGroup(id, group);
    System()->SetPosition(id, Vector(seed, seed + 0.125, -seed));
    System()->SetVelocity(id, Vector(seed * 2, 0, 1));
    System()->SetSize(id, seed + 10);
    System()->SetAge(id, BaseTime(seed + 20));
    System()->SetLife(id, BaseTime(seed + 30));
    return id;
  }

  BaseObject* AddEmitter(LONG count, LONG option = 0) {
    BaseObject* emitter = BaseObject::Alloc(Oemitter_external);
    doc_->InsertObject(emitter, NULL, NULL);
    EmitterLibrary* library = EmitterLibrary::Get();
    EXPECT_TRUE(library->SetCount(emitter, count));
    library->SetOption(emitter, option);
    library->Prepare(emitter);
    for (LONG i = 0; i < count; ++i)
      library->SetParticle(emitter, i, Vector(i, 2 * i, -i), Vector(i / 8.0, 0.5, 1));
    library->Update(emitter);
    return emitter;
  }

  static void Put(std::string* text, const Vector& v) {
    for (int i = 0; i < 3; ++i) *text += " " + std::to_string(v[i]);
  }
  static std::string Held(HairObject* hair) {
    hair->Lock(NULL, NULL, FALSE, 0);
    HairGuides* guides = hair->GetGuides();
    std::string text = guides ? std::to_string(guides->GetCount()) + " guides of " +
                                    std::to_string(guides->GetSegmentCount())
                              : "none";
    for (LONG i = 0; guides && i < guides->GetPointCount(); ++i) Put(&text, guides->GetPoints()[i]);
    hair->Unlock();
    return text;
  }
  static std::string Held(const BaseObject* emitter) {
    const host::EmitterNode& node = *host::AsEmitter(host::Impl(emitter));
    std::string text = "option " + std::to_string(node.option);
    for (LONG i = 0; i < node.count; ++i) {
      Put(&text, node.storage[i].position);
      Put(&text, node.storage[i].color);
    }
    return text;
  }
  static std::string NameOf(const BaseList2D* node) {
    CHAR* utf8 = node->GetName().GetCStringCopy(STRINGENCODING_UTF8);
    const std::string text = utf8;
    GeFree(utf8);
    return text;
  }
  /** The groups from the built-in one on: name, colour, and the particles in their order, not their numbers.
   */
  static std::string Held(TP_MasterSystem* system) {
    TP_PGroupArray groups;
    system->GetParticleGroups(NULL, &groups, TP_GETPGROUP_ALL, TRUE);
    std::string text;
    for (LONG i = 0; i < groups.GetCount(); ++i) {
      TP_PGroup* group = groups.GetIndex(i);
      text += "[" + NameOf(group) + " of " + (group->GetUp() ? NameOf((BaseList2D*)group->GetUp()) : "none");
      Put(&text, group->GetColor());
      for (TP_ParticleNode* node = group->GetFirstNode(); node; node = node->GetNext()) {
        const LONG id = node->GetParticleID();
        text += ";";
        Put(&text, system->Position(id));
        Put(&text, system->Velocity(id));
        Put(&text, Vector(system->Size(id), system->Age(id).Get(), system->Life(id).Get()));
      }
      text += "]";
    }
    return text;
  }
  static std::vector<LONG> IdsOf(TP_PGroup* group) {
    std::vector<LONG> ids;
    for (TP_ParticleNode* node = group->GetFirstNode(); node; node = node->GetNext())
      ids.push_back(node->GetParticleID());
    return ids;
  }

  /** Runs `call` as code of a plug-in with each block of memory refused in turn, until it is done. */
  void RefuseEachBlock(const char* name, int blocks, std::function<bool()> call,
                       std::function<std::string()> state) {
    SCOPED_TRACE(name);
    const std::string before = state();
    const host::LiveCounts live = application_->Live();
    int refused = 0;
    for (bool done = false; !done; ++refused) {
      ASSERT_LT(refused, 50);
      AsModule(refused + 1, [&] { done = call(); });
      if (done) continue;
      EXPECT_EQ(state(), before) << "block " << refused + 1;
      EXPECT_EQ(application_->Live().nodes, live.nodes);
      EXPECT_EQ(application_->Live().blocks, live.blocks);
    }
    EXPECT_GT(refused, blocks);
  }
};
