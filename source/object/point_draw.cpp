#include "object/point_draw.h"

#include "glpoint.h"
#include "object/rerenderobject.h"
#include "otallyframe.h"

namespace kelvra {

namespace {

/** Tells our buffers and programs from those of others on the same object. */
CHAR identity[4] = {'K', 'L', 'V', 'R'};

const LLONG kMostBufferBytes = 2147483647;

/** Points that one vertex buffer can hold. */
LONG DisplayCount(const PointStore& store) {
  return LMin(store.GetPointCount(), (LONG)(kMostBufferBytes / kVertexBytes));
}

PointUpload* FindUpload(PointDisplay& display, GlVertexBuffer* buffer) {
  for (VLONG i = 0; i < display.uploads.GetCount(); ++i) {
    PointUpload& upload = display.uploads[i];
    // A buffer made later at the same address has no sub-buffer of ours.
    if (upload.buffer == buffer)
      return buffer->GetSubBufferCount() > 0 && buffer->GetSubBuffer(0) == upload.vertices ? &upload : NULL;
  }
  return NULL;
}

PointUpload* NewUpload(PointDisplay& display, GlVertexBuffer* buffer) {
  for (VLONG i = 0; i < display.uploads.GetCount(); ++i)
    if (display.uploads[i].buffer == buffer) {
      display.uploads[i] = PointUpload();
      return &display.uploads[i];
    }
  return display.uploads.Push(PointUpload()) ? &display.uploads[display.uploads.GetCount() - 1] : NULL;
}

/**
 * Brings the view's copy up to date. FALSE ends the draw. Without memory for the temporary block the earlier
 * copy, if there is one, stays in use, and the flag is cleared all the same.
 */
Bool Upload(BaseObject* op, PointStore& store, PointDisplay& display, BaseDraw* bd, GlVertexBuffer* buffer,
            LONG count, PointUpload*& upload) {
  if (store.uploadFlag) {
    // One raise of the flag makes every view's copy old, not only that of the view that draws first.
    store.uploadFlag = 0;
    ++display.generation;
  }
  upload = FindUpload(display, buffer);
  if (upload && upload->generation == display.generation) return TRUE;

  const LReal size = op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE);
  SReal* records = GeAllocTypeNC(SReal, (VLONG)count * 6);
  if (!records) {
    buffer->SetDirty(TRUE);
    if (upload) upload->generation = display.generation;
    return upload != NULL;
  }
  const LONG written = store.FillVertices(records, count, &display.box, size);
  GlVertexSubBufferData* vertices =
      buffer->AllocSubBuffer(bd, VBArrayBuffer, (VLONG)written * kVertexBytes, records);
  GeFree(records);
  if (!vertices) {
    store.uploadFlag = 1; // tried again at the next draw
    return FALSE;
  }
  if (upload) buffer->FreeBuffer(bd, upload->vertices);
  if (!upload) upload = NewUpload(display, buffer);
  buffer->SetDirty(TRUE);
  if (!upload) return FALSE;
  upload->buffer = buffer;
  upload->vertices = vertices;
  upload->count = written;
  upload->generation = display.generation;
  return TRUE;
}

/** The clones to draw: data of the tag on the object, else on its parent; without data the object alone. */
struct Clones {
  GetMoDataMessage message;
  BaseObject* carrier = NULL;

  explicit Clones(BaseObject* op) {
    BaseObject* const candidates[2] = {op, op->GetUp()};
    for (BaseObject* candidate : candidates) {
      BaseTag* tag = candidate ? candidate->GetTag(ID_MOTAGDATA) : NULL;
      if (!tag) continue;
      tag->Message(MSG_GET_MODATA, &message);
      if (message.modata && message.modata->GetArray(MODATA_MATRIX, MD_MATRIX)) {
        carrier = candidate;
        return;
      }
      message.modata = NULL;
    }
  }
  LONG Count() const { return carrier ? message.modata->GetCount() : 1; }
};

/** Values of the uniforms that are the same for all clones. */
class UniformValues {
public:
  UniformValues(BaseObject* op, const PointStore& store, LONG uploaded, BaseDocument* doc)
      : data_(*op->GetDataInstance()),
        total_(store.GetPointCount()),
        uploaded_(uploaded),
        time_(doc ? doc->GetTime().Get() : 0.0),
        fps_(doc ? doc->GetFps() : 0) {}

  void Set(GlProgramFactory* factory, PointDisplay& display) const {
    const Vector center = data_.GetVector(KELVRA_FALLOFF_CENTER);
    // Coinciding positions give the zero vector.
    const Vector normal = !(data_.GetVector(KELVRA_FALLOFF_TARGET) - center);
    const struct {
      PointUniform uniform;
      GeData value;
    } values[] = {
        {kMotionTime, GeData(time_)},
        {kMotionMin, GeData(0.0)},
        {kMotionMax, GeData(1.0)},
        {kMotionDelta, GeData(fps_ > 0 ? 1.0 / fps_ : 0.0)},
        {kMotionScale, GeData(1.0)},
        {kIndexStop, GeData(ShareOf(total_, data_.GetReal(KELVRA_POINT_SHARE)) - 1)},
        {kIndexCount, GeData(uploaded_)},
        {kIndexNth, GeData(LMax(1, data_.GetLong(KELVRA_THIN_VIEW)))},
        {kFalloffNormal, GeData(normal)},
        {kFalloffType, GeData(data_.GetLong(KELVRA_FALLOFF_SHAPE))},
        {kFalloffAction, GeData(data_.GetLong(KELVRA_FALLOFF_ACTION))},
        {kFalloffPosition, GeData(center + normal * data_.GetReal(KELVRA_FALLOFF_OFFSET))},
        {kFalloffRadius, GeData(data_.GetReal(KELVRA_FALLOFF_RADIUS))},
        {kFalloffFunction, GeData(data_.GetReal(KELVRA_FALLOFF_EXPONENT))},
        {kPointSize, GeData(data_.GetReal(KELVRA_POINT_SIZE))},
        {kColorInvert, GeData(data_.GetLong(KELVRA_COLOR_INVERT))},
        {kColorMode, GeData(data_.GetLong(KELVRA_COLOR_MODE))},
        {kMinHeight, GeData(data_.GetReal(KELVRA_MIN_HEIGHT))},
        {kMaxHeight, GeData(data_.GetReal(KELVRA_MAX_HEIGHT))},
    };
    for (const auto& entry : values)
      SetUniform(factory, display.uniforms.names[entry.uniform], entry.value, &display.uniformCache);
  }

private:
  const BaseContainer& data_;
  LONG total_, uploaded_;
  Real time_;
  LONG fps_;
};

/** Locked and bound for a block. */
class BoundFactory {
public:
  BoundFactory(GlProgramFactory* factory, BaseDraw* bd) : factory_(factory) {
    factory_->LockFactory();
    bound_ = factory_->BindToView(bd);
  }
  ~BoundFactory() {
    if (bound_) factory_->BindToView(NULL);
    factory_->UnlockFactory();
  }
  BoundFactory(const BoundFactory&) = delete;
  BoundFactory& operator=(const BoundFactory&) = delete;
  Bool Ok() const { return bound_; }

private:
  GlProgramFactory* factory_;
  Bool bound_;
};

void DrawClones(BaseObject* op, PointStore& store, PointDisplay& display, const PointUpload& upload,
                DRAWPASS pass, BaseDraw* bd, BaseDrawHelp* bh, GlProgramFactory* factory) {
  const Clones clones(op);
  const UniformValues values(op, store, upload.count, bh->GetDocument());
  const LONG count = LMin(DisplayCount(store), upload.count);
  const GlVertexBufferVectorInfo* const* vectors = NULL;
  LONG vectorCount = 0;
  factory->GetVectorInfo(vectorCount, vectors);
  for (LONG i = 0; i < clones.Count(); ++i) {
    Matrix matrix = bh->GetMg();
    if (clones.carrier) {
      const LONG flags = clones.message.modata->GetLongArray(MODATA_FLAGS, MOGENFLAG_CLONE_ON)[i];
      if (!(flags & MOGENFLAG_CLONE_ON)) continue;
      matrix = clones.carrier->GetMg() * clones.message.modata->GetMatrixArray(MODATA_MATRIX)[i];
    }
    bd->SetMatrix_Matrix(op, matrix);
    factory->SetParameterMatrixTransform(factory->GetParameterHandle(VertexProgram, "transmatrix"));
    values.Set(factory, display);
    if (pass != DRAWPASS_OBJECT || count <= 0) continue;
    const GlVertexBufferDrawSubbuffer range(C4D_VERTEX_BUFFER_POINTS, count, 0);
    GlVertexBuffer::DrawSubBuffer(bd, upload.vertices, NULL, 1, &range, vectorCount, vectors);
  }
}

} // namespace

void DrawPoints(BaseObject* op, PointStore& store, PointDisplay& display, DRAWPASS pass, BaseDraw* bd,
                BaseDrawHelp* bh) {
  if (bd->GetDrawParam(BASEDRAW_DRAWPORTTYPE).GetLong() == 0) return;
  const LONG count = DisplayCount(store);
  if (count == 0) return;

  GlVertexBuffer* buffer = GlVertexBuffer::GetVertexBuffer(bd, op, 0, identity, sizeof identity);
  PointUpload* upload = NULL;
  if (!buffer || !Upload(op, store, display, bd, buffer, count, upload)) return;

  const PointDescriptions& descriptions = GetPointDescriptions();
  GlProgramFactory* factory =
      GlProgramFactory::GetFactory(bd, op, 0, NULL, identity, sizeof identity, NULL, 0, 0,
                                   descriptions.inputs->pointers, 2, descriptions.full->pointers, 2, NULL);
  if (!factory) return;
  const BoundFactory bound(factory, bd);
  if (!bound.Ok()) return;
  if (!BuildPointProgram(factory, display.uniforms)) {
    factory->DestroyPrograms(); // the next draw tries again
    return;
  }
  if (factory->BindPrograms()) {
    factory->InitSetParameters();
    DrawClones(op, store, display, *upload, pass, bd, bh, factory);
  }
  factory->UnbindPrograms();
}

} // namespace kelvra
