// One run of the command line: application, module, document and the files loaded into it.
#pragma once

#include "cli/session/cloud_stats.h"
#include "cli/system/exit_status.h"
#include "host/application.h"

#include <string>
#include <vector>

namespace cli {

/** From here on cloud files go to this reader (KELVRA_READER_...), whatever their suffix. */
void ReadAs(LONG reader);

/** Is the file read for points when its folder is loaded? Pictures, scenes and other formats are left out. */
bool IsReadInFolder(const std::string& file);

class CloudSession {
public:
  /** Starts the application and loads the module that lies beside this program. Throws std::runtime_error. */
  explicit CloudSession(const std::vector<std::string>& faults);
  ~CloudSession();

  /**
   * Opens scene files and loads cloud files and folders, one load command each, into one new cloud object.
   * `settings` ("ID=VALUE") are applied to the object before it loads, so that loading parameters count. What
   * fails is in the reports; what loaded stays. A file that announces more points than its bytes are likely
   * to hold is loaded only if it is trusted. Throws UsageError.
   */
  void Open(const std::vector<std::string>& files, const std::vector<std::string>& settings, bool trust);

  /**
   * Loads everything that Open was given again, each file into an object of its own, so that none takes its
   * local origin and scale from another. For reports: the objects do not share a scene's coordinates.
   */
  void OpenApart();
  bool IsApart() const { return apart_; }

  /** Loads everything again with text clouds fitted to the object's size: coordinates of the scene change. */
  void OpenFitted();
  bool IsFitted() const { return fitted_; }

  /** To be called before Open: reports then say how many points of each class were loaded. */
  void CountClasses() { countClasses_ = true; }

  /** Works in another document of the application from now on; the old one is closed. */
  void Use(BaseDocument* document);
  BaseDocument* Document() const { return document_; }
  /** The cloud objects of the document in tree order. */
  std::vector<BaseObject*> Clouds() const;
  /** The first cloud object; throws std::runtime_error without one. */
  BaseObject* Cloud() const;
  const std::vector<FileReport>& Reports() const { return reports_; }
  /** Lines about what was passed over without being a problem. */
  const std::vector<std::string>& Notes() const { return notes_; }
  /** Of all cloud objects. */
  long long Points() const;
  /** Throws std::runtime_error without a point: an output that exists is then left alone. */
  void RequirePoints() const;
  /** As RequirePoints, but a scene's own geometry will do. */
  void RequireContent() const;
  /** World-space box of the clouds; of the scene's own geometry when there are none. */
  host::Box Extent() const;
  double LoadSeconds() const { return loadSeconds_; }
  /** Resident growth at its highest over the program before it loaded anything, in bytes. */
  long long PeakMemory() const;
  int ExitStatus() const;
  host::Application& App() { return *application_; }
  /**
   * "ID=VALUE" with a number or a name: for every cloud, or for the geometry of a scene that holds no cloud.
   * Throws UsageError.
   */
  void ApplySetting(const std::string& setting);
  /** Lines about settings that nothing in the scene has a use for. */
  const std::vector<std::string>& Unused() const { return unused_; }
  /** True when one of the settings given to Open names this parameter. */
  bool WasSet(LONG id) const;
  /** False for the object that this command made for cloud files. */
  bool IsFromScene(BaseObject* cloud) const { return cloud != target_; }
  /** A parameter that the command sets: as the user wrote it, and its number. */
  struct Setting {
    std::string name;
    LONG id;
  };
  /** Each once, in the order of the command line. */
  const std::vector<Setting>& Settings() const { return appliedSettings_; }

private:
  void LoadAll();
  void NoteRepeated();
  void OpenScene(const std::string& path);
  void LoadFolder(const std::string& folder);
  void LoadCloud(const std::string& path);
  BaseObject* NewCloud();
  LONG CloudType() const;
  void ApplyToCloud(BaseObject* cloud, const std::string& setting);
  void ApplyToGeometry(const std::string& setting);
  void Remember(const std::string& name, LONG id);

  std::unique_ptr<host::Application> application_;
  BaseDocument* document_ = nullptr;
  BaseObject* target_ = nullptr;
  LONG thinView_ = 0; ///< of the target, while files are loaded
  std::vector<std::string> files_, settings_;
  std::vector<Setting> appliedSettings_;
  std::vector<FileReport> reports_;
  std::vector<std::string> notes_, unused_;
  bool trust_ = false, countClasses_ = false;
  bool apart_ = false;  ///< each file has an object of its own
  bool fitted_ = false; ///< by OpenFitted
  double loadSeconds_ = 0;
  long long idleMemory_ = 0;
};

} // namespace cli
