// Where the points of clouds are shown, and how that relates to the coordinates of their files.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/**
 * World-space box of what the session shows. A few points far away from all others are left out of it: *note
 * then says how many.
 */
host::Box FramedExtent(const CloudSession& session, std::string* note);

/** The same for one cloud; adds the points that it leaves out. */
host::Box FramedExtent(BaseObject* cloud, long long* outside);

/** Heights, in the object's own coordinates, between which all but a share of the points at each end lie. */
bool HeightRange(BaseObject* cloud, double share, double* low, double* high);

/** Do the points gather at both ends of an axis, as at walls or at floor and ceiling, but not in a landscape?
 */
bool IsRoom(BaseObject* cloud);

/** The median of a cloud's points on each axis, in world space; the box's middle where there is none. */
Vector MiddleOf(const CloudSession& session, const host::Box& box);

/** Mean distance of that many points on the largest face of a box. */
double SpacingOf(const Vector& size, long long points);

/** Mean distance of neighbouring points in world units if they cover a surface; 0 where it has no meaning. */
double MeanSpacing(BaseObject* cloud);

/** File coordinates (x east, y north, z up) to world space and back, by a cloud's first file. */
class SurveyPlace {
public:
  /** Throws std::runtime_error for a cloud without points. */
  explicit SurveyPlace(BaseObject* cloud);
  Vector ToWorld(const Vector& file) const;
  Vector ToFile(const Vector& world) const;

private:
  Vector origin_, scale_;
  Matrix global_;
};

} // namespace cli
