#include "net/service_settings.h"

#include <cstdlib>

namespace kelvra {

namespace {

String Setting(const char* variable, LONG key) {
  const char* overriding = std::getenv(variable);
  if (overriding && *overriding) return String(overriding, STRINGENCODING_UTF8);
  const BaseContainer* container = PreferencesContainer();
  return container ? container->GetString(key) : String();
}

String WithoutSlash(String address) {
  while (address.Content() && address[address.GetLength() - 1] == '/')
    address.Delete(address.GetLength() - 1, 1);
  return address;
}

} // namespace

BaseContainer* PreferencesContainer() {
  return GetWorldPluginData(kPreferencesId);
}

String GeometryServiceAddress() {
  return WithoutSlash(Setting(kGeometryService.variable, kSettingGeometryService));
}

String UpdateServerAddress() {
  return WithoutSlash(Setting(kUpdateServer.variable, kSettingUpdateServer));
}

String CertificateFile() {
  return Setting("KELVRA_CA_FILE", kSettingCaFile);
}

LONG ProductIdentifier() {
  const BaseContainer* container = PreferencesContainer();
  return container ? container->GetLong(kSettingProduct, kProductIdentifier) : kProductIdentifier;
}

} // namespace kelvra
