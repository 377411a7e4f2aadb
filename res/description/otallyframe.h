// Parameters of the point cloud object. The application's resource parser reads this file too: one plain
// enum.
#ifndef KELVRA_OTALLYFRAME_H
#define KELVRA_OTALLYFRAME_H

enum {
  // Which points, and how large the cloud is.
  KELVRA_POINT_SHARE = 1000, // real: fraction of the stored points handed out, in store order; may pass 1
  KELVRA_RESERVED = 1001,    // real: stored, saved and copied, without effect
  KELVRA_OBJECT_SIZE = 1009, // real: width to which the cloud is fitted

  // Loading.
  KELVRA_LOAD_REQUEST = 1012,   // integer: twin of the load state, set by other modules
  KELVRA_REQUEST_POINTS = 1013, // button
  KELVRA_LOAD_STATE = 1014,     // integer: what happens with points sent by another module
  KELVRA_LOAD_BUDGET = 1181,    // integer: millions of points kept of one LAS or LAZ file
  KELVRA_LOAD_NTH = 1182,       // integer: only every n-th point of a file is loaded
  KELVRA_LOCAL_ORIGIN = 1190,   // integer: whether the first file of an empty object gives it an origin
  KELVRA_ORIGIN = 1191,         // vector, file axes: added to stored positions it gives those of the files
  KELVRA_FIT_TEXT = 1192,       // integer: whether text clouds with a local origin are fitted to the size
  KELVRA_SAVE_SURVEY = 1193,    // bool: the text export writes file coordinates
  KELVRA_LOAD_COLOR = 1195,     // integer: where loaded points get their colour from
  KELVRA_RAMP = 1196,           // integer: the colours that stand for heights and intensities
  KELVRA_RAMP_LOW = 1197,       // real: share of the values that lie below the ramp's first colour
  KELVRA_RAMP_HIGH = 1198,      // real: share of the values up to the ramp's last colour
  KELVRA_RAMP_FROM = 1199,      // real, file units: value of the first colour, result of the last colouring
  KELVRA_RAMP_TO = 1200,        // real, file units: value of the last colour
  KELVRA_COLOR_AGAIN = 1207,    // button: colours the stored points by height
  KELVRA_LOAD_FOLDER = 1600,    // button
  KELVRA_LOAD_FILE = 1602,      // button
  KELVRA_SAVE_TEXT = 1609,      // button

  // Viewport.
  KELVRA_COLOR_MODE = 1011,
  KELVRA_COLOR_INVERT = 1016,
  // integer: every n-th point in the viewport and the text export, and of text files that are loaded while
  // KELVRA_LOAD_NTH is 1; 0 counts as 1
  KELVRA_THIN_VIEW = 1100,
  KELVRA_MIN_HEIGHT = 1801,
  KELVRA_MAX_HEIGHT = 1802,
  KELVRA_POINT_SIZE = 1803, // real: pixels

  // Falloff of the viewport's points, in the object's own display coordinates.
  KELVRA_FALLOFF_SHAPE = 1004,
  KELVRA_FALLOFF_CENTER = 1501,
  KELVRA_FALLOFF_TARGET = 1502, // vector: the point to which the plane's normal runs from the centre
  KELVRA_FALLOFF_RADIUS = 1504,
  KELVRA_FALLOFF_OFFSET = 1505, // real: moves the centre along the normal
  KELVRA_FALLOFF_ACTION = 1506,
  KELVRA_FALLOFF_EXPONENT = 1507,

  // Conversion to the application's own geometry.
  KELVRA_PARTICLE_GROUP = 1005, // link: the particle group that receives the points
  KELVRA_CONVERT_VALUE = 1006,  // real: handed to every converter; none of them reads it
  KELVRA_CONVERT_MODE = 1007,
  KELVRA_SEGMENT_BREAK = 1010, // real: longest step inside one spline segment

  // Rendering. Absent entries of 1203 to 1257 read as the defaults in otallyframe.res.
  KELVRA_RADIUS_CURVE = 1025,  // spline: multiplies the radius by height
  KELVRA_OPACITY_CURVE = 1035, // spline: multiplies the opacity by height
  KELVRA_SEEN_SWITCH = 1201,   // integer: paired with a ray switch that is never set, so it filters nothing
  KELVRA_LIGHT_FLAT = 1202,
  KELVRA_LIGHT = 1203,
  KELVRA_SEEN_REFLECTION = 1204,
  KELVRA_SEEN_TRANSPARENCY = 1205,
  KELVRA_SEEN_REFRACTION = 1206,
  KELVRA_POINT_RADIUS = 1251,
  KELVRA_TRANSPARENCY = 1252,
  KELVRA_EDGE_BIAS = 1253, // real: bias of the opacity's falloff across a point's disc
  KELVRA_SOFT_DEPTH = 1254,
  KELVRA_RADIUS_VARIATION = 1255,
  KELVRA_CURVE_MIN_HEIGHT = 1256,
  KELVRA_CURVE_MAX_HEIGHT = 1257,

  // Georeference: the input system, and the reprojected corners in degrees.
  KELVRA_EPSG = 1601,
  KELVRA_SOUTH_WEST_LATITUDE = 1603,
  KELVRA_NORTH_EAST_LONGITUDE = 1604,
  KELVRA_NORTH_WEST_LONGITUDE = 1605,
  KELVRA_NORTH_EAST_LATITUDE = 1606,
  KELVRA_NORTH_WEST_LATITUDE = 1607,
  KELVRA_SOUTH_WEST_LONGITUDE = 1608,

  // Groups.
  KELVRA_GROUP_LOAD = 2001,
  KELVRA_GROUP_DISPLAY = 2002,
  KELVRA_GROUP_FALLOFF = 2003,
  KELVRA_GROUP_CONVERT = 2004,
  KELVRA_GROUP_RENDER = 2005,
  KELVRA_GROUP_SURFACE = 2006,
  KELVRA_GROUP_LIGHT = 2007,
  KELVRA_GROUP_CURVES = 2008,
  KELVRA_GROUP_GEOREFERENCE = 2009,
  KELVRA_GROUP_CORNERS = 2010,

  // Entries of the drop-down lists.
  KELVRA_LOAD_STATE_IDLE = 0,
  KELVRA_LOAD_STATE_ONCE = 1,
  KELVRA_LOAD_STATE_STREAM = 2,

  KELVRA_LOCAL_ORIGIN_OFF = 0,
  KELVRA_LOCAL_ORIGIN_AUTOMATIC = 1,

  KELVRA_FIT_TEXT_OFF = 0,
  KELVRA_FIT_TEXT_ON = 1,
  KELVRA_FIT_TEXT_LARGE = 2,

  KELVRA_LOAD_COLOR_FILE = 0,
  KELVRA_LOAD_COLOR_HEIGHT = 1,
  KELVRA_LOAD_COLOR_INTENSITY = 2,
  KELVRA_LOAD_COLOR_CLASS = 3,
  KELVRA_LOAD_COLOR_RETURN = 4,

  KELVRA_RAMP_GRAY = 0,
  KELVRA_RAMP_VIRIDIS = 1,
  KELVRA_RAMP_TURBO = 2,
  KELVRA_RAMP_TERRAIN = 3,

  KELVRA_COLOR_MODE_POINT = 0,
  KELVRA_COLOR_MODE_RED = 1,
  KELVRA_COLOR_MODE_GREEN = 2,
  KELVRA_COLOR_MODE_BLUE = 3,
  KELVRA_COLOR_MODE_MEAN = 4,
  KELVRA_COLOR_MODE_HEIGHT = 5,
  KELVRA_COLOR_MODE_POINT_BY_HEIGHT = 6,

  KELVRA_COLOR_INVERT_OFF = 0,
  KELVRA_COLOR_INVERT_ON = 1,

  KELVRA_FALLOFF_SHAPE_SPHERE = 0,
  KELVRA_FALLOFF_SHAPE_PLANE = 1,

  KELVRA_FALLOFF_ACTION_NONE = 0,
  KELVRA_FALLOFF_ACTION_HIDE = 1,
  KELVRA_FALLOFF_ACTION_SCALE = 2,

  KELVRA_CONVERT_MODE_OFF = 0,
  KELVRA_CONVERT_MODE_POINTS = 1,
  KELVRA_CONVERT_MODE_EMPTY = 2,
  KELVRA_CONVERT_MODE_HAIR = 3,
  KELVRA_CONVERT_MODE_THINKING_PARTICLES = 4,
  KELVRA_CONVERT_MODE_EMITTER = 5,
  KELVRA_CONVERT_MODE_SPLINE = 6,

  KELVRA_SEEN_SWITCH_OFF = 0,
  KELVRA_SEEN_SWITCH_ON = 1
};

#endif
