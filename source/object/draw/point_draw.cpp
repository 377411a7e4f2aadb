#include "object/draw/point_draw.h"

#include "c4d_baseeffectordata.h"
#include "cloud/point_share.h"
#include "glpoint.h"
#include "otallyframe.h"

namespace kelvra {

namespace {

/** The host uses it to tell our buffers and programs from those of other plug-ins on the same object. */
CHAR identity[4] = {'K', 'L', 'V', 'R'};

constexpr LLONG kMostBufferBytes = 2147483647;

/** Points that one vertex buffer can hold. */
LONG DisplayCount(const PointStore& store) {
  return LMin(store.GetPointCount(), (LONG)(kMostBufferBytes / kVertexBytes));
}

/**
 * Brings the view's copy up to date. FALSE ends the draw: this view is tried again at its next one, and no
 * other view notices. Without memory for the temporary block the earlier copy, if there is one, stays in use
 * and counts as that of the new points.
 */
Bool Upload(BaseObject* op, PointStore& store, PointDisplay& display, BaseDraw* bd, GlVertexBuffer* buffer,
            LONG count, ViewUpload& upload) {
  if (store.uploadFlag || display.version == 0) {
    // Raising the flag once makes the copies of all views old, not only that of the view that draws first.
    store.uploadFlag = 0;
    display.version = display.uploads->NewVersion();
  }
  const Bool earlier = display.uploads->Find(buffer, &upload);
  if (earlier && upload.version == display.version) return TRUE;

  const LReal size = op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE);
  SReal* records = GeAllocTypeNC(SReal, (VLONG)count * 6);
  if (!records) {
    buffer->SetDirty(TRUE);
    if (earlier) display.uploads->SetVersion(buffer, display.version);
    return earlier;
  }
  upload.buffer = buffer;
  upload.node = op;
  upload.version = display.version;
  upload.count = store.FillVertices(records, count, &display.box, size);
  upload.vertices = buffer->AllocSubBuffer(bd, VBArrayBuffer, (VLONG)upload.count * kVertexBytes, records);
  GeFree(records);
  if (!upload.vertices) return FALSE;
  buffer->SetDirty(TRUE);
  return display.uploads->Keep(bd, upload);
}

/** The clones to draw, from the tag of the object or else of its parent; without one the object alone. */
class Clones {
public:
  explicit Clones(BaseObject* op) {
    BaseObject* const candidates[2] = {op, op->GetUp()};
    for (BaseObject* candidate : candidates) {
      BaseTag* tag = candidate ? candidate->GetTag(ID_MOTAGDATA) : NULL;
      if (tag && Ask(tag)) {
        carrier_ = candidate;
        return;
      }
    }
  }

  LONG Count() const { return carrier_ ? message_.modata->GetCount() : 1; }
  /** Without flags every clone is shown. Bit 1, which marks a clone as disabled, is not looked at. */
  Bool IsShown(LONG i) const {
    return !carrier_ ||
           (message_.modata->GetLongArray(MODATA_FLAGS, MOGENFLAG_CLONE_ON)[i] & MOGENFLAG_CLONE_ON) != 0;
  }
  Matrix Global(LONG i, BaseDrawHelp* bh) const {
    return carrier_ ? carrier_->GetMg() * message_.modata->GetMatrixArray(MODATA_MATRIX)[i] : bh->GetMg();
  }

private:
  Bool Ask(BaseTag* tag) {
    tag->Message(MSG_GET_MODATA, &message_);
    if (message_.modata && message_.modata->GetArray(MODATA_MATRIX, MD_MATRIX)) return TRUE;
    if (message_.modata && message_.user_owned) MoData::Free(message_.modata);
    message_.modata = NULL;
    message_.user_owned = FALSE;
    return FALSE;
  }

  GetMoDataMessage message_;
  BaseObject* carrier_ = NULL;
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

/** Locks a factory and binds it to a view, for a block. */
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

/** Binds the programs for a block. What could not be bound is unbound all the same, as the host expects. */
class BoundPrograms {
public:
  explicit BoundPrograms(GlProgramFactory* factory) : factory_(factory), bound_(factory->BindPrograms()) {}
  ~BoundPrograms() { factory_->UnbindPrograms(); }
  BoundPrograms(const BoundPrograms&) = delete;
  BoundPrograms& operator=(const BoundPrograms&) = delete;
  Bool Ok() const { return bound_; }

private:
  GlProgramFactory* factory_;
  Bool bound_;
};

void DrawClones(BaseObject* op, PointStore& store, PointDisplay& display, const ViewUpload& upload,
                DRAWPASS pass, BaseDraw* bd, BaseDrawHelp* bh, GlProgramFactory* factory) {
  const Clones clones(op);
  const UniformValues values(op, store, upload.count, bh->GetDocument());
  const LONG count = LMin(DisplayCount(store), upload.count);
  const GlVertexBufferVectorInfo* const* vectors = NULL;
  LONG vectorCount = 0;
  factory->GetVectorInfo(vectorCount, vectors);
  for (LONG i = 0; i < clones.Count(); ++i) {
    if (!clones.IsShown(i)) continue;
    bd->SetMatrix_Matrix(op, clones.Global(i, bh));
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
  ViewUpload upload;
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
  const BoundPrograms programs(factory);
  if (!programs.Ok()) return;
  factory->InitSetParameters();
  DrawClones(op, store, display, upload, pass, bd, bh, factory);
}

} // namespace kelvra
