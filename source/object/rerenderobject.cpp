#include "object/rerenderobject.h"

#include "cloud/file_coordinates.h"
#include "cloud/point_share.h"
#include "glpoint.h"
#include "host_text.h"
#include "object/cloud_answers.h"
#include "object/convert/conversion.h"
#include "object/laz_renderer.h"
#include "object/load/load_command.h"
#include "object/reprojection.h"
#include "object/text_export.h"
#include "otallyframe.h"
#include "registration.h"
#include "version.h"
#include "vpkelvrarender.h"

#include <cmath>
#include <new>

namespace kelvra {

KelvraObject* GetCloudData(BaseObject* op) {
  return op && op->GetType() == kPointCloudId ? static_cast<KelvraObject*>(op->GetNodeData()) : NULL;
}

namespace {

/**
 * A store with an empty block could not be saved, and nobody but the sender vouches for the others: a count
 * that no block can have, or without arrays, would be read from memory that is not there.
 */
void DropBadBlocks(PointGroup& group) {
  for (VLONG i = group.blocks.GetCount() - 1; i >= 0; --i) {
    PointBlock& block = group.blocks[i];
    if (!block.IsWhole())
      group.blocks.Remove(i);
    else if (!block.HasUsableBox())
      block.Finish(kFinishRecomputeBox);
  }
}

constexpr LONG kDefaultBudget = 100; ///< millions, where the object has no entry
constexpr LONG kSurveyVersion = 1;
constexpr LLONG kMillion = 1000000;

RampSettings ReadRamp(const BaseContainer& data) {
  RampSettings settings;
  settings.ramp = data.GetLong(KELVRA_RAMP, KELVRA_RAMP_VIRIDIS);
  settings.lowShare = data.GetReal(KELVRA_RAMP_LOW, settings.lowShare);
  settings.highShare = data.GetReal(KELVRA_RAMP_HIGH, settings.highShare);
  settings.heightAxis = data.GetBool(KELVRA_COLOR_UP_IS_Y) ? 2 : 1;
  return settings;
}

/** The range of the last colouring. */
RampRange ReadRange(const BaseContainer& data) {
  RampRange range;
  range.from = data.GetReal(KELVRA_RAMP_FROM);
  range.to = data.GetReal(KELVRA_RAMP_TO);
  range.valid = data.FindIndex(KELVRA_RAMP_FROM) != NOTOK;
  return range;
}

void ShowRange(BaseContainer* data, const RampRange& range) {
  data->SetReal(KELVRA_RAMP_FROM, range.from);
  data->SetReal(KELVRA_RAMP_TO, range.to);
}

LoadOptions ReadOptions(BaseObject* op) {
  const BaseContainer* data = op->GetDataInstance();
  LoadOptions options;
  options.size = data->GetReal(KELVRA_OBJECT_SIZE);
  options.budget = data->GetLong(KELVRA_LOAD_BUDGET, kDefaultBudget);
  options.limit = (LLONG)options.budget * kMillion;
  options.everyNth = LMax(1, data->GetLong(KELVRA_LOAD_NTH, 1));
  // Where nothing is set for loading, text is read as thinly as it is shown.
  options.everyNthLine = options.everyNth > 1 ? options.everyNth : LMax(1, data->GetLong(KELVRA_THIN_VIEW));
  options.localOrigin = data->GetLong(KELVRA_LOCAL_ORIGIN) == KELVRA_LOCAL_ORIGIN_AUTOMATIC;
  options.fitText = data->GetLong(KELVRA_FIT_TEXT);
  options.colorBy = data->GetLong(KELVRA_LOAD_COLOR);
  options.ramp = ReadRamp(*data);
  options.reader = data->GetLong(KELVRA_LOAD_READER);
  options.countClasses = data->GetBool(KELVRA_LOAD_COUNT_CLASSES);
  options.refuseDoubtful = data->GetBool(KELVRA_LOAD_REFUSE_DOUBTFUL);
  return options;
}

/** A host that draws on a thread of its own must not do so while the points change. */
void StopDrawing() {
  if (GeIsMainThread()) StopAllThreads();
}

} // namespace

LVector OriginOf(BaseObject* op) {
  return op->GetDataInstance()->GetVector(KELVRA_ORIGIN);
}

void RecordUndo(BaseObject* op) {
  BaseDocument* doc = op->GetDocument();
  KelvraObject* cloud = GetCloudData(op);
  if (!doc || !cloud) return;
  const Bool started = doc->StartUndo(); // not within somebody else's step, which is not ours to end
  cloud->addsPoints = TRUE;
  doc->AddUndo(UNDOTYPE_CHANGE, op);
  cloud->addsPoints = FALSE;
  if (started) doc->EndUndo();
}

Bool KelvraObject::Init(GeListNode* node) {
  display.uploads = std::make_shared<ViewUploads>();
  BaseContainer* data = static_cast<BaseObject*>(node)->GetDataInstance();
  data->SetReal(KELVRA_POINT_SHARE, 1.0);
  data->SetReal(KELVRA_RESERVED, 0.0);
  data->SetLong(KELVRA_FALLOFF_SHAPE, 0);
  data->SetReal(KELVRA_CONVERT_VALUE, 1.0);
  data->SetLong(KELVRA_CONVERT_MODE, 0);
  data->SetReal(KELVRA_OBJECT_SIZE, kUnitObjectSize);
  data->SetReal(KELVRA_SEGMENT_BREAK, 10.0);
  data->SetLong(KELVRA_COLOR_MODE, 0);
  data->SetLong(KELVRA_COLOR_INVERT, 0);
  data->SetLong(KELVRA_THIN_VIEW, 0);
  data->SetLong(KELVRA_LOAD_BUDGET, 60);
  data->SetLong(KELVRA_LOAD_NTH, 1);
  data->SetLong(KELVRA_SEEN_SWITCH, 0);
  data->SetBool(KELVRA_LIGHT_FLAT, FALSE);
  data->SetVector(KELVRA_FALLOFF_CENTER, Vector());
  data->SetVector(KELVRA_FALLOFF_TARGET, Vector());
  data->SetReal(KELVRA_FALLOFF_RADIUS, 100.0);
  data->SetReal(KELVRA_FALLOFF_OFFSET, 0.0);
  data->SetLong(KELVRA_FALLOFF_ACTION, 0);
  data->SetReal(KELVRA_FALLOFF_EXPONENT, 1.0);
  data->SetReal(KELVRA_MIN_HEIGHT, 0.0);
  data->SetReal(KELVRA_MAX_HEIGHT, 100.0);
  data->SetReal(KELVRA_POINT_SIZE, 1.0);
  return TRUE;
}

void KelvraObject::Free(GeListNode* node) {
  GlVertexBuffer::RemoveObject(node, 0);
  GlProgramFactory::RemoveReference(node);
  if (display.uploads) display.uploads->Forget(node);
}

Bool KelvraObject::Read(GeListNode*, HyperFile* hf, LONG level) {
  settingsChanged = 1;
  loadReports.clear();
  if (!store.Read(hf, level)) return FALSE;
  loadReports = CheckStored(store);
  return TRUE;
}

Bool KelvraObject::Write(GeListNode*, HyperFile* hf) {
  return store.Write(hf);
}

Bool KelvraObject::CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS flags,
                          AliasTrans* trans) {
  KelvraObject* copy = static_cast<KelvraObject*>(dest);
  copy->settingsChanged = 1;
  // A node that was drawn before keeps the list of its own buffers.
  if (!copy->display.uploads || copy->display.uploads->IsEmpty()) copy->display.uploads = display.uploads;
  if (!(addsPoints ? store.ShareTo(copy->store) : store.CopyTo(copy->store))) return FALSE;
  return SUPER::CopyTo(dest, snode, dnode, flags, trans);
}

Bool KelvraObject::Message(GeListNode* node, LONG type, void* data) {
  BaseObject* op = static_cast<BaseObject*>(node);
  switch (type) {
  case MSG_DESCRIPTION_COMMAND:
    if (data) OnCommand(op, ((DescriptionCommand*)data)->id[0].id);
    break;
  case MSG_DESCRIPTION_POSTSETPARAMETER:
    if (data && ((DescriptionPostSetValue*)data)->descid)
      OnParameter(op, (*((DescriptionPostSetValue*)data)->descid)[0].id);
    break;
  case MSG_MENUPREPARE:
    OnMenuPrepare(op, (BaseDocument*)data);
    break;
  case kMessageDeliverPoints:
    if (data) OnDelivery(op, *(PointDelivery*)data);
    break;
  case kMessageExportColors:
    Answer(op, (PointArray*)data, [&](Vector* dest, LONG count) { store.ExportColors(dest, count); });
    break;
  case kMessageExportPositions:
    Answer(op, (PointArray*)data, [&](Vector* dest, LONG count) {
      store.ExportPositions(dest, count, &display.box, op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE));
    });
    break;
  case KELVRA_MESSAGE_SURVEY:
    return data && OnSurvey(*(KelvraSurvey*)data, OriginOf(op));
  case KELVRA_MESSAGE_REPORT:
    return data && OnReport(op, *(KelvraCloudReport*)data);
  case KELVRA_MESSAGE_LEGEND:
    return data && AnswerLegend(op, store, *(KelvraLegend*)data);
  case KELVRA_MESSAGE_SPREAD:
    return data && AnswerSpread(op, store, *(KelvraSpread*)data);
  case KELVRA_MESSAGE_HEIGHTS:
    return data && AnswerHeights(op, store, *(KelvraHeights*)data);
  case KELVRA_MESSAGE_SIGHT:
    return data && AnswerSight(op, store, *(KelvraSight*)data);
  default:
    break;
  }
  return SUPER::Message(node, type, data);
}

template <class Export>
void KelvraObject::Answer(BaseObject* op, PointArray* answer, Export exportTo) {
  if (!answer) return;
  answer->count = ShareOf(store.GetPointCount(), op->GetDataInstance()->GetReal(KELVRA_POINT_SHARE));
  if (answer->count == 0) return;
  // Cleared: a share above 1 asks for more than the store holds.
  answer->data = GeAllocType(Vector, answer->count);
  if (answer->data)
    exportTo(answer->data, answer->count);
  else
    answer->count = 0;
}

Bool KelvraObject::OnReport(BaseObject* op, KelvraCloudReport& answer) {
  try {
    return reporter_.Fill(store, loadReports, op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE), answer);
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
}

Bool KelvraObject::OnSurvey(KelvraSurvey& answer, const LVector& origin) {
  if (answer.version != kSurveyVersion || !answer.positions) return FALSE;
  answer.count = store.VisitFirst(answer.count, [&](const PointBlock& block, LONG taken, LONG first) {
    const FileCoordinates file(block, origin, TRUE);
    for (LONG i = 0; i < taken; ++i)
      answer.positions[(VLONG)first + i] = file.At(block.positions + (VLONG)i * 3);
  });
  return TRUE;
}

/** Asks for a file, or for a folder of which every file is loaded. */
void KelvraObject::Load(BaseObject* op, Bool folderMode) {
  Filename chosen;
  if (!chosen.FileSelect(FILESELECTTYPE_ANYTHING, folderMode ? FILESELECT_DIRECTORY : FILESELECT_LOAD,
                         "Point Cloud"))
    return;
  const String shown = op->GetDataInstance()->GetString(KELVRA_LOAD_NAME);
  const std::string path = Utf8(shown.Content() ? shown : chosen.GetString());
  std::vector<NamedFile> files;
  if (folderMode)
    files = FilesOf(chosen);
  else
    files.push_back({chosen, path});
  if (files.empty()) PrintLine(path, "the folder holds no file to load");

  const VLONG blocks = store.CountBlocks();
  const Bool wasEmpty = blocks == 0;
  const LVector before = OriginOf(op);
  LVector origin = wasEmpty ? LVector() : before;
  const LoadOptions options = ReadOptions(op);
  RampRange range = wasEmpty ? RampRange() : ReadRange(*op->GetDataInstance());
  StopDrawing();
  // What was loaded before memory ran out stays, and is shown.
  Fence("Load", [&] {
    loadReports = LoadFiles(files, {store, options, origin, range, [op] { RecordUndo(op); }});
  });
  // Objects without an origin get no entry: their scenes stay what they were.
  if (store.CountBlocks() > 0 && origin != before) op->GetDataInstance()->SetVector(KELVRA_ORIGIN, origin);
  const PointBlock* first = store.GetFirstBlock();
  if (wasEmpty && first && first->header.key > 1)
    op->GetDataInstance()->SetString(KELVRA_EPSG, LongToString(first->header.key));
  if (store.CountBlocks() > blocks && options.colorBy == KELVRA_LOAD_COLOR_HEIGHT)
    Fence("Load", [&] { ColorStoreByHeight(op); }); // all files of the object on one scale
  else if (options.colorBy == KELVRA_LOAD_COLOR_INTENSITY && range.valid)
    ShowRange(op->GetDataInstance(), range);
  StatusClear();
  StoreChanged(op);
}

void KelvraObject::ColorStoreByHeight(BaseObject* op) {
  Bool whole = TRUE;
  const RampSettings settings = ReadRamp(*op->GetDataInstance());
  RampRange range = ColorByHeight(store, settings, &whole);
  if (!whole) GePrint(op->GetName() + ": not enough memory to colour all points by height");
  if (!range.valid) return;
  const LReal base = settings.heightAxis == 1 ? OriginOf(op).z : OriginOf(op).y;
  range.from += base;
  range.to += base;
  ShowRange(op->GetDataInstance(), range);
}

/** Later loads join in: points of one object are coloured one way. */
void KelvraObject::ColorAgain(BaseObject* op) {
  if (store.CountBlocks() == 0) return;
  StopDrawing();
  RecordUndo(op);
  op->GetDataInstance()->SetLong(KELVRA_LOAD_COLOR, KELVRA_LOAD_COLOR_HEIGHT);
  ColorStoreByHeight(op);
  StoreChanged(op);
}

/** What was built from the points is old now: the converted geometry, the box, and the views. */
void KelvraObject::StoreChanged(BaseObject* op) {
  settingsChanged = 1;
  op->SetDirty(DIRTYFLAGS_DATA);
  op->Message(MSG_UPDATE);
  EventAdd();
}

void KelvraObject::OnCommand(BaseObject* op, LONG id) {
  switch (id) {
  case KELVRA_LOAD_FOLDER:
    Load(op, TRUE);
    break;
  case KELVRA_LOAD_FILE:
    Load(op, FALSE);
    break;
  case KELVRA_SAVE_TEXT:
    SaveAsText(op);
    break;
  case KELVRA_COLOR_AGAIN:
    Fence("Color by Height Again", [&] { ColorAgain(op); });
    break;
  case KELVRA_REQUEST_POINTS:
    op->GetDataInstance()->SetLong(KELVRA_LOAD_STATE, KELVRA_LOAD_STATE_STREAM);
    break;
  default:
    break;
  }
}

void KelvraObject::OnParameter(BaseObject* op, LONG id) {
  switch (id) {
  case KELVRA_EPSG:
    ShowReprojectedCorners(op, store, OriginOf(op));
    settingsChanged = 1;
    break;
  case KELVRA_OBJECT_SIZE:
    store.uploadFlag = 1;
    break;
  case KELVRA_CONVERT_VALUE:
  case KELVRA_PARTICLE_GROUP:
  case KELVRA_THIN_VIEW:
  case KELVRA_LIGHT_FLAT:
  case KELVRA_SEEN_SWITCH:
  case KELVRA_FALLOFF_CENTER:
  case KELVRA_FALLOFF_TARGET:
  case KELVRA_FALLOFF_RADIUS:
  case KELVRA_FALLOFF_OFFSET:
    settingsChanged = 1;
    break;
  default:
    break;
  }
}

/** A newly made cloud is rendered without further steps: its render settings get a video post that links it.
 */
void KelvraObject::OnMenuPrepare(BaseObject* op, BaseDocument* doc) {
  RenderData* settings = doc ? doc->GetActiveRenderData() : NULL;
  BaseVideoPost* post = settings ? BaseVideoPost::Alloc(kVoxelVideoPostId) : NULL;
  if (!post) return;
  post->GetDataInstance()->SetLink(KELVRA_RENDER_OBJECT, op);
  settings->InsertVideoPost(post);
}

/**
 * Takes points that were asked for. One delivery ends the request and can be undone; a stream goes on without
 * undo. Anything else stays with its sender.
 */
void KelvraObject::OnDelivery(BaseObject* op, PointDelivery& delivery) {
  BaseContainer* data = op->GetDataInstance();
  const LONG request = data->GetLong(KELVRA_LOAD_REQUEST), state = data->GetLong(KELVRA_LOAD_STATE);
  const Bool once = delivery.state == kDeliverOnce && (request == kDeliverOnce || state == kDeliverOnce);
  const Bool stream =
      delivery.state == kDeliverStream && (request == kDeliverStream || state == kDeliverStream);
  if (!once && !stream) return;
  StopDrawing();
  if (once) data->SetLong(KELVRA_LOAD_STATE, KELVRA_LOAD_STATE_IDLE);
  DropBadBlocks(delivery.points);
  if (delivery.points.blocks.GetCount() == 0) return;
  if (once) RecordUndo(op);
  if (!store.Merge(delivery.points)) return;
  // What is delivered is absolute.
  const LVector origin = OriginOf(op);
  GeDynamicArray<PointBlock>& blocks = store.groups[store.groups.GetCount() - 1].blocks;
  if (origin != LVector())
    for (VLONG i = 0; i < blocks.GetCount(); ++i) blocks[i].MoveTo(origin);
  StoreChanged(op);
}

void KelvraObject::GetDimension(BaseObject* op, Vector* mp, Vector* rad) {
  GrowingBox<Vector> box;
  store.AddDisplayBox(&box, op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE));
  *mp = (box.Min() + box.Max()) * 0.5;
  *rad = (box.Max() - box.Min()) * 0.5;
}

DRAWRESULT KelvraObject::Draw(BaseObject* op, DRAWPASS drawpass, BaseDraw* bd, BaseDrawHelp* bh) {
  DrawPoints(op, store, display, drawpass, bd, bh);
  return DRAWRESULT_OK; // a view that could not be drawn is not an error of the object
}

namespace {

/** Do both place two points equally far apart? Rounding aside, as after a turn. */
Bool KeepsDistances(const Matrix& a, const Matrix& b) {
  const Vector* const from[3] = {&a.v1, &a.v2, &a.v3};
  const Vector* const to[3] = {&b.v1, &b.v2, &b.v3};
  for (LONG i = 0; i < 3; ++i)
    for (LONG j = i; j < 3; ++j) {
      const LReal before = *from[i] * *from[j], after = *to[i] * *to[j];
      const LReal size = Len(*from[i]) * Len(*from[j]) + Len(*to[i]) * Len(*to[j]);
      if (!(std::abs(after - before) <= 1e-12 * size)) return FALSE;
    }
  return TRUE;
}

/** Must what was made for one place of the generator be made again for another? */
Bool IsConvertedAnew(LONG mode, const Matrix& from, const Matrix& to) {
  switch (mode) {
  case KELVRA_CONVERT_MODE_THINKING_PARTICLES:
  case KELVRA_CONVERT_MODE_EMITTER: // they stand in world space and do not follow by themselves
    return from != to;
  case KELVRA_CONVERT_MODE_SPLINE: // its segments break by distances of the world
    return !KeepsDistances(from, to);
  default:
    return FALSE;
  }
}

} // namespace

BaseObject* KelvraObject::GetVirtualObjects(BaseObject* op, HierarchyHelp* hh) {
  const Bool asked = settingsChanged != 0;
  settingsChanged = 0;
  const BaseContainer* data = op->GetDataInstance();
  const LONG mode = data->GetLong(KELVRA_CONVERT_MODE);
  const Bool moved = IsConvertedAnew(mode, convertedAt_, op->GetMg());
  BaseObject* cache = op->GetCache(hh);
  if (cache && !asked && !moved && !op->CheckCache(hh) && !op->IsDirty(DIRTYFLAGS_DATA)) return cache;
  convertedAt_ = op->GetMg();

  ConversionRequest request;
  request.store = &store;
  request.op = op;
  request.hierarchy = hh;
  request.count = ShareOf(store.GetPointCount(), data->GetReal(KELVRA_POINT_SHARE));
  request.size = data->GetReal(KELVRA_OBJECT_SIZE);
  request.scale = MatrixScale(Vector(request.size / kUnitObjectSize));
  request.value = data->GetReal(KELVRA_CONVERT_VALUE);
  request.box = &display.box;
  BaseObject* built = BuildConversion(request, GetRegistrationState().mayConvert ? mode : 0);
  if (request.stopped) settingsChanged = 1; // asked for again, it is built again
  return built;
}

Bool RegisterPointCloudObject() {
  if (!BuildPointDescriptions()) return FALSE;
  return RegisterObjectPlugin(kPointCloudId, GeLoadString(kStringObject), OBJECT_GENERATOR,
                              KelvraObject::Alloc, "Otallyframe", AutoBitmap("Kelvra.tif"), 0);
}

} // namespace kelvra
