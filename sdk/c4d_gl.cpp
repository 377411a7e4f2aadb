#include "c4d_os.h"

#include <cstdio>

GlString::GlString(LONG n) {
  char text[16];
  std::snprintf(text, sizeof text, "%d", (int)n);
  Append(text);
}

void GlString::Append(const char* s) {
  const VLONG added = s ? (VLONG)std::strlen(s) : 0;
  if (!added) return;
  char* grown = GeReallocTypeNC(char, text_, length_ + added + 1);
  if (!grown) return;
  std::memcpy(grown + length_, s, (std::size_t)added + 1);
  text_ = grown;
  length_ += added;
}

GlProgramFactory* GlProgramFactory::GetFactory(
    const BaseDraw* bd, const C4DAtom* obj, LULONG index, GlProgramFactoryMessageCallback callback,
    void* identity, VLONG identityLen, const GlLight* const* lights, LONG lightCnt, LULONG flags,
    const GlVertexBufferAttributeInfo* const* attributes, LONG attributeCnt,
    const GlVertexBufferVectorInfo* const* vectors, LONG vectorCnt, GlFBAdditionalTextureInfo*) {
  return C4DOS.Gl->GetFactory(bd, obj, index, callback, identity, identityLen, lights, lightCnt, flags,
                              attributes, attributeCnt, vectors, vectorCnt);
}
void GlProgramFactory::RemoveReference(const C4DAtom* obj, LULONG index) {
  C4DOS.Gl->RemoveReference(obj, index);
}
void GlProgramFactory::LockFactory() {
  C4DOS.Gl->LockFactory(this);
}
void GlProgramFactory::UnlockFactory() {
  C4DOS.Gl->UnlockFactory(this);
}
Bool GlProgramFactory::BindToView(const BaseDraw* bd) {
  return C4DOS.Gl->BindToView(this, bd);
}
Bool GlProgramFactory::IsProgram(GlProgramType t) {
  return C4DOS.Gl->IsProgram(this, t);
}
void GlProgramFactory::AddParameters(LULONG parameters, LULONG formats) {
  C4DOS.Gl->AddParameters(this, parameters, formats);
}
ULONG GlProgramFactory::Init(LONG subdivisionCount) {
  return C4DOS.Gl->Init(this, subdivisionCount);
}
void GlProgramFactory::AddErrorHandler(GlProgramFactoryErrorHandler fn) {
  C4DOS.Gl->AddErrorHandler(this, fn);
}
GlString GlProgramFactory::AddUniformParameter(GlProgramType t, GlUniformParamType p, const char* name) {
  GlString realName;
  C4DOS.Gl->AddUniformParameter(this, t, p, name, &realName);
  return realName;
}
void GlProgramFactory::AddLine(GlProgramType t, const GlString& line) {
  C4DOS.Gl->AddLine(this, t, line.GetCString());
}
GlString GlProgramFactory::GetUniqueID() {
  GlString id;
  C4DOS.Gl->GetUniqueID(this, &id);
  return id;
}
Bool GlProgramFactory::HeaderFinished() {
  return C4DOS.Gl->HeaderFinished(this);
}
Bool GlProgramFactory::CompilePrograms() {
  return C4DOS.Gl->CompilePrograms(this);
}
Bool GlProgramFactory::DestroyPrograms() {
  return C4DOS.Gl->DestroyPrograms(this);
}
Bool GlProgramFactory::BindPrograms() {
  return C4DOS.Gl->BindPrograms(this);
}
Bool GlProgramFactory::UnbindPrograms() {
  return C4DOS.Gl->UnbindPrograms(this);
}
void GlProgramFactory::InitSetParameters() {
  C4DOS.Gl->InitSetParameters(this);
}
void GlProgramFactory::GetVectorInfo(LONG& count, const GlVertexBufferVectorInfo* const*& infos) const {
  C4DOS.Gl->GetVectorInfo(this, &count, &infos);
}
GlProgramParameter GlProgramFactory::GetParameterHandle(GlProgramType t, const char* name) const {
  return C4DOS.Gl->GetParameterHandle(this, t, name);
}
Bool GlProgramFactory::SetParameterMatrixTransform(GlProgramParameter param) {
  return C4DOS.Gl->SetParameterMatrixTransform(this, param);
}
Bool GlProgramFactory::SetParameterInt(GlProgramParameter param, int v) {
  return C4DOS.Gl->SetParameterInt(this, param, v);
}
Bool GlProgramFactory::SetParameterReal(GlProgramParameter param, SReal v) {
  return C4DOS.Gl->SetParameterReal(this, param, v);
}
Bool GlProgramFactory::SetParameterVector(GlProgramParameter param, const SVector& v) {
  return C4DOS.Gl->SetParameterVector(this, param, v);
}

GlVertexBuffer* GlVertexBuffer::GetVertexBuffer(const BaseDraw* bd, const C4DAtom* obj, LONG index,
                                                void* identity, VLONG identityLen, ULONG flags) {
  return C4DOS.Gl->GetVertexBuffer(bd, obj, index, identity, identityLen, flags);
}
void GlVertexBuffer::RemoveObject(C4DAtom* obj, LONG index) {
  C4DOS.Gl->RemoveObject(obj, index);
}
Bool GlVertexBuffer::IsDirty() {
  return C4DOS.Gl->IsDirty(this);
}
void GlVertexBuffer::SetDirty(Bool dirty) {
  C4DOS.Gl->SetBufferDirty(this, dirty);
}
GlVertexSubBufferData* GlVertexBuffer::AllocSubBuffer(const BaseDraw* bd, GlVertexBufferSubBufferType type,
                                                      VLONG size, const void* data) {
  return C4DOS.Gl->AllocSubBuffer(this, bd, type, size, data);
}
Bool GlVertexBuffer::FreeBuffer(const BaseDraw* bd, GlVertexSubBufferData* sub) {
  return C4DOS.Gl->FreeBuffer(this, bd, sub);
}
LONG GlVertexBuffer::GetSubBufferCount() const {
  return C4DOS.Gl->GetSubBufferCount(this);
}
GlVertexSubBufferData* GlVertexBuffer::GetSubBuffer(LONG n) {
  return C4DOS.Gl->GetSubBuffer(this, n);
}
Bool GlVertexBuffer::DrawSubBuffer(const BaseDraw* bd, const GlVertexSubBufferData* vertexSub,
                                   const GlVertexSubBufferData* elementSub, LONG drawCnt,
                                   const GlVertexBufferDrawSubbuffer* draw, LONG vectorCnt,
                                   const GlVertexBufferVectorInfo* const* vectors,
                                   GlVertexBufferDrawElementCallback callback, void* callbackData) {
  return C4DOS.Gl->DrawSubBuffer(bd, vertexSub, elementSub, drawCnt, draw, vectorCnt, vectors, callback,
                                 callbackData);
}

void BaseView::GetFrame(LONG* left, LONG* top, LONG* right, LONG* bottom) {
  C4DOS.Br->GetFrame(this, left, top, right, bottom);
}
GeData BaseDraw::GetDrawParam(LONG id) {
  GeData data;
  C4DOS.Br->GetDrawParam(this, id, &data);
  return data;
}
void BaseDraw::SetMatrix_Matrix(BaseObject* op, const Matrix& mg) {
  C4DOS.Br->SetMatrix_Matrix(this, op, mg);
}
Bool BaseDraw::TestBreak() {
  return C4DOS.Br->TestBreak(this);
}
BaseDocument* BaseDrawHelp::GetDocument() {
  return C4DOS.Br->GetHelpDocument(this);
}
Matrix BaseDrawHelp::GetMg() {
  Matrix m;
  C4DOS.Br->GetHelpMg(this, &m);
  return m;
}

MoData* MoData::Alloc() {
  return C4DOS.Mo->Alloc();
}
void MoData::Free(MoData*& data) {
  if (data) C4DOS.Mo->Free(data);
  data = NULL;
}
LONG MoData::GetCount() {
  return C4DOS.Mo->GetCount(this);
}
void* MoData::GetArray(LONG id, MD_TYPE type) const {
  LONG count = 0;
  return C4DOS.Mo->GetArray(this, id, type, &count);
}
MDArray<LONG> MoData::GetLongArray(LONG id, LONG preset) const {
  LONG count = 0;
  LONG* data = (LONG*)C4DOS.Mo->GetArray(this, id, MD_LONG, &count);
  return MDArray<LONG>(data, count, preset);
}
MDArray<Matrix> MoData::GetMatrixArray(LONG id, const Matrix& preset) const {
  LONG count = 0;
  Matrix* data = (Matrix*)C4DOS.Mo->GetArray(this, id, MD_MATRIX, &count);
  return MDArray<Matrix>(data, count, preset);
}
