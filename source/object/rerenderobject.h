// The point cloud object: owns a store of points, loads, saves, hands out and draws them.
#pragma once

#include "c4d.h"
#include "cloud/cloud_messages.h"
#include "cloud/load_report.h"
#include "cloud/point_store.h"
#include "fence.h"
#include "object/cloud_report.h"
#include "object/draw/point_draw.h"
#include "plugin_ids.h"

namespace kelvra {

/** Size at which the uniform scale of converted geometry is 1. */
constexpr LReal kUnitObjectSize = 200.0;

class KelvraObject : public ObjectData {
  INSTANCEOF(KelvraObject, ObjectData)
public:
  static NodeData* Alloc() { return AllocFenced<FencedObject<KelvraObject>>(); }

  Bool Init(GeListNode* node) override;
  void Free(GeListNode* node) override;
  Bool Read(GeListNode* node, HyperFile* hf, LONG level) override;
  Bool Write(GeListNode* node, HyperFile* hf) override;
  Bool Message(GeListNode* node, LONG type, void* data) override;
  Bool CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS flags,
              AliasTrans* trans) override;
  void GetDimension(BaseObject* op, Vector* mp, Vector* rad) override;
  DRAWRESULT Draw(BaseObject* op, DRAWPASS drawpass, BaseDraw* bd, BaseDrawHelp* bh) override;
  BaseObject* GetVirtualObjects(BaseObject* op, HierarchyHelp* hh) override;

  PointStore store;
  /** Of the last load command. */
  std::vector<LoadReport> loadReports;
  PointDisplay display;
  /** One-shot rebuild flag of the conversion. */
  LONG settingsChanged = 0;
  /** While an undo step is recorded before points are added: its copy shares those that stay. */
  Bool addsPoints = FALSE;

private:
  void OnCommand(BaseObject* op, LONG id);
  void OnParameter(BaseObject* op, LONG id);
  void OnMenuPrepare(BaseObject* op, BaseDocument* doc);
  void OnDelivery(BaseObject* op, PointDelivery& delivery);
  Bool OnReport(BaseObject* op, KelvraCloudReport& answer);
  Bool OnSurvey(KelvraSurvey& answer, const LVector& origin);
  void ColorStoreByHeight(BaseObject* op);
  void ColorAgain(BaseObject* op);
  void Load(BaseObject* op, Bool folderMode);
  void StoreChanged(BaseObject* op);
  template <class Export>
  void Answer(BaseObject* op, PointArray* answer, Export exportTo);

  CloudReporter reporter_;
  Matrix convertedAt_; ///< where the generator stood when it was converted last
};

/** The object's data of a node of this type, NULL for other nodes. */
KelvraObject* GetCloudData(BaseObject* op);

/** Where the object's stored positions count from, in file axes; 0 where it has no local origin. */
LVector OriginOf(BaseObject* op);

/** To be called before points are added: the object as it is now becomes one undo step, its points uncopied.
 */
void RecordUndo(BaseObject* op);

/** Builds the vertex descriptions, then registers the object; FALSE when either fails. */
Bool RegisterPointCloudObject();

} // namespace kelvra
