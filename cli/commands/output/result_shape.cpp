#include "cli/commands/output/result_shape.h"

#include "cli/session/cloud_extent.h"
#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <memory>
#include <stdexcept>

namespace cli {

namespace {

VertexMapTag* FindMap(PointObject* points, const char* name) {
  BaseTag* tag = points->GetTag(Tvertexmap, 0);
  for (LONG nr = 1; tag; tag = points->GetTag(Tvertexmap, nr++)) {
    VertexMapTag* map = (VertexMapTag*)tag;
    if (map->GetName() == String(name) && map->GetDataCount() == points->GetPointCount() &&
        map->GetDataAddressR())
      return map;
  }
  return nullptr;
}

/** The three vertex maps; white where one is missing. */
std::function<Vector(LONG)> ColorsOf(PointObject* points) {
  VertexMapTag* maps[3] = {FindMap(points, "Red"), FindMap(points, "Green"), FindMap(points, "Blue")};
  const SReal* weights[3];
  for (int i = 0; i < 3; ++i) weights[i] = maps[i] ? maps[i]->GetDataAddressR() : nullptr;
  return [red = weights[0], green = weights[1], blue = weights[2]](LONG i) {
    return Vector(red ? red[i] : 1.0, green ? green[i] : 1.0, blue ? blue[i] : 1.0);
  };
}

/** World space has y up. */
Vector EastNorthUp(const Vector& world) {
  return Vector(world.x, world.z, world.y);
}

Shape OfPoints(PointObject* points, const Matrix& global) {
  Shape shape;
  shape.points = points->GetPointCount();
  shape.position = [points, global](LONG i) { return EastNorthUp(global * points->GetPointR()[i]); };
  if (points->GetType() != Ospline) {
    shape.color = ColorsOf(points);
    return shape;
  }
  SplineObject* spline = (SplineObject*)points;
  const LONG segments = spline->GetSegmentCount(), count = shape.points;
  shape.lines = segments > 0 ? segments : count > 0 ? 1 : 0;
  shape.length = [=](LONG line) { return segments > 0 ? spline->GetSegmentR()[line].cnt : count; };
  return shape;
}

Shape OfHair(const host::HairNode& hair, const Matrix& global) {
  Shape shape;
  const host::GuideSet* guides = hair.guides;
  if (!guides) return shape;
  const LONG each = (LONG)guides->GuidePoints();
  shape.points = guides->count * each;
  shape.position = [guides, global](LONG i) {
    return EastNorthUp(global * guides->points.Data()[(std::size_t)i]);
  };
  shape.lines = guides->count;
  shape.length = [each](LONG) { return each; };
  return shape;
}

Shape OfEmitter(const host::EmitterNode& emitter, const Matrix& global) {
  Shape shape;
  shape.points = emitter.count;
  const Matrix place = emitter.IsInWorldSpace() ? Matrix() : global;
  const host::EmitterParticle* particles = emitter.storage.Data();
  shape.position = [particles, place](LONG i) { return EastNorthUp(place * particles[i].position); };
  shape.color = [particles](LONG i) { return particles[i].color; };
  return shape;
}

Shape OfGroup(const host::ParticleGroup& group) {
  Shape shape;
  const auto slots = std::make_shared<std::vector<const host::ParticleSlot*>>();
  for (const host::ParticleSlot* slot = group.first; slot; slot = slot->next) slots->push_back(slot);
  shape.points = (LONG)slots->size();
  shape.position = [slots](LONG i) { return EastNorthUp((*slots)[(std::size_t)i]->values.position); };
  return shape;
}

/** The emitter that carries a link to the cloud, among these objects and below them. */
BaseObject* EmitterOf(BaseObject* first, BaseObject* cloud) {
  for (BaseObject* op = first; op; op = op->GetNext()) {
    if (op->GetType() == Oemitter_external &&
        op->GetDataInstance()->GetObjectLink(KELVRA_CLOUD, op->GetDocument()) == cloud)
      return op;
    if (BaseObject* below = EmitterOf(op->GetDown(), cloud)) return below;
  }
  return nullptr;
}

/** The linked group, else the first one with the cloud's name. */
const host::ParticleGroup* GroupOf(BaseDocument* doc, BaseObject* cloud) {
  const host::ParticleSystem* system = host::FindSystem(*host::Impl(doc));
  if (!system) return nullptr;
  BaseList2D* linked = cloud->GetDataInstance()->GetLink(KELVRA_PARTICLE_GROUP, doc);
  const host::ParticleGroup *found = nullptr, *named = nullptr;
  system->Visit(*system->root, [&](const host::ParticleGroup& group) {
    if (linked && host::Impl(linked) == &group) found = &group;
    if (!named && group.name == host::Impl(cloud)->name) named = &group;
  });
  return found ? found : named;
}

Shape InWorld(const CloudSession& session, BaseObject* cloud) {
  BaseObject* built = cloud->GetCache(nullptr);
  const Matrix global = built ? cloud->GetMg() * built->GetMl() : Matrix();
  switch (cloud->GetDataInstance()->GetLong(KELVRA_CONVERT_MODE)) {
  case KELVRA_CONVERT_MODE_POINTS:
  case KELVRA_CONVERT_MODE_SPLINE:
    if (built && (built->GetType() == Opolygon || built->GetType() == Ospline))
      return OfPoints((PointObject*)built, global);
    break;
  case KELVRA_CONVERT_MODE_HAIR:
    if (const host::HairNode* hair = built ? host::AsHair(host::Impl(built)) : nullptr)
      return OfHair(*hair, global);
    break;
  case KELVRA_CONVERT_MODE_EMITTER:
    if (BaseObject* emitter = EmitterOf(session.Document()->GetFirstObject(), cloud))
      return OfEmitter(*host::AsEmitter(host::Impl(emitter)), emitter->GetMg());
    break;
  case KELVRA_CONVERT_MODE_THINKING_PARTICLES:
    if (const host::ParticleGroup* group = GroupOf(session.Document(), cloud)) return OfGroup(*group);
    break;
  default:
    break;
  }
  return Shape();
}

/** Where the files have the first points of the cloud. Throws when one of them is in no file. */
std::vector<LVector> Survey(BaseObject* cloud, LONG count) {
  std::vector<LVector> positions((std::size_t)count);
  KelvraSurvey survey = {1, count, positions.data()};
  if (count > 0 && (!cloud->Message(KELVRA_MESSAGE_SURVEY, &survey) || survey.count != count))
    throw std::runtime_error(
        "the result holds points that are in no file; --survey cannot place them (is --ratio "
        "above 1?)");
  return positions;
}

} // namespace

Shape ShapeOf(const CloudSession& session, BaseObject* cloud, bool survey) {
  Shape shape = InWorld(session, cloud);
  if (!survey || shape.points == 0) return shape;
  // A hair stands for the point at its root; the rest of it keeps its place relative to that.
  const bool hair = cloud->GetDataInstance()->GetLong(KELVRA_CONVERT_MODE) == KELVRA_CONVERT_MODE_HAIR;
  const LONG each = hair ? shape.length(0) : 1;
  const auto files = std::make_shared<std::vector<LVector>>(Survey(cloud, shape.points / each));
  const SurveyPlace place(cloud);
  shape.position = [files, each, place, world = shape.position](LONG i) {
    const LONG root = i - i % each;
    const Vector at((*files)[(std::size_t)(root / each)]);
    if (i == root) return at;
    return at + place.ToFile(EastNorthUp(world(i))) - place.ToFile(EastNorthUp(world(root)));
  };
  return shape;
}

} // namespace cli
