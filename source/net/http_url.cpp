#include "net/http_url.h"

#include <algorithm>

namespace kelvra {

namespace {

constexpr int kMostPort = 65535;

bool IsSendable(char c) {
  return c > ' ' && c < 0x7f && c != '#';
}

/** Length of "http://" or "https://", 0 when the text begins with neither. */
std::size_t SchemeLength(const std::string& text, bool* secure) {
  for (const char* scheme : {"http://", "https://"}) {
    const std::string wanted = scheme;
    const bool same = text.size() >= wanted.size() &&
                      std::equal(wanted.begin(), wanted.end(), text.begin(), [](char a, char b) {
                        return a == (b >= 'A' && b <= 'Z' ? (char)(b + 32) : b);
                      });
    if (!same) continue;
    *secure = wanted == "https://";
    return wanted.size();
  }
  return 0;
}

/** Reads "host" or "host:port"; without a port the one in url stays. */
bool ParseAuthority(const std::string& authority, HttpUrl* url) {
  if (authority.find('@') != std::string::npos) return false;
  const std::size_t bracket = authority.rfind(']');
  const std::size_t colon = authority.find(':', bracket == std::string::npos ? 0 : bracket);
  url->host = authority.substr(0, colon);
  if (url->host.empty()) return false;
  if (colon == std::string::npos || colon + 1 == authority.size()) return true;
  const std::string digits = authority.substr(colon + 1);
  if (digits.size() > 5 || digits.find_first_not_of("0123456789") != std::string::npos) return false;
  url->port = std::stoi(digits);
  return url->port >= 1 && url->port <= kMostPort;
}

} // namespace

bool ParseHttpUrl(const std::string& text, HttpUrl* url) {
  if (text.size() > kMostUrlBytes || !std::all_of(text.begin(), text.end(), IsSendable)) return false;
  const std::size_t start = SchemeLength(text, &url->secure);
  if (start == 0) return false;
  url->text = text;
  url->port = url->secure ? 443 : 80;
  const std::size_t end = std::min(text.find_first_of("/?", start), text.size());
  url->target = text.substr(end);
  if (url->target.empty() || url->target[0] == '?') url->target.insert(0, "/");
  return ParseAuthority(text.substr(start, end - start), url);
}

std::string ResolveRedirect(const HttpUrl& from, const std::string& location) {
  // A scheme ends at a colon that comes before every other separator.
  const std::size_t colon = location.find_first_of(":/?#");
  if (colon != std::string::npos && location[colon] == ':') return location;
  const std::size_t authority = from.text.find("//") + 2;
  const std::string scheme = from.text.substr(0, authority - 2);
  if (location.compare(0, 2, "//") == 0) return scheme + location;
  const std::size_t end = std::min(from.text.find_first_of("/?", authority), from.text.size());
  const std::string origin = from.text.substr(0, end);
  if (!location.empty() && location[0] == '/') return origin + location;
  const std::string path = from.target.substr(0, from.target.find('?'));
  if (!location.empty() && location[0] == '?') return origin + path + location;
  return origin + path.substr(0, path.rfind('/') + 1) + location;
}

} // namespace kelvra
