// Where the services are: settings of the installation, empty until somebody sets them.
//
// The plug-in's own preferences container holds them; environment variables of the names below override them.
#pragma once

#include "c4d.h"
#include "plugin_ids.h"

namespace kelvra {

/** Keys in the container; the page's other elements have keys below 2000. */
enum {
  kSettingGeometryService = 2000,
  kSettingUpdateServer = 2001,
  kSettingCaFile = 2002,
  kSettingProduct = 2003
};

/** This product's number at the update server, unless the container has another one. */
constexpr LONG kProductIdentifier = 1;

/** The plug-in's container itself; NULL when the host has none yet. Fetch it again for each use. */
BaseContainer* PreferencesContainer();

/** Everything before the service's own path, without a '/' at the end; empty when not set. */
String GeometryServiceAddress(); ///< KELVRA_GEOMETRY_SERVICE
String UpdateServerAddress();    ///< KELVRA_UPDATE_SERVER
/** Certificate authorities to trust instead of the system's, for intranets; not on Windows. */
String CertificateFile(); ///< KELVRA_CA_FILE
LONG ProductIdentifier();

} // namespace kelvra
