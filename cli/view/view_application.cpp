#include "cli/view/view_application.h"

#include "cli/session/preferences_page.h"
#include "cli/text/format.h"
#include "cli/view/document_stamp.h"
#include "host/application.h"
#include "host/base/replacing_file.h"
#include "host/parameter_step.h"

#include <chrono>
#include <imgui.h>
#include <stdexcept>

namespace cli {

namespace {

constexpr double kIdle = 0.25; ///< seconds between frames while nothing happens
constexpr double kBusyInterval = 0.06;

/** What a module says that it does: "Loading : 12345 of 20000" as "Loading: 12,345 of 20,000". */
std::string ForReading(std::string text) {
  const std::size_t colon = text.find(" : ");
  if (colon != std::string::npos) text.erase(colon, 1);
  return GroupedIn(text);
}

KeptSettings SettingsFor(const ViewPlan& plan) {
  KeptSettings kept = KeptSettings::Load();
  if (plan.hasSize) {
    kept.width = plan.size.width;
    kept.height = plan.size.height;
  }
  return kept;
}

} // namespace

ViewApplication::ViewApplication(const ViewPlan& plan)
    : plan_(plan),
      kept_(SettingsFor(plan)),
      window_(kept_.width, kept_.height, "Kelvra"),
      session_(plan.input.faults),
      viewport_(session_, window_),
      render_(session_),
      panel_(edits_, {[this](BaseList2D* node, LONG id) { Later([=] { Press(node, id); }); },
                      [this](BaseList2D* node, LONG id) { Later([=] { ChooseFile(node, id); }); },
                      [this](const host::resource::Parameter& parameter) {
                        std::vector<BaseList2D*> found;
                        VisitObjects(session_.Document()->GetFirstObject(), [&](BaseObject* op) {
                          bool fits = parameter.accept.empty();
                          for (LONG type : parameter.accept) fits = fits || op->IsInstanceOf(type);
                          if (fits) found.push_back(op);
                        });
                        return found;
                      }}),
      heights_(
          [this](BaseObject* cloud, const HeightRamp& ramp) { Later([=] { ColorByHeight(cloud, ramp); }); }),
      panels_(!plan.noPanels) {
  host::SetOutputsStop(false); // what the window saves is whole, whatever ends the program meanwhile
  render_.Plan().view.size.width = kept_.renderWidth;
  ConnectHost();
  UseDocument(session_.Document());
}

ViewApplication::~ViewApplication() {
  host::Application& app = session_.App();
  app.GetConsole().SetProgressSink(nullptr);
  host::Work::SetAsked(nullptr);
  app.GetDialogs().SetInteractive(nullptr);
  app.GetDialogs().SetFileChooser(nullptr);
  viewport_.Forget();
  if (!plan_.hasSize) window_.Size(&kept_.width, &kept_.height);
  kept_.renderWidth = render_.Plan().view.size.width;
  kept_.Save();
}

void ViewApplication::ConnectHost() {
  host::Application& app = session_.App();
  app.KeepUndo(true);
  session_.Use(app.NewDocument());
  app.GetConsole().SetProgressSink([this](const std::string& text, int percent) { Progress(text, percent); });
  host::Work::SetAsked([this] { Progress(std::string(), busy_.percent); });
  app.GetDialogs().SetFileChooser(
      [this](const host::Dialogs::FileQuestion& question) { return AskFile(question); });
  app.GetDialogs().SetInteractive([this](const std::string& text, GEMB flags) {
    switch (flags & 0xf) {
    case GEMB_YESNO:
      return Ask(text, {"Yes", "No"}) == 0 ? GEMB_R_YES : GEMB_R_NO;
    case GEMB_OKCANCEL:
      return Ask(text, {"OK", "Cancel"}) == 0 ? GEMB_R_OK : GEMB_R_CANCEL;
    default:
      Ask(text, {"OK"});
      return GEMB_R_OK;
    }
  });
}

double ViewApplication::Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

int ViewApplication::Run() {
  Frame(0.0); // the window is there while the files are loaded
  working_ = true;
  OpenFirst(); // a mistake in the command line ends the program
  EndWork();
  bool more = true;
  while (!Closing()) {
    RunTasks();
    more = UpdateView();
    if (!more && readySince_ < 0.0) readySince_ = Now();
    const bool soon = more || viewport_.IsMoving() || plan_.exitAfter;
    Frame(soon ? 0.01 : kIdle);
  }
  if (!plan_.screenshot.empty()) {
    host::gl::Image image;
    std::string error;
    Frame(0.0, &image);
    if (!host::gl::WritePng(image, plan_.screenshot, &error)) throw std::runtime_error(error);
  }
  return status_;
}

bool ViewApplication::IsTimeUp() const {
  return plan_.exitAfter && readySince_ >= 0.0 && Now() - readySince_ >= *plan_.exitAfter;
}

bool ViewApplication::Closing() {
  if (host::Interrupted() || IsTimeUp()) return true;
  if (!quit_ && !window_.WantsToClose()) return false;
  window_.KeepOpen();
  quit_ = false;
  return MayDiscard();
}

void ViewApplication::Frame(double patience, host::gl::Image* copy) {
  inFrame_ = true;
  window_.BeginFrame(patience);
  DrawAll();
  window_.EndFrame(copy);
  inFrame_ = false;
  const std::vector<std::string> dropped = window_.TakeDropped();
  if (!dropped.empty()) Later([this, dropped] { LoadClouds(dropped); });
}

void ViewApplication::RunTasks() {
  while (!tasks_.empty()) {
    const std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    working_ = true;
    busy_ = Busy();
    try {
      task();
    } catch (const UsageError& e) {
      Complain(e.text);
    } catch (const std::bad_alloc&) {
      Complain("not enough memory");
    } catch (const std::runtime_error& e) {
      Complain(e.what());
    }
    EndWork();
  }
}

void ViewApplication::EndWork() {
  working_ = false;
  // The button stopped this work only.
  if (busy_.text == kStopping) host::ClearInterrupt();
  busy_ = Busy();
}

/** Called by whatever reports how far it is, or asks whether it was stopped. */
void ViewApplication::Progress(const std::string& text, int percent) {
  if (!working_ || inFrame_) return;
  if (busy_.text != kStopping && !busy_.named && !text.empty()) busy_.text = ForReading(text);
  if (busy_.text.empty()) busy_.text = "working";
  busy_.percent = percent;
  if (Now() - busy_.lastFrame < kBusyInterval) return;
  Frame(0.0);
  busy_.lastFrame = Now();
}

void ViewApplication::Announce(const std::string& text, int percent) {
  busy_ = {text, percent, Now(), Now(), true};
  Frame(0.0);
}

std::string ViewApplication::AskFile(const host::Dialogs::FileQuestion& question,
                                     const FileBrowser::Expected& expected) {
  if (inFrame_) return std::string();
  browser_.Open(question, kept_.folder, expected);
  while (browser_.IsOpen() && !window_.WantsToClose() && !host::Interrupted() && !IsTimeUp()) Frame(kIdle);
  if (browser_.IsOpen()) return std::string();
  if (!browser_.Path().empty()) kept_.folder = browser_.Folder();
  return browser_.Path();
}

int ViewApplication::Ask(const std::string& text, const std::vector<std::string>& answers) {
  if (inFrame_) return (int)answers.size() - 1;
  question_ = {text, answers, -1};
  while (question_.answer < 0 && !window_.WantsToClose() && !host::Interrupted() && !IsTimeUp()) Frame(kIdle);
  const int answer = question_.answer < 0 ? (int)answers.size() - 1 : question_.answer;
  question_ = Question();
  return answer;
}

BaseList2D* ViewApplication::Selected() const {
  if (showsPreferences_) return FindPreferencesPage(const_cast<CloudSession&>(session_).App());
  return selected_.GetLink(session_.Document());
}

BaseObject* ViewApplication::SelectedObject() const {
  BaseList2D* node = showsPreferences_ ? nullptr : selected_.GetLink(session_.Document());
  return node && node->IsInstanceOf(Obase) ? static_cast<BaseObject*>(node) : nullptr;
}

void ViewApplication::TouchDocument(const std::function<void()>& touch) {
  const std::size_t before = DocumentStamp(session_.Document());
  touch();
  const std::size_t after = DocumentStamp(session_.Document());
  for (std::size_t* stamp : {&saved_.stamp, &pictured_.stamp, &stamp_})
    if (*stamp == before) *stamp = after;
}

bool ViewApplication::UpdateView() {
  FollowChoices();
  const std::size_t now = DocumentStamp(session_.Document());
  if (now != stamp_) viewport_.Mark({}); // what it says of a point may not be true any more
  stamp_ = now;
  bool more = false;
  // Drawing has the thread's GL to itself: no frame of the interface meanwhile.
  const bool worked = std::exchange(working_, false);
  TouchDocument([&] { more = viewport_.Update(now); });
  working_ = worked;
  if (stamp_ != now) viewport_.Settle(stamp_);
  return more;
}

ViewApplication::Moment ViewApplication::Present() const {
  BaseDocument* doc = session_.Document();
  return {DocumentStamp(doc), host::PlaceInHistory(doc).state};
}

void ViewApplication::MeetMoments() {
  const Moment present = Present();
  for (Moment* moment : {&saved_, &pictured_})
    if (moment->undoState == present.undoState) *moment = present;
}

void ViewApplication::TakeAsSaved() {
  FollowChoices();
  saved_ = Present();
  UpdateView();
}

bool ViewApplication::IsChanged() const {
  return DocumentStamp(session_.Document()) != saved_.stamp;
}

int RunView(const ViewPlan& plan) {
  ViewApplication application(plan);
  return application.Run();
}

} // namespace cli
