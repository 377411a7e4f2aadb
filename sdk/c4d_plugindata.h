// Base classes of plug-ins. The host never calls these virtuals itself: registration hands it plain functions
// that call them behind a fence, so that no exception leaves the module.
#pragma once

#include "c4d_basedraw.h"
#include "c4d_file.h"
#include "c4d_gl.h"
#include "c4d_render.h"

struct BranchInfo;

class BaseData {
public:
  virtual ~BaseData() {}
  void operator delete(void* block) { sdk::Free(block); }
  void* operator new(std::size_t size, const sdk::HostMemory& where) noexcept {
    return ::operator new(size, where);
  }
  void operator delete(void* block, const sdk::HostMemory&) noexcept { sdk::Free(block); }
};

class NodeData : public BaseData {
public:
  /** The host's node; NULL before the host attached it. */
  GeListNode* Get() const { return private_link_; }
  void AttachNode(GeListNode* node) { private_link_ = node; } // ours

  /** Writes the defaults into the node's container: descriptions do not. */
  virtual Bool Init(GeListNode*) { return TRUE; }
  virtual void Free(GeListNode*) {}
  /** level is the disk level that was current when the node was written. */
  virtual Bool Read(GeListNode*, HyperFile*, LONG /*level*/) { return TRUE; }
  virtual Bool Write(GeListNode*, HyperFile*) { return TRUE; }
  virtual Bool Message(GeListNode*, LONG /*type*/, void* /*data*/) { return TRUE; }
  virtual Bool CopyTo(NodeData* /*dest*/, GeListNode* /*snode*/, GeListNode* /*dnode*/, COPYFLAGS,
                      AliasTrans*) {
    return TRUE;
  }
  virtual Bool GetDDescription(GeListNode*, Description*, DESCFLAGS_DESC&) { return FALSE; }
  virtual Bool GetDParameter(GeListNode*, const DescID&, GeData&, DESCFLAGS_GET&) { return TRUE; }
  virtual Bool GetDEnabling(GeListNode*, const DescID&, const GeData&, DESCFLAGS_ENABLE,
                            const BaseContainer*) {
    return TRUE;
  }
  virtual Bool SetDParameter(GeListNode*, const DescID&, const GeData&, DESCFLAGS_SET&) { return TRUE; }

private:
  GeListNode* private_link_ = NULL;
};

class ObjectData : public NodeData {
public:
  /** Centre and half size of the object's box in its own coordinates. */
  virtual void GetDimension(BaseObject*, Vector* mp, Vector* rad) { *mp = *rad = Vector(); }
  virtual DRAWRESULT Draw(BaseObject*, DRAWPASS, BaseDraw*, BaseDrawHelp*) { return DRAWRESULT_SKIP; }
  /** The host owns the returned hierarchy. */
  virtual BaseObject* GetVirtualObjects(BaseObject*, HierarchyHelp*) { return NULL; }
};

class ShaderData : public NodeData {
public:
  virtual INITRENDERRESULT InitRender(BaseShader*, const InitRenderStruct&) { return INITRENDERRESULT_OK; }
  virtual void FreeRender(BaseShader*) {}
  /** Render threads. */
  virtual Vector Output(BaseShader*, ChannelData*) { return Vector(); }
};

class VideoPostData : public NodeData {
public:
  virtual VIDEOPOSTINFO GetRenderInfo(BaseVideoPost*) { return VIDEOPOSTINFO_0; }
  virtual RENDERRESULT Execute(BaseVideoPost*, VideoPostStruct*) { return RENDERRESULT_OK; }
  /** Render threads. */
  virtual void CalcVolumetric(BaseVideoPost*, VolumeData*) {}
  virtual void CalcShadow(BaseVideoPost*, VolumeData*) {}
};

class SceneHookData : public NodeData {};

class MessageData : public BaseData {
public:
  /** Milliseconds between MSG_TIMER messages, 0 for none. */
  virtual LONG GetTimer() { return 0; }
  virtual Bool CoreMessage(LONG id, const BaseContainer& bc) = 0;
};

typedef NodeData* DataAllocator(void);
