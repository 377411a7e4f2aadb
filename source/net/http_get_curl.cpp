// The exchange by libcurl.
#ifndef _WIN32

#include "net/http_exchange.h"

#include <cstring>
#include <curl/curl.h>
#include <memory>

namespace kelvra {

namespace {

/** Most bytes of all header lines together. */
const std::size_t kMostHeaderBytes = 1 << 16;

struct Transfer {
  HttpAnswer* answer;
  LONG mostBytes;
  std::size_t headerBytes = 0;
  bool headEnded = false; ///< a connection closed within the head leaves an answer that looks whole and empty
};

std::size_t TakeBody(char* bytes, std::size_t size, std::size_t count, void* transfer) {
  Transfer& to = *(Transfer*)transfer;
  return to.answer->Append(bytes, size * count, to.mostBytes) ? size * count : CURL_WRITEFUNC_ERROR;
}

/** Called for each line; an answer may begin with further heads of status 100 and above. */
std::size_t TakeHeader(char* line, std::size_t size, std::size_t count, void* transfer) {
  const std::size_t length = size * count;
  Transfer& to = *(Transfer*)transfer;
  to.headerBytes += length;
  if (length >= 5 && std::memcmp(line, "HTTP/", 5) == 0) to.headEnded = false;
  if (length > 0 && (line[0] == '\r' || line[0] == '\n')) to.headEnded = true;
  return to.headerBytes <= kMostHeaderBytes ? length : CURL_WRITEFUNC_ERROR;
}

struct FreeText {
  void operator()(CHAR* text) const { GeFree(text); }
};

/** True when every option was taken: a library built without one of them must not go on without it. */
bool SetUp(CURL* curl, const HttpUrl& url, const HttpOptions& options, LONG millisecondsLeft,
           const CHAR* caFile, Transfer* transfer) {
  bool taken = true;
  const auto set = [&](CURLoption option, auto value) {
    taken = taken && curl_easy_setopt(curl, option, value) == CURLE_OK;
  };
  set(CURLOPT_URL, url.text.c_str());
  set(CURLOPT_PATH_AS_IS, 1L); // the request line carries what was built
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_NOSIGNAL, 1L); // the application's signals are its own
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  if (*caFile) set(CURLOPT_CAINFO, caFile);
  set(CURLOPT_CONNECTTIMEOUT_MS, (long)LMin(options.connectMilliseconds, millisecondsLeft));
  set(CURLOPT_TIMEOUT_MS, (long)millisecondsLeft);
  set(CURLOPT_USERAGENT, "Kelvra");
  set(CURLOPT_WRITEFUNCTION, &TakeBody);
  set(CURLOPT_WRITEDATA, (void*)transfer);
  set(CURLOPT_HEADERFUNCTION, &TakeHeader);
  set(CURLOPT_HEADERDATA, (void*)transfer);
  return taken;
}

} // namespace

Bool HttpExchange(const HttpUrl& url, const HttpOptions& options, LONG millisecondsLeft, HttpAnswer* answer) {
  const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), &curl_easy_cleanup);
  const std::unique_ptr<CHAR, FreeText> caFile(options.caFile.GetCStringCopy(STRINGENCODING_UTF8));
  Transfer transfer{answer, options.mostBytes};
  if (!curl || !caFile || !SetUp(curl.get(), url, options, millisecondsLeft, caFile.get(), &transfer)) return FALSE;
  if (curl_easy_perform(curl.get()) != CURLE_OK || !transfer.headEnded) return FALSE;
  long status = 0;
  curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
  answer->status = (LONG)status;
  curl_header* location = nullptr;
  if (curl_easy_header(curl.get(), "Location", 0, CURLH_HEADER, -1, &location) == CURLHE_OK)
    answer->location = location->value;
  return TRUE;
}

} // namespace kelvra

#endif
