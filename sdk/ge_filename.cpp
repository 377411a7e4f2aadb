#include "c4d_os.h"

namespace {

#ifdef _WIN32
const UWORD kSeparator = '\\';
bool IsSeparator(UWORD ch) {
  return ch == '/' || ch == kSeparator;
}
#else
const UWORD kSeparator = '/';
bool IsSeparator(UWORD ch) {
  return ch == kSeparator;
}
#endif

/** Position after the last separator. */
LONG FileStart(const String& path) {
  LONG start = path.GetLength();
  while (start > 0 && !IsSeparator(path[start - 1])) --start;
  return start;
}

/** Position of the dot of the suffix, -1 without one. */
LONG SuffixDot(const String& path) {
  LONG dot = -1;
  if (!path.FindLast((UWORD)'.', &dot) || dot <= FileStart(path)) return -1;
  return dot;
}

} // namespace

Bool Filename::FileSelect(FILESELECTTYPE type, FILESELECT flags, const String& title,
                          const String& force_suffix) {
  return C4DOS.general->FileSelect(this, type, flags, title, force_suffix);
}

Filename Filename::GetDirectory() const {
  const LONG start = FileStart(path_);
  // Drops the separator, except the root's.
  return Filename(path_.Left(start > 1 ? start - 1 : start));
}

void Filename::SetDirectory(const Filename& directory) {
  *this = directory + GetFile();
}

String Filename::GetFileString() const {
  return path_.Right(path_.GetLength() - FileStart(path_));
}

void Filename::SetFile(const Filename& file) {
  *this = GetDirectory() + file;
}

String Filename::GetSuffix() const {
  const LONG dot = SuffixDot(path_);
  return dot < 0 ? String() : path_.Right(path_.GetLength() - dot - 1);
}

void Filename::SetSuffix(const String& suffix) {
  ClearSuffix();
  path_ += String(".") + suffix;
}

void Filename::ClearSuffix() {
  const LONG dot = SuffixDot(path_);
  if (dot >= 0) path_ = path_.Left(dot);
}

Filename operator+(const Filename& directory, const Filename& child) {
  if (!directory.Content()) return child;
  if (!child.Content()) return directory;
  String joined = directory.path_;
  // A copy whose memory was refused is empty.
  if (joined.Content() && !IsSeparator(joined[joined.GetLength() - 1])) joined += String(1, kSeparator);
  return Filename(joined + child.path_);
}
