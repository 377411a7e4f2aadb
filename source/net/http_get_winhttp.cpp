// The exchange by WinHTTP. It trusts the system's certificate authorities, and those of an intranet are
// installed in the system: HttpStep::caFile is ignored.
#ifdef _WIN32

#include "net/http_exchange.h"

#include <algorithm>
#include <chrono>
#include <windows.h>

#include <winhttp.h>

#ifndef WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY
#define WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY 4
#endif
#ifndef WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT
#define WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT 7
#endif

namespace kelvra {

namespace {

const DWORD kReadBytes = 16384;

class InternetHandle {
public:
  explicit InternetHandle(HINTERNET handle) : handle_(handle) {}
  ~InternetHandle() {
    if (handle_) WinHttpCloseHandle(handle_);
  }
  InternetHandle(const InternetHandle&) = delete;
  InternetHandle& operator=(const InternetHandle&) = delete;
  operator HINTERNET() const { return handle_; }

private:
  HINTERNET handle_;
};

/** For addresses, which ParseHttpUrl has found to be plain ASCII. */
std::wstring Wide(const std::string& text) {
  return std::wstring(text.begin(), text.end());
}

/** The library limits each step of its own: every step gets what is left of the time for all. */
class Deadline {
public:
  explicit Deadline(int milliseconds) : end_(Clock::now() + std::chrono::milliseconds(milliseconds)) {}
  /** 0 once it is over. */
  DWORD Left() const {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now()).count();
    return left > 0 ? (DWORD)left : 0;
  }

private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point end_;
};

bool SetNumber(HINTERNET handle, DWORD option, DWORD value) {
  return WinHttpSetOption(handle, option, &value, sizeof value) != FALSE;
}

HINTERNET OpenSession() {
  // Windows before 8.1 has no automatic proxies.
  for (const DWORD access :
       {(DWORD)WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY, (DWORD)WINHTTP_ACCESS_TYPE_DEFAULT_PROXY})
    if (const HINTERNET session =
            WinHttpOpen(L"Kelvra", access, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0))
      return session;
  return NULL;
}

/** The path goes out unchanged; without these flags the library would escape quotes and braces. */
HINTERNET OpenRequest(HINTERNET connection, const HttpUrl& url) {
  const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
                      (url.secure ? WINHTTP_FLAG_SECURE : 0);
  return WinHttpOpenRequest(connection, L"GET", Wide(url.target).c_str(), NULL, WINHTTP_NO_REFERER,
                            WINHTTP_DEFAULT_ACCEPT_TYPES, flags);
}

bool Send(HINTERNET request, const HttpStep& step, const Deadline& deadline) {
  const DWORD left = deadline.Left();
  if (left == 0) return false;
  const int whole = (int)left, connect = std::min(step.connectMilliseconds, whole);
  return WinHttpSetTimeouts(request, connect, connect, whole, whole) &&
         SetNumber(request, WINHTTP_OPTION_DISABLE_FEATURE,
                   WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_AUTHENTICATION) &&
         SetNumber(request, WINHTTP_OPTION_MAX_RESPONSE_HEADER_SIZE, (DWORD)kMostHeadBytes) &&
         SetNumber(request, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, left) &&
         WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, 0, 0) &&
         WinHttpReceiveResponse(request, NULL);
}

bool ReadHead(HINTERNET request, HttpAnswer* answer) {
  DWORD status = 0, size = sizeof status;
  if (!WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                           WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX))
    return false;
  answer->status = (int)status;
  size = 0;
  WinHttpQueryHeaders(request, WINHTTP_QUERY_LOCATION, WINHTTP_HEADER_NAME_BY_INDEX, NULL, &size,
                      WINHTTP_NO_HEADER_INDEX);
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || size > (DWORD)kMostHeadBytes) return true; // no redirect
  std::wstring location(size / sizeof(wchar_t), L'\0');
  if (!WinHttpQueryHeaders(request, WINHTTP_QUERY_LOCATION, WINHTTP_HEADER_NAME_BY_INDEX, &location[0], &size,
                           WINHTTP_NO_HEADER_INDEX))
    return true;
  location.resize(size / sizeof(wchar_t));
  // Other characters than ASCII become one that makes the address invalid.
  for (const wchar_t c : location) answer->location += c < 0x80 ? (char)c : ' ';
  return true;
}

/** A body that is shorter than its head says was cut off. */
bool IsWhole(HINTERNET request, DWORD total) {
  DWORD length = 0, size = sizeof length;
  return !WinHttpQueryHeaders(request, WINHTTP_QUERY_CONTENT_LENGTH | WINHTTP_QUERY_FLAG_NUMBER,
                              WINHTTP_HEADER_NAME_BY_INDEX, &length, &size, WINHTTP_NO_HEADER_INDEX) ||
         length == total;
}

bool ReadBody(HINTERNET request, const Deadline& deadline, HttpBody& body) {
  char bytes[kReadBytes];
  DWORD total = 0;
  for (;;) {
    const DWORD left = deadline.Left();
    // Reading waits until the buffer is full. Ask only for what has arrived, so that the deadline holds.
    DWORD ready = 0, got = 0;
    if (left == 0 || !SetNumber(request, WINHTTP_OPTION_RECEIVE_TIMEOUT, left) ||
        !WinHttpQueryDataAvailable(request, &ready))
      return false;
    if (ready == 0) return IsWhole(request, total);
    if (!WinHttpReadData(request, bytes, std::min<DWORD>(ready, kReadBytes), &got)) return false;
    if (got == 0) return IsWhole(request, total);
    if (!body.Append(bytes, got)) return false;
    total += got;
  }
}

} // namespace

bool HttpExchange(const HttpUrl& url, const HttpStep& step, HttpBody& body, HttpAnswer* answer) {
  const Deadline deadline(step.totalMilliseconds);
  const InternetHandle session(OpenSession());
  if (!session) return false;
  const InternetHandle connection(
      WinHttpConnect(session, Wide(url.host).c_str(), (INTERNET_PORT)url.port, 0));
  if (!connection) return false;
  const InternetHandle request(OpenRequest(connection, url));
  return request && Send(request, step, deadline) && ReadHead(request, answer) &&
         ReadBody(request, deadline, body);
}

} // namespace kelvra

#endif
