// The module's border: each call of the host comes in through here, and no exception goes out. An exception
// in the host's own code would unwind through functions that know nothing of it.
#pragma once

#include "c4d.h"
#include "lib_prefs.h"

#include <exception>
#include <new>

namespace kelvra {

/** Prints which call failed and why; silent when there is not even memory for that. */
void ReportFailedCall(const CHAR* call, const CHAR* why) noexcept;

/**
 * Does what the host asked for. Work that throws is reported under the name of the call, unless that is NULL,
 * and the host gets what the call gives when it fails.
 */
template <class R, class Work>
R Fence(const CHAR* call, R failure, Work work) noexcept {
  try {
    return work();
  } catch (const std::exception& e) {
    if (call) ReportFailedCall(call, e.what());
  } catch (...) {
    if (call) ReportFailedCall(call, "unknown exception");
  }
  return failure;
}
template <class Work>
void Fence(const CHAR* call, Work work) noexcept {
  Fence(call, FALSE, [&]() -> Bool {
    work();
    return TRUE;
  });
}

/**
 * Makes an instance that the host deletes in code of its own; NULL when memory is refused. It lies in the
 * host's memory, and goes back there by the operator delete of its class whether that code says gDelete or
 * delete.
 */
template <class T>
T* MakeHostOwned() {
  void* memory = GeAlloc(sizeof(T)); // cleared, as gNew gives it: base classes rely on that
  if (!memory) return NULL;
  try {
    return ::new (memory) T;
  } catch (...) {
    GeFree(memory);
    throw;
  }
}

/** Makes what a registration names; NULL when memory is refused. */
template <class T>
NodeData* AllocFenced() noexcept {
  return Fence("Alloc", (NodeData*)NULL, []() -> NodeData* { return MakeHostOwned<T>(); });
}

// What the module registers: a class T of its own with each call of the host fenced.

template <class T>
class FencedNode : public T {
public:
  static void operator delete(void* block) { GeFree(block); }

  Bool Init(GeListNode* node) override {
    return Fence("Init", FALSE, [&] { return T::Init(node); });
  }
  void Free(GeListNode* node) override {
    Fence("Free", [&] { T::Free(node); });
  }
  Bool Read(GeListNode* node, HyperFile* hf, LONG level) override {
    return Fence("Read", FALSE, [&] { return T::Read(node, hf, level); });
  }
  Bool Write(GeListNode* node, HyperFile* hf) override {
    return Fence("Write", FALSE, [&] { return T::Write(node, hf); });
  }
  Bool Message(GeListNode* node, LONG type, void* data) override {
    return Fence("Message", FALSE, [&] { return T::Message(node, type, data); });
  }
  Bool CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS flags,
              AliasTrans* trans) override {
    return Fence("CopyTo", FALSE, [&] { return T::CopyTo(dest, snode, dnode, flags, trans); });
  }
  Bool GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) override {
    return Fence("GetDDescription", FALSE, [&] { return T::GetDDescription(node, description, flags); });
  }
  Bool GetDParameter(GeListNode* node, const DescID& id, GeData& value, DESCFLAGS_GET& flags) override {
    return Fence("GetDParameter", FALSE, [&] { return T::GetDParameter(node, id, value, flags); });
  }
  Bool SetDParameter(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_SET& flags) override {
    return Fence("SetDParameter", FALSE, [&] { return T::SetDParameter(node, id, value, flags); });
  }
  Bool GetDEnabling(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_ENABLE flags,
                    const BaseContainer* itemdesc) override {
    return Fence("GetDEnabling", FALSE, [&] { return T::GetDEnabling(node, id, value, flags, itemdesc); });
  }
};

template <class T>
class FencedObject : public FencedNode<T> {
public:
  void GetDimension(BaseObject* op, Vector* mp, Vector* rad) override {
    Fence("GetDimension", [&] { T::GetDimension(op, mp, rad); });
  }
  DRAWRESULT Draw(BaseObject* op, DRAWPASS pass, BaseDraw* bd, BaseDrawHelp* bh) override {
    return Fence("Draw", DRAWRESULT_ERROR, [&] { return T::Draw(op, pass, bd, bh); });
  }
  BaseObject* GetVirtualObjects(BaseObject* op, HierarchyHelp* hh) override {
    return Fence("GetVirtualObjects", (BaseObject*)NULL, [&] { return T::GetVirtualObjects(op, hh); });
  }
};

template <class T>
class FencedVideoPost : public FencedNode<T> {
public:
  VIDEOPOSTINFO GetRenderInfo(BaseVideoPost* node) override {
    return Fence("GetRenderInfo", VIDEOPOSTINFO_0, [&] { return T::GetRenderInfo(node); });
  }
  RENDERRESULT Execute(BaseVideoPost* node, VideoPostStruct* vps) override {
    return Fence("Execute", RENDERRESULT_OUTOFMEMORY, [&] { return T::Execute(node, vps); });
  }
  // One of many rays: a failure lets everything through and is not reported.
  void CalcVolumetric(BaseVideoPost* node, VolumeData* vd) override {
    if (Traced([&] { T::CalcVolumetric(node, vd); })) return;
    vd->col = Vector();
    vd->trans = Vector(1.0);
  }
  void CalcShadow(BaseVideoPost* node, VolumeData* vd) override {
    if (!Traced([&] { T::CalcShadow(node, vd); })) vd->trans = Vector(1.0);
  }

private:
  template <class Work>
  static Bool Traced(Work work) {
    return Fence(NULL, FALSE, [&]() -> Bool {
      work();
      return TRUE;
    });
  }
};

template <class T>
class FencedShader : public FencedNode<T> {
public:
  INITRENDERRESULT InitRender(BaseShader* shader, const InitRenderStruct& irs) override {
    return Fence("InitRender", INITRENDERRESULT_OUTOFMEMORY, [&] { return T::InitRender(shader, irs); });
  }
  void FreeRender(BaseShader* shader) override {
    Fence("FreeRender", [&] { T::FreeRender(shader); });
  }
  Vector Output(BaseShader* shader, ChannelData* cd) override {
    return Fence(NULL, Vector(), [&] { return T::Output(shader, cd); });
  }
};

template <class T>
class FencedMessage : public T {
public:
  static void operator delete(void* block) { GeFree(block); }

  LONG GetTimer() override {
    return Fence("GetTimer", (LONG)0, [&] { return T::GetTimer(); });
  }
  Bool CoreMessage(LONG id, const BaseContainer& bc) override {
    return Fence("CoreMessage", FALSE, [&] { return T::CoreMessage(id, bc); });
  }
};

template <class T>
class FencedPreferences : public FencedNode<T> {
protected:
  Bool InitValues(const DescID& id, Description* description = NULL) override {
    return Fence("InitValues", FALSE, [&] { return T::InitValues(id, description); });
  }
};

} // namespace kelvra
