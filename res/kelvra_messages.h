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
  /**
   * To a point cloud object (type KELVRA_CLOUD), on the main thread: what became of the files of its last
   * load command, and what does it hold now? Data: KelvraCloudReport*. FALSE, and the data stay as they are,
   * for an unknown version or when memory is refused.
   */
  KELVRA_MESSAGE_REPORT = 1037611,

  /**
   * To a point cloud object: its first points in the coordinates of their files. Data: KelvraSurvey*. FALSE,
   * and the data stay as they are, for an unknown version.
   */
  KELVRA_MESSAGE_SURVEY = 1037612,

  /**
   * To a point cloud object: what do its colours stand for? Data: KelvraLegend*. FALSE, and the data stay as
   * they are, for an unknown version or when memory is refused.
   */
  KELVRA_MESSAGE_LEGEND = 1037613,

  /**
   * To a point cloud object: where are its points, and how do they lie in the coordinates of their files?
   * Data: KelvraSpread*. FALSE, and the data stay as they are, for an unknown version, for an object without
   * points, and when memory is refused.
   */
  KELVRA_MESSAGE_SPREAD = 1037614,

  /**
   * To the preferences page, on the main thread: what came of its last update check in this session? Data:
   * KelvraUpdateCheck*. FALSE, and the data stay as they are, for an unknown version.
   */
  KELVRA_MESSAGE_UPDATE_CHECK = 1037615,

  /**
   * To a point cloud object: how many of its points lie at which heights? Data: KelvraHeights*. Points whose
   * height is not finite are left out. FALSE, and the data stay as they are, for an unknown version and for
   * an object without other points.
   */
  KELVRA_MESSAGE_HEIGHTS = 1037616,

  /**
   * To a point cloud object: which of the points that it shows is met first along a line of sight? Data:
   * KelvraSight*. FALSE, and the data stay as they are, for an unknown version and where there is none.
   */
  KELVRA_MESSAGE_SIGHT = 1037617,

  KELVRA_CLOUD = 1037074,
  KELVRA_HOOK = 1037078,
  KELVRA_RECORDER = 1037073, // video post

  // Container of the recorder.
  KELVRA_RECORDER_ENABLE = 1000, // bool
  KELVRA_RECORDER_FOLDER = 1001, // file name
  KELVRA_RECORDER_NAME = 1002,   // string: a run of # stands for the frame number

  // KelvraLoadReport::outcome
  KELVRA_LOAD_WHOLE = 0,   // every point that was asked for is there
  KELVRA_LOAD_PARTIAL = 1, // points were loaded, others are missing
  KELVRA_LOAD_EMPTY = 2,   // the file is sound but holds no point
  KELVRA_LOAD_REFUSED = 3, // nothing could be loaded
  KELVRA_LOAD_STOPPED = 4, // by the user; nothing of the file was loaded

  // KelvraLoadReport::cut
  KELVRA_CUT_NONE = 0,
  KELVRA_CUT_FILE_END = 1, // the file is shorter than it promises
  KELVRA_CUT_DAMAGE = 2,   // compressed points that do not decode
  KELVRA_CUT_BUDGET = 3,   // the object's point limit per file
  KELVRA_CUT_CAP = 4,      // 715,827,882 points, the most that one file can give
  KELVRA_CUT_READ_ERROR = 5,
  KELVRA_CUT_NO_MEMORY = 6,
  KELVRA_CUT_STOPPED = 7, // by the user
  KELVRA_CUT_DOUBT = 8,   // more points are announced than its bytes are likely to hold

  // Container of a point cloud object while it loads, bool: such files are refused rather than loaded with a
  // warning.
  KELVRA_LOAD_REFUSE_DOUBTFUL = 1183,

  // Container of a point cloud object while it loads, bool: the report gets the points of each class.
  KELVRA_LOAD_COUNT_CLASSES = 1184,

  // Container of a point cloud object while it loads, integer: KELVRA_READER_LAS, _XYZ or _PTS reads all
  // files, whatever their suffix.
  KELVRA_LOAD_READER = 1185,

  // Container of a point cloud object while it loads one file, string: the name that lines, reports and the
  // scene give to the file. Set by drivers that load a copy of what the user named.
  KELVRA_LOAD_NAME = 1186,

  // Container of a point cloud object while its points are coloured by height, bool: the height is the y of
  // the files, not their z. Set by drivers that show the cloud so.
  KELVRA_COLOR_UP_IS_Y = 1187,

  // KelvraUpdateCheck::outcome
  KELVRA_UPDATE_NOT_ASKED = 0, // no check yet, or no order reference, without which nothing is asked
  KELVRA_UPDATE_NO_ANSWER = 1, // the server did not name a version
  KELVRA_UPDATE_LATEST = 2,    // there is nothing newer
  KELVRA_UPDATE_DECLINED = 3,  // there is something newer, which the user does not want
  KELVRA_UPDATE_MAIL_SENT = 4, // the server sends the download link
  KELVRA_UPDATE_MAIL_FAILED = 5,

  // KelvraLoadReport::unit
  KELVRA_UNIT_UNKNOWN = 0,
  KELVRA_UNIT_METRE = 1,
  KELVRA_UNIT_FOOT = 2,
  KELVRA_UNIT_US_FOOT = 3,
  KELVRA_UNIT_DEGREE = 4,

  // KelvraLoadNote::severity
  KELVRA_NOTE_INFO = 0,
  KELVRA_NOTE_WARNING = 1,
  KELVRA_NOTE_ERROR = 2,

  // KelvraLoadReport::reader and KelvraBlockReport::reader
  KELVRA_READER_NONE = 0,         // the points came from another plug-in
  KELVRA_READER_LAS = 1,          // LAS or LAZ
  KELVRA_READER_LAS_BY_CLASS = 2, // LAS or LAZ without colours: coloured by classification
  KELVRA_READER_XYZ = 3,
  KELVRA_READER_PTS = 4
};

/** The ray is that of vd (ray, dist, raybits), traced as the renderer does; vd's results are not written. */
struct KelvraRayExplanation {
  LONG version; // 1
  VolumeData* vd;
  String* text; // result: lines, each closed by a line feed
};

/** A finding about a file, as a sentence. */
struct KelvraLoadNote {
  LONG severity;
  const CHAR* text;
};

/**
 * What became of one file. Counts are in points, those of text files in lines: read = kept + thinned +
 * rejected + noData + notFinite + noMemory.
 */
struct KelvraLoadReport {
  const CHAR* path;
  const CHAR* line; // what the console printed, without the path
  LONG reader, outcome, cut;
  LLONG announced; // by the file; 0 where it does not say
  LLONG available; // in the file, as far as its checks and its reading showed
  LLONG read, kept;
  LLONG thinned;                 // passed over to keep every n-th only
  LLONG rejected, firstRejected; // lines that are not points; number of the first, from 1
  LLONG noData;                  // marked as such by their height
  LLONG notFinite;               // coordinates that are not finite 32-bit floats
  LLONG noMemory;                // memory was refused for them
  LLONG everyNth;                // of the points or lines; the first one is kept
  LReal step;      // distance of neighbouring stored coordinates where it is largest, file units
  LONG epsg;       // code of the coordinate system that the file names; 0 for none
  const CHAR* crs; // name of the coordinate system; empty where the file has none
  LONG unit;       // of its coordinates
  LONG versionMajor, versionMinor; // of LAS; 0 of text
  LONG pointFormat;                // of LAS; -1 of text
  LVector min, max;     // of the kept points, in the file's own coordinates; without meaning for none
  const LLONG* classes; // 256 counts of kept points, NULL unless they were asked for
  LReal seconds;
  LONG noteCount;
  const KelvraLoadNote* notes;
};

/** The points of one file. The first box is in stored coordinates, in the axes of files: x east, y north, z
 * up. */
struct KelvraBlockReport {
  const CHAR* source; // path of the file; empty for points from another plug-in
  LONG group;         // number of the load command that brought it, from 0
  LONG points;
  LONG reader;
  LONG hasBox; // 1 when the boxes count
  LVector min, max;
  Vector shownMin, shownMax; // where they are shown, in the object's own coordinates and axes
  LONG fitted;               // 1 when they are fitted to the object's size
  LONG
      hasColor; // 1 when its points differ in colour or share one that is no grey, and it comes from the file
  LONG isBlack; // 1 when all its points are black, or as dark as readers make points without colour
};

/**
 * The asker owns this structure and sets `version` and `filesOnly`. The object fills the rest and owns what
 * the pointers name: all of it stays until the object gets this message again, loads, or is freed. Texts are
 * UTF-8 and end with a zero. Reports belong to the session: they are neither saved nor copied with the
 * object.
 */
struct KelvraCloudReport {
  LONG version;   // 2
  LONG filesOnly; // set by the asker: 1 leaves out the blocks, whose description takes a look at every point
  LONG fileCount;
  const KelvraLoadReport* files; // in the order in which they were loaded
  LONG groups;
  LONG blockCount;
  const KelvraBlockReport* blocks; // in store order
};

/**
 * The asker owns structure and array. Points come in the order in which conversions have them, in the axes of
 * files (x east, y north, z up), rounded to the step of their file where it is known.
 */
struct KelvraSurvey {
  LONG version; // 1
  LONG count;   // room in positions; result: how many were written
  LVector* positions;
};

/** One colour and what it stands for. Text is UTF-8 and ends with a zero. */
struct KelvraLegendEntry {
  LReal value;  // file units; of classes and returns their number
  Vector color; // 0 to 1
  CHAR text[32];
};

/** Ramps have entries from the lowest value up; classes and returns one for each that a point has. */
struct KelvraLegend {
  LONG version; // 1
  LONG kind;    // result: KELVRA_LOAD_COLOR_FILE and so on; 0 for colours that stand for nothing else
  LONG count;   // result: of entries
  KelvraLegendEntry entries[256];
};

/**
 * The box that leaves the given share of the points out at each end of each axis, then grown by a part of its
 * width on each side, in the object's own coordinates. The object's first file's x east, y north, z up is
 * shown at
 * ((x - origin.x) * scale.x, (z - origin.z) * scale.z, (y - origin.y) * scale.y).
 */
struct KelvraSpread {
  LONG version;    // 1
  LReal share;     // set by the asker, 0 to 0.5
  LReal margin;    // set by the asker: the part of the width
  Vector min, max; // result
  LONG outside;    // result: points outside the box
  LVector origin, scale;
};

/** The asker owns structure and array. Heights are those of the files, as ramps count them. */
struct KelvraHeights {
  LONG version;          // 1
  LReal from, to;        // set by the asker: the bins divide what lies between, both ends included
  LONG binCount;         // set by the asker; at least 1
  LONG* bins;            // result: points of each
  LONG below, above;     // result: points outside of the bins
  LReal lowest, highest; // result: of all points
};

/** Places and directions are in the object's own coordinates. The asker owns structure and text. */
struct KelvraSight {
  LONG version;       // 1
  Vector from, along; // set by the asker; `along` has length 1
  LReal reach;        // set by the asker: greatest distance from the line, as a part of that from the eye
  Vector position;    // result
  Vector color;       // result: 0 to 1
  LVector file;       // result: in the coordinates of its file
  String* source;     // result: path of the file; empty for points from another plug-in
  LONG number;        // result: among the loaded points of its file, from 0
};

struct KelvraUpdateCheck {
  LONG version; // 1
  LONG outcome; // result
};

#endif
