#include "update_check.h"

#include "net/http_get.h"
#include "net/service_settings.h"
#include "version.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace kelvra {

namespace {

const char* const kUpdatePath = "/php/send/mail/update.php";

/** NULL for an empty body too. The caller frees it. */
CHAR* Ask(const String& url) {
  CHAR* address = url.GetCStringCopy();
  CHAR* body = address ? HttpGet(address) : NULL;
  GeFree(address);
  if (body && !*body) GeFree(body);
  return body;
}

void RequestDownloadMail(String url, const String& orderReference) {
  AppendQuery(url, "reference_no", orderReference);
  AppendQuery(url, "product_id", LongToString(ProductIdentifier()));
  CHAR* body = Ask(url);
  if (body)
    MessageDialog(
        "An email, with a download link, has been sent. (to the email address used for your order)");
  else
    MessageDialog("There was a problem sending the email. Please contact support.");
  GeFree(body);
}

} // namespace

LONG VersionHundredths(const CHAR* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  if (*text == '+') ++text;
  Real version = 0.0;
  const std::from_chars_result result = std::from_chars(text, text + std::strlen(text), version);
  if (result.ec != std::errc() || !std::isfinite(version)) return 0;
  return (LONG)FCut(version * 100.0, (Real)MINLONGl, (Real)MAXLONGl);
}

Bool IsNewerVersion(const CHAR* reply) {
  return (SReal)VersionHundredths(reply) > (SReal)VersionHundredths(kVersionText);
}

void AppendQuery(String& url, const String& name, const String& value) {
  LONG found = 0;
  url += String(url.FindFirst('?', &found) ? "&" : "?") + name + "=" + value;
}

void CheckForUpdate(const String& orderReference) {
  const String url = UpdateServerAddress() + kUpdatePath;
  if (!orderReference.Content()) return;
  CHAR* latest = Ask(url);
  if (!latest) return;
  if (!IsNewerVersion(latest))
    MessageDialog("You already have the latest version of Kelvra");
  else if (QuestionDialog(String("Do you want to download Kelvra ") + latest))
    RequestDownloadMail(url, orderReference);
  GeFree(latest);
}

} // namespace kelvra
