// The seam between host and module: tables of function pointers, handed over at system initialisation.
// Each table is written once, as a list with its contract, in tables/<name>.inc; its names are the host's
// own. Values cross as the SDK layer's types, which both sides build from the same sources; no exception
// crosses. Entries say where they may be called: [main] on the main thread; [document] there, or on a thread
// that works on a document which no other thread uses, as a render of a copy does; [any thread].
// ours: this file
#pragma once

#include "c4d.h"

/** Where a node goes in relation to another one. */
enum LISTPLACE { LISTPLACE_FIRSTBELOW, LISTPLACE_LASTBELOW, LISTPLACE_AFTER, LISTPLACE_BEFORE };

#define C4D_ENTRY(R, name, parameters) R(*name) parameters;
struct C4D_General {
#include "tables/general.inc"
};
struct C4D_Resource {
#include "tables/resource.inc"
};
struct C4D_Bitmap {
#include "tables/bitmap.inc"
};
struct C4D_Atom {
#include "tables/atom.inc"
};
struct C4D_Object {
#include "tables/object.inc"
};
struct C4D_Document {
#include "tables/document.inc"
};
struct C4D_HyperFile {
#include "tables/hyper_file.inc"
};
struct C4D_File {
#include "tables/file.inc"
};
struct C4D_View {
#include "tables/view.inc"
};
struct C4D_Gl {
#include "tables/gl.inc"
};
struct C4D_MoGraph {
#include "tables/mograph.inc"
};
struct C4D_Volume {
#include "tables/volume.inc"
};
struct C4D_Point {
#include "tables/point.inc"
};
struct C4D_Hair {
#include "tables/hair.inc"
};
struct C4D_Particle {
#include "tables/particle.inc"
};
struct C4D_Emitter {
#include "tables/emitter.inc"
};
#undef C4D_ENTRY

/** All tables; version comes first and is compared before anything else is read. */
struct OperatingSystem {
  LONG version;
  const C4D_General* general;
  const C4D_Resource* resource;
  const C4D_Bitmap* bitmap;
  const C4D_Atom* atom;
  const C4D_Object* object;
  const C4D_Document* document;
  const C4D_HyperFile* hyperFile;
  const C4D_File* file;
  const C4D_View* view;
  const C4D_Gl* gl;
  const C4D_MoGraph* mograph;
  const C4D_Volume* volume;
  const C4D_Point* point;
  const C4D_Hair* hair;
  const C4D_Particle* particle;
  const C4D_Emitter* emitter;
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
