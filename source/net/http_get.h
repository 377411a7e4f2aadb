// One HTTP GET, as the geometry service and the update check need it. Main thread: the caller waits.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Bounds of one GET with all its redirects. */
struct HttpOptions {
  LONG connectMilliseconds = 5000;
  LONG totalMilliseconds = 15000;
  LONG mostBytes = 1 << 20; ///< of the body
  /** PEM file of the certificate authorities to trust in place of the system's; empty for the system's. */
  String caFile;
};

/** Redirects that are followed at most; never one that leads from https to http. */
const int kMostRedirects = 5;

/**
 * The body of the answer, NUL-terminated, which the caller frees with GeFree; NULL when there is no answer
 * with status 200. The address goes out as it is, nothing in it is escaped. A failed request is silent. An
 * address that is none (the services' addresses are empty until somebody sets them) sends nothing, and the
 * console says once a run how to set them. The proxy settings of the environment, on Windows of the system,
 * are honoured.
 */
CHAR* HttpGet(const CHAR* url);
/** The same with bounds of the caller's and without the line on the console. */
CHAR* HttpGet(const CHAR* url, const HttpOptions& options);

} // namespace kelvra
