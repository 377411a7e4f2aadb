#include "c4d_os.h"

HyperFile* HyperFile::Alloc() {
  return C4DOS.hyperFile->Alloc();
}
void HyperFile::Free(HyperFile*& hf) {
  if (hf) C4DOS.hyperFile->Free(hf);
  hf = NULL;
}
Bool HyperFile::Open(LONG ident, const Filename& filename, FILEOPEN mode, FILEDIALOG error_dialog) {
  return C4DOS.hyperFile->Open(this, ident, filename, mode, error_dialog);
}
Bool HyperFile::Close() {
  return C4DOS.hyperFile->Close(this);
}
FILEERROR HyperFile::GetError() const {
  return C4DOS.hyperFile->GetError(this);
}
void HyperFile::SetError(FILEERROR error) {
  C4DOS.hyperFile->SetError(this, error);
}
LONG HyperFile::GetFileVersion() const {
  return C4DOS.hyperFile->GetFileVersion(this);
}
BaseDocument* HyperFile::GetDocument() const {
  return C4DOS.hyperFile->GetDocument(this);
}
Bool HyperFile::Write(HYPERFILEVALUE type, const void* value) {
  return C4DOS.hyperFile->Write(this, type, value);
}
Bool HyperFile::Read(HYPERFILEVALUE type, void* value) {
  return C4DOS.hyperFile->Read(this, type, value);
}
Bool HyperFile::ReadContainer(BaseContainer* bc, Bool flush) {
  if (flush) return Read(HYPERFILEVALUE_CONTAINER, bc);
  BaseContainer read;
  if (!Read(HYPERFILEVALUE_CONTAINER, &read)) return FALSE;
  bc->MergeContainer(read);
  return TRUE;
}
Bool HyperFile::WriteArray(const void* data, HYPERFILEARRAY type, LONG structure_increment, LONG count) {
  return C4DOS.hyperFile->WriteArray(this, data, type, structure_increment, count);
}
Bool HyperFile::ReadArray(void* data, HYPERFILEARRAY type, LONG structure_increment, LONG count) {
  return C4DOS.hyperFile->ReadArray(this, data, type, structure_increment, count);
}
Bool HyperFile::WriteChunkStart(LONG id, LONG level) {
  return C4DOS.hyperFile->WriteChunkStart(this, id, level);
}
Bool HyperFile::WriteChunkEnd() {
  return C4DOS.hyperFile->WriteChunkEnd(this);
}
Bool HyperFile::ReadChunkStart(LONG* id, LONG* level) {
  return C4DOS.hyperFile->ReadChunkStart(this, id, level);
}
Bool HyperFile::ReadChunkEnd() {
  return C4DOS.hyperFile->ReadChunkEnd(this);
}
Bool HyperFile::SkipToEndChunk() {
  return C4DOS.hyperFile->SkipToEndChunk(this);
}

BaseFile* BaseFile::Alloc() {
  return C4DOS.file->Alloc();
}
void BaseFile::Free(BaseFile*& file) {
  if (file) C4DOS.file->Free(file);
  file = NULL;
}
Bool BaseFile::Open(const Filename& name, FILEOPEN mode, FILEDIALOG error_dialog, BYTEORDER order) {
  return C4DOS.file->Open(this, name, mode, error_dialog, order);
}
Bool BaseFile::Close() {
  return C4DOS.file->Close(this);
}
VLONG BaseFile::ReadBytes(void* data, VLONG len, Bool just_try) {
  return C4DOS.file->ReadBytes(this, data, len, just_try);
}
Bool BaseFile::WriteBytes(const void* data, VLONG len) {
  return C4DOS.file->WriteBytes(this, data, len);
}
Bool BaseFile::Seek(LLONG pos, FILESEEK mode) {
  return C4DOS.file->Seek(this, pos, mode);
}
LLONG BaseFile::GetPosition() {
  return C4DOS.file->GetPosition(this);
}
LLONG BaseFile::GetLength() {
  return C4DOS.file->GetLength(this);
}
FILEERROR BaseFile::GetError() const {
  return C4DOS.file->GetError(this);
}

BrowseFiles* BrowseFiles::Alloc() {
  return C4DOS.file->AllocBrowse();
}
void BrowseFiles::Free(BrowseFiles*& bf) {
  if (bf) C4DOS.file->FreeBrowse(bf);
  bf = NULL;
}
void BrowseFiles::Init(const Filename& directory, LONG flags) {
  C4DOS.file->InitBrowse(this, directory, flags);
}
Bool BrowseFiles::GetNext() {
  return C4DOS.file->GetNext(this);
}

namespace {

struct Entry {
  Filename name;
  LLONG size = 0;
  Bool isDir = FALSE, isHidden = FALSE;
  explicit Entry(BrowseFiles* bf) { C4DOS.file->GetEntry(bf, &name, &size, &isDir, &isHidden); }
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
  return C4DOS.file->Exists(name, isdir);
}
Bool GeFKill(const Filename& name, LONG flags) {
  return C4DOS.file->Kill(name, flags);
}
Bool GeFRename(const Filename& from, const Filename& to) {
  return C4DOS.file->Rename(from, to);
}
