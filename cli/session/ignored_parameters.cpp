#include "cli/session/ignored_parameters.h"

#include "cli/text/line.h"
#include "otallyframe.h"

#include <algorithm>
#include <iostream>

namespace cli {

namespace {

/** Parameters that only some commands use; all others count for every one. */
struct Group {
  std::vector<LONG> ids;
  std::vector<Purpose> users;
  const char* where; ///< they have an effect
};

const Group kGroups[] = {
    {{KELVRA_COLOR_MODE, KELVRA_COLOR_INVERT, KELVRA_MIN_HEIGHT, KELVRA_MAX_HEIGHT, KELVRA_POINT_SIZE,
      KELVRA_FALLOFF_SHAPE, KELVRA_FALLOFF_CENTER, KELVRA_FALLOFF_TARGET, KELVRA_FALLOFF_RADIUS,
      KELVRA_FALLOFF_OFFSET, KELVRA_FALLOFF_ACTION, KELVRA_FALLOFF_EXPONENT},
     {Purpose::Snapshot},
     "in the viewport only, as snapshot draws it"},
    {{KELVRA_THIN_VIEW}, {Purpose::Snapshot, Purpose::Export}, "on snapshot and export only"},
    {{KELVRA_RADIUS_CURVE, KELVRA_OPACITY_CURVE, KELVRA_LIGHT_FLAT, KELVRA_LIGHT, KELVRA_SEEN_REFLECTION,
      KELVRA_SEEN_TRANSPARENCY, KELVRA_SEEN_REFRACTION, KELVRA_POINT_RADIUS, KELVRA_TRANSPARENCY,
      KELVRA_EDGE_BIAS, KELVRA_SOFT_DEPTH, KELVRA_RADIUS_VARIATION, KELVRA_CURVE_MIN_HEIGHT,
      KELVRA_CURVE_MAX_HEIGHT},
     {Purpose::Render},
     "on render only"},
    {{KELVRA_CONVERT_MODE, KELVRA_PARTICLE_GROUP, KELVRA_SEGMENT_BREAK},
     {Purpose::Snapshot, Purpose::Render, Purpose::Convert},
     "where the cloud is converted and shown"},
    {{KELVRA_SAVE_SURVEY}, {Purpose::Export}, "on export only"},
    {{KELVRA_POINT_SHARE},
     {Purpose::Snapshot, Purpose::Render, Purpose::Convert},
     "on snapshot, render and convert only"},
    {{KELVRA_RESERVED, KELVRA_CONVERT_VALUE, KELVRA_SEEN_SWITCH}, {}, "nowhere"},
};

template <class List, class Value>
bool Contains(const List& list, const Value& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

/** How files become points; those of a scene were loaded long before. */
const std::vector<LONG> kOfLoading = {KELVRA_LOAD_BUDGET, KELVRA_LOAD_NTH, KELVRA_LOCAL_ORIGIN,
                                      KELVRA_FIT_TEXT};

bool HasScenesOnly(const CloudSession& session) {
  const std::vector<BaseObject*> clouds = session.Clouds();
  return !clouds.empty() && std::all_of(clouds.begin(), clouds.end(),
                                        [&](BaseObject* cloud) { return session.IsFromScene(cloud); });
}

} // namespace

void WarnOfUnused(const CloudSession& session) {
  for (const std::string& line : session.Unused()) Line(std::cerr) << line;
}

void WarnOfIgnored(const CloudSession& session, Purpose purpose) {
  WarnOfUnused(session);
  const bool scenesOnly = HasScenesOnly(session);
  for (const CloudSession::Setting& setting : session.Settings()) {
    if (scenesOnly && Contains(kOfLoading, setting.id))
      Line(std::cerr) << "--set " << setting.name
                      << ": has no effect here: the points of a scene are loaded already";
    for (const Group& group : kGroups)
      if (Contains(group.ids, setting.id) && !Contains(group.users, purpose))
        Line(std::cerr) << "--set " << setting.name << ": has no effect here; it has one " << group.where;
  }
}

} // namespace cli
