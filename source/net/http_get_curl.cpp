// The exchange by libcurl.
#ifndef _WIN32

#include "net/http_exchange.h"

#include <cstring>
#include <curl/curl.h>
#include <memory>

namespace kelvra {

namespace {

struct Transfer {
  HttpBody& body;
  std::size_t headBytes = 0;
  bool headEnded = false; ///< without its end, an answer cut off within the head would look whole and empty
};

std::size_t TakeBody(char* bytes, std::size_t size, std::size_t count, void* transfer) {
  Transfer& to = *static_cast<Transfer*>(transfer);
  return to.body.Append(bytes, size * count) ? size * count : CURL_WRITEFUNC_ERROR;
}

/** Called for each line. Interim answers (status 100 and above) have heads of their own, which come first. */
std::size_t TakeHeader(char* line, std::size_t size, std::size_t count, void* transfer) {
  const std::size_t length = size * count;
  Transfer& to = *static_cast<Transfer*>(transfer);
  to.headBytes += length;
  if (length >= 5 && std::memcmp(line, "HTTP/", 5) == 0) to.headEnded = false;
  if (length > 0 && (line[0] == '\r' || line[0] == '\n')) to.headEnded = true;
  return to.headBytes <= kMostHeadBytes ? length : CURL_WRITEFUNC_ERROR;
}

/** False when a library was built without one of the options: no request goes out without it. */
bool SetUp(CURL* curl, const HttpUrl& url, const HttpStep& step, Transfer* transfer) {
  bool taken = true;
  const auto set = [&](CURLoption option, auto value) {
    taken = taken && curl_easy_setopt(curl, option, value) == CURLE_OK;
  };
  set(CURLOPT_URL, url.text.c_str());
  set(CURLOPT_PATH_AS_IS, 1L); // the path goes out unchanged
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_NOSIGNAL, 1L); // the application's signals are its own
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  if (!step.caFile.empty()) {
    // The system's authorities are in a file or in a folder: replace the one and unset the other.
    set(CURLOPT_CAINFO, step.caFile.c_str());
    set(CURLOPT_CAPATH, static_cast<const char*>(NULL));
  }
  set(CURLOPT_CONNECTTIMEOUT_MS, (long)step.connectMilliseconds);
  set(CURLOPT_TIMEOUT_MS, (long)step.totalMilliseconds);
  set(CURLOPT_USERAGENT, "Kelvra");
  set(CURLOPT_WRITEFUNCTION, &TakeBody);
  set(CURLOPT_WRITEDATA, static_cast<void*>(transfer));
  set(CURLOPT_HEADERFUNCTION, &TakeHeader);
  set(CURLOPT_HEADERDATA, static_cast<void*>(transfer));
  return taken;
}

} // namespace

bool HttpExchange(const HttpUrl& url, const HttpStep& step, HttpBody& body, HttpAnswer* answer) {
  const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), &curl_easy_cleanup);
  Transfer transfer{body};
  if (!curl || !SetUp(curl.get(), url, step, &transfer)) return false;
  if (curl_easy_perform(curl.get()) != CURLE_OK || !transfer.headEnded) return false;
  long status = 0;
  curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
  answer->status = (int)status;
  curl_header* location = NULL;
  if (curl_easy_header(curl.get(), "Location", 0, CURLH_HEADER, -1, &location) == CURLHE_OK)
    answer->location = location->value;
  return true;
}

} // namespace kelvra

#endif
