// A cloud with known points, built by the application as each mode asks, and what the build left behind.
#pragma once

#include "cloud/block_fill.h"
#include "host/nodes/object_calls.h"
#include "host/parameters/node_parameters.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "object/rerenderobject.h"
#include "support/render_fixture.h"

struct CloudPoint {
  Vector p;
  UWORD r = 0, g = 0, b = 0, scalar = 0;
};

enum Mode { kPoints = 1, kEmpty = 2, kHair = 3, kParticles = 4, kEmitter = 5, kSpline = 6 };

class ConvertTest : public RenderTest {
protected:
  static inline const Matrix kPlace{Vector(3, -2, 7), Vector(0, 2, 0), Vector(-2, 0, 0), Vector(0, 0, 2)};

  kelvra::KelvraObject& Cloud() { return *static_cast<kelvra::KelvraObject*>(op_->GetNodeData()); }

  /** Hands points over as a group of their own; with a key they are fitted to the object's size. */
  void Give(const std::vector<CloudPoint>& points, UWORD key = 0) {
    std::vector<kelvra::SourceRecord> records;
    for (const CloudPoint& c : points)
      records.push_back({c.p.x, c.p.z, c.p.y, {0, 0, 1}, 0, c.r, c.g, c.b, 0});
    kelvra::PointDelivery delivery;
    delivery.state = kelvra::kDeliverStream;
    delivery.points.blocks.ReSize(1);
    kelvra::PointBlock& block = delivery.points.blocks[0];
    ASSERT_TRUE(kelvra::FillBlock(records.data(), (LONG)records.size(), 1, LVector(), block));
    for (std::size_t i = 0; i < points.size(); ++i) block.attrib1[i] = points[i].scalar;
    block.header.SetBounds(LVector(-40, -30, -20), LVector(40, 30, 20));
    block.header.key = key;
    // Once: a parameter that changes rebuilds what was converted, and would hide that points alone do not.
    if (Data().GetLong(KELVRA_LOAD_REQUEST) != kelvra::kDeliverStream)
      Data().SetLong(KELVRA_LOAD_REQUEST, kelvra::kDeliverStream);
    op_->Message(kelvra::kMessageDeliverPoints, &delivery);
  }
  /** Points that no two values of are alike; every third one carries the scalar's bit. */
  static std::vector<CloudPoint> Scatter(int count, int first = 0) {
    std::vector<CloudPoint> points;
    for (int i = first; i < first + count; ++i)
      points.push_back({Vector(i % 37 - 18.25, i % 11 - 5.5 + i * 0.001, i % 29 - 14.125), (UWORD)(i * 641),
                        (UWORD)(i * 1283 + 5), (UWORD)(65535 - i * 77), (UWORD)(i % 3 == 0)});
    return points;
  }

  BaseObject* Build(LONG mode) {
    if (Data().GetLong(KELVRA_CONVERT_MODE) != mode) Data().SetLong(KELVRA_CONVERT_MODE, mode);
    return host::UpdateCache(op_, doc_, BUILDFLAGS_0);
  }
  /** As the object's messages give them: as many as its share asks for. */
  std::vector<Vector> Exported(LONG message) {
    kelvra::PointArray answer;
    op_->Message(message, &answer);
    std::vector<Vector> values(answer.data, answer.data + answer.count);
    GeFree(answer.data);
    return values;
  }
  std::vector<Vector> Positions() { return Exported(kelvra::kMessageExportPositions); }
  std::vector<Vector> Colors() { return Exported(kelvra::kMessageExportColors); }
  static std::vector<Vector> PointsOf(BaseObject* op) {
    const PointObject* points = (PointObject*)op;
    return std::vector<Vector>(points->GetPointR(), points->GetPointR() + points->GetPointCount());
  }
  std::vector<Vector> InWorld(std::vector<Vector> points) {
    for (Vector& p : points) p = op_->GetMg() * p;
    return points;
  }
  static void ExpectEmpty(BaseObject* built) {
    ASSERT_NE(built, nullptr);
    EXPECT_EQ(built->GetType(), Onull);
    EXPECT_EQ(built->GetDown(), nullptr);
  }

  TP_MasterSystem* System() { return (TP_MasterSystem*)doc_->FindSceneHook(ID_THINKINGPARTICLES); }
  std::vector<TP_PGroup*> Groups() {
    TP_PGroupArray groups;
    System()->GetParticleGroups(nullptr, &groups, TP_GETPGROUP_ALL, TRUE);
    std::vector<TP_PGroup*> found;
    for (LONG i = 0; i < groups.GetCount(); ++i) found.push_back(groups.GetIndex(i));
    return found;
  }
  std::vector<Vector> ParticlesOf(TP_PGroup* group) {
    std::vector<Vector> found;
    for (TP_ParticleNode* node = group->GetFirstNode(); node; node = node->GetNext())
      found.push_back(System()->Position(node->GetParticleID()));
    return found;
  }
  TP_PGroup* Linked() { return (TP_PGroup*)Data().GetLink(KELVRA_PARTICLE_GROUP, doc_); }
  /** What the console was told after the module's greeting. */
  std::vector<std::string> Printed() {
    const std::vector<std::string> lines = application_.GetConsole().Lines();
    return std::vector<std::string>(lines.begin() + 1, lines.end());
  }
};
