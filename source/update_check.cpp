#include "update_check.h"

#include "host_text.h"
#include "kelvra_messages.h"
#include "net/http_get.h"
#include "net/service_settings.h"
#include "version.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace kelvra {

namespace {

constexpr const char* kUpdatePath = "/php/send/mail/update.php";

/** The body of the answer, without content when there is none. */
HeldText Ask(const String& url) {
  const HeldText address(url.GetCStringCopy());
  return HeldText(address.Get() ? HttpGet(address.Get(), kUpdateServer) : NULL);
}

/** What keeps a reference from being sent as it stands; empty when nothing does. */
String ObstacleIn(const String& reference) {
  for (LONG i = 0; i < reference.GetLength(); ++i) {
    const UWORD c = reference[i];
    if (c == ' ') return "a blank";
    if (c == '#') return "the character #";
    if (c < ' ' || c == 0x7f) return "a control character";
    if (c > 0x7f) return "a character outside ASCII";
  }
  return String();
}

Bool Names(const String& url, const char* parameter) {
  LONG at = 0;
  return url.FindFirst(String("?") + parameter + "=", &at) ||
         url.FindFirst(String("&") + parameter + "=", &at);
}

/** The body of the answer, without content when there is none. */
HeldText AskForMail(String url, const String& orderReference) {
  const String obstacle = ObstacleIn(orderReference);
  if (obstacle.Content()) {
    GePrint(String("Kelvra: the order reference \"") + orderReference + "\" contains " + obstacle +
            ", which an address cannot; expected letters, digits and punctuation of ASCII without #; correct "
            "it on the preferences page or with \"kelvra prefs set order_reference TEXT\"");
    return HeldText(NULL);
  }
  AppendQuery(url, "reference_no", orderReference);
  // Whoever copies the reference from a link may have copied the product as well.
  if (!Names(url, "product_id")) AppendQuery(url, "product_id", LongToString(ProductIdentifier()));
  return Ask(url);
}

LONG RequestDownloadMail(const String& url, const String& orderReference) {
  if (!AskForMail(url, orderReference).Content()) {
    MessageDialog("There was a problem sending the email. Please contact support.");
    return KELVRA_UPDATE_MAIL_FAILED;
  }
  MessageDialog("An email, with a download link, has been sent. (to the email address used for your order)");
  return KELVRA_UPDATE_MAIL_SENT;
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

LONG CheckForUpdate(const String& orderReference) {
  const String url = UpdateServerAddress() + kUpdatePath;
  if (!orderReference.Content()) return KELVRA_UPDATE_NOT_ASKED;
  const HeldText latest = Ask(url);
  if (!latest.Content()) return KELVRA_UPDATE_NO_ANSWER;
  if (!IsNewerVersion(latest.Get())) {
    MessageDialog("You already have the latest version of Kelvra");
    return KELVRA_UPDATE_LATEST;
  }
  if (!QuestionDialog(String("Do you want to download Kelvra ") + latest.Get()))
    return KELVRA_UPDATE_DECLINED;
  return RequestDownloadMail(url, orderReference);
}

} // namespace kelvra
