// Data that the renderer passes to shaders and video posts.
#pragma once

#include "c4d_nodes.h"

class Render;
class VolumeData;

struct VideoPostStruct {
  LONG version = 0;
  VIDEOPOSTCALL vp = VIDEOPOSTCALL_FRAME;
  Bool open = FALSE;
  BaseTime time;
  LONG fps = 30;
  RENDERRESULT* error = NULL;
  VolumeData* vd = NULL;
  BaseDocument* doc = NULL;
  BaseThread* thread = NULL;
  LONG subframe = 0, subframe_cnt = 1, field = 0, field_cnt = 1;
  Render* render = NULL;
};

struct InitRenderStruct {
  LONG version = 0;
  BaseTime time;
  LONG fps = 30;
  Filename docpath;
  VolumeData* vd = NULL;
  BaseDocument* doc = NULL;
  BaseThread* thread = NULL;
};

struct ChannelData {
  Vector p, n, d;
  Real t = 0.0;
  LONG texflag = 0;
  VolumeData* vd = NULL;
};
