// Path of a file or folder with value semantics.
#pragma once

#include "ge_string.h"

enum FILESELECT { FILESELECT_LOAD = 0, FILESELECT_SAVE = 1, FILESELECT_DIRECTORY = 2 };
ENUM_END_LIST(FILESELECT)
enum FILESELECTTYPE {
  FILESELECTTYPE_ANYTHING = 0,
  FILESELECTTYPE_IMAGES = 1,
  FILESELECTTYPE_SCENES = 2,
  FILESELECTTYPE_COFFEE = 3,
  FILESELECTTYPE_BODYPAINT = 4
};
ENUM_END_LIST(FILESELECTTYPE)

class Filename {
public:
  Filename() {}
  Filename(const CHAR* path) : path_(path) {}
  Filename(const String& path) : path_(path) {}

  /** Modal dialog of the host; FALSE means cancelled. On SAVE force_suffix is enforced. Main thread. */
  Bool FileSelect(FILESELECTTYPE type, FILESELECT flags, const String& title,
                  const String& force_suffix = String());

  Bool Content() const { return path_.Content(); }
  String GetString() const { return path_; }
  void SetString(const String& path) { path_ = path; }
  Filename GetDirectory() const;
  void SetDirectory(const Filename& directory);
  Filename GetFile() const { return Filename(GetFileString()); }
  String GetFileString() const;
  void SetFile(const Filename& file);
  /** Suffix without the dot, empty when there is none. */
  String GetSuffix() const;
  /** Compares the suffix without regard to the case of ASCII letters. */
  Bool CheckSuffix(const String& suffix) const { return GetSuffix().LexCompare(suffix) == 0; }
  void SetSuffix(const String& suffix);
  void ClearSuffix();
  void CopyTo(Filename* dest) const { *dest = *this; }

  bool operator==(const Filename& f) const { return path_ == f.path_; }
  bool operator!=(const Filename& f) const { return path_ != f.path_; }
  /** Joins a folder and what lies in it. */
  friend Filename operator+(const Filename& directory, const Filename& child);
  Filename& operator+=(const Filename& child) { return *this = *this + child; }

private:
  String path_;
};
