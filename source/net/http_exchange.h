// One request and its answer, by the platform's HTTP library: libcurl, or WinHTTP on Windows.
#pragma once

#include "net/http_get.h"
#include "net/http_url.h"

namespace kelvra {

struct HttpAnswer {
  LONG status = 0;
  std::string location; ///< where a redirect leads, as the server wrote it
  CHAR* body = NULL;    ///< not terminated
  LONG size = 0, capacity = 0;

  HttpAnswer() {}
  ~HttpAnswer() { GeFree(body); }
  HttpAnswer(const HttpAnswer&) = delete;
  HttpAnswer& operator=(const HttpAnswer&) = delete;

  /** FALSE when the body would pass `most` bytes or memory is refused. */
  Bool Append(const CHAR* bytes, std::size_t count, LONG most);
  /** Hands the body over, terminated; NULL when memory is refused. */
  CHAR* Release();
};

/**
 * Sends one GET and reads the answer without following a redirect. FALSE when there is no whole answer within
 * the time: no connection, a certificate that is not trusted, a broken transfer, a body or headers too large.
 */
Bool HttpExchange(const HttpUrl& url, const HttpOptions& options, LONG millisecondsLeft, HttpAnswer* answer);

} // namespace kelvra
