// The application that one sits at: panes around the host's viewport, and work that keeps the window alive.
#pragma once

#include "cli/session/cloud_session.h"
#include "cli/view/console_pane.h"
#include "cli/view/edits.h"
#include "cli/view/file_browser.h"
#include "cli/view/height_panel.h"
#include "cli/view/kept_settings.h"
#include "cli/view/parameter_panel.h"
#include "cli/view/render_pane.h"
#include "cli/view/view_plan.h"
#include "cli/view/viewport_pane.h"

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/** What is shown once the user stopped the work. */
constexpr const char* kStopping = "stopping";
/** In place of a percentage: work that is too short to be stopped. */
constexpr int kCannotStop = -1;
/** In place of a percentage: work that does not know how far it is. */
constexpr int kUnknown = -2;

class ViewApplication {
public:
  explicit ViewApplication(const ViewPlan& plan);
  ~ViewApplication();
  ViewApplication(const ViewApplication&) = delete;
  ViewApplication& operator=(const ViewApplication&) = delete;

  /** Until the window is closed. */
  int Run();

private:
  /** Work that takes a while: it reports its progress, and the user can stop it. */
  struct Busy {
    std::string text;
    int percent = 0;
    double start = 0.0, lastFrame = 0.0; ///< seconds
    bool named = false;                  ///< by the task itself, which then keeps that text
  };
  /** The document as it was at some time. Undo may lead back to it. */
  struct Moment {
    std::size_t stamp = 0;
    LULONG undoState = 0;
  };
  struct Question {
    std::string text;
    std::vector<std::string> answers;
    int answer = -1;
  };

  // The life of the window, in view_application.cpp.
  void Frame(double patience, host::gl::Image* copy = nullptr);
  void RunTasks();
  void EndWork();
  void Later(std::function<void()> task) { tasks_.push_back(std::move(task)); }
  void Progress(const std::string& text, int percent);
  std::string AskFile(const host::Dialogs::FileQuestion& question,
                      const FileBrowser::Expected& expected = FileBrowser::Expected());
  /** Number of the answer that was chosen; the last one if the window is closed. */
  int Ask(const std::string& text, const std::vector<std::string>& answers);
  void ConnectHost();
  bool IsTimeUp() const;
  /** Seconds, from some start. */
  static double Now();
  bool Closing();

  // What the user can do with documents, in scene_tasks.cpp.
  void OpenFirst();
  void LoadClouds(const std::vector<std::string>& files);
  bool OpenClouds(const std::vector<std::string>& files);
  void LoadByDialog(bool folder);
  void OpenScene(const std::string& path);
  void NewScene();
  bool SaveScene(bool asNew);
  /** Asks about changes that were not saved; false to stay. */
  bool MayDiscard();
  void UseDocument(BaseDocument* doc);
  void Press(BaseList2D* node, LONG id);
  void ChooseFile(BaseList2D* node, LONG id);
  void RenderPicture();
  void SavePicture();
  void Explain(const Pixel& pixel);
  void Pick(const PicturePlace& place);
  void ColorByHeight(BaseObject* cloud, const HeightRamp& ramp);
  void Screenshot();
  void Undo(bool redo);
  void Select(BaseList2D* node);
  void DeleteSelected();
  void DuplicateSelected();
  void Report(const std::string& line);
  /** Reports what went wrong. */
  void Complain(const std::string& line);
  void MarkProblems(std::size_t firstLine);
  void FollowChoices();
  void ConvertCloud(BaseObject* cloud, LONG mode, bool isNew);
  std::string NameForFile() const;

  // What is drawn, in view_panes.cpp.
  void DrawAll();
  void DrawPanes(float top, float status);
  void DrawMenu();
  void DrawParameters();
  void DrawCentre();
  std::string Title() const;
  void DrawWelcome();
  void DrawStatus();
  void DrawQuestion();
  void DrawHelp();
  void TakeShortcuts(const Window::Key& key);
  void Stop();

  // In object_tree.cpp.
  void DrawObjects();
  void DrawObject(BaseObject* op);
  void DrawRow(BaseList2D* node, const std::string& label);
  const host::PluginInfo* PluginOf(BaseVideoPost* post);

  // In picture_tab.cpp.
  void DrawPicture();
  void DrawExplanation(const ImVec2& corner, const ImVec2& room);
  void DrawExplained();

  BaseObject* SelectedObject() const;
  BaseList2D* Selected() const;
  bool IsChanged() const;
  /** Work is under way that says so; brief tasks do not. */
  bool IsBusy() const { return working_ && !busy_.text.empty(); }
  /** There is something to render. */
  bool HasContent() const { return session_.Document()->GetFirstObject() != nullptr; }
  bool IsPictureCurrent() const { return pictured_.stamp == stamp_; }
  Moment Present() const;
  /** After undo or redo: the document may be what it was when it was saved or rendered. */
  void MeetMoments();
  /** The document as it is now needs no saving. */
  void TakeAsSaved();
  /** What the program does to the document by itself, which is no change of the user's. */
  void TouchDocument(const std::function<void()>& touch);
  /** Says in the status line what is being done, before it is done. */
  void Announce(const std::string& text, int percent = kCannotStop);
  /** Draws what changed; true while there is more to do. */
  bool UpdateView();

  ViewPlan plan_;
  KeptSettings kept_;
  Window window_;
  CloudSession session_;
  ViewportPane viewport_;
  RenderPane render_;
  Edits edits_;
  ParameterPanel panel_;
  HeightPanel heights_;
  FileBrowser browser_;
  Question question_;

  std::deque<std::function<void()>> tasks_;
  bool working_ = false, inFrame_ = false;
  Busy busy_;
  BaseLink selected_;
  bool showsPreferences_ = false;
  std::string path_;        ///< of the scene, empty before it is saved
  Moment saved_, pictured_; ///< when the scene was saved, and when the picture was rendered
  std::size_t stamp_ = 0;
  /** Of a cloud, when it was last looked at. */
  struct Choices {
    LONG conversion = 0, coloring = 0;
  };
  std::map<BaseObject*, Choices> choices_;
  int status_ = 0;

  ConsolePane console_;
  bool panels_ = true, showsHelp_ = false, wantsPicture_ = false, wantsView_ = false, wantsMenu_ = false,
       quit_ = false;
  bool pictureShown_ = false;
  PixelReport explanation_;
  float explainedHeight_ = 200.0f; ///< of its text, pixels
  double readySince_ = -1.0;       ///< when the first files were drawn
};

} // namespace cli
