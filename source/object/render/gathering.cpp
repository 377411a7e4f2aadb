#include "object/render/gathering.h"

#include "object/render/render_record.h"
#include "object/rerenderobject.h"
#include "otallyframe.h"
#include "vpkelvrarender.h"

#include <utility>

namespace kelvra {

namespace {

/** Points between two questions whether the user wants to stop, and between two looks at the progress. */
const LONG kBreakStep = 1023, kStatusStep = 8191;

const LReal kFullChannel = 65535.0;

/** An object and where it stands: objects of a cache do not know it themselves. */
struct Source {
  BaseObject* op = NULL;
  Matrix global;
};

/**
 * Collects the clouds below a linked one, in the order of the tree. An object that built something is looked
 * for in what it built only, deliberately, and that holds for clouds too: one whose cache is up to date is
 * left to the video post that links it, which each new cloud gets, and would be rendered twice otherwise.
 */
class Walk {
public:
  explicit Walk(BaseObject* linked) : linked_(linked) { open_.SetBlockSize(256); }
  /** FALSE when memory is refused. */
  Bool Collect(BaseObject* top, const Matrix& topGlobal) {
    // A stack of its own: a tree may be deeper than a thread's. What was built comes before the children.
    if (!Push(open_, top, topGlobal)) return FALSE;
    while (open_.GetCount() > 0) {
      const VLONG last = open_.GetCount() - 1;
      const Source source = open_[last];
      open_.Remove(last);
      BaseObject* op = source.op;
      for (BaseObject* child = op->GetDown(); child; child = child->GetNext())
        if (!Push(open_, child, source.global * child->GetMl())) return FALSE;
      // The first child is to lie on top.
      for (VLONG low = last, high = open_.GetCount() - 1; low < high; ++low, --high)
        std::swap(open_[low], open_[high]);
      BaseObject* built = op->GetDeformCache();
      if (!built) built = op->GetCache();
      if (built) {
        if (!Push(open_, built, source.global * built->GetMl())) return FALSE;
      } else if (op->GetType() == kPointCloudId && op != linked_) {
        if (!Append(op, source.global)) return FALSE;
      }
    }
    return TRUE;
  }
  Bool Append(BaseObject* op, const Matrix& global) { return Push(found, op, global); }
  GeDynamicArray<Source> found;

private:
  static Bool Push(GeDynamicArray<Source>& list, BaseObject* op, const Matrix& global) {
    Source source;
    source.op = op;
    source.global = global;
    return list.Push(source);
  }

  BaseObject* linked_;
  GeDynamicArray<Source> open_;
};

/** A converted cloud, or one that receives points, is rendered alone: what it built stands for the same
 * points. */
Bool HasHierarchy(BaseObject* op) {
  const BaseContainer* settings = op->GetDataInstance();
  return op->GetType() == kPointCloudId && (op->GetDown() || op->GetCache() || op->GetDeformCache()) &&
         settings->GetLong(KELVRA_CONVERT_MODE) == 0 && settings->GetLong(KELVRA_LOAD_STATE) == 0;
}

/** Adds points one after another, asking for a break and showing the progress on the way. */
class Adder {
public:
  Adder(VoxelData& data, const GatherContext& context, const RenderObjectRecord& record, UWORD index,
        const Matrix& global, LONG total)
      : data_(data), context_(context), record_(record), index_(index), global_(global), total_(total) {}

  /** p in the object's space. FALSE when gathering ends; result tells why. */
  Bool Add(const Vector& p, const SReal color[3], LONG number) {
    if (number % kBreakStep == kBreakStep - 1 && context_.thread && context_.thread->TestBreak())
      return End(RENDERRESULT_USERBREAK);
    if (number % kStatusStep == kStatusStep - 1) StatusSetBar((LONG)(number * 100LL / total_));
    if (!data_.AddItem((global_ * p).ToLV(), RadiusOf(record_, p.y, number), index_, color))
      return End(RENDERRESULT_OUTOFMEMORY);
    return TRUE;
  }
  RENDERRESULT result = RENDERRESULT_OK;

private:
  Bool End(RENDERRESULT why) {
    result = why;
    return FALSE;
  }
  VoxelData& data_;
  const GatherContext& context_;
  const RenderObjectRecord& record_;
  UWORD index_;
  const Matrix& global_;
  LONG total_;
};

/** Red, green and blue of points as the vertex maps of these names give them; white where one is missing. */
class MapColors {
public:
  MapColors(BaseObject* op, LONG points) {
    const char* const names[3] = {"Red", "Green", "Blue"};
    for (LONG channel = 0; channel < 3; ++channel)
      for (LONG nr = 0; BaseTag* tag = op->GetTag(Tvertexmap, nr); ++nr) {
        VertexMapTag* map = (VertexMapTag*)tag;
        if (map->GetName() == String(names[channel]) && map->GetDataCount() == points)
          channels_[channel] = map->GetDataAddressR();
      }
  }
  void At(LONG i, SReal color[3]) const {
    for (LONG channel = 0; channel < 3; ++channel)
      color[channel] = channels_[channel] ? channels_[channel][i] : 1.0f;
  }

private:
  const SReal* channels_[3] = {NULL, NULL, NULL};
};

void AddCloud(BaseObject* op, Adder& adder, LONG count) {
  const LReal size = op->GetDataInstance()->GetReal(KELVRA_OBJECT_SIZE);
  GetCloudData(op)->store.VisitPoints(count, size, [&adder](const Vector& p, const UWORD* rgb, LONG number) {
    const SReal color[3] = {(SReal)(rgb[0] / kFullChannel), (SReal)(rgb[1] / kFullChannel),
                            (SReal)(rgb[2] / kFullChannel)};
    return adder.Add(p, color, number) != FALSE;
  });
}

/** Polygon and spline objects: one item a point. */
void AddGeometry(BaseObject* op, Adder& adder, LONG count) {
  const Vector* points = ((PointObject*)op)->GetPointR();
  const MapColors colors(op, count);
  SReal color[3];
  for (LONG i = 0; points && i < count; ++i) {
    colors.At(i, color);
    if (!adder.Add(points[i], color, i)) return;
  }
}

/** Points that an object gives; below 0 for types that are not rendered. */
LONG PointsOf(BaseObject* op) {
  switch (op->GetType()) {
  case Opolygon:
  case Ospline:
    return ((PointObject*)op)->GetPointCount();
  case kPointCloudId: {
    const LONG total = GetCloudData(op)->store.GetPointCount();
    return LMin(total, ShareOf(total, op->GetDataInstance()->GetReal(KELVRA_POINT_SHARE)));
  }
  default:
    return -1;
  }
}

RENDERRESULT Gather(VoxelData& data, const Source& source, BaseVideoPost* post,
                    const GatherContext& context) {
  const LONG count = PointsOf(source.op);
  if (count < 0)
    return RENDERRESULT_OK; // a particle emitter, for one: collected, but nothing of it is rendered
  const Bool cloud = source.op->GetType() == kPointCloudId;
  RenderObjectRecord record;
  UWORD index = 0;
  if (!FillRecord(cloud ? *source.op->GetDataInstance() : *post->GetDataInstance(), source.global, &record))
    return RENDERRESULT_OUTOFMEMORY;
  if (!data.AddRecord(record, &index)) {
    FreeRecord(record);
    return RENDERRESULT_OUTOFMEMORY;
  }
  Adder adder(data, context, record, index, source.global, count);
  if (cloud)
    AddCloud(source.op, adder, count);
  else
    AddGeometry(source.op, adder, count);
  return adder.result;
}

} // namespace

RENDERRESULT GatherScene(VoxelData& data, BaseVideoPost* post, const GatherContext& context) {
  BaseObject* linked = post->GetDataInstance()->GetObjectLink(KELVRA_RENDER_OBJECT, context.document);
  if (!linked) return RENDERRESULT_OK;
  const Matrix global = linked->GetMg();
  Walk walk(linked);
  RENDERRESULT result = RENDERRESULT_OK;
  if ((HasHierarchy(linked) && !walk.Collect(linked, global)) || !walk.Append(linked, global))
    result = RENDERRESULT_OUTOFMEMORY;
  for (VLONG i = 0; i < walk.found.GetCount() && result == RENDERRESULT_OK; ++i)
    result = Gather(data, walk.found[i], post, context);
  StatusClear();
  if (result != RENDERRESULT_OK) data.Clear();
  return result;
}

} // namespace kelvra
