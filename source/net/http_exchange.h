// One request and its answer, by the platform's HTTP library: WinHTTP on Windows, libcurl elsewhere. It does
// without the host's types, as some of their names are also names of the Windows headers.
#pragma once

#include "net/http_url.h"

namespace kelvra {

/** Most bytes of the head of an answer. */
constexpr std::size_t kMostHeadBytes = 1 << 16;

/** Bounds of one exchange. */
struct HttpStep {
  int connectMilliseconds, totalMilliseconds;
  std::string caFile; ///< PEM file to trust instead of the system's authorities, UTF-8; empty: the system's
};

/** Where the body goes, part by part. */
class HttpBody {
public:
  virtual ~HttpBody() {}
  /** False ends the exchange: the body is too large or memory is refused. Does not throw. */
  virtual bool Append(const char* bytes, std::size_t count) = 0;
};

struct HttpAnswer {
  int status = 0;
  std::string location; ///< where a redirect leads, as the server wrote it
};

/**
 * Sends one GET and reads the answer without following a redirect. False when there is no whole answer within
 * the time: no connection, a certificate that is not trusted, a broken transfer, a body or head too large.
 */
bool HttpExchange(const HttpUrl& url, const HttpStep& step, HttpBody& body, HttpAnswer* answer);

} // namespace kelvra
