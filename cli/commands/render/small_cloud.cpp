#include "cli/commands/render/small_cloud.h"

#include "cli/commands/render/radius_choice.h"
#include "cli/session/cloud_extent.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;

namespace cli {

namespace {

/** LAS and LAZ are fitted anyway, and what is not a file, such as a pipe, gives its points only once. */
bool CanBeFitted(const CloudSession& session) {
  const std::vector<FileReport>& reports = session.Reports();
  return std::all_of(reports.begin(), reports.end(), [](const FileReport& report) {
    std::error_code failed;
    const bool text = report.facts.reader == KELVRA_READER_XYZ || report.facts.reader == KELVRA_READER_PTS;
    return report.points == 0 || (text && fs::is_regular_file(fs::u8path(report.path), failed));
  });
}

/** Did the user choose anything that would mean something else in a fitted cloud? */
bool DependsOnSize(const CloudSession& session, const RenderPlan& plan) {
  for (const LONG id : {KELVRA_FIT_TEXT, KELVRA_LOCAL_ORIGIN, KELVRA_CONVERT_MODE, KELVRA_POINT_RADIUS,
                        KELVRA_CURVE_MIN_HEIGHT, KELVRA_CURVE_MAX_HEIGHT})
    if (session.WasSet(id)) return true;
  return plan.groundHeight || std::any_of(plan.lights.begin(), plan.lights.end(),
                                          [](const SceneLight& light) { return light.type == RT_LT_OMNI; });
}

} // namespace

void FitSmallCloud(CloudSession& session, RenderPlan* plan) {
  const std::vector<BaseObject*> clouds = session.Clouds();
  if (clouds.size() != 1 || session.IsFromScene(clouds[0]) || session.Points() == 0) return;
  if (DependsOnSize(session, *plan) || !CanBeFitted(session)) return;
  if (!LiesTooDense(session, SurfaceSeen(session, plan->view))) return;

  const double spacing = MeanSpacing(clouds[0]);
  ViewOptions& view = plan->view;
  if (view.camera && !view.survey) {
    const SurveyPlace place(clouds[0]);
    view.camera = place.ToFile(*view.camera);
    view.target = place.ToFile(*view.target);
  }
  view.survey = true;
  session.OpenFitted();
  Line(std::cout) << "the points lie " << TwoDigits(spacing)
                  << " scene units apart, too close to render well: the cloud is scaled up for the picture "
                     "(--set fit_text=off keeps its size)";
}

} // namespace cli
