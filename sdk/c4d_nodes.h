// Nodes of a document: opaque objects of the host. Their member functions call the host's function tables on
// `this`; a plug-in allocates and frees them with the static Alloc and Free.
// Unless said otherwise: main thread, ownership stays with the host once a node is inserted.
#pragma once

#include "c4d_enums.h"
#include "ge_data.h"

class AliasTrans;
class BaseBitmap;
class BaseDraw;
class BaseTag;
class BaseThread;
class BaseVideoPost;
class BaseSceneHook;
class BaseShader;
class Description;
class HierarchyHelp;
class HyperFile;
class NodeData;
class RenderData;
class VariableTag;

/** Base of the opaque classes: made and destroyed by the host only. */
class HostOwned { // ours
protected:
  HostOwned() {}
  ~HostOwned() {}

private:
  HostOwned(const HostOwned&);
  HostOwned& operator=(const HostOwned&);
};

class C4DAtom : public HostOwned {
public:
  LONG GetType() const;
  Bool IsInstanceOf(LONG id) const;
  Bool Message(LONG type, void* data = NULL);
  C4DAtom* GetClone(COPYFLAGS flags, AliasTrans* trans);
  Bool CopyTo(C4DAtom* dest, COPYFLAGS flags, AliasTrans* trans);
  Bool GetDescription(Description* description, DESCFLAGS_DESC flags);
  Bool GetParameter(const DescID& id, GeData& data, DESCFLAGS_GET flags);
  Bool SetParameter(const DescID& id, const GeData& data, DESCFLAGS_SET flags);
  ULONG GetDirty(DIRTYFLAGS flags) const;
  void SetDirty(DIRTYFLAGS flags);
};

class C4DAtomGoal : public C4DAtom {};

class GeListNode : public C4DAtomGoal {
public:
  GeListNode* GetNext();
  GeListNode* GetPred();
  GeListNode* GetUp();
  GeListNode* GetDown();
  /** Takes the node out of its list; it then belongs to the caller. */
  void Remove();
  /**
   * Moves the node below another one, as its first or last child, or beside it. A node that the other cannot
   * hold, or that would come to lie below itself, stays where it is and is reported.
   */
  void InsertUnder(GeListNode* parent);     // ours
  void InsertUnderLast(GeListNode* parent); // ours
  void InsertAfter(GeListNode* other);      // ours
  void InsertBefore(GeListNode* other);
  NodeData* GetNodeData(LONG index = 0) const;
  BaseDocument* GetDocument();
};

class BaseList2D : public GeListNode {
public:
  const String& GetName() const;
  void SetName(const String& name);
  const String& GetTypeName();
  BaseContainer GetData() { return *GetDataInstance(); }
  void SetData(const BaseContainer& bc, Bool add = TRUE);
  /** The live container; valid as long as the node. */
  BaseContainer* GetDataInstance();
  /** Shaders that the node carries; it owns them. Only objects carry shaders: a call on another node is
   * reported and refused. */
  BaseShader* GetFirstShader() const;
  void InsertShader(BaseShader* shader, BaseShader* pred = NULL);
  Bool GetBit(LONG mask) const;
  void SetBit(LONG mask);
  void DelBit(LONG mask);
};

class BaseTag : public BaseList2D {
public:
  static BaseTag* Alloc(LONG type);
  static void Free(BaseTag*& tag);
  BaseTag* GetNext() { return (BaseTag*)GeListNode::GetNext(); }
  BaseObject* GetObject();
};

class BaseObject : public BaseList2D {
public:
  /** NULL when the type is unknown or memory is refused. */
  static BaseObject* Alloc(LONG type);
  static void Free(BaseObject*& op);

  BaseObject* GetNext() { return (BaseObject*)GeListNode::GetNext(); }
  BaseObject* GetPred() { return (BaseObject*)GeListNode::GetPred(); }
  BaseObject* GetUp() { return (BaseObject*)GeListNode::GetUp(); }
  BaseObject* GetDown() { return (BaseObject*)GeListNode::GetDown(); }

  Matrix GetMl() const;
  void SetMl(const Matrix& m);
  Matrix GetMg() const;
  void SetMg(const Matrix& m);

  BaseTag* GetFirstTag();
  BaseTag* GetTag(LONG type, LONG nr = 0);
  BaseTag* MakeTag(LONG type, BaseTag* pred = NULL);
  /** See VariableTag::Alloc. A vertex map of another length than the object's points is reported. */
  VariableTag* MakeVariableTag(LONG type, LONG count, BaseTag* pred = NULL);
  /** Copies visible tags, variable tags, or both; nothing is copied when one copy is refused. */
  Bool CopyTagsTo(BaseObject* dest, LONG visible, LONG variable, LONG hierarchical, AliasTrans* trans);
  void InsertTag(BaseTag* tag, BaseTag* pred = NULL);
  void KillTag(LONG type, LONG nr = 0);

  /** The generated result, owned by this object; NULL without one. */
  BaseObject* GetCache(HierarchyHelp* hh = NULL);
  /** What deformers made of it; NULL when it is not deformed. */
  BaseObject* GetDeformCache();
  Bool CheckCache(HierarchyHelp* hh);
  Bool IsDirty(DIRTYFLAGS flags);
};

class BaseVideoPost : public BaseList2D {
public:
  static BaseVideoPost* Alloc(LONG type);
  static void Free(BaseVideoPost*& vp);
  BaseVideoPost* GetNext() { return (BaseVideoPost*)GeListNode::GetNext(); }
};

class BaseSceneHook : public BaseList2D {};
class BaseShader : public BaseList2D {
public:
  static BaseShader* Alloc(LONG type);
  static void Free(BaseShader*& shader);
  BaseShader* GetNext() { return (BaseShader*)GeListNode::GetNext(); }
};

class RenderData : public BaseList2D {
public:
  BaseVideoPost* GetFirstVideoPost();
  /** The render settings own the video post from then on. */
  void InsertVideoPost(BaseVideoPost* vp, BaseVideoPost* pred = NULL);
  void InsertVideoPostLast(BaseVideoPost* vp);
};

class BaseDocument : public BaseList2D {
public:
  static BaseDocument* Alloc();
  static void Free(BaseDocument*& doc);

  BaseContainer GetData(DOCUMENTSETTINGS type);
  void SetData(DOCUMENTSETTINGS type, const BaseContainer& bc);
  BaseObject* GetFirstObject();
  BaseObject* GetActiveObject();
  void InsertObject(BaseObject* op, BaseObject* parent, BaseObject* pred, Bool checknames = FALSE);
  void SetActiveObject(BaseObject* op, LONG mode = SELECTION_NEW);
  RenderData* GetActiveRenderData();
  BaseSceneHook* FindSceneHook(LONG id) const;

  /** A step is what lies between StartUndo and EndUndo; CHANGE kinds are added before the change. */
  Bool StartUndo();
  Bool EndUndo();
  Bool AddUndo(UNDOTYPE type, void* data, Bool allowFromThread = FALSE);
  Bool DoUndo(Bool multiple = FALSE);
  Bool DoRedo();

  BaseTime GetTime();
  void SetTime(const BaseTime& t);
  LONG GetFps() const;
  Filename GetDocumentPath();
  Filename GetDocumentName();
};

/** Position in the hierarchy while generators build; lives for one build. */
class HierarchyHelp : public HostOwned {
public:
  BaseThread* GetThread();
  BaseDocument* GetDocument();
  BUILDFLAGS GetBuildFlags();
};

/** Running work. TestBreak is TRUE once the user asked to stop; any thread. */
class BaseThread : public HostOwned {
public:
  Bool TestBreak();
};

/** A picture in memory, row 0 at the top; reads outside it give 0. Owned by the caller until Free. */
class BaseBitmap : public HostOwned {
public:
  static BaseBitmap* Alloc();
  static void Free(BaseBitmap*& bmp);
  /**
   * Black, and clear where there is alpha. depth: 24 is COLORMODE_RGB, 32 COLORMODE_ARGB, 96 COLORMODE_RGBf;
   * a MultipassBitmap has any mode.
   */
  IMAGERESULT Init(LONG x, LONG y, LONG depth = 24);
  /** TIFF or PNG, as 8 bits per component. The picture is unchanged when loading fails. */
  IMAGERESULT Init(const Filename& name);
  /**
   * FILTER_PNG, FILTER_TIF or FILTER_EXR; 8 bits per component unless savebits say otherwise, EXR always
   * floats. Alpha is saved with SAVEBIT_ALPHA. data may be NULL. An existing file is replaced only by a whole
   * new one. NOTEXISTING: no such folder; WRONGTYPE: a format or depth that is not offered; FILEERROR: not
   * writable.
   */
  IMAGERESULT Save(const Filename& name, LONG format, BaseContainer* data, SAVEBIT savebits) const;
  LONG GetBw() const;
  LONG GetBh() const;
  /** Bits per pixel. */
  LONG GetBt() const;
  COLORMODE GetColorMode() const;
  /** 0 to 255. */
  void GetPixel(LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) const;
  /** Clamped to 0 to 255; alpha stays. FALSE outside the picture. */
  Bool SetPixel(LONG x, LONG y, LONG r, LONG g, LONG b);
  /**
   * cnt pixels of row y, inc bytes from one to the next. The mode says what the buffer holds: UCHAR, UWORD
   * (w) or SReal (f) for red, green, blue; before them alpha in the modes with A. Values are converted
   * between bitmap and buffer, integers standing for 0 to 1; missing alpha is full. PIXELCNT_DITHERING
   * changes nothing, as values are rounded; other flags and modes are refused and leave buffer and bitmap as
   * they were.
   */
  void GetPixelCnt(LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG inc, COLORMODE dstmode,
                   PIXELCNT flags) const;
  /** FALSE, and nothing changed, when a pixel lies outside the picture. */
  Bool SetPixelCnt(LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG inc, COLORMODE srcmode, PIXELCNT flags);
  /** One colour, 0 to 255, for all pixels; alpha stays. */
  void Clear(LONG r, LONG g, LONG b);
};

/** A bitmap of any mode: the way to 16 bits or floats. */
class MultipassBitmap : public BaseBitmap {
public:
  /** NULL when size, mode or memory are refused. */
  static MultipassBitmap* Alloc(LONG bx, LONG by, COLORMODE mode);
  static void Free(MultipassBitmap*& bmp);
};

/** Picture out of the plug-in's resource folder, freed with this object; NULL when it cannot be read. */
class AutoBitmap {
public:
  explicit AutoBitmap(const String& name);
  ~AutoBitmap() {
    if (bitmap_) BaseBitmap::Free(bitmap_);
  }
  AutoBitmap(const AutoBitmap&) = delete;
  AutoBitmap& operator=(const AutoBitmap&) = delete;
  operator BaseBitmap*() const { return bitmap_; }

private:
  BaseBitmap* bitmap_;
};

/** Description of a node's parameters while GetDDescription fills it. */
class Description : public HostOwned {
public:
  Bool LoadDescription(LONG id);
  Bool LoadDescription(const String& name);
  const DescID* GetSingleDescID();
};

BaseDocument* GetActiveDocument();

// Data of messages.

struct DescriptionCommand {
  DescID id;
  const BaseContainer* msg = NULL;
};
struct DescriptionPostSetValue {
  const DescID* descid = NULL;
};
struct DocumentInfoData {
  LONG type = 0, fileformat = 0;
  BaseDocument* doc = NULL;
  const Filename* filename = NULL;
  BaseList2D* bl = NULL;
  Bool gui_allowed = FALSE;
  void* data = NULL;
};
