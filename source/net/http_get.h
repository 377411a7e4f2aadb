// One HTTP GET, as the geometry service and the update check need it. Main thread: the caller waits.
#pragma once

#include "c4d.h"
#include "net/service_settings.h"

namespace kelvra {

/** Bounds of one GET with all its redirects. */
struct HttpOptions {
  LONG connectMilliseconds = 5000;
  LONG totalMilliseconds = 15000;
  LONG mostBytes = 1 << 20; ///< of the body
  /** PEM file of the certificate authorities to trust instead of the system's; empty for the system's. */
  String caFile;
};

/** Most redirects that are followed; one from https to http never is. */
constexpr int kMostRedirects = 5;

/**
 * The body of the answer, terminated by a 0 byte, which the caller frees with GeFree; NULL unless the status
 * is 200. The address goes out as it is, nothing in it is escaped, by way of the proxy that the environment
 * (on Windows the system) sets. A failed request is silent. An address that is not valid sends nothing, and
 * the console says once a run how to set the service's address: it is empty until somebody does.
 */
CHAR* HttpGet(const CHAR* url, const Service& service);
/** The same with the caller's bounds and without the line on the console. */
CHAR* HttpGet(const CHAR* url, const HttpOptions& options);

} // namespace kelvra
