#include "cli/commands/output/result_tree.h"

#include "cli/session/cloud_parameters.h"
#include "cli/session/cloud_stats.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "host/geometry/point_nodes.h"
#include "host/geometry/variable_tag.h"
#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

class Describer {
public:
  ResultTree tree;

  void Objects(const host::NodeList& list, int depth, const char* note) {
    for (host::Node* node = list.first; node; node = node->next) Visit(*(host::Object*)node, depth, note);
  }

  void Groups(BaseDocument* doc) {
    const host::ParticleSystem* system = host::FindSystem(*host::Impl(doc));
    if (!system) return;
    system->Visit(*system->root, [this, system](const host::ParticleGroup& group) {
      if (&group == system->root && group.count == 0) return;
      Say(0, "Particle group \"" + host::Utf8(group.name) + "\": " + Counted(group.count, "particle"));
      Add(group.count, sizeof(host::ParticleSlot));
    });
  }

private:
  void Visit(host::Object& op, int depth, const char* note) {
    std::string line = note + host::Utf8(host::TypeName(op));
    if (op.name.Content()) line += " \"" + host::Utf8(op.name) + "\"";
    const std::string content = Content(op);
    Say(depth, line + (content.empty() ? "" : ": " + content));
    Objects(op.cache, depth + 1, "built: ");
    Objects(op.children, depth + 1, "");
  }

  std::string Content(host::Object& op) {
    if (const host::SplineNode* spline = dynamic_cast<const host::SplineNode*>(&op)) return Spline(*spline);
    if (const host::PointNode* points = host::AsPoints(&op)) return Points(op, *points);
    if (const host::HairNode* hair = host::AsHair(&op)) {
      const LONG guides = hair->guides ? hair->guides->count : 0;
      Add(guides, hair->guides ? hair->guides->GuidePoints() * (long long)sizeof(Vector) : 0);
      return Counted(guides, "guide");
    }
    if (const host::EmitterNode* emitter = host::AsEmitter(&op)) {
      Add(emitter->count, sizeof(host::EmitterParticle));
      return Counted(emitter->count, "particle");
    }
    CloudStats stats;
    return op.data && ReadCloudStats(host::Api(&op), &stats) ? Counted(stats.Points(), "point") : "";
  }

  std::string Points(const host::Object& op, const host::PointNode& points) {
    Add(points.points.Count(), sizeof(Vector));
    std::string text = Counted(points.points.Count(), "point");
    if (const LONG polygons = ((PolygonObject*)host::Api((host::Object*)&op))->GetPolygonCount())
      text += ", " + Counted(polygons, "polygon");
    std::string maps;
    for (const host::Node* tag = op.tags.first; tag; tag = tag->next)
      if (tag->type == Tvertexmap) {
        maps += (maps.empty() ? "" : ", ") + host::Utf8(tag->name);
        tree.bytes += host::AsVariable((const host::Tag*)tag)->Count() * (long long)sizeof(SReal);
      }
    return maps.empty() ? text : text + ", vertex maps " + maps;
  }

  std::string Spline(const host::SplineNode& spline) {
    Add(spline.points.Count(), sizeof(Vector));
    const host::VariableTagNode* segments = spline.Segments();
    const LONG count = segments ? segments->Count() : spline.points.Count() > 0 ? 1 : 0;
    if (segments) tree.bytes += count * (long long)sizeof(Segment);
    return Counted(spline.points.Count(), "point") + " in " + Counted(count, "segment");
  }

  void Add(long long elements, long long bytesEach) {
    tree.elements += elements;
    tree.bytes += elements * bytesEach;
  }
  void Say(int depth, const std::string& text) {
    tree.lines.push_back(std::string((std::size_t)depth * 2, ' ') + text);
  }
};

/** How many points a picture is made of: the first share, and in the viewport every n-th of those. */
long long ShownPoints(const CloudSession& session, Drawing drawing) {
  long long shown = 0;
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (!ReadCloudStats(cloud, &stats)) continue;
    const double points = (double)stats.Points();
    const double share = std::floor(points * std::min(1.0, RealParameter(cloud, KELVRA_POINT_SHARE)));
    const LONG nth = std::max<LONG>(1, cloud->GetDataInstance()->GetLong(KELVRA_THIN_VIEW));
    shown += (long long)(drawing == Drawing::Viewport ? std::ceil(share / nth) : share);
  }
  return shown;
}

} // namespace

ResultTree DescribeTree(BaseDocument* doc) {
  Describer describer;
  describer.Objects(host::Impl(doc)->objects, 0, "");
  describer.Groups(doc);
  return describer.tree;
}

std::string ContentText(const CloudSession& session, Drawing drawing) {
  const long long points = session.Points(), shown = ShownPoints(session, drawing);
  if (points > 0) return (shown < points ? Grouped(shown) + " of " : "") + Counted(points, "point");
  return Counted(DescribeTree(session.Document()).elements, "element");
}

} // namespace cli
