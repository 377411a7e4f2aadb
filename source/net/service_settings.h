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

/** Where the address of a service is set. */
struct Service {
  LONG number;            ///< from 0
  const char* preference; ///< its name for kelvra prefs
  const char* variable;   ///< of the environment
};
constexpr LONG kServices = 2;
constexpr Service kGeometryService = {0, "geometry_service", "KELVRA_GEOMETRY_SERVICE"};
constexpr Service kUpdateServer = {1, "update_server", "KELVRA_UPDATE_SERVER"};

/** Everything before the service's own path, without a '/' at the end; empty when not set. */
String GeometryServiceAddress();
String UpdateServerAddress();
/** Certificate authorities to trust instead of the system's, for intranets; not on Windows. */
String CertificateFile(); ///< KELVRA_CA_FILE
LONG ProductIdentifier();

} // namespace kelvra
