// Where the services are: settings of the deployment, empty until somebody sets them.
//
// They lie in the plug-in's own preferences container. Each can be overridden by a variable of the
// environment, which wins.
#pragma once

#include "c4d.h"
#include "plugin_ids.h"

namespace kelvra {

/** Keys in the container; those below 2000 belong to the page's own elements. */
enum {
  kSettingGeometryService = 2000,
  kSettingUpdateServer = 2001,
  kSettingCaFile = 2002,
  kSettingProduct = 2003
};

/** Numeric identifier of this product at the update server, where the container holds no other. */
const LONG kProductIdentifier = 1;

/** The plug-in's container, NULL when the host has none yet. Live: fetched anew for each use. */
BaseContainer* PreferencesContainer();

/** Scheme, host and what comes before the service's own path, without a '/' at the end; empty when not set.
 */
String GeometryServiceAddress(); ///< KELVRA_GEOMETRY_SERVICE
String UpdateServerAddress();    ///< KELVRA_UPDATE_SERVER
/** Certificate authorities to trust in place of the system's, for intranets: KELVRA_CA_FILE. Not on Windows.
 */
String CertificateFile();
LONG ProductIdentifier();

} // namespace kelvra
