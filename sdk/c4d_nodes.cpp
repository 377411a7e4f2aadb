#include "c4d_os.h"

LONG C4DAtom::GetType() const {
  return C4DOS.atom->GetType(this);
}
Bool C4DAtom::IsInstanceOf(LONG id) const {
  return C4DOS.atom->IsInstanceOf(this, id);
}
Bool C4DAtom::Message(LONG type, void* data) {
  return C4DOS.atom->Message(this, type, data);
}
C4DAtom* C4DAtom::GetClone(COPYFLAGS flags, AliasTrans* trans) {
  return C4DOS.atom->GetClone(this, flags, trans);
}
Bool C4DAtom::CopyTo(C4DAtom* dest, COPYFLAGS flags, AliasTrans* trans) {
  return C4DOS.atom->CopyTo(this, dest, flags, trans);
}
Bool C4DAtom::GetDescription(Description* description, DESCFLAGS_DESC flags) {
  return C4DOS.atom->GetDescription(this, description, flags);
}
Bool C4DAtom::GetParameter(const DescID& id, GeData& data, DESCFLAGS_GET flags) {
  return C4DOS.atom->GetParameter(this, id, data, flags);
}
Bool C4DAtom::SetParameter(const DescID& id, const GeData& data, DESCFLAGS_SET flags) {
  return C4DOS.atom->SetParameter(this, id, data, flags);
}
ULONG C4DAtom::GetDirty(DIRTYFLAGS flags) const {
  return C4DOS.atom->GetDirty(this, flags);
}
void C4DAtom::SetDirty(DIRTYFLAGS flags) {
  C4DOS.atom->SetDirty(this, flags);
}

GeListNode* GeListNode::GetNext() {
  return C4DOS.atom->GetNext(this);
}
GeListNode* GeListNode::GetPred() {
  return C4DOS.atom->GetPred(this);
}
GeListNode* GeListNode::GetUp() {
  return C4DOS.atom->GetUp(this);
}
GeListNode* GeListNode::GetDown() {
  return C4DOS.atom->GetDown(this);
}
void GeListNode::Remove() {
  C4DOS.atom->Remove(this);
}
void GeListNode::InsertUnder(GeListNode* parent) {
  C4DOS.atom->Insert(this, parent, LISTPLACE_FIRSTBELOW);
}
void GeListNode::InsertUnderLast(GeListNode* parent) {
  C4DOS.atom->Insert(this, parent, LISTPLACE_LASTBELOW);
}
void GeListNode::InsertAfter(GeListNode* other) {
  C4DOS.atom->Insert(this, other, LISTPLACE_AFTER);
}
void GeListNode::InsertBefore(GeListNode* other) {
  C4DOS.atom->Insert(this, other, LISTPLACE_BEFORE);
}
NodeData* GeListNode::GetNodeData(LONG) const {
  return C4DOS.atom->GetNodeData(const_cast<GeListNode*>(this));
}
BaseDocument* GeListNode::GetDocument() {
  return C4DOS.atom->GetDocument(this);
}

const String& BaseList2D::GetName() const {
  return *C4DOS.atom->GetName(this);
}
void BaseList2D::SetName(const String& name) {
  C4DOS.atom->SetName(this, name);
}
const String& BaseList2D::GetTypeName() {
  return *C4DOS.atom->GetTypeName(this);
}
BaseContainer* BaseList2D::GetDataInstance() {
  return C4DOS.atom->GetDataInstance(this);
}
void BaseList2D::SetData(const BaseContainer& bc, Bool add) {
  if (add)
    GetDataInstance()->MergeContainer(bc);
  else
    *GetDataInstance() = bc;
}
Bool BaseList2D::GetBit(LONG mask) const {
  return (C4DOS.atom->GetBits(this) & mask) != 0;
}
void BaseList2D::SetBit(LONG mask) {
  C4DOS.atom->SetBits(this, C4DOS.atom->GetBits(this) | mask);
}
void BaseList2D::DelBit(LONG mask) {
  C4DOS.atom->SetBits(this, C4DOS.atom->GetBits(this) & ~mask);
}

namespace {

template <class T>
T* AllocNode(PLUGINTYPE kind, LONG type) {
  return (T*)C4DOS.atom->Alloc(kind, type);
}

template <class T>
void FreeNode(T*& node) {
  if (node) C4DOS.atom->Free(node);
  node = NULL;
}

} // namespace

BaseTag* BaseTag::Alloc(LONG type) {
  return AllocNode<BaseTag>(PLUGINTYPE_TAG, type);
}
void BaseTag::Free(BaseTag*& tag) {
  FreeNode(tag);
}
BaseObject* BaseTag::GetObject() {
  return C4DOS.object->GetTagObject(this);
}

BaseObject* BaseObject::Alloc(LONG type) {
  return AllocNode<BaseObject>(PLUGINTYPE_OBJECT, type);
}
void BaseObject::Free(BaseObject*& op) {
  FreeNode(op);
}
Matrix BaseObject::GetMl() const {
  Matrix m;
  C4DOS.object->GetMl(this, &m);
  return m;
}
void BaseObject::SetMl(const Matrix& m) {
  C4DOS.object->SetMl(this, m);
}
Matrix BaseObject::GetMg() const {
  Matrix m;
  C4DOS.object->GetMg(this, &m);
  return m;
}
void BaseObject::SetMg(const Matrix& m) {
  C4DOS.object->SetMg(this, m);
}
BaseTag* BaseObject::GetFirstTag() {
  return C4DOS.object->GetFirstTag(this);
}
BaseTag* BaseObject::GetTag(LONG type, LONG nr) {
  return C4DOS.object->GetTag(this, type, nr);
}
BaseTag* BaseObject::MakeTag(LONG type, BaseTag* pred) {
  return C4DOS.object->MakeTag(this, type, pred);
}
VariableTag* BaseObject::MakeVariableTag(LONG type, LONG count, BaseTag* pred) {
  return C4DOS.point->MakeVariableTag(this, type, count, pred);
}
Bool BaseObject::CopyTagsTo(BaseObject* dest, LONG visible, LONG variable, LONG hierarchical, AliasTrans*) {
  return dest && C4DOS.point->CopyTagsTo(this, dest, visible, variable, hierarchical);
}
void BaseObject::InsertTag(BaseTag* tag, BaseTag* pred) {
  C4DOS.object->InsertTag(this, tag, pred);
}
void BaseObject::KillTag(LONG type, LONG nr) {
  C4DOS.object->KillTag(this, type, nr);
}
BaseObject* BaseObject::GetCache(HierarchyHelp* hh) {
  return C4DOS.object->GetCache(this, hh);
}
BaseObject* BaseObject::GetDeformCache() {
  return C4DOS.object->GetDeformCache(this);
}
Bool BaseObject::CheckCache(HierarchyHelp* hh) {
  return C4DOS.object->CheckCache(this, hh);
}
Bool BaseObject::IsDirty(DIRTYFLAGS flags) {
  return C4DOS.object->IsDirty(this, flags);
}

BaseThread* HierarchyHelp::GetThread() {
  return C4DOS.object->GetHelpThread(this);
}
BaseDocument* HierarchyHelp::GetDocument() {
  return C4DOS.object->GetHelpDocument(this);
}
BUILDFLAGS HierarchyHelp::GetBuildFlags() {
  return C4DOS.object->GetHelpFlags(this);
}

BaseShader* BaseShader::Alloc(LONG type) {
  return AllocNode<BaseShader>(PLUGINTYPE_SHADER, type);
}
void BaseShader::Free(BaseShader*& shader) {
  FreeNode(shader);
}
BaseShader* BaseList2D::GetFirstShader() const {
  return C4DOS.atom->GetFirstShader(this);
}
void BaseList2D::InsertShader(BaseShader* shader, BaseShader* pred) {
  C4DOS.atom->InsertShader(this, shader, pred);
}

BaseVideoPost* BaseVideoPost::Alloc(LONG type) {
  return AllocNode<BaseVideoPost>(PLUGINTYPE_VIDEOPOST, type);
}
void BaseVideoPost::Free(BaseVideoPost*& vp) {
  FreeNode(vp);
}
BaseVideoPost* RenderData::GetFirstVideoPost() {
  return C4DOS.document->GetFirstVideoPost(this);
}
void RenderData::InsertVideoPost(BaseVideoPost* vp, BaseVideoPost* pred) {
  C4DOS.document->InsertVideoPost(this, vp, pred);
}
void RenderData::InsertVideoPostLast(BaseVideoPost* vp) {
  C4DOS.document->InsertVideoPostLast(this, vp);
}

BaseDocument* BaseDocument::Alloc() {
  return C4DOS.document->Alloc();
}
void BaseDocument::Free(BaseDocument*& doc) {
  if (doc) C4DOS.document->Free(doc);
  doc = NULL;
}
BaseContainer BaseDocument::GetData(DOCUMENTSETTINGS type) {
  return *C4DOS.document->GetSettings(this, type);
}
void BaseDocument::SetData(DOCUMENTSETTINGS type, const BaseContainer& bc) {
  C4DOS.document->GetSettings(this, type)->MergeContainer(bc);
}
BaseObject* BaseDocument::GetFirstObject() {
  return C4DOS.document->GetFirstObject(this);
}
BaseObject* BaseDocument::GetActiveObject() {
  return C4DOS.document->GetActiveObject(this);
}
void BaseDocument::InsertObject(BaseObject* op, BaseObject* parent, BaseObject* pred, Bool checknames) {
  C4DOS.document->InsertObject(this, op, parent, pred, checknames);
}
void BaseDocument::SetActiveObject(BaseObject* op, LONG mode) {
  C4DOS.document->SetActiveObject(this, op, mode);
}
RenderData* BaseDocument::GetActiveRenderData() {
  return C4DOS.document->GetActiveRenderData(this);
}
BaseSceneHook* BaseDocument::FindSceneHook(LONG id) const {
  return C4DOS.document->FindSceneHook(this, id);
}
Bool BaseDocument::StartUndo() {
  return C4DOS.document->StartUndo(this);
}
Bool BaseDocument::EndUndo() {
  return C4DOS.document->EndUndo(this);
}
Bool BaseDocument::AddUndo(UNDOTYPE type, void* data, Bool allowFromThread) {
  return C4DOS.document->AddUndo(this, type, data, allowFromThread);
}
Bool BaseDocument::DoUndo(Bool multiple) {
  return C4DOS.document->DoUndo(this, multiple);
}
Bool BaseDocument::DoRedo() {
  return C4DOS.document->DoRedo(this);
}
BaseTime BaseDocument::GetTime() {
  BaseTime time;
  C4DOS.document->GetTime(this, &time);
  return time;
}
void BaseDocument::SetTime(const BaseTime& t) {
  C4DOS.document->SetTime(this, t);
}
LONG BaseDocument::GetFps() const {
  return C4DOS.document->GetFps(this);
}
Filename BaseDocument::GetDocumentPath() {
  Filename path, name;
  C4DOS.document->GetPath(this, &path, &name);
  return path;
}
Filename BaseDocument::GetDocumentName() {
  Filename path, name;
  C4DOS.document->GetPath(this, &path, &name);
  return name;
}
BaseDocument* GetActiveDocument() {
  return C4DOS.document->GetActiveDocument();
}

Bool BaseThread::TestBreak() {
  return C4DOS.general->TestBreak(this);
}

BaseBitmap* BaseBitmap::Alloc() {
  return C4DOS.bitmap->Alloc();
}
void BaseBitmap::Free(BaseBitmap*& bmp) {
  if (bmp) C4DOS.bitmap->Free(bmp);
  bmp = NULL;
}
IMAGERESULT BaseBitmap::Init(LONG x, LONG y, LONG depth) {
  return C4DOS.bitmap->Init(this, x, y, depth);
}
IMAGERESULT BaseBitmap::Init(const Filename& name) {
  return C4DOS.bitmap->Load(this, name);
}
IMAGERESULT BaseBitmap::Save(const Filename& name, LONG format, BaseContainer*, SAVEBIT savebits) const {
  return C4DOS.bitmap->Save(this, name, format, savebits);
}
LONG BaseBitmap::GetBw() const {
  LONG w = 0, h = 0;
  C4DOS.bitmap->GetSize(this, &w, &h);
  return w;
}
LONG BaseBitmap::GetBh() const {
  LONG w = 0, h = 0;
  C4DOS.bitmap->GetSize(this, &w, &h);
  return h;
}
LONG BaseBitmap::GetBt() const {
  return C4DOS.bitmap->GetDepth(this);
}
COLORMODE BaseBitmap::GetColorMode() const {
  return C4DOS.bitmap->GetColorMode(this);
}
void BaseBitmap::GetPixel(LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) const {
  C4DOS.bitmap->GetPixel(this, x, y, r, g, b);
}
Bool BaseBitmap::SetPixel(LONG x, LONG y, LONG r, LONG g, LONG b) {
  return C4DOS.bitmap->SetPixel(this, x, y, r, g, b);
}
void BaseBitmap::GetPixelCnt(LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG inc, COLORMODE dstmode,
                             PIXELCNT flags) const {
  C4DOS.bitmap->GetPixelCnt(this, x, y, cnt, buffer, inc, dstmode, flags);
}
Bool BaseBitmap::SetPixelCnt(LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG inc, COLORMODE srcmode,
                             PIXELCNT flags) {
  return C4DOS.bitmap->SetPixelCnt(this, x, y, cnt, buffer, inc, srcmode, flags);
}
void BaseBitmap::Clear(LONG r, LONG g, LONG b) {
  C4DOS.bitmap->Clear(this, r, g, b);
}

MultipassBitmap* MultipassBitmap::Alloc(LONG bx, LONG by, COLORMODE mode) {
  return (MultipassBitmap*)C4DOS.bitmap->AllocMultipass(bx, by, mode);
}
void MultipassBitmap::Free(MultipassBitmap*& bmp) {
  if (bmp) C4DOS.bitmap->Free(bmp);
  bmp = NULL;
}

AutoBitmap::AutoBitmap(const String& name) : bitmap_(BaseBitmap::Alloc()) {
  if (bitmap_ && bitmap_->Init(GeGetPluginResourcePath() + Filename(name)) != IMAGERESULT_OK)
    BaseBitmap::Free(bitmap_);
}

Bool Description::LoadDescription(LONG id) {
  return C4DOS.resource->LoadDescription(this, id, String());
}
Bool Description::LoadDescription(const String& name) {
  return C4DOS.resource->LoadDescription(this, 0, name);
}
const DescID* Description::GetSingleDescID() {
  return C4DOS.resource->GetSingleDescID(this);
}
