#include "object/render/gathering.h"

#include "cloud/point_share.h"
#include "object/render/render_record.h"
#include "otallyframe.h"
#include "plugin_ids.h"
#include "vpkelvrarender.h"

#include <utility>

namespace kelvra {

namespace {

/** Points after which the user is asked for a break, and after which the status bar moves. */
constexpr LONG kBreakStep = 1023, kStatusStep = 8191;

/** A 16-bit colour channel at its full. */
constexpr LReal kFullChannel = 65535.0;

/** An object and its place in the world, which objects in a cache do not know themselves. */
struct Source {
  BaseObject* op = NULL;
  Matrix global;
};

/**
 * Collects the clouds below a linked one, in the order of the tree. An object that built
 * something stands for what it built and is not collected itself. That holds for clouds too: one that has
 * built its cache is left to a video post that links it, which each new cloud gets, and would otherwise be
 * rendered twice.
 */
class Walk {
public:
  explicit Walk(BaseObject* linked) : linked_(linked) { open_.SetBlockSize(256); }
  /** FALSE when memory is refused. */
  Bool Collect(BaseObject* top, const Matrix& topGlobal) {
    // The stack is an array, as a tree may be deeper than a thread's stack allows. Its last entry comes next.
    if (!Push(open_, top, topGlobal)) return FALSE;
    while (open_.GetCount() > 0) {
      const VLONG last = open_.GetCount() - 1;
      const Source source = open_[last];
      open_.Remove(last);
      BaseObject* op = source.op;

      // Push the children so that the first one lies on top.
      for (BaseObject* child = op->GetDown(); child; child = child->GetNext())
        if (!Push(open_, child, source.global * child->GetMl())) return FALSE;
      for (VLONG low = last, high = open_.GetCount() - 1; low < high; ++low, --high)
        std::swap(open_[low], open_[high]);

      // What the object built comes before its children; without it the object itself does.
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

/**
 * Are there objects below that are rendered with the linked one? Not with a converted cloud: what it built
 * stands for the same points. One that is receiving points is rendered alone as well.
 */
Bool HasHierarchy(BaseObject* op) {
  const BaseContainer* settings = op->GetDataInstance();
  return op->GetType() == kPointCloudId && (op->GetDown() || op->GetCache() || op->GetDeformCache()) &&
         settings->GetLong(KELVRA_CONVERT_MODE) == 0 && settings->GetLong(KELVRA_LOAD_STATE) == 0;
}

/** Adds the points of one object; asks for a break and shows the progress on the way. */
class Adder {
public:
  Adder(VoxelData& data, const GatherContext& context, const RenderObjectRecord& record, UWORD index,
        const Matrix& global, LONG total)
      : data_(data),
        context_(context),
        record_(record),
        index_(index),
        global_(global),
        total_(total),
        most_(data.items.size + total) {}

  /** p is in the object's space. FALSE when gathering ends; `result` says why. */
  Bool Add(const Vector& p, const SReal color[3], LONG number) {
    if (number % kBreakStep == kBreakStep - 1 && context_.thread && context_.thread->TestBreak())
      return End(RENDERRESULT_USERBREAK);
    if (number % kStatusStep == kStatusStep - 1) StatusSetBar((LONG)(number * 100LL / total_));
    if (!data_.AddItem((global_ * p).ToLV(), RadiusOf(record_, p.y, number), index_, color, most_))
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
  LLONG most_; ///< items, once all of this object are there
};

/** Colours from the vertex maps "Red", "Green" and "Blue" of an object; full where a map is missing. */
class MapColors {
public:
  MapColors(BaseObject* op, LONG points) {
    const char* const names[3] = {"Red", "Green", "Blue"};
    for (LONG channel = 0; channel < 3; ++channel)
      for (LONG nr = 0; BaseTag* tag = op->GetTag(Tvertexmap, nr); ++nr) {
        VertexMapTag* map = static_cast<VertexMapTag*>(tag);
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

void AddCloud(const PointStore& store, LReal size, Adder& adder, LONG count) {
  store.VisitPoints(count, size, [&adder](const Vector& p, const UWORD* rgb, LONG number) {
    const SReal color[3] = {(SReal)(rgb[0] / kFullChannel), (SReal)(rgb[1] / kFullChannel),
                            (SReal)(rgb[2] / kFullChannel)};
    return adder.Add(p, color, number) != FALSE;
  });
}

/** One item for each point of a polygon or spline object. */
void AddGeometry(BaseObject* op, Adder& adder, LONG count) {
  const Vector* points = static_cast<PointObject*>(op)->GetPointR();
  const MapColors colors(op, count);
  SReal color[3];
  for (LONG i = 0; points && i < count; ++i) {
    colors.At(i, color);
    if (!adder.Add(points[i], color, i)) return;
  }
}

/** Points that an object gives; below 0 for types that are not rendered. `store` is that of a cloud. */
LONG PointsOf(BaseObject* op, const PointStore* store) {
  if (store) {
    const LONG total = store->GetPointCount();
    return LMin(total, ShareOf(total, op->GetDataInstance()->GetReal(KELVRA_POINT_SHARE)));
  }
  const LONG type = op->GetType();
  return type == Opolygon || type == Ospline ? static_cast<PointObject*>(op)->GetPointCount() : -1;
}

/** Geometry that deformers changed is rendered as they left it. */
Source Deformed(const Source& source) {
  Source deformed = source;
  if (source.op->GetType() == kPointCloudId) return deformed;
  while (BaseObject* changed = deformed.op->GetDeformCache()) {
    deformed.op = changed;
    deformed.global = deformed.global * changed->GetMl();
  }
  return deformed;
}

/** Adds one object: its settings as a record, then its points as items. */
RENDERRESULT Gather(VoxelData& data, const Source& collected, BaseVideoPost* post,
                    const GatherContext& context) {
  const Source source = Deformed(collected);
  const Bool cloud = source.op->GetType() == kPointCloudId;
  const PointStore* store = cloud ? context.storeOf(source.op) : NULL;
  const LONG count = PointsOf(source.op, store);
  if (count < 0) return RENDERRESULT_OK; // a particle emitter, for example: collected, but not rendered

  // A cloud has render settings of its own; other objects take those of the video post.
  const BaseContainer& settings = cloud ? *source.op->GetDataInstance() : *post->GetDataInstance();
  RenderObjectRecord record;
  UWORD index = 0;
  if (!FillRecord(settings, source.global, &record)) return RENDERRESULT_OUTOFMEMORY;
  record.source = source.op;
  record.firstItem = (LONG)data.items.size;
  if (!data.AddRecord(record, &index)) {
    FreeRecord(record);
    return RENDERRESULT_OUTOFMEMORY;
  }

  Adder adder(data, context, record, index, source.global, count);
  if (store)
    AddCloud(*store, settings.GetReal(KELVRA_OBJECT_SIZE), adder, count);
  else
    AddGeometry(source.op, adder, count);
  RenderObjectRecord& kept = data.records.data[index];
  kept.leftOut = count - (LONG)(data.items.size - kept.firstItem);
  return adder.result;
}

} // namespace

RENDERRESULT GatherScene(VoxelData& data, BaseVideoPost* post, const GatherContext& context) {
  BaseObject* linked = post->GetDataInstance()->GetObjectLink(KELVRA_RENDER_OBJECT, context.document);
  if (!linked) return RENDERRESULT_OK;

  // Collect what is rendered; the linked object comes last.
  const Matrix global = linked->GetMg();
  Walk walk(linked);
  RENDERRESULT result = RENDERRESULT_OK;
  if ((HasHierarchy(linked) && !walk.Collect(linked, global)) || !walk.Append(linked, global))
    result = RENDERRESULT_OUTOFMEMORY;

  for (VLONG i = 0; result == RENDERRESULT_OK && i < walk.found.GetCount(); ++i)
    result = Gather(data, walk.found[i], post, context);
  StatusClear();
  if (result != RENDERRESULT_OK) data.Clear();
  return result;
}

} // namespace kelvra
