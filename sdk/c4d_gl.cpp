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
  return C4DOS.gl->GetFactory(bd, obj, index, callback, identity, identityLen, lights, lightCnt, flags,
                              attributes, attributeCnt, vectors, vectorCnt);
}
void GlProgramFactory::RemoveReference(const C4DAtom* obj, LULONG index) {
  C4DOS.gl->RemoveReference(obj, index);
}
void GlProgramFactory::LockFactory() {
  C4DOS.gl->LockFactory(this);
}
void GlProgramFactory::UnlockFactory() {
  C4DOS.gl->UnlockFactory(this);
}
Bool GlProgramFactory::BindToView(const BaseDraw* bd) {
  return C4DOS.gl->BindToView(this, bd);
}
Bool GlProgramFactory::IsProgram(GlProgramType t) {
  return C4DOS.gl->IsProgram(this, t);
}
void GlProgramFactory::AddParameters(LULONG parameters, LULONG formats) {
  C4DOS.gl->AddParameters(this, parameters, formats);
}
ULONG GlProgramFactory::Init(LONG subdivisionCount) {
  return C4DOS.gl->Init(this, subdivisionCount);
}
void GlProgramFactory::AddErrorHandler(GlProgramFactoryErrorHandler fn) {
  C4DOS.gl->AddErrorHandler(this, fn);
}
GlString GlProgramFactory::AddUniformParameter(GlProgramType t, GlUniformParamType p, const char* name) {
  GlString realName;
  C4DOS.gl->AddUniformParameter(this, t, p, name, &realName);
  return realName;
}
void GlProgramFactory::AddLine(GlProgramType t, const GlString& line) {
  C4DOS.gl->AddLine(this, t, line.GetCString());
}
GlString GlProgramFactory::GetUniqueID() {
  GlString id;
  C4DOS.gl->GetUniqueID(this, &id);
  return id;
}
Bool GlProgramFactory::HeaderFinished() {
  return C4DOS.gl->HeaderFinished(this);
}
Bool GlProgramFactory::CompilePrograms() {
  return C4DOS.gl->CompilePrograms(this);
}
Bool GlProgramFactory::DestroyPrograms() {
  return C4DOS.gl->DestroyPrograms(this);
}
Bool GlProgramFactory::BindPrograms() {
  return C4DOS.gl->BindPrograms(this);
}
Bool GlProgramFactory::UnbindPrograms() {
  return C4DOS.gl->UnbindPrograms(this);
}
void GlProgramFactory::InitSetParameters() {
  C4DOS.gl->InitSetParameters(this);
}
void GlProgramFactory::GetVectorInfo(LONG& count, const GlVertexBufferVectorInfo* const*& infos) const {
  C4DOS.gl->GetVectorInfo(this, &count, &infos);
}
GlProgramParameter GlProgramFactory::GetParameterHandle(GlProgramType t, const char* name) const {
  return C4DOS.gl->GetParameterHandle(this, t, name);
}
Bool GlProgramFactory::SetParameterMatrixTransform(GlProgramParameter param) {
  return C4DOS.gl->SetParameterMatrixTransform(this, param);
}
Bool GlProgramFactory::SetParameterInt(GlProgramParameter param, int v) {
  return C4DOS.gl->SetParameterInt(this, param, v);
}
Bool GlProgramFactory::SetParameterReal(GlProgramParameter param, SReal v) {
  return C4DOS.gl->SetParameterReal(this, param, v);
}
Bool GlProgramFactory::SetParameterVector(GlProgramParameter param, const SVector& v) {
  return C4DOS.gl->SetParameterVector(this, param, v);
}

GlVertexBuffer* GlVertexBuffer::GetVertexBuffer(const BaseDraw* bd, const C4DAtom* obj, LONG index,
                                                void* identity, VLONG identityLen, ULONG flags) {
  return C4DOS.gl->GetVertexBuffer(bd, obj, index, identity, identityLen, flags);
}
void GlVertexBuffer::RemoveObject(C4DAtom* obj, LONG index) {
  C4DOS.gl->RemoveObject(obj, index);
}
Bool GlVertexBuffer::IsDirty() {
  return C4DOS.gl->IsDirty(this);
}
void GlVertexBuffer::SetDirty(Bool dirty) {
  C4DOS.gl->SetBufferDirty(this, dirty);
}
GlVertexSubBufferData* GlVertexBuffer::AllocSubBuffer(const BaseDraw* bd, GlVertexBufferSubBufferType type,
                                                      VLONG size, const void* data) {
  return C4DOS.gl->AllocSubBuffer(this, bd, type, size, data);
}
Bool GlVertexBuffer::FreeBuffer(const BaseDraw* bd, GlVertexSubBufferData* sub) {
  return C4DOS.gl->FreeBuffer(this, bd, sub);
}
LONG GlVertexBuffer::GetSubBufferCount() const {
  return C4DOS.gl->GetSubBufferCount(this);
}
Bool GlVertexBuffer::DrawSubBuffer(const BaseDraw* bd, const GlVertexSubBufferData* vertexSub,
                                   const GlVertexSubBufferData* elementSub, LONG drawCnt,
                                   const GlVertexBufferDrawSubbuffer* draw, LONG vectorCnt,
                                   const GlVertexBufferVectorInfo* const* vectors,
                                   GlVertexBufferDrawElementCallback callback, void* callbackData) {
  return C4DOS.gl->DrawSubBuffer(bd, vertexSub, elementSub, drawCnt, draw, vectorCnt, vectors, callback,
                                 callbackData);
}

void BaseView::GetFrame(LONG* left, LONG* top, LONG* right, LONG* bottom) {
  C4DOS.view->GetFrame(this, left, top, right, bottom);
}
GeData BaseDraw::GetDrawParam(LONG id) {
  GeData data;
  C4DOS.view->GetDrawParam(this, id, &data);
  return data;
}
void BaseDraw::SetMatrix_Matrix(BaseObject* op, const Matrix& mg) {
  C4DOS.view->SetMatrix_Matrix(this, op, mg);
}
Bool BaseDraw::TestBreak() {
  return C4DOS.view->TestBreak(this);
}
BaseDocument* BaseDrawHelp::GetDocument() {
  return C4DOS.view->GetHelpDocument(this);
}
Matrix BaseDrawHelp::GetMg() {
  Matrix m;
  C4DOS.view->GetHelpMg(this, &m);
  return m;
}

MoData* MoData::Alloc() {
  return C4DOS.mograph->Alloc();
}
void MoData::Free(MoData*& data) {
  if (data) C4DOS.mograph->Free(data);
  data = NULL;
}
LONG MoData::GetCount() {
  return C4DOS.mograph->GetCount(this);
}
void* MoData::GetArray(LONG id, MD_TYPE type) const {
  LONG count = 0;
  return C4DOS.mograph->GetArray(this, id, type, &count);
}
MDArray<LONG> MoData::GetLongArray(LONG id, LONG preset) const {
  LONG count = 0;
  LONG* data = (LONG*)C4DOS.mograph->GetArray(this, id, MD_LONG, &count);
  return MDArray<LONG>(data, count, preset);
}
MDArray<Matrix> MoData::GetMatrixArray(LONG id, Matrix preset) const {
  LONG count = 0;
  Matrix* data = (Matrix*)C4DOS.mograph->GetArray(this, id, MD_MATRIX, &count);
  return MDArray<Matrix>(data, count, preset);
}
