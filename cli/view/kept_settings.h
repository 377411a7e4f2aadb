// What the window remembers from one day to the next.
#pragma once

#include <string>

namespace cli {

/** Of the panes, in pixels of an ordinary screen. */
struct PaneSizes {
  float left = 380.0f;      ///< width of the objects and their parameters
  float objects = 210.0f;   ///< height
  float console = 130.0f;   ///< height
  float explained = 320.0f; ///< width of the text beside the picture
};

struct KeptSettings {
  int width = 1280, height = 800; ///< of the window, pixels
  std::string folder;             ///< last one that a file was taken from
  int renderWidth = 960;          ///< pixels
  PaneSizes panes;

  /** Those of the preferences folder; what is missing or unreadable stays as usual. */
  static KeptSettings Load();
  /** A preferences folder that cannot be written keeps nothing, which is no reason to fail. */
  void Save() const;
};

} // namespace cli
