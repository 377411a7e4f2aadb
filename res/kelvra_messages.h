// What drivers and other plug-ins may ask of this plug-in beyond parameters: numbers and message data.
// Include the application's interface before it.
#ifndef KELVRA_MESSAGES_H
#define KELVRA_MESSAGES_H

enum {
  /**
   * To the scene hook (type KELVRA_HOOK) while a frame is rendered, between the opening of INNER and its
   * close, but not while pixels are computed: what does one ray do? Data: KelvraRayExplanation*. FALSE when
   * no points are rendered.
   */
  KELVRA_MESSAGE_EXPLAIN_RAY = 1037610,

  KELVRA_HOOK = 1037078,
  KELVRA_RECORDER = 1037073, // video post

  // Container of the recorder.
  KELVRA_RECORDER_ENABLE = 1000, // bool
  KELVRA_RECORDER_FOLDER = 1001, // file name
  KELVRA_RECORDER_NAME = 1002    // string: a run of # stands for the frame number
};

/** The ray is that of vd (ray, dist, raybits), traced as the renderer does; vd's results are not written. */
struct KelvraRayExplanation {
  LONG version; // 1
  VolumeData* vd;
  String* text; // result: lines, each closed by a line feed
};

#endif
