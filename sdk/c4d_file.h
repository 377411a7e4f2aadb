// Files of the host: typed scene streams, plain files and folder listings. Every call that fails returns
// FALSE and sets the file's error.
#pragma once

#include "c4d_nodes.h"

/** Stream of typed values, as scene files hold them. */
class HyperFile : public HostOwned {
public:
  static HyperFile* Alloc();
  static void Free(HyperFile*& hf);

  Bool Open(LONG ident, const Filename& filename, FILEOPEN mode, FILEDIALOG error_dialog);
  Bool Close();
  FILEERROR GetError() const;
  void SetError(FILEERROR error);
  LONG GetFileVersion() const;
  BaseDocument* GetDocument() const;

  Bool WriteChar(CHAR v) { return Write(HYPERFILEVALUE_CHAR, &v); }
  Bool WriteUChar(UCHAR v) { return Write(HYPERFILEVALUE_UCHAR, &v); }
  Bool WriteWord(SWORD v) { return Write(HYPERFILEVALUE_WORD, &v); }
  Bool WriteUWord(UWORD v) { return Write(HYPERFILEVALUE_UWORD, &v); }
  Bool WriteLong(LONG v) { return Write(HYPERFILEVALUE_LONG, &v); }
  Bool WriteULong(ULONG v) { return Write(HYPERFILEVALUE_ULONG, &v); }
  Bool WriteLLong(LLONG v) { return Write(HYPERFILEVALUE_LLONG, &v); }
  Bool WriteLULong(LULONG v) { return Write(HYPERFILEVALUE_LULONG, &v); }
  Bool WriteReal(Real v) { return Write(HYPERFILEVALUE_REAL, &v); }
  Bool WriteSReal(SReal v) { return Write(HYPERFILEVALUE_SREAL, &v); }
  Bool WriteLReal(LReal v) { return Write(HYPERFILEVALUE_LREAL, &v); }
  Bool WriteBool(Bool v) { return Write(HYPERFILEVALUE_BOOL, &v); }
  Bool WriteTime(const BaseTime& v) { return Write(HYPERFILEVALUE_TIME, &v); }
  Bool WriteVector(const Vector& v) { return Write(HYPERFILEVALUE_VECTOR, &v); }
  Bool WriteSVector(const SVector& v) { return Write(HYPERFILEVALUE_SVECTOR, &v); }
  Bool WriteLVector(const LVector& v) { return Write(HYPERFILEVALUE_LVECTOR, &v); }
  Bool WriteMatrix(const Matrix& v) { return Write(HYPERFILEVALUE_MATRIX, &v); }
  Bool WriteString(const String& v) { return Write(HYPERFILEVALUE_STRING, &v); }
  Bool WriteFilename(const Filename& v) { return Write(HYPERFILEVALUE_FILENAME, &v); }
  Bool WriteContainer(const BaseContainer& v) { return Write(HYPERFILEVALUE_CONTAINER, &v); }

  Bool ReadChar(CHAR* v) { return Read(HYPERFILEVALUE_CHAR, v); }
  Bool ReadUChar(UCHAR* v) { return Read(HYPERFILEVALUE_UCHAR, v); }
  Bool ReadWord(SWORD* v) { return Read(HYPERFILEVALUE_WORD, v); }
  Bool ReadUWord(UWORD* v) { return Read(HYPERFILEVALUE_UWORD, v); }
  Bool ReadLong(LONG* v) { return Read(HYPERFILEVALUE_LONG, v); }
  Bool ReadULong(ULONG* v) { return Read(HYPERFILEVALUE_ULONG, v); }
  Bool ReadLLong(LLONG* v) { return Read(HYPERFILEVALUE_LLONG, v); }
  Bool ReadLULong(LULONG* v) { return Read(HYPERFILEVALUE_LULONG, v); }
  Bool ReadReal(Real* v) { return Read(HYPERFILEVALUE_REAL, v); }
  Bool ReadSReal(SReal* v) { return Read(HYPERFILEVALUE_SREAL, v); }
  Bool ReadLReal(LReal* v) { return Read(HYPERFILEVALUE_LREAL, v); }
  Bool ReadBool(Bool* v) { return Read(HYPERFILEVALUE_BOOL, v); }
  Bool ReadTime(BaseTime* v) { return Read(HYPERFILEVALUE_TIME, v); }
  Bool ReadVector(Vector* v) { return Read(HYPERFILEVALUE_VECTOR, v); }
  Bool ReadSVector(SVector* v) { return Read(HYPERFILEVALUE_SVECTOR, v); }
  Bool ReadLVector(LVector* v) { return Read(HYPERFILEVALUE_LVECTOR, v); }
  Bool ReadMatrix(Matrix* v) { return Read(HYPERFILEVALUE_MATRIX, v); } // ours
  Bool ReadString(String* v) { return Read(HYPERFILEVALUE_STRING, v); }
  Bool ReadFilename(Filename* v) { return Read(HYPERFILEVALUE_FILENAME, v); }
  Bool ReadContainer(BaseContainer* bc, Bool flush);

  /**
   * data is the first member's address, structure_increment the bytes from one element to the next, count the
   * number of elements. Reading fails before it touches data when the file cannot hold count elements.
   */
  Bool WriteArray(const void* data, HYPERFILEARRAY type, LONG structure_increment, LONG count);
  Bool ReadArray(void* data, HYPERFILEARRAY type, LONG structure_increment, LONG count);

  Bool WriteChunkStart(LONG id, LONG level);
  Bool WriteChunkEnd();
  Bool ReadChunkStart(LONG* id, LONG* level);
  Bool ReadChunkEnd();
  Bool SkipToEndChunk();

private:
  Bool Write(HYPERFILEVALUE type, const void* value);
  Bool Read(HYPERFILEVALUE type, void* value);
};

/** Plain file. Typed reads and writes go through ReadBytes and WriteBytes of the caller. */
class BaseFile : public HostOwned {
public:
  static BaseFile* Alloc();
  static void Free(BaseFile*& file);

  Bool Open(const Filename& name, FILEOPEN mode = FILEOPEN_READ,
            FILEDIALOG error_dialog = FILEDIALOG_IGNOREOPEN, BYTEORDER order = BYTEORDER_MOTOROLA);
  /** FALSE when not everything written reached the disk. */
  Bool Close();
  /** Number of bytes read; with just_try the end of the file is not an error. */
  VLONG ReadBytes(void* data, VLONG len, Bool just_try = FALSE);
  VLONG TryReadBytes(void* data, VLONG len) { return ReadBytes(data, len, TRUE); }
  Bool WriteBytes(const void* data, VLONG len);
  Bool Seek(LLONG pos, FILESEEK mode = FILESEEK_RELATIVE);
  LLONG GetPosition();
  LLONG GetLength();
  FILEERROR GetError() const;
};

enum { BROWSEFILES_CALCSIZE = 1, BROWSEFILES_SUPPRESSCACHING = 2 };

/** Entries of one folder, names only; GetNext comes before the first entry. */
class BrowseFiles : public HostOwned {
public:
  static BrowseFiles* Alloc();
  static void Free(BrowseFiles*& bf);
  void Init(const Filename& directory, LONG flags);
  Bool GetNext();
  Filename GetFilename();
  LLONG GetSize();
  Bool IsDir();
  Bool IsHidden();
};

/** A folder is removed only with DIRECTORY, its contents only with RECURSIVE. */
enum {
  GE_FKILL_DIRECTORY = 1,
  GE_FKILL_RECURSIVE = 2, // ours
  GE_FKILL_FORCE = 4      // ours
};

Bool GeFExist(const Filename& name, Bool isdir = FALSE);
Bool GeFKill(const Filename& name, LONG flags);
Bool GeFRename(const Filename& from, const Filename& to);
