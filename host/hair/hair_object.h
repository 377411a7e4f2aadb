// Hair objects: guides in the space of their object, behind a lock. Main thread; guides may be read on any
// thread while nobody writes.
#pragma once

#include "host/geometry/host_array.h"
#include "host/nodes/node.h"

namespace host {

class NodeTypes;
struct HairNode;

/** What plug-ins hold as HairGuides*. Lies in the host's memory, its points too: refusals strike both. */
struct GuideSet {
  LONG count = 0, segments = 1;
  HostArray<Vector> points; ///< guide by guide, root first
  HairNode* owner = nullptr;

  VLONG GuidePoints() const { return (VLONG)segments + 1; }
  HairGuides* Api() { return reinterpret_cast<HairGuides*>(this); }
  static GuideSet* From(const HairGuides* guides) {
    return const_cast<GuideSet*>(reinterpret_cast<const GuideSet*>(guides));
  }
};

/** Cleared; NULL for a negative count, no segment, more than 2^31 - 1 points or refused memory. */
GuideSet* MakeGuides(LONG count, LONG segments);
GuideSet* CopyGuides(const GuideSet& source);
void FreeGuides(GuideSet*& guides);

struct HairNode : Object {
  HairNode() : Object(Ohair) {}
  /** Reports an object that is still locked. */
  ~HairNode() override;
  GuideSet* guides = nullptr; ///< owned
  bool locked = false;

  void Lock();
  /** Takes over `made`, NULL for none. */
  void TakeGuides(GuideSet* made);

  Box OwnBox() const override;
  bool HasOwnData() const override { return true; }
  bool WriteOwn(HyperFile* hf) override;
  bool ReadOwn(HyperFile* hf, LONG level) override;
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;

private:
  bool lockedByModule_ = false;
};

/** NULL for other objects than hair objects. */
HairNode* AsHair(Object* op);
const HairNode* AsHair(const Object* op);

/** Hair objects. */
void RegisterHair(NodeTypes& types);

} // namespace host
