#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/result_shape.h"
#include "cli/commands/snapshot/first_look.h"
#include "cli/session/file_kinds.h"
#include "cli/text/format.h"
#include "cli/view/companions.h"
#include "cli/view/document_stamp.h"
#include "cli/view/point_pick.h"
#include "cli/view/view_application.h"
#include "host/application.h"
#include "host/parameter_step.h"
#include "otallyframe.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

/** Pixels around the pointer in which a point counts as meant; the first of them that holds one decides. */
constexpr double kPickReaches[] = {1.0, 2.5, 5.0};
/** Points above which looking for one is noticed. */
constexpr long long kManyPoints = 5000000;

const std::vector<std::string> kScans = {".las", ".laz", ".xyz", ".pts", ".txt", ".csv"};
const std::vector<std::string> kPictures = {".png", ".tif", ".tiff", ".exr"};
/** What this program writes, and the application's own suffix. */
const std::vector<std::string> kScenes = {".scene", ".c4d"};

/** What a conversion makes of a point. */
const char* UnitOf(LONG mode) {
  if (mode == KELVRA_CONVERT_MODE_HAIR) return "hair";
  const bool particles =
      mode == KELVRA_CONVERT_MODE_THINKING_PARTICLES || mode == KELVRA_CONVERT_MODE_EMITTER;
  return particles ? "particle" : "point";
}

/** Without what a command line would do about it. */
std::string ForPeople(const std::string& note) {
  return note.substr(0, note.find(" (--"));
}

/** "kelvra_0001.png", the first that is free in the folder. */
std::string FreePictureName(const std::string& folder) {
  for (int number = 1;; ++number) {
    char name[32];
    std::snprintf(name, sizeof name, "kelvra_%04d.png", number);
    const fs::path path = fs::u8path(folder.empty() ? "." : folder) / name;
    std::error_code ignored;
    if (!fs::exists(path, ignored)) return path.u8string();
  }
}

/** Those that brought points, or a folder whose files did. */
std::vector<std::string> Loaded(const std::vector<std::string>& files,
                                const std::vector<FileReport>& reports) {
  std::vector<std::string> loaded;
  for (const std::string& file : files)
    if (std::any_of(reports.begin(), reports.end(), [&file](const FileReport& report) {
          return report.points > 0 && report.path.compare(0, file.size(), file) == 0 &&
                 (report.path.size() == file.size() || IsFolder(file));
        }))
      loaded.push_back(file);
  return loaded;
}

/** Tells the first cloud from the others by what was loaded: "scan", "scan and 2 more", "scan (2)". */
void NameAfterFiles(const CloudSession& session, const std::vector<std::string>& files) {
  const std::vector<std::string> loaded = Loaded(files, session.Reports());
  if (loaded.empty()) return;
  const fs::path first = fs::u8path(loaded.front());
  std::string name = (first.has_filename() ? first : first.parent_path()).stem().u8string(); // "scans/"
  if (loaded.size() > 1) name += " and " + std::to_string(loaded.size() - 1) + " more";
  const std::vector<BaseObject*> clouds = session.Clouds();
  const auto isTaken = [&clouds](const std::string& wanted) {
    return std::any_of(clouds.begin() + 1, clouds.end(),
                       [&wanted](BaseObject* other) { return host::Utf8(other->GetName()) == wanted; });
  };
  std::string free = name;
  for (int number = 2; isTaken(free); ++number) free = name + " (" + std::to_string(number) + ")";
  clouds.front()->SetName(host::FromUtf8(free));
}

} // namespace

void ViewApplication::Report(const std::string& line) {
  session_.App().GetConsole().Print(line);
}

void ViewApplication::Complain(const std::string& line) {
  console_.Mark(line);
  Report(line);
}

/** Has the lines about files that did not load in whole stand out. */
void ViewApplication::MarkProblems(std::size_t firstLine) {
  const std::vector<std::string> lines = session_.App().GetConsole().Lines(firstLine);
  for (const FileReport& report : session_.Reports()) {
    const auto about = [&report](const std::string& line) {
      return line.compare(0, report.path.size(), report.path) == 0;
    };
    const auto line = std::find_if(lines.rbegin(), lines.rend(), about);
    if (report.outcome == FileOutcome::Whole) continue;
    if (line != lines.rend())
      console_.Mark(*line);
    else
      Complain(report.path + ": " + report.message);
  }
}

/** For a file that is made of the scene, without a suffix. */
std::string ViewApplication::NameForFile() const {
  const std::vector<BaseObject*> clouds = session_.Clouds();
  if (!path_.empty()) return fs::u8path(path_).stem().u8string();
  return clouds.empty() ? std::string() : host::Utf8(clouds.front()->GetName());
}

/** Does what follows from a cloud's parameters, as a part of the step that changed them. */
void ViewApplication::FollowChoices() {
  for (BaseObject* cloud : session_.Clouds()) {
    const BaseContainer& data = *cloud->GetDataInstance();
    const Choices now{data.GetLong(KELVRA_CONVERT_MODE), data.GetLong(KELVRA_COLOR_MODE)};
    const auto [place, isNew] = choices_.emplace(cloud, now);
    const Choices before = std::exchange(place->second, now);
    const bool recolored = now.coloring != before.coloring, converted = now.conversion != before.conversion;
    const bool builds = now.conversion != KELVRA_CONVERT_MODE_OFF && cloud->CheckCache(nullptr);
    if (!recolored && !converted && !builds) continue;
    const host::Aftermath aftermath(session_.Document());
    if (recolored) {
      host::KeepParameters(cloud);
      FitHeights(session_, cloud);
    }
    // Particles lie outside of the cloud: those of the conversion before would stay beside the new ones.
    if (converted) Edits::Delete(ParticlesOf(cloud, now.conversion));
    if (builds) ConvertCloud(cloud, now.conversion, converted || isNew);
  }
}

/** Builds what a cloud is converted to before it is drawn: as work that reports and can be stopped. */
void ViewApplication::ConvertCloud(BaseObject* cloud, LONG mode, bool isNew) {
  const bool worked = std::exchange(working_, true);
  const Busy before = std::exchange(busy_, {"converting", kUnknown, Now(), Now(), true});
  if (viewport_.PointsShown() > kManyPoints) Announce("converting", kUnknown);
  host::UpdateCache(cloud, session_.Document(), BUILDFLAGS_0);
  const bool stopped = busy_.text == kStopping;
  const double seconds = Now() - busy_.start;
  EndWork();
  working_ = worked;
  busy_ = before;
  const std::string name = host::Utf8(cloud->GetName());
  if (stopped) {
    Edits().SetParameter(cloud, DescID(KELVRA_CONVERT_MODE), GeData(KELVRA_CONVERT_MODE_OFF), false);
    Complain(name + ": converting was stopped; \"Convert To\" is \"Nothing\" again");
  } else if (isNew && mode != KELVRA_CONVERT_MODE_EMPTY) {
    const Shape shape = ShapeOf(session_, cloud, false);
    Report(name + ": converted to " +
           Counted(mode == KELVRA_CONVERT_MODE_HAIR ? shape.lines : shape.points, UnitOf(mode)) + " in " +
           Fixed(seconds, 1) + " s");
  }
}

void ViewApplication::UseDocument(BaseDocument* doc) {
  viewport_.Forget();
  render_.Forget();
  heights_.Forget();
  explanation_ = PixelReport();
  selected_.SetLink(nullptr);
  showsPreferences_ = false;
  session_.Use(doc);
  choices_.clear();
  saved_ = Present();
  stamp_ = saved_.stamp;
}

void ViewApplication::OpenFirst() {
  BaseDocument* before = session_.Document();
  const std::vector<std::string>& files = plan_.input.files;
  busy_.text = "loading";
  if (!files.empty()) {
    std::optional<host::OneStep> step;
    if (std::none_of(files.begin(), files.end(), host::IsSceneFile)) step.emplace(before);
    session_.Open(files, plan_.input.settings, plan_.input.trust);
  }
  PrintReports(session_, plan_.input.verbose);
  MarkProblems(0);
  status_ = session_.ExitStatus();
  if (session_.Document() != before) {
    viewport_.Forget();
    path_ = files.front();
  } else if (session_.Points() > 0) {
    NameAfterFiles(session_, files);
  } else if (!session_.Clouds().empty()) {
    host::TakeBack(before);
  }
  for (const std::string& note : viewport_.PrepareClouds()) Report(ForPeople(note));
  Select(session_.Document()->GetFirstObject());
  TakeAsSaved();
}

void ViewApplication::LoadClouds(const std::vector<std::string>& files) {
  if (files.size() == 1 && host::IsSceneFile(files.front())) return OpenScene(files.front());
  kept_.folder = fs::u8path(files.front()).parent_path().u8string();
  const std::size_t before = session_.Clouds().size();
  if (!OpenClouds(files)) {
    // Nothing came of it: the scene is as it was.
    if (session_.Clouds().size() > before) host::TakeBack(session_.Document());
    MeetMoments();
    return Select(session_.Document()->GetFirstObject());
  }
  const std::vector<BaseObject*> clouds = session_.Clouds();
  if (clouds.size() > before) viewport_.FrameAll(viewport_.Direction());
  if (before > 0 && clouds.size() > before)
    Report(
        host::Utf8(clouds.front()->GetName()) +
        " is fitted to the scene by itself: it does not stand in its true place beside the other scans (to "
        "keep their places, load all files in one go)");
  if (!clouds.empty()) Select(clouds.front());
  wantsView_ = true;
}

/** Into a new cloud, as one undo step. False when no point came. */
bool ViewApplication::OpenClouds(const std::vector<std::string>& files) {
  const host::OneStep step(session_.Document());
  const std::size_t before = session_.Clouds().size();
  const std::size_t lines = session_.App().GetConsole().LineCount();
  session_.Use(session_.Document());
  session_.Open(files, {}, plan_.input.trust);
  MarkProblems(lines);
  const std::vector<BaseObject*> clouds = session_.Clouds();
  CloudStats stats;
  if (clouds.size() > before && ReadCloudStats(clouds.front(), &stats) && stats.Points() == 0) return false;
  if (clouds.empty()) return false;
  for (const std::string& note : viewport_.PrepareClouds()) Report(ForPeople(note));
  if (clouds.size() > before) NameAfterFiles(session_, files);
  return true;
}

void ViewApplication::LoadByDialog(bool folder) {
  const std::string path = AskFile({folder ? FILESELECT_DIRECTORY : FILESELECT_LOAD,
                                    folder ? "Load a folder of scans" : "Load a scan", ""},
                                   {kScans, "", !folder});
  if (!path.empty()) LoadClouds(browser_.Paths());
}

bool ViewApplication::MayDiscard() {
  if (!IsChanged()) return true;
  const int answer = Ask("The scene has changes that are not saved.", {"Save", "Don't save", "Cancel"});
  return answer == 0 ? SaveScene(false) : answer == 1;
}

void ViewApplication::NewScene() {
  if (!MayDiscard()) return;
  UseDocument(session_.App().NewDocument());
  path_.clear();
}

void ViewApplication::OpenScene(const std::string& path) {
  if (!MayDiscard()) return;
  const std::string chosen =
      path.empty() ? AskFile({FILESELECT_LOAD, "Open a scene", ""}, {kScenes, ""}) : path;
  if (chosen.empty()) return;
  if (!host::IsSceneFile(chosen)) return LoadClouds({chosen});
  std::string error;
  busy_.text = "opening";
  BaseDocument* doc = session_.App().LoadScene(chosen, &error);
  if (!doc) return Complain(error);
  UseDocument(doc);
  path_ = chosen;
  viewport_.PrepareClouds();
  viewport_.FrameAll();
  Select(doc->GetFirstObject());
  TakeAsSaved();
  wantsView_ = true;
}

bool ViewApplication::SaveScene(bool asNew) {
  std::string path = path_;
  if (asNew || path.empty())
    path = AskFile({FILESELECT_SAVE, "Save the scene", ""}, {kScenes, NameForFile() + ".scene"});
  if (path.empty()) return false;
  if (fs::u8path(path).extension().empty()) path += ".scene";
  std::string error;
  if (!session_.App().SaveScene(session_.Document(), path, &error)) {
    Complain(error);
    return false;
  }
  path_ = path;
  saved_ = Present();
  Report("saved " + path);
  return true;
}

void ViewApplication::Press(BaseList2D* node, LONG id) {
  session_.App().PressButton(node, id);
  edits_.LetGo();
  viewport_.Redraw();
}

void ViewApplication::ChooseFile(BaseList2D* node, LONG id) {
  const std::string path = AskFile({FILESELECT_LOAD, "", ""});
  if (!path.empty()) edits_.SetParameter(node, DescID(id), GeData(Filename(host::FromUtf8(path))), false);
}

void ViewApplication::RenderPicture() {
  session_.RequireContent();
  explanation_ = PixelReport();
  wantsPicture_ = true;
  Announce("rendering", 0);
  // Effects that every render has, and the radius chosen for it, are no change of the user's.
  TouchDocument([this] {
    Report(render_.Render(viewport_.Camera(), viewport_.Aspect(),
                          [this](double share) { Progress("rendering", (int)(share * 100.0)); }));
  });
  pictured_ = Present();
  viewport_.Redraw();
}

void ViewApplication::SavePicture() {
  std::string path = AskFile({FILESELECT_SAVE, "Save the picture (.png, .tif or .exr)", ""},
                             {kPictures, NameForFile() + ".png"});
  if (path.empty()) return;
  if (fs::u8path(path).extension().empty()) path += ".png";
  const std::string error = render_.Save(path);
  error.empty() ? Report("saved " + path) : Complain(error);
}

void ViewApplication::Explain(const Pixel& pixel) {
  if (!render_.IsRendered(pixel)) return Report("this part was not rendered before the render was stopped");
  std::vector<PixelPoint> points;
  Announce("explaining");
  TouchDocument([&] { explanation_ = render_.Explain(pixel, &points); });
  std::stable_sort(points.begin(), points.end(),
                   [](const PixelPoint& a, const PixelPoint& b) { return a.weight > b.weight; });
  std::vector<Vector> places;
  for (const PixelPoint& point : points) places.push_back(point.place);
  viewport_.Mark(places, points.empty() ? std::string() : points.front().text);
}

void ViewApplication::Pick(const PicturePlace& place) {
  if (viewport_.PointsShown() > kManyPoints) Announce("looking for the point");
  std::optional<PickedPoint> picked;
  for (const double reach : kPickReaches)
    if (!picked)
      picked =
          PickPoint(session_, viewport_.Camera(), viewport_.Aspect(), place, reach / viewport_.HalfHeight());
  if (!picked) return viewport_.Mark({});
  viewport_.Mark({picked->world}, picked->Text());
  std::string line = picked->Text();
  for (char& c : line)
    if (c == '\n') c = ' ';
  Report(line);
}

/** One undo step: the parameters, and the colours that follow from them. */
void ViewApplication::ColorByHeight(BaseObject* cloud, const HeightRamp& ramp) {
  double lowShare = 0.0, highShare = 1.0;
  if (!SharesOfHeights(cloud, ramp.from, ramp.to, &lowShare, &highShare)) return;
  Announce("coloring by height");
  const host::OneStep step(session_.Document());
  const auto set = [&](LONG id, const GeData& value) {
    edits_.SetParameter(cloud, DescID(id), value, false);
  };
  set(KELVRA_RAMP, GeData(ramp.ramp));
  set(KELVRA_RAMP_LOW, GeData(lowShare));
  set(KELVRA_RAMP_HIGH, GeData(highShare));
  set(KELVRA_COLOR_MODE, GeData(KELVRA_COLOR_MODE_POINT));
  Press(cloud, KELVRA_COLOR_AGAIN);
}

void ViewApplication::Screenshot() {
  host::gl::Image image;
  Frame(0.0, &image);
  const std::string path = FreePictureName(kept_.folder);
  std::string error;
  host::gl::WritePng(image, path, &error) ? Report("saved " + path) : Complain(error);
}

void ViewApplication::Undo(bool redo) {
  BaseDocument* doc = session_.Document();
  if (!(redo ? doc->DoRedo() : doc->DoUndo())) Report(redo ? "nothing to redo" : "nothing to undo");
  edits_.LetGo();
  viewport_.Redraw();
  FollowChoices(); // what was built before belongs to what the document was before
  MeetMoments();
  // What was selected may be gone, or be another copy of itself.
  if (!showsPreferences_ && !Selected()) Select(doc->GetFirstObject());
}

void ViewApplication::Select(BaseList2D* node) {
  showsPreferences_ = false;
  selected_.SetLink(node);
  if (BaseObject* op = SelectedObject()) session_.Document()->SetActiveObject(op);
}

/** With what would be of no use without it, as one step. */
void ViewApplication::DeleteSelected() {
  BaseList2D* node = showsPreferences_ ? nullptr : Selected();
  if (!node) return;
  const host::OneStep step(session_.Document());
  std::string line = TitleOf(node) + ": deleted";
  // A cloud would fill its particles again.
  if (BaseObject* maker = MakerOf(node, session_.Clouds())) {
    edits_.SetParameter(maker, DescID(KELVRA_CONVERT_MODE), GeData(KELVRA_CONVERT_MODE_OFF), false);
    line += "; \"Convert To\" of " + host::Utf8(maker->GetName()) + " is \"Nothing\" again";
  }
  std::vector<BaseList2D*> all;
  if (BaseObject* op = SelectedObject()) {
    const std::set<BaseList2D*> whole = WholeOf(op);
    for (BaseVideoPost* effect : EffectsOf(session_.Document(), whole))
      if (LinksOnly(effect, whole)) all.push_back(effect);
    const std::size_t effects = all.size();
    for (BaseObject* cloud : session_.Clouds())
      for (BaseList2D* particles :
           whole.count(cloud) > 0 ? ParticlesOf(cloud, KELVRA_CONVERT_MODE_OFF) : std::vector<BaseList2D*>())
        if (whole.count(particles) == 0) all.push_back(particles);
    if (effects > 0) line += ", with " + Counted((long long)effects, "effect") + " of the render";
    if (all.size() > effects) line += effects > 0 ? " and its particles" : ", with its particles";
  }
  all.push_back(node); // last: undo brings it back first, and then what lay beside it
  Edits::Delete(all);
  Report(line + " (Ctrl+Z brings it back)");
  viewport_.Redraw();
}

void ViewApplication::DuplicateSelected() {
  BaseObject* op = SelectedObject();
  BaseObject* copy = op ? Edits::Duplicate(op) : nullptr;
  if (!copy) return;
  const std::size_t effects = EffectsOf(session_.Document(), WholeOf(copy)).size();
  Report(host::Utf8(copy->GetName()) + ": a copy of " + host::Utf8(op->GetName()) +
         (effects > 0 ? ", with " + Counted((long long)effects, "effect") + " of the render" : ""));
  Select(copy);
}

} // namespace cli
