#include "net/http_get.h"

#include "host_text.h"
#include "net/http_exchange.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace kelvra {

namespace {

constexpr int kStatusOk = 200;
constexpr LONG kFirstCapacity = 4096;
/** Characters of a refused address that the console shows. */
constexpr std::size_t kShownCharacters = 80;

/** The body in a block of the host that grows. */
class HostBody : public HttpBody {
public:
  explicit HostBody(LONG most) : most_(most) {}
  ~HostBody() override { GeFree(block_); }
  bool Append(const char* bytes, std::size_t count) override {
    if (count > (std::size_t)(most_ - size_) || !Reserve(size_ + (LONG)count + 1)) return false;
    std::copy_n(bytes, count, block_ + size_);
    size_ += (LONG)count;
    return true;
  }
  /** Hands the body over, terminated by a 0 byte; NULL when memory is refused. */
  CHAR* Release() {
    if (!Reserve(size_ + 1)) return NULL; // an empty body has no block yet
    block_[size_] = 0;
    CHAR* released = block_;
    block_ = NULL;
    size_ = capacity_ = 0;
    return released;
  }

private:
  bool Reserve(LONG needed) {
    if (needed <= capacity_) return true;
    const LONG larger = std::max(needed, std::min(std::max(2 * capacity_, kFirstCapacity), most_ + 1));
    CHAR* grown = block_ ? GeReallocTypeNC(CHAR, block_, larger) : GeAllocTypeNC(CHAR, larger);
    if (!grown) return false;
    block_ = grown;
    capacity_ = larger;
    return true;
  }

  const LONG most_;
  CHAR* block_ = NULL;
  LONG size_ = 0, capacity_ = 0;
};

bool IsRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/** A fragment names a place in the answer and is not sent. */
std::string WithoutFragment(const std::string& location) {
  return location.substr(0, location.find('#'));
}

/** Goes on to where a redirect leads; false where no request may go. */
bool FollowRedirect(const HttpAnswer& answer, HttpUrl* url) {
  HttpUrl next;
  if (answer.location.empty() ||
      !ParseHttpUrl(ResolveRedirect(*url, WithoutFragment(answer.location)), &next))
    return false;
  if (url->secure && !next.secure) return false;
  *url = next;
  return true;
}

CHAR* Get(HttpUrl url, const HttpOptions& options) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(options.totalMilliseconds);
  HttpStep step;
  // Without memory for the name: an empty one would mean the system's authorities.
  if (!CopyUtf8(options.caFile, step.caFile)) return NULL;
  for (int redirects = 0; redirects <= kMostRedirects; ++redirects) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    step.totalMilliseconds = (int)left;
    step.connectMilliseconds = std::min(options.connectMilliseconds, (LONG)left);
    HostBody body(options.mostBytes);
    HttpAnswer answer;
    if (left <= 0 || !HttpExchange(url, step, body, &answer)) return NULL;
    if (answer.status == kStatusOk) return body.Release();
    if (!IsRedirect(answer.status) || !FollowRedirect(answer, &url)) return NULL;
  }
  return NULL;
}

void SayOnceHowToSetAddress(const std::string& url, const Service& service) {
  static bool said[kServices];
  if (std::exchange(said[service.number], true)) return;
  // If the service's address is not set, only the path is there.
  const std::string reason =
      url.empty() || url[0] == '/'
          ? std::string("the address of the service is not set")
          : "\"" + url.substr(0, kShownCharacters) +
                "\" is not an http:// or https:// address, or contains a character that cannot be sent";
  GePrint(String(("Kelvra: nothing is sent, " + reason +
                  "; set it on the preferences page, with \"kelvra prefs set " + service.preference +
                  " ADDRESS\", or in the environment as " + service.variable)
                     .c_str()));
}

} // namespace

CHAR* HttpGet(const CHAR* url, const HttpOptions& options) {
  HttpUrl parsed;
  return url && ParseHttpUrl(url, &parsed) ? Get(parsed, options) : NULL;
}

CHAR* HttpGet(const CHAR* url, const Service& service) {
  HttpUrl parsed;
  const std::string text = url ? url : "";
  if (!ParseHttpUrl(text, &parsed)) {
    SayOnceHowToSetAddress(text, service);
    return NULL;
  }
  HttpOptions options;
  options.caFile = CertificateFile();
  return Get(parsed, options);
}

} // namespace kelvra
