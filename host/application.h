// The stand-in application as a library: what a driver (command line, tests) uses beside the plug-in
// interface itself. A driver works with documents, objects, parameters and messages through "c4d.h", whose
// tables are this application's own in this process, and with the services below. Pictures come from
// host/viewport.h and host/render.h. The headers that this one includes are part of it.
#pragma once

#include "c4d.h"
#include "host/base/console.h"
#include "host/base/faults.h"
#include "host/base/libraries.h"
#include "host/base/text.h"
#include "host/base/user_break.h"
#include "host/dialogs.h"
#include "host/nodes/object_calls.h"
#include "host/scene/scene_kind.h"
#include "host/scene/stream_visitor.h"
#include "host/undo/make_editable.h"

#include <memory>
#include <string>
#include <vector>

namespace host {

/** A plug-in that a module registered. */
struct PluginInfo {
  PLUGINTYPE kind;
  LONG id;
  std::string name;        ///< as shown to the user, UTF-8
  std::string description; ///< name of the description resource, empty when there is none
  LONG info;               ///< registration flags
  std::string module;      ///< path of the module that registered it
  LONG sortId = 0;         ///< video posts: priority; preferences pages: sort id
  LONG diskLevel = 0;
};

/** Objects alive, by class; all zero after the last document is closed and the modules are unloaded. */
struct LiveCounts {
  LLONG nodes = 0, nodeData = 0, bitmaps = 0, files = 0, factories = 0, vertexBuffers = 0, blocks = 0,
        bytes = 0;
};

/**
 * One running application. The thread that makes it is the main thread. At most one lives at a time. Its
 * destructor closes documents, ends and unloads modules in reverse order and reports what is still alive as
 * misbehaviour.
 */
class Application {
public:
  /** prefsFolder: where preferences are kept; empty keeps them in memory only. */
  explicit Application(const std::string& prefsFolder = std::string());
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  /**
   * What the destructor does first: closes documents, ends modules, saves preferences. Returns what was found
   * alive or broken meanwhile; the destructor writes these lines to standard error when nobody asked here.
   */
  std::vector<std::string> Close();

  /**
   * Opens a module, checks its version and starts it; every stage undoes itself when a later one fails. False
   * with one line that names file, stage, what was found and what was expected.
   */
  bool LoadModule(const std::string& path, std::string* error);
  const std::vector<PluginInfo>& Plugins() const;
  /** The registered plug-in with that description resource, NULL without one. */
  const PluginInfo* FindByDescription(const std::string& description) const;
  /** Ends and unloads all modules; documents must be closed. */
  void UnloadModules();

  /**
   * Whether documents made or loaded from now on keep undo steps; they do. For programs in which nobody can
   * go back: a step keeps copies of what it changes.
   */
  void KeepUndo(bool keep);
  /** Whether copies of nodes that undo kept are freed on a thread other than the main one; they are not. */
  void FreeCopiesElsewhere(bool elsewhere);
  /** Empty document with one set of render settings; becomes the active one. Owned by the application. */
  BaseDocument* NewDocument();
  void CloseDocument(BaseDocument* doc);

  /**
   * Writes a scene to a temporary file beside path and renames it: an interrupted or failed save leaves the
   * old file as it was. False with one line naming file, place and reason.
   */
  bool SaveScene(BaseDocument* doc, const std::string& path, std::string* error);
  /** NULL with one line; nothing loaded before is touched. The new document becomes the active one. */
  BaseDocument* LoadScene(const std::string& path, std::string* error);

  /**
   * Number of a parameter of a node by its identifier in the node's description: full (DEMO_POINT_SIZE), or
   * its end after the first underscore in any case (point_size). -1 when there is none.
   */
  LONG FindParameter(BaseList2D* node, const std::string& name) const;
  /** Sets a parameter from text by its type in the description. False with what is expected instead; the
   * caller names the parameter and the value. */
  bool SetParameterFromText(BaseList2D* node, LONG id, const std::string& value, std::string* error);
  /** Presses a button: MSG_DESCRIPTION_COMMAND with that id. */
  void PressButton(BaseList2D* node, LONG id);

  /**
   * The page of the preferences dialog that was registered under that id, as when the dialog shows it: made
   * the first time, kept until the modules are unloaded. NULL when there is none or when it refuses.
   */
  BaseList2D* PreferencesPage(LONG id);
  /** Writes the preferences now, which Close does anyway. False with one line naming file and reason. */
  bool SavePreferences(std::string* error);
  /** False when this run neither reads nor saves them, which the console said at the start. */
  bool KeepsPreferences() const;

  LiveCounts Live() const;
  /** "module misbehaves: ..." and "host misbehaves: ..." lines so far. */
  const std::vector<std::string>& Misbehaviour() const;

  /** Why the last file that a plug-in could not write was not written, as it cannot know; empty for none. */
  std::string TakeWriteFailure();

  Console& GetConsole();
  Dialogs& GetDialogs();
  Faults& GetFaults();
  Libraries& GetLibraries();

private:
  struct Impl;
  void ReportSurvivors() const;

  std::unique_ptr<Impl> impl_;
};

/**
 * A new object as from the application's menu: it hears MSG_MENUPREPARE with the document, is inserted on top
 * under a name of its own and selected, as one undo step. NULL when the type is unknown or refuses.
 */
BaseObject* CreateObjectFromMenu(BaseDocument* doc, LONG type);

} // namespace host
