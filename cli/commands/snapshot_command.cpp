#include "cli/commands/commands.h"

#include "cli/commands/options/clone_grid.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/result_tree.h"
#include "cli/text/format.h"
#include "host/viewport.h"
#include "otallyframe.h"

#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

/** Viewport background. */
const double kMidGrey = 0.5;
/** What a new object has. */
const double kDefaultMinHeight = 0.0, kDefaultMaxHeight = 100.0;

/** Colour modes by height span the cloud's own heights unless the user or the scene says otherwise. */
void FitHeights(CloudSession& session, BaseObject* cloud) {
  BaseContainer* data = cloud->GetDataInstance();
  const LONG mode = data->GetLong(KELVRA_COLOR_MODE);
  if (mode != KELVRA_COLOR_MODE_HEIGHT && mode != KELVRA_COLOR_MODE_POINT_BY_HEIGHT) return;
  Vector low, high;
  if (!host::WorldBox(cloud, &low, &high)) return;
  // Heights are those of the object's own coordinates.
  const Matrix toLocal = !cloud->GetMg();
  if (!session.WasSet(KELVRA_MIN_HEIGHT) && data->GetReal(KELVRA_MIN_HEIGHT) == kDefaultMinHeight)
    data->SetReal(KELVRA_MIN_HEIGHT, (low * toLocal).y);
  if (!session.WasSet(KELVRA_MAX_HEIGHT) && data->GetReal(KELVRA_MAX_HEIGHT) == kDefaultMaxHeight)
    data->SetReal(KELVRA_MAX_HEIGHT, (high * toLocal).y);
}

/** A cloud without colours of its own is shown by height, unless the user or a scene chose a colour mode. */
bool ShowByHeight(CloudSession& session, BaseObject* cloud) {
  CloudStats stats;
  if (session.WasSet(KELVRA_COLOR_MODE) || !ReadCloudStats(cloud, &stats) || stats.HasColor()) return false;
  BaseContainer* data = cloud->GetDataInstance();
  if (data->GetLong(KELVRA_COLOR_MODE) != KELVRA_COLOR_MODE_POINT) return false;
  data->SetLong(KELVRA_COLOR_MODE, KELVRA_COLOR_MODE_HEIGHT);
  return true;
}

void WidenByClones(const std::vector<Matrix>& clones, Vector* low, Vector* high) {
  if (clones.empty()) return;
  const Vector boxLow = *low, boxHigh = *high;
  for (const Matrix& clone : clones)
    for (int axis = 0; axis < 3; ++axis) {
      (*low)[axis] = std::min((*low)[axis], boxLow[axis] + clone.off[axis]);
      (*high)[axis] = std::max((*high)[axis], boxHigh[axis] + clone.off[axis]);
    }
}

void PlaceCamera(const SnapshotOptions& options, const CloudSession& session,
                 const std::vector<Matrix>& clones, host::Viewport& view) {
  host::ViewCamera camera;
  camera.fieldOfView = options.fieldOfView;
  if (!options.camera.empty()) {
    camera.position = Vector(options.camera[0], options.camera[1], options.camera[2]);
    camera.target = Vector(options.target[0], options.target[1], options.target[2]);
    view.SetCamera(camera);
    return;
  }
  view.SetCamera(camera);
  Vector low, high;
  if (!session.Extent(&low, &high)) return;
  WidenByClones(clones, &low, &high);
  view.Frame(low, high);
}

} // namespace

int RunSnapshot(const SnapshotOptions& options) {
  const std::vector<Matrix> clones =
      options.clones.empty() ? std::vector<Matrix>() : ParseCloneGrid(options.clones);
  CloudSession session(options.faults);
  session.Open(options.files, options.settings);
  PrintReports(session, options.verbose);
  session.RequireContent();

  bool byHeight = false;
  for (BaseObject* cloud : session.Clouds()) {
    byHeight = ShowByHeight(session, cloud) || byHeight;
    FitHeights(session, cloud);
    if (!clones.empty() && !host::SetClones(cloud, clones, {}))
      throw std::runtime_error("the clones could not be made");
  }

  std::string error;
  const std::unique_ptr<host::Viewport> view =
      host::Viewport::Create(session.Document(), options.width, options.height, &error);
  if (!view) throw std::runtime_error(error);
  view->SetBackground(kMidGrey, kMidGrey, kMidGrey);
  PlaceCamera(options, session, clones, *view);
  const std::size_t firstLine = session.App().GetConsole().Lines().size();
  bool drawn = view->Draw(&error);
  if (!drawn) std::cerr << error << "\n";
  const std::vector<std::string> lines = session.App().GetConsole().Lines();
  for (std::size_t i = firstLine; i < lines.size(); ++i) std::cerr << lines[i] << "\n";
  if (drawn && view->VerticesDrawn() == 0) {
    std::cerr << options.output << ": nothing was drawn, though it holds " << ContentText(session) << "\n";
    drawn = false;
  }
  if (!host::gl::WritePng(view->Read(), options.output, &error)) throw std::runtime_error(error);
  std::cout << options.output << ": " << options.width << "x" << options.height << ", "
            << ContentText(session);
  if (!clones.empty()) std::cout << " in " << clones.size() << " clones";
  std::cout << (byHeight ? ", shown by height: the cloud has no colours" : "") << "\n";
  return drawn ? session.ExitStatus() : (int)kExitIncomplete;
}

} // namespace cli
