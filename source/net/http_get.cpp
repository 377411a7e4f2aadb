#include "net/http_get.h"

#include "net/http_exchange.h"
#include "net/service_settings.h"

#include <algorithm>
#include <chrono>

namespace kelvra {

namespace {

const LONG kStatusOk = 200;
const LONG kFirstCapacity = 4096;
/** Characters of a refused address that the console shows. */
const std::size_t kShownCharacters = 80;

bool IsRedirect(LONG status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/** The next hop; false when the redirect leads nowhere that may be asked. */
bool FollowRedirect(const HttpAnswer& answer, HttpUrl* url) {
  HttpUrl next;
  if (answer.location.empty() || !ParseHttpUrl(ResolveRedirect(*url, answer.location), &next)) return false;
  if (url->secure && !next.secure) return false;
  *url = next;
  return true;
}

CHAR* Get(HttpUrl url, const HttpOptions& options) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(options.totalMilliseconds);
  for (int redirects = 0; redirects <= kMostRedirects; ++redirects) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    HttpAnswer answer;
    if (left <= 0 || !HttpExchange(url, options, (LONG)left, &answer)) return NULL;
    if (answer.status == kStatusOk) return answer.Release();
    if (!IsRedirect(answer.status) || !FollowRedirect(answer, &url)) return NULL;
  }
  return NULL;
}

void SayOnceHowToSetAddresses(const std::string& url) {
  static bool said = false;
  if (said) return;
  said = true;
  // Without an address of the service only the path is left.
  const std::string reason = url.empty() || url[0] == '/'
                                 ? std::string("the address of the service is not set")
                                 : "\"" + url.substr(0, kShownCharacters) + "\" is no plain http:// or https:// address";
  GePrint(String(("Kelvra: nothing is sent, " + reason +
                  "; set it on the preferences page, with \"kelvra prefs set geometry_service ADDRESS\" or "
                  "\"update_server ADDRESS\", or in the environment as KELVRA_GEOMETRY_SERVICE or "
                  "KELVRA_UPDATE_SERVER")
                     .c_str()));
}

} // namespace

Bool HttpAnswer::Append(const CHAR* bytes, std::size_t count, LONG most) {
  if (count > (std::size_t)(most - size)) return FALSE;
  const LONG needed = size + (LONG)count + 1; // with the terminator
  if (needed > capacity) {
    const LONG larger = std::min(std::max({needed, 2 * capacity, kFirstCapacity}), std::max(needed, most + 1));
    CHAR* grown = GeReallocTypeNC(CHAR, body, larger);
    if (!grown) return FALSE;
    body = grown;
    capacity = larger;
  }
  std::copy_n(bytes, count, body + size);
  size += (LONG)count;
  return TRUE;
}

CHAR* HttpAnswer::Release() {
  if (!Append("", 0, size)) return NULL; // an empty body has no block yet
  CHAR* released = body;
  released[size] = 0;
  body = NULL;
  size = capacity = 0;
  return released;
}

CHAR* HttpGet(const CHAR* url, const HttpOptions& options) {
  HttpUrl parsed;
  return url && ParseHttpUrl(url, &parsed) ? Get(parsed, options) : NULL;
}

CHAR* HttpGet(const CHAR* url) {
  HttpUrl parsed;
  const std::string text = url ? url : "";
  if (!ParseHttpUrl(text, &parsed)) {
    SayOnceHowToSetAddresses(text);
    return NULL;
  }
  HttpOptions options;
  options.caFile = CertificateFile();
  return Get(parsed, options);
}

} // namespace kelvra
