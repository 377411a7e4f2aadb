// Numbers under which the host and other plug-ins know this module's parts: plug-in IDs and message IDs.
// Those that drivers and other plug-ins use (hook, recorder, ray explanation) are public in
// res/kelvra_messages.h.
#pragma once

#include "c4d.h"
#include "kelvra_messages.h"

namespace kelvra {

/** Plug-in IDs. Scenes that users have name their objects, shaders and video posts by them. */
enum {
  kRayShaderId = 1037072,
  kPointCloudId = 1037074,
  kVoxelVideoPostId = 1037077, ///< the renderer's video post, which users add
  kVoxelBuilderId = 1037178,   ///< its hidden half
  kPreferencesId = 1037080,    ///< the page, and the host's container with the page's values
  kTimerMessageId = 1037771
};

/** Message IDs. One equals the recorder's plug-in ID: the two kinds do not mix. */
enum {
  kMessageGetLookup = 1018952,       ///< to shaders: LookupMessage, asks for the lookup record
  kMessageDeliverPoints = 1037073,   ///< to clouds: PointDelivery, points that the object asked for
  kMessageExportColors = 1037608,    ///< to clouds: PointArray, asks for the colours
  kMessageExportPositions = 1037609, ///< to clouds: PointArray, asks for the positions
};

} // namespace kelvra
