// Addresses of requests: taken apart, but sent unchanged.
#pragma once

#include <string>

namespace kelvra {

/** Longest address, in bytes. */
constexpr std::size_t kMostUrlBytes = 16384;

struct HttpUrl {
  std::string text;   ///< the whole address, unchanged
  std::string host;   ///< a numeric IPv6 address keeps its brackets
  std::string target; ///< path and query as the request line carries them, from the first '/'
  int port = 0;
  bool secure = false; ///< https
};

/**
 * False for anything but http:// or https:// with a host and printable ASCII: blanks and control characters
 * would end the request line, a fragment ("#") or user information ("user@") would not be sent as given.
 */
bool ParseHttpUrl(const std::string& text, HttpUrl* url);

/**
 * The absolute address that a redirect leads to; dots in a relative path are left to the server. The result
 * is not checked: pass it to ParseHttpUrl.
 */
std::string ResolveRedirect(const HttpUrl& from, const std::string& location);

} // namespace kelvra
