#include "cli/session/cloud_session.h"

#include "cli/csv/text_of_table.h"
#include "cli/session/file_kinds.h"
#include "cli/session/parameter_list.h"
#include "cli/session/preferences_page.h"
#include "cli/session/scene_geometry.h"
#include "cli/system/preferences_folder.h"
#include "cli/system/process_memory.h"
#include "cli/system/program_path.h"
#include "cli/system/silence.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "host/base/replacing_file.h"
#include "host/memory/memory.h"
#include "host/viewport.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

constexpr const char* kCloudDescription = "Otallyframe";
#ifdef _WIN32
constexpr const char* kModuleName = "kelvra.cdl64";
#else
constexpr const char* kModuleName = "kelvra.so";
#endif

/** Number of the reader that --as names; KELVRA_READER_NONE: by suffix. */
LONG chosenReader = KELVRA_READER_NONE;

/** Messages about a scene begin with its path, which is printed in front of every message here. */
std::string WithoutPath(const std::string& message, const std::string& path) {
  const std::string start = path + ": ";
  return message.compare(0, start.size(), start) == 0 ? message.substr(start.size()) : message;
}

/** What this program adds when memory was short. */
std::string MemoryText() {
  const host::memory::Shortage shortage = host::memory::LastShortage();
  if (shortage.wanted == 0) return std::string();
  return " (" + Bytes(shortage.wanted) + " were asked for, " + Bytes(shortage.free) + " are free)";
}

/** What it adds to the module's line about a file: what the user can do here. */
std::string Advice(const FileReport& report) {
  if (report.cut == KELVRA_CUT_DOUBT) return "; nothing of it was loaded (--trust loads it all the same)";
  std::string advice = report.cut == KELVRA_CUT_NO_MEMORY ? MemoryText() : std::string();
  if (report.facts.epsg != 0 && report.points > 0)
    advice += " (kelvra reproject FILE --sr " + std::to_string(report.facts.epsg) + ")";
  const bool isText = report.facts.reader == KELVRA_READER_XYZ || report.facts.reader == KELVRA_READER_PTS;
  const std::string way =
      isText && report.outcome == FileOutcome::Refused ? TextOfTable::WayToLoad(report.path) : std::string();
  return advice + (way.empty() ? "" : "; " + way);
}

/** Does a file that its name sends to the wrong reader, or to none, hold points? */
bool MightLoad(const std::string& path) {
  return !MisnamedCloud(path).empty() || !TextOfTable::WayToLoad(path).empty();
}

/** Name or number, and value. */
std::pair<std::string, std::string> SplitSetting(const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos || equals == 0)
    throw UsageError{"--set " + setting + ": expected ID=VALUE or NAME=VALUE"};
  return {setting.substr(0, equals), setting.substr(equals + 1)};
}

} // namespace

void ReadAs(LONG reader) {
  chosenReader = reader;
}

bool IsReadInFolder(const std::string& file) {
  return NamesCloud(file) || !MisnamedCloud(file).empty() ||
         (OtherFormat(file).empty() && !host::IsSceneFile(file));
}

CloudSession::CloudSession(const std::vector<std::string>& faults)
    : application_(new host::Application(PreferencesFolder())) {
  PrintConsole(application_->GetConsole(), 0); // what is wrong with the preferences
  std::string error;
  for (const std::string& fault : faults)
    if (!application_->GetFaults().Parse(fault, &error)) throw UsageError{error};
  const fs::path module = fs::u8path(ProgramFolder()) / kModuleName;
  if (!application_->LoadModule(module.u8string(), &error)) throw std::runtime_error(error);
  host::InstallInterruptHandler();
  host::SetOutputsStop(true);
  application_->GetConsole().ShowProgress(!IsSilent());
  application_->KeepUndo(false);
  host::memory::RefuseBeyondFree(true);
  document_ = application_->NewDocument();
  idleMemory_ = ResidentMemory();
}

CloudSession::~CloudSession() {}

void CloudSession::Use(BaseDocument* document) {
  if (document_ && document_ != document) application_->CloseDocument(document_);
  document_ = document;
  target_ = nullptr;
  reports_.clear();
  notes_.clear();
  unused_.clear();
}

long long CloudSession::Points() const {
  long long points = 0;
  for (BaseObject* cloud : Clouds()) {
    CloudStats stats;
    if (ReadCloudStats(cloud, &stats)) points += stats.Points();
  }
  return points;
}

void CloudSession::RequirePoints() const {
  if (Points() == 0) throw std::runtime_error("no point was loaded, nothing is written");
}

void CloudSession::RequireContent() const {
  if (Points() == 0 && host::GeometryBox(document_).IsEmpty()) RequirePoints();
}

host::Box CloudSession::Extent() const {
  host::Box box;
  for (BaseObject* cloud : Clouds()) box.Add(host::WorldBox(cloud));
  if (box.IsEmpty()) box = host::GeometryBox(document_);
  if (!box.IsEmpty() || Points() == 0) return box;
  // All points at one place: a box without size.
  Vector centre, half;
  host::GetObjectBox(Cloud(), &centre, &half);
  box.Add(Cloud()->GetMg() * centre);
  return box;
}

long long CloudSession::PeakMemory() const {
  return std::max(0LL, PeakResidentMemory() - idleMemory_);
}

int CloudSession::ExitStatus() const {
  const bool whole = std::all_of(reports_.begin(), reports_.end(),
                                 [](const FileReport& r) { return r.outcome == FileOutcome::Whole; });
  return whole ? kExitWhole : kExitIncomplete;
}

void CloudSession::Open(const std::vector<std::string>& files, const std::vector<std::string>& settings,
                        bool trust) {
  files_ = files;
  settings_ = settings;
  trust_ = trust;
  LoadAll();
}

void CloudSession::OpenApart() {
  Use(application_->NewDocument());
  apart_ = true;
  LoadAll();
}

void CloudSession::OpenFitted() {
  Use(application_->NewDocument());
  fitted_ = true;
  LoadAll();
}

void CloudSession::LoadAll() {
  const auto start = std::chrono::steady_clock::now();
  for (const std::string& file : files_) {
    if (host::IsSceneFile(file))
      OpenScene(file);
    else if (IsFolder(file))
      LoadFolder(file);
    else
      LoadCloud(file);
  }
  NoteRepeated();
  loadSeconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  // A scene's own objects take the settings too.
  if (!target_)
    for (const std::string& setting : settings_) ApplySetting(setting);
  if (target_) target_->SetParameter(DescID(KELVRA_THIN_VIEW), GeData(thinView_), DESCFLAGS_SET_0);
}

void CloudSession::NoteRepeated() {
  std::map<fs::path, std::string> known;
  for (const FileReport& report : reports_) {
    std::error_code failed;
    const fs::path file = fs::canonical(fs::u8path(report.path), failed);
    if (failed || report.points == 0 || known.emplace(file, report.path).second) continue;
    const std::string& first = known[file];
    notes_.push_back(report.path + ": given twice" +
                     (first == report.path ? "" : " (also as " + first + ")") +
                     ", so that its points are there twice");
  }
}

void CloudSession::OpenScene(const std::string& path) {
  std::string error;
  BaseDocument* scene = application_->LoadScene(path, &error);
  if (scene && !Clouds().empty())
    throw UsageError{path + ": a scene must come first and alone among scenes: found one after other files"};
  FileReport report;
  report.path = path;
  if (scene) {
    application_->CloseDocument(document_);
    document_ = scene;
    report.points = Points();
    const std::size_t clouds = Clouds().size();
    report.message =
        clouds == 0 ? "scene without point clouds" : "scene, " + Counted((long long)clouds, "point cloud");
    const bool content = report.points > 0 || !host::GeometryBox(document_).IsEmpty();
    report.outcome = content ? FileOutcome::Whole : FileOutcome::Refused;
    for (BaseObject* cloud : Clouds()) // what is wrong with points of the scene
      for (const FileReport& found : ReadFileReports(cloud)) {
        report.outcome = FileOutcome::Partial;
        report.message += "; " + found.path + ": " + found.message;
      }
  } else {
    const bool noMemory = error.find("not enough memory") != std::string::npos;
    report.message = WithoutPath(error, path) + (noMemory ? MemoryText() : std::string());
  }
  reports_.push_back(report);
}

void CloudSession::LoadFolder(const std::string& folder) {
  const std::vector<std::string> files = FilesOfFolder(folder);
  const std::vector<std::string> folders = FoldersIn(folder);
  if (!folders.empty())
    notes_.push_back(folder + ": " + Grouped((long long)folders.size()) +
                     (folders.size() == 1 ? " folder in it is not read (name it as well): "
                                          : " folders in it are not read (name them as well): ") +
                     SomeNames(folders));
  const std::size_t before = reports_.size();
  // The module reads whatever it does not know as text; what only this program can tell goes file by file.
  const bool mixed = !chosenReader && std::any_of(files.begin(), files.end(), [](const std::string& file) {
    return TextOfTable::IsTable(file) || !OtherFormat(file).empty();
  });
  const bool fileByFile = mixed || (apart_ && !files.empty());
  if (!fileByFile)
    LoadCloud(folder);
  else
    for (const std::string& file : files) {
      LoadCloud(file);
      if (reports_.back().outcome == FileOutcome::Stopped) break;
    }
  const std::vector<std::string> unnamed = fileByFile ? NotUtf8In(folder) : std::vector<std::string>();
  for (const std::string& file : unnamed) reports_.push_back({file, 0, kNotUtf8, FileOutcome::Refused, {}});
  for (std::size_t i = before; i < reports_.size(); ++i)
    if (reports_[i].outcome == FileOutcome::Refused && reports_[i].path != folder &&
        !NamesCloud(reports_[i].path) && !MightLoad(reports_[i].path))
      reports_[i].strayIn = folder;
}

void CloudSession::LoadCloud(const std::string& path) {
  const std::string obstacle = ReadObstacle(path);
  if (!obstacle.empty()) {
    reports_.push_back({path.empty() ? "\"\"" : path, 0, obstacle, FileOutcome::Refused, {}});
    return;
  }
  const std::string otherFormat = chosenReader || IsFolder(path) ? "" : OtherFormat(path);
  if (!otherFormat.empty()) {
    reports_.push_back({path, 0, otherFormat, FileOutcome::Refused, {}});
    return;
  }
  std::unique_ptr<TextOfTable> table;
  if (!chosenReader && !IsFolder(path) && TextOfTable::IsTable(path)) {
    try {
      table = std::make_unique<TextOfTable>(path);
    } catch (const std::exception& e) {
      const FileOutcome outcome = host::Interrupted() ? FileOutcome::Stopped : FileOutcome::Refused;
      reports_.push_back({path, 0, e.what(), outcome, {}});
      return;
    }
  }
  if (!target_ || apart_) target_ = NewCloud();
  application_->GetDialogs().AnswerFile(table ? table->Path() : path);
  BaseContainer* data = target_->GetDataInstance();
  if (table) data->SetString(KELVRA_LOAD_NAME, String(path.c_str(), STRINGENCODING_UTF8));
  if (!trust_) data->SetBool(KELVRA_LOAD_REFUSE_DOUBTFUL, TRUE);
  if (chosenReader) data->SetLong(KELVRA_LOAD_READER, chosenReader);
  if (countClasses_) data->SetBool(KELVRA_LOAD_COUNT_CLASSES, TRUE);
  application_->PressButton(target_, IsFolder(path) ? KELVRA_LOAD_FOLDER : KELVRA_LOAD_FILE);
  // Not settings: scenes do not get them.
  data->RemoveData(KELVRA_LOAD_REFUSE_DOUBTFUL);
  data->RemoveData(KELVRA_LOAD_COUNT_CLASSES);
  data->RemoveData(KELVRA_LOAD_READER);
  data->RemoveData(KELVRA_LOAD_NAME);
  std::vector<FileReport> loaded = ReadFileReports(target_);
  for (FileReport& report : loaded) {
    const std::string why = report.outcome == FileOutcome::Refused ? ReadObstacle(report.path) : "";
    const bool plainPts = report.facts.reader == KELVRA_READER_PTS &&
                          report.outcome == FileOutcome::Refused && HoldsPoints(report.path);
    if (!why.empty())
      report.message = why; // the module's interface gives it no reason
    else
      report.message += Advice(report) + (plainPts ? "; --as xyz reads x y z without intensity" : "");
  }
  reports_.insert(reports_.end(), loaded.begin(), loaded.end());
  const std::vector<std::string> unnamed = IsFolder(path) ? NotUtf8In(path) : std::vector<std::string>();
  for (const std::string& file : unnamed) reports_.push_back({file, 0, kNotUtf8, FileOutcome::Refused, {}});
  if (loaded.empty() && unnamed.empty()) {
    const char* why = IsFolder(path) ? "the folder holds no file to load" : "the load gave no report";
    reports_.push_back({path, 0, why, FileOutcome::Refused, {}});
  }
}

BaseObject* CloudSession::NewCloud() {
  BaseObject* last = document_->GetFirstObject();
  while (last && last->GetNext()) last = last->GetNext();
  BaseObject* object = host::CreateObjectFromMenu(document_, CloudType());
  if (!object) throw std::runtime_error("the point cloud object could not be made");
  if (apart_ && last) { // in the order of their files
    object->Remove();
    document_->InsertObject(object, nullptr, last);
  }
  // Unlike a new object of the application, this one is for files of any place, which must come out whole.
  BaseContainer* data = object->GetDataInstance();
  data->SetLong(KELVRA_LOCAL_ORIGIN, KELVRA_LOCAL_ORIGIN_AUTOMATIC);
  data->SetLong(KELVRA_FIT_TEXT, fitted_ ? KELVRA_FIT_TEXT_ON : KELVRA_FIT_TEXT_LARGE);
  for (const std::string& setting : settings_) ApplyToCloud(object, setting);
  // It would thin text files as they load, and what was kept once more where it is shown: it is set again
  // when everything is loaded.
  GeData thin;
  object->GetParameter(DescID(KELVRA_THIN_VIEW), thin, DESCFLAGS_GET_0);
  thinView_ = thin.GetLong();
  object->SetParameter(DescID(KELVRA_THIN_VIEW), GeData((LONG)0), DESCFLAGS_SET_0);
  return object;
}

LONG CloudSession::CloudType() const {
  const host::PluginInfo* plugin = application_->FindByDescription(kCloudDescription);
  if (!plugin) throw std::runtime_error("the module registered no point cloud object");
  return plugin->id;
}

void CloudSession::ApplySetting(const std::string& setting) {
  const std::vector<BaseObject*> clouds = Clouds();
  for (BaseObject* cloud : clouds) ApplyToCloud(cloud, setting);
  if (clouds.empty()) ApplyToGeometry(setting);
}

void CloudSession::ApplyToCloud(BaseObject* cloud, const std::string& setting) {
  const auto [name, value] = SplitSetting(setting);
  LONG id = -1;
  try {
    id = FindSettable(*application_, cloud, name);
  } catch (const UsageError& e) {
    if (GeometryParameter(*application_, name) < 0) throw UsageError{"--set " + setting + ": " + e.text};
    throw UsageError{"--set " + setting +
                     ": a parameter of the video post, which renders objects other than clouds; a cloud has "
                     "its own, named without render_"};
  }
  std::string error;
  if (!application_->SetParameterFromText(cloud, id, value, &error))
    throw UsageError{"--set " + setting + ": " + error};
  Remember(name, id);
}

void CloudSession::ApplyToGeometry(const std::string& setting) {
  const auto [name, value] = SplitSetting(setting);
  const LONG id = GeometryParameter(*application_, name);
  bool used = false;
  if (id >= 0) {
    std::string error;
    if (!SetOfGeometry(*application_, document_, id, value, &used, &error))
      throw UsageError{"--set " + setting + ": " + error};
    Remember(name, id);
  } else {
    // A wrong name or value is an error here as well.
    BaseObject* cloud = BaseObject::Alloc(CloudType());
    if (!cloud) throw std::bad_alloc();
    const std::unique_ptr<BaseObject, void (*)(BaseObject*)> owner(
        cloud, [](BaseObject* op) { BaseObject::Free(op); });
    ApplyToCloud(cloud, setting);
  }
  if (!used && !host::GeometryBox(document_).IsEmpty())
    unused_.push_back("--set " + name +
                      ": has no effect: the scene holds no point cloud, and its other objects do not have "
                      "this parameter");
}

void CloudSession::Remember(const std::string& name, LONG id) {
  if (!WasSet(id)) appliedSettings_.push_back({name, id});
}

bool CloudSession::WasSet(LONG id) const {
  return std::any_of(appliedSettings_.begin(), appliedSettings_.end(),
                     [id](const Setting& setting) { return setting.id == id; });
}

std::vector<BaseObject*> CloudSession::Clouds() const {
  std::vector<BaseObject*> clouds;
  const host::PluginInfo* plugin = application_->FindByDescription(kCloudDescription);
  std::vector<BaseObject*> open;
  for (BaseObject* op = document_->GetFirstObject(); op; op = op->GetNext()) open.push_back(op);
  for (std::size_t i = 0; plugin && i < open.size(); ++i) {
    if (open[i]->GetType() == plugin->id) clouds.push_back(open[i]);
    for (BaseObject* child = open[i]->GetDown(); child; child = child->GetNext()) open.push_back(child);
  }
  return clouds;
}

BaseObject* CloudSession::Cloud() const {
  const std::vector<BaseObject*> clouds = Clouds();
  if (clouds.empty()) throw std::runtime_error("no point cloud was loaded");
  return clouds.front();
}

} // namespace cli
