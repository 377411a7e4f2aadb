// Channel shader that gives a renderer the colours of a linked cloud's points, by index.
#pragma once

#include "c4d.h"
#include "cloud/cloud_messages.h"
#include "fence.h"
#include "plugin_ids.h"

namespace kelvra {

class LAZrayShader;

/** The answer to a renderer: version, size and, at byte 72, the colour callback; the rest is 0. */
struct LookupRecord {
  LONG version;
  LONG size;
  void* reserved[8];
  Vector (*color)(LAZrayShader* shader, LONG index); ///< render threads, between InitRender and FreeRender
  void* more[6];
};
static_assert(sizeof(LookupRecord) == 128 && offsetof(LookupRecord, color) == 72,
              "the layout that renderers expect");

/** Message data of kMessageGetLookup: the answer goes into the third field. */
struct LookupMessage {
  void* fields[2];
  LookupRecord* record;
};

class LAZrayShader : public ShaderData {
public:
  static NodeData* Alloc() { return AllocFenced<FencedShader<LAZrayShader>>(); }
  LAZrayShader();
  ~LAZrayShader() override { FreeColors(); }

  Bool Init(GeListNode* node) override;
  Bool Message(GeListNode* node, LONG type, void* data) override;
  /** Fills the colour table from the object that parameter 1000 links. */
  INITRENDERRESULT InitRender(BaseShader* shader, const InitRenderStruct& irs) override;
  void FreeRender(BaseShader*) override { FreeColors(); }
  /** Black: the shader shades no surface itself. */
  Vector Output(BaseShader*, ChannelData*) override { return Vector(); }

private:
  /** White outside the table. */
  static Vector ColorAt(LAZrayShader* shader, LONG index) noexcept;
  void FreeColors();

  LookupRecord lookup_;
  PointArray colors_;
};

Bool RegisterRayShader();

} // namespace kelvra
