// Entries for plain files and folder listings of the plug-in interface.
#include "host/base/live_files.h"
#include "host/base/replacing_file.h"
#include "host/base/text.h"
#include "host/base/utf8.h"
#include "host/nodes/services.h"
#include "host/scene/base_file.h"
#include "host/seam/os_tables.h"

#include <filesystem>

namespace host {

namespace {

bool SameFolder(const Filename& a, const Filename& b) {
  const auto folder = [](const Filename& file) {
    return std::filesystem::u8path(Utf8(file)).parent_path().lexically_normal();
  };
  return folder(a) == folder(b);
}

struct FileEntries {
  static BaseFileImpl* At(BaseFile* file) { return BaseFileImpl::From(file); }

  static BaseFile* Alloc() {
    BaseFileImpl* made = gNew BaseFileImpl(&TheServices().faults);
    if (made) ++liveFiles;
    return made ? made->Api() : nullptr;
  }
  static void Free(BaseFile* file) {
    BaseFileImpl* impl = At(file);
    if (impl) --liveFiles;
    gDelete(impl);
  }
  /** The byte order concerns typed values, which callers put into bytes themselves. */
  static Bool Open(BaseFile* file, const Filename& name, FILEOPEN mode, FILEDIALOG dialog, BYTEORDER) {
    if (At(file)->Open(Utf8(name), mode)) return TRUE;
    if (dialog == FILEDIALOG_ANY)
      TheServices().dialogs.Show(Utf8(name) + ": " + At(file)->Reason(), GEMB_ICONSTOP);
    return FALSE;
  }
  static Bool Close(BaseFile* file) { return At(file)->Close(); }
  static VLONG ReadBytes(BaseFile* file, void* data, VLONG len, Bool just_try) {
    return At(file)->ReadBytes(data, len, just_try != FALSE);
  }
  static Bool WriteBytes(BaseFile* file, const void* data, VLONG len) {
    return At(file)->WriteBytes(data, len);
  }
  static Bool Seek(BaseFile* file, LLONG pos, FILESEEK mode) { return At(file)->Seek(pos, mode); }
  static LLONG GetPosition(BaseFile* file) { return At(file)->Position(); }
  static LLONG GetLength(BaseFile* file) { return At(file)->Length(); }
  static FILEERROR GetError(const BaseFile* file) { return BaseFileImpl::From(file)->Error(); }

  static Bool Exists(const Filename& name, Bool isdir) { return disk::Exists(Utf8(name), isdir != FALSE); }
  static Bool Kill(const Filename& name, LONG flags) {
    if (!(flags & GE_FKILL_DIRECTORY)) return disk::RemoveFile(Utf8(name), nullptr);
    return disk::RemoveFolder(Utf8(name), (flags & GE_FKILL_RECURSIVE) != 0, nullptr);
  }
  /** Within one folder only. */
  static Bool Rename(const Filename& from, const Filename& to) {
    std::string reason;
    return SameFolder(from, to) && !TheServices().faults.Strikes(Fault::FileRename) &&
           RenameReplacing(Utf8(from), Utf8(to), &reason);
  }

  static BrowseFiles* AllocBrowse() {
    BrowseFilesImpl* made = gNew BrowseFilesImpl;
    if (made) ++liveFiles;
    return made ? made->Api() : nullptr;
  }
  static void FreeBrowse(BrowseFiles* bf) {
    BrowseFilesImpl* impl = BrowseFilesImpl::From(bf);
    if (impl) --liveFiles;
    gDelete(impl);
  }
  static void InitBrowse(BrowseFiles* bf, const Filename& directory, LONG) {
    BrowseFilesImpl& listing = *BrowseFilesImpl::From(bf);
    listing.entries.clear();
    // A text of the host cannot carry any other name, and what it made of one would name no file.
    for (disk::Entry& entry : disk::List(Utf8(directory)))
      if (resource::IsUtf8(entry.name)) listing.entries.push_back(std::move(entry));
    listing.next = 0;
  }
  static Bool GetNext(BrowseFiles* bf) {
    BrowseFilesImpl& listing = *BrowseFilesImpl::From(bf);
    if (listing.next >= listing.entries.size()) return FALSE;
    ++listing.next;
    return TRUE;
  }
  static void GetEntry(BrowseFiles* bf, Filename* name, LLONG* size, Bool* isDir, Bool* isHidden) {
    const BrowseFilesImpl& listing = *BrowseFilesImpl::From(bf);
    const disk::Entry entry = listing.next > 0 ? listing.entries[listing.next - 1] : disk::Entry();
    *name = Filename(FromUtf8(entry.name));
    *size = entry.size;
    *isDir = entry.folder;
    *isHidden = entry.hidden;
  }
};

} // namespace

HOST_BIND(File, FileEntries)

} // namespace host
