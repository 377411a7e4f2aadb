#include "c4d_os.h"

HyperFile* HyperFile::Alloc() {
  return C4DOS.Hf->Alloc();
}
void HyperFile::Free(HyperFile*& hf) {
  if (hf) C4DOS.Hf->Free(hf);
  hf = NULL;
}
Bool HyperFile::Open(LONG ident, const Filename& filename, FILEOPEN mode, FILEDIALOG error_dialog) {
  return C4DOS.Hf->Open(this, ident, filename, mode, error_dialog);
}
Bool HyperFile::Close() {
  return C4DOS.Hf->Close(this);
}
FILEERROR HyperFile::GetError() const {
  return C4DOS.Hf->GetError(this);
}
void HyperFile::SetError(FILEERROR error) {
  C4DOS.Hf->SetError(this, error);
}
LONG HyperFile::GetFileVersion() const {
  return C4DOS.Hf->GetFileVersion(this);
}
BaseDocument* HyperFile::GetDocument() const {
  return C4DOS.Hf->GetDocument(this);
}
Bool HyperFile::Write(HYPERFILEVALUE type, const void* value) {
  return C4DOS.Hf->Write(this, type, value);
}
Bool HyperFile::Read(HYPERFILEVALUE type, void* value) {
  return C4DOS.Hf->Read(this, type, value);
}
Bool HyperFile::ReadContainer(BaseContainer* bc, Bool flush) {
  if (flush) return Read(HYPERFILEVALUE_CONTAINER, bc);
  BaseContainer read;
  if (!Read(HYPERFILEVALUE_CONTAINER, &read)) return FALSE;
  bc->MergeContainer(read);
  return TRUE;
}
Bool HyperFile::WriteArray(const void* data, HYPERFILEARRAY type, LONG structure_increment, LONG count) {
  return C4DOS.Hf->WriteArray(this, data, type, structure_increment, count);
}
Bool HyperFile::ReadArray(void* data, HYPERFILEARRAY type, LONG structure_increment, LONG count) {
  return C4DOS.Hf->ReadArray(this, data, type, structure_increment, count);
}
Bool HyperFile::WriteChunkStart(LONG id, LONG level) {
  return C4DOS.Hf->WriteChunkStart(this, id, level);
}
Bool HyperFile::WriteChunkEnd() {
  return C4DOS.Hf->WriteChunkEnd(this);
}
Bool HyperFile::ReadChunkStart(LONG* id, LONG* level) {
  return C4DOS.Hf->ReadChunkStart(this, id, level);
}
Bool HyperFile::ReadChunkEnd() {
  return C4DOS.Hf->ReadChunkEnd(this);
}
Bool HyperFile::SkipToEndChunk() {
  return C4DOS.Hf->SkipToEndChunk(this);
}

BaseFile* BaseFile::Alloc() {
  return C4DOS.Fl->Alloc();
}
void BaseFile::Free(BaseFile*& file) {
  if (file) C4DOS.Fl->Free(file);
  file = NULL;
}
Bool BaseFile::Open(const Filename& name, FILEOPEN mode, FILEDIALOG error_dialog, BYTEORDER order) {
  return C4DOS.Fl->Open(this, name, mode, error_dialog, order);
}
Bool BaseFile::Close() {
  return C4DOS.Fl->Close(this);
}
VLONG BaseFile::ReadBytes(void* data, VLONG len, Bool just_try) {
  return C4DOS.Fl->ReadBytes(this, data, len, just_try);
}
Bool BaseFile::WriteBytes(const void* data, VLONG len) {
  return C4DOS.Fl->WriteBytes(this, data, len);
}
Bool BaseFile::Seek(LLONG pos, FILESEEK mode) {
  return C4DOS.Fl->Seek(this, pos, mode);
}
LLONG BaseFile::GetPosition() {
  return C4DOS.Fl->GetPosition(this);
}
LLONG BaseFile::GetLength() {
  return C4DOS.Fl->GetLength(this);
}
FILEERROR BaseFile::GetError() const {
  return C4DOS.Fl->GetError(this);
}

BrowseFiles* BrowseFiles::Alloc() {
  return C4DOS.Fl->AllocBrowse();
}
void BrowseFiles::Free(BrowseFiles*& bf) {
  if (bf) C4DOS.Fl->FreeBrowse(bf);
  bf = NULL;
}
void BrowseFiles::Init(const Filename& directory, LONG flags) {
  C4DOS.Fl->InitBrowse(this, directory, flags);
}
Bool BrowseFiles::GetNext() {
  return C4DOS.Fl->GetNext(this);
}

namespace {

struct Entry {
  Filename name;
  LLONG size = 0;
  Bool isDir = FALSE, isHidden = FALSE;
  explicit Entry(BrowseFiles* bf) { C4DOS.Fl->GetEntry(bf, &name, &size, &isDir, &isHidden); }
};

} // namespace

Filename BrowseFiles::GetFilename() {
  return Entry(this).name;
}
LLONG BrowseFiles::GetSize() {
  return Entry(this).size;
}
Bool BrowseFiles::IsDir() {
  return Entry(this).isDir;
}
Bool BrowseFiles::IsHidden() {
  return Entry(this).isHidden;
}

Bool GeFExist(const Filename& name, Bool isdir) {
  return C4DOS.Fl->Exists(name, isdir);
}
Bool GeFKill(const Filename& name, LONG flags) {
  return C4DOS.Fl->Kill(name, flags);
}
Bool GeFRename(const Filename& from, const Filename& to) {
  return C4DOS.Fl->Rename(from, to);
}
