#include "cli/commands/output/file_reports.h"
#include "cli/text/format.h"
#include "cli/view/document_stamp.h"
#include "cli/view/point_pick.h"
#include "cli/view/view_application.h"
#include "host/application.h"
#include "host/parameter_step.h"
#include "otallyframe.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

/** Pixels around the pointer in which a point counts as meant. */
constexpr double kPickReach = 5.0;
/** Points above which looking for one is noticed. */
constexpr long long kManyPoints = 5000000;

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

/** Tells clouds apart by what was loaded: "scan", "scan and 2 more". */
void NameAfterFiles(BaseObject* cloud, const std::vector<std::string>& files) {
  std::string name = fs::u8path(files.front()).stem().u8string();
  if (files.size() > 1) name += " and " + std::to_string(files.size() - 1) + " more";
  cloud->SetName(host::FromUtf8(name));
}

} // namespace

void ViewApplication::Report(const std::string& line) {
  session_.App().GetConsole().Print(line);
}

void ViewApplication::UseDocument(BaseDocument* doc) {
  viewport_.Forget();
  render_.Forget();
  heights_.Forget();
  explanation_.clear();
  selected_.SetLink(nullptr);
  showsPreferences_ = false;
  session_.Use(doc);
  stamp_ = savedStamp_ = DocumentStamp(doc);
}

void ViewApplication::OpenFirst() {
  BaseDocument* before = session_.Document();
  busy_.text = "loading";
  if (!plan_.input.files.empty()) session_.Open(plan_.input.files, plan_.input.settings, plan_.input.trust);
  PrintReports(session_, plan_.input.verbose);
  status_ = session_.ExitStatus();
  if (session_.Document() != before) {
    viewport_.Forget();
    path_ = plan_.input.files.front();
  } else if (!session_.Clouds().empty()) {
    NameAfterFiles(session_.Clouds().front(), plan_.input.files);
  }
  for (const std::string& note : viewport_.PrepareClouds()) Report(ForPeople(note));
  Select(session_.Document()->GetFirstObject());
  TakeAsSaved();
}

void ViewApplication::LoadClouds(const std::vector<std::string>& files) {
  if (files.size() == 1 && host::IsSceneFile(files.front())) return OpenScene(files.front());
  kept_.folder = fs::u8path(files.front()).parent_path().u8string();
  const std::size_t before = session_.Clouds().size();
  OpenClouds(files);
  std::vector<BaseObject*> clouds = session_.Clouds();
  CloudStats stats;
  if (clouds.size() > before && ReadCloudStats(clouds.front(), &stats) && stats.Points() == 0) {
    // Nothing came of it: the scene is as it was.
    session_.Document()->DoUndo();
    return Select(session_.Document()->GetFirstObject());
  }
  if (before == 0) viewport_.FrameAll();
  if (!clouds.empty()) Select(clouds.front());
  wantsView_ = true;
}

/** Into a new cloud, as one undo step. */
void ViewApplication::OpenClouds(const std::vector<std::string>& files) {
  const host::OneStep step(session_.Document());
  const std::size_t lines = session_.App().GetConsole().Lines(0).size();
  const std::size_t before = session_.Clouds().size();
  session_.Use(session_.Document());
  session_.Open(files, {}, plan_.input.trust);
  const std::vector<std::string> said = session_.App().GetConsole().Lines(lines);
  for (const FileReport& report : session_.Reports()) {
    const bool known = std::any_of(said.begin(), said.end(), [&report](const std::string& line) {
      return line.compare(0, report.path.size(), report.path) == 0;
    });
    if (report.outcome != FileOutcome::Whole && !known) Report(report.path + ": " + report.message);
  }
  if (session_.Points() == 0) return;
  for (const std::string& note : viewport_.PrepareClouds()) Report(ForPeople(note));
  if (session_.Clouds().size() > before) NameAfterFiles(session_.Clouds().front(), files);
}

void ViewApplication::LoadByDialog(bool folder) {
  const std::string path = AskFile({folder ? FILESELECT_DIRECTORY : FILESELECT_LOAD,
                                    folder ? "Load a folder of scans" : "Load a scan", ""});
  if (!path.empty()) LoadClouds({path});
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
  const std::string chosen = path.empty() ? AskFile({FILESELECT_LOAD, "Open a scene", ""}) : path;
  if (chosen.empty()) return;
  if (!host::IsSceneFile(chosen)) return LoadClouds({chosen});
  std::string error;
  busy_.text = "opening";
  BaseDocument* doc = session_.App().LoadScene(chosen, &error);
  if (!doc) return Report(error);
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
  if (asNew || path.empty()) path = AskFile({FILESELECT_SAVE, "Save the scene", ""});
  if (path.empty()) return false;
  if (fs::u8path(path).extension().empty()) path += ".scene";
  std::string error;
  if (!session_.App().SaveScene(session_.Document(), path, &error)) {
    Report(error);
    return false;
  }
  path_ = path;
  savedStamp_ = DocumentStamp(session_.Document());
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
  explanation_.clear();
  wantsPicture_ = true;
  busy_.text = "rendering";
  const bool saved = !IsChanged();
  Report(render_.Render(viewport_.Camera(), viewport_.Aspect(),
                        [this](double share) { Progress("rendering", (int)(share * 100.0)); }));
  // Effects that every render has, and the radius chosen for it, are no change of the user's.
  if (saved) savedStamp_ = DocumentStamp(session_.Document());
  viewport_.Redraw();
}

void ViewApplication::SavePicture() {
  std::string path = AskFile({FILESELECT_SAVE, "Save the picture (.png, .tif or .exr)", ""});
  if (path.empty()) return;
  if (fs::u8path(path).extension().empty()) path += ".png";
  const std::string error = render_.Save(path);
  Report(error.empty() ? "saved " + path : error);
}

void ViewApplication::Explain(const Pixel& pixel) {
  std::vector<Vector> places;
  Announce("explaining");
  explanation_ = render_.Explain(pixel, &places);
  viewport_.Mark(places, places.size() == 1
                             ? "the point of the pixel"
                             : "first of the pixel's " + Counted((long long)places.size(), "point"));
}

void ViewApplication::Pick(const PicturePlace& place) {
  const double reach = kPickReach / viewport_.HalfHeight();
  if (viewport_.PointsShown() > kManyPoints) Announce("looking for the point");
  const std::optional<PickedPoint> picked =
      PickPoint(session_, viewport_.Camera(), viewport_.Aspect(), place, reach);
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
  Report(host::gl::WritePng(image, path, &error) ? "saved " + path : error);
}

void ViewApplication::Undo(bool redo) {
  BaseDocument* doc = session_.Document();
  if (!(redo ? doc->DoRedo() : doc->DoUndo())) Report(redo ? "nothing to redo" : "nothing to undo");
  edits_.LetGo();
  viewport_.Redraw();
  // What was selected may be gone, or be another copy of itself.
  if (!showsPreferences_ && !Selected()) Select(doc->GetFirstObject());
}

void ViewApplication::Select(BaseList2D* node) {
  showsPreferences_ = false;
  selected_.SetLink(node);
  if (BaseObject* op = SelectedObject()) session_.Document()->SetActiveObject(op);
}

void ViewApplication::DeleteSelected() {
  if (BaseObject* op = SelectedObject()) Edits::Delete(op);
}

void ViewApplication::DuplicateSelected() {
  BaseObject* op = SelectedObject();
  if (BaseObject* copy = op ? Edits::Duplicate(op) : nullptr) Select(copy);
}

} // namespace cli
