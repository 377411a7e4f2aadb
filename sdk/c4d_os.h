// The seam between host and module: tables of function pointers, handed over at system initialisation.
// Each table is written once, as a list with its contract, in tables/<name>.inc; its names are the host's
// own. Values cross as the SDK layer's types, which both sides build from the same sources; no exception
// crosses.
// ours: this file
#pragma once

#include "c4d.h"

/** Where a node goes in relation to another one. */
enum LISTPLACE { LISTPLACE_FIRSTBELOW, LISTPLACE_LASTBELOW, LISTPLACE_AFTER, LISTPLACE_BEFORE };

#define C4D_ENTRY(R, name, parameters) R(*name) parameters;
struct C4D_Ge {
#include "tables/general.inc"
};
struct C4D_Lr {
#include "tables/resource.inc"
};
struct C4D_Bm {
#include "tables/bitmap.inc"
};
struct C4D_At {
#include "tables/atom.inc"
};
struct C4D_Bo {
#include "tables/object.inc"
};
struct C4D_Bd {
#include "tables/document.inc"
};
struct C4D_Hf {
#include "tables/hyper_file.inc"
};
struct C4D_Fl {
#include "tables/file.inc"
};
struct C4D_Br {
#include "tables/view.inc"
};
struct C4D_Gl {
#include "tables/gl.inc"
};
struct C4D_Mo {
#include "tables/mograph.inc"
};
struct C4D_Vd {
#include "tables/volume.inc"
};
struct C4D_Po {
#include "tables/point.inc"
};
struct C4D_Hr {
#include "tables/hair.inc"
};
struct C4D_Tp {
#include "tables/particle.inc"
};
struct C4D_Em {
#include "tables/emitter.inc"
};
#undef C4D_ENTRY

/** All tables; version comes first and is compared before anything else is read. */
struct OperatingSystem {
  LONG version;
  const C4D_Ge* Ge;
  const C4D_Lr* Lr;
  const C4D_Bm* Bm;
  const C4D_At* At;
  const C4D_Bo* Bo;
  const C4D_Bd* Bd;
  const C4D_Hf* Hf;
  const C4D_Fl* Fl;
  const C4D_Br* Br;
  const C4D_Gl* Gl;
  const C4D_Mo* Mo;
  const C4D_Vd* Vd;
  const C4D_Po* Po;
  const C4D_Hr* Hr;
  const C4D_Tp* Tp;
  const C4D_Em* Em;
};

/** The host's tables: set by c4d_main in a module, the host's own in the host. */
extern OperatingSystem* t_C4DOS;
#define C4DOS (*t_C4DOS)

// Structures handed to RegisterPlugin: plain functions that call the plug-in's virtuals behind the fence. A
// failure inside gives FALSE, 0 or an empty result and a report to the host.

struct BASEPLUGIN {
  LONG info;
  void (*Destructor)(BaseData*);
};
struct STATICPLUGIN : BASEPLUGIN {
  BaseData* adr;
};
struct NODEPLUGIN : BASEPLUGIN {
  LONG disklevel;
  BaseBitmap* icon;
  /** Name of the description resource, NULL or empty for none. */
  const String* description;
  DataAllocator* Allocator;
  void (*Attach)(NodeData*, GeListNode*);
  Bool (*Init)(NodeData*, GeListNode*);
  void (*Free)(NodeData*, GeListNode*);
  Bool (*Read)(NodeData*, GeListNode*, HyperFile*, LONG level);
  Bool (*Write)(NodeData*, GeListNode*, HyperFile*);
  Bool (*Message)(NodeData*, GeListNode*, LONG type, void* data);
  Bool (*CopyTo)(NodeData*, NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS, AliasTrans*);
  Bool (*GetDDescription)(NodeData*, GeListNode*, Description*, DESCFLAGS_DESC&);
  Bool (*GetDParameter)(NodeData*, GeListNode*, const DescID&, GeData&, DESCFLAGS_GET&);
  Bool (*GetDEnabling)(NodeData*, GeListNode*, const DescID&, const GeData&, DESCFLAGS_ENABLE,
                       const BaseContainer*);
  Bool (*SetDParameter)(NodeData*, GeListNode*, const DescID&, const GeData&, DESCFLAGS_SET&);
};
struct OBJECTPLUGIN : NODEPLUGIN {
  void (*GetDimension)(NodeData*, BaseObject*, Vector* mp, Vector* rad);
  DRAWRESULT (*Draw)(NodeData*, BaseObject*, DRAWPASS, BaseDraw*, BaseDrawHelp*);
  BaseObject* (*GetVirtualObjects)(NodeData*, BaseObject*, HierarchyHelp*);
};
struct SHADERPLUGIN : NODEPLUGIN {
  INITRENDERRESULT (*InitRender)(NodeData*, BaseShader*, const InitRenderStruct&);
  void (*FreeRender)(NodeData*, BaseShader*);
  Vector (*Output)(NodeData*, BaseShader*, ChannelData*);
};
struct VIDEOPOSTPLUGIN : NODEPLUGIN {
  LONG priority;
  VIDEOPOSTINFO (*GetRenderInfo)(NodeData*, BaseVideoPost*);
  RENDERRESULT (*Execute)(NodeData*, BaseVideoPost*, VideoPostStruct*);
  void (*CalcVolumetric)(NodeData*, BaseVideoPost*, VolumeData*);
  void (*CalcShadow)(NodeData*, BaseVideoPost*, VolumeData*);
};
struct SCENEHOOKPLUGIN : NODEPLUGIN {
  LONG draw_priority;
};
struct MESSAGEPLUGIN : STATICPLUGIN {
  LONG (*GetTimer)(BaseData*);
  Bool (*CoreMessage)(BaseData*, LONG id, const BaseContainer&);
};
struct PREFSPLUGIN : NODEPLUGIN {};
