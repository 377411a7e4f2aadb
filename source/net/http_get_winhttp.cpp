// The exchange by WinHTTP. It trusts the system's certificate authorities, and those of an intranet are
// installed in the system: HttpStep::caFile is ignored.
#ifdef _WIN32

#include "net/http_exchange.h"

#include <algorithm>
#include <chrono>
#include <memory>
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

constexpr DWORD kReadBytes = 16384;

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

/** One for resolving, connecting, sending, head and body together. */
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

/**
 * The step that a request is at. The library limits each of its steps, and within them each address that it
 * tries, by a time of their own; so it works in the background and the caller waits until its own deadline.
 */
class Pending {
public:
  Pending() : done_(CreateEventW(NULL, FALSE, FALSE, NULL)) {}
  ~Pending() {
    if (done_) CloseHandle(done_);
  }
  Pending(const Pending&) = delete;
  Pending& operator=(const Pending&) = delete;

  /** False when the step failed, or did not end in time. */
  bool Wait(DWORD milliseconds, DWORD expected) const {
    return done_ && WaitForSingleObject(done_, milliseconds) == WAIT_OBJECT_0 && status_ == expected;
  }
  DWORD Count() const { return count_; }
  char* Bytes() { return bytes_; }
  /** What the library hands back with each status; sending names it again, as 0 would replace it. */
  DWORD_PTR Context() const { return context_; }

  /** The request tells it, on threads of the library, until its handle is closed. */
  static bool Attach(HINTERNET request, const std::shared_ptr<Pending>& pending) {
    // The library may call after the request has been given up, so this code must stay: the module is kept
    // loaded until the process ends.
    HMODULE self = NULL;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            (LPCWSTR)&Pending::OnStatus, &self))
      return false;
    auto* shared = new std::shared_ptr<Pending>(pending);
    DWORD_PTR context = (DWORD_PTR)shared;
    pending->context_ = context;
    if (!WinHttpSetOption(request, WINHTTP_OPTION_CONTEXT_VALUE, &context, sizeof context)) {
      delete shared;
      return false;
    }
    constexpr DWORD kinds = WINHTTP_CALLBACK_FLAG_ALL_COMPLETIONS | WINHTTP_CALLBACK_FLAG_HANDLES;
    return WinHttpSetStatusCallback(request, &Pending::OnStatus, kinds, 0) != WINHTTP_INVALID_STATUS_CALLBACK;
  }

private:
  static void CALLBACK OnStatus(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD length) {
    auto* shared = (std::shared_ptr<Pending>*)context;
    if (!shared) return;
    switch (status) {
    case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING: // the last call of all
      delete shared;
      return;
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
      (*shared)->count_ = *(DWORD*)information;
      break;
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
      (*shared)->count_ = length;
      break;
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
      break;
    default:
      return;
    }
    (*shared)->status_ = status;
    SetEvent((*shared)->done_);
  }

  HANDLE done_;
  DWORD_PTR context_ = 0;
  DWORD status_ = 0, count_ = 0; ///< written before the event, read after it
  char bytes_[kReadBytes];       ///< the library may fill it even after the caller gave up
};

bool SetNumber(HINTERNET handle, DWORD option, DWORD value) {
  return WinHttpSetOption(handle, option, &value, sizeof value) != FALSE;
}

HINTERNET OpenSession() {
  // Windows before 8.1 has no automatic proxies.
  for (const DWORD access :
       {(DWORD)WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY, (DWORD)WINHTTP_ACCESS_TYPE_DEFAULT_PROXY})
    if (const HINTERNET session = WinHttpOpen(L"Kelvra", access, WINHTTP_NO_PROXY_NAME,
                                              WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC))
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

bool Send(HINTERNET request, const HttpStep& step, const Deadline& deadline, const Pending& pending) {
  const DWORD left = deadline.Left();
  if (left == 0) return false;
  const int whole = (int)left, connect = std::min(step.connectMilliseconds, whole);
  return WinHttpSetTimeouts(request, connect, connect, whole, whole) &&
         SetNumber(request, WINHTTP_OPTION_DISABLE_FEATURE,
                   WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_AUTHENTICATION) &&
         SetNumber(request, WINHTTP_OPTION_MAX_RESPONSE_HEADER_SIZE, (DWORD)kMostHeadBytes) &&
         SetNumber(request, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, left) &&
         WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, 0,
                            pending.Context()) &&
         pending.Wait((DWORD)connect, WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE) &&
         WinHttpReceiveResponse(request, NULL) &&
         pending.Wait(deadline.Left(), WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE);
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

bool ReadBody(HINTERNET request, const Deadline& deadline, Pending& pending, HttpBody& body) {
  DWORD total = 0;
  for (;;) {
    if (!WinHttpQueryDataAvailable(request, NULL) ||
        !pending.Wait(deadline.Left(), WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE))
      return false;
    const DWORD ready = std::min(pending.Count(), kReadBytes);
    if (ready == 0) return IsWhole(request, total);
    if (!WinHttpReadData(request, pending.Bytes(), ready, NULL) ||
        !pending.Wait(deadline.Left(), WINHTTP_CALLBACK_STATUS_READ_COMPLETE))
      return false;
    if (pending.Count() == 0) return IsWhole(request, total);
    if (!body.Append(pending.Bytes(), pending.Count())) return false;
    total += pending.Count();
  }
}

} // namespace

bool HttpExchange(const HttpUrl& url, const HttpStep& step, HttpBody& body, HttpAnswer* answer) {
  const Deadline deadline(step.totalMilliseconds);
  const std::shared_ptr<Pending> pending = std::make_shared<Pending>();
  const InternetHandle session(OpenSession());
  if (!session) return false;
  const InternetHandle connection(
      WinHttpConnect(session, Wide(url.host).c_str(), (INTERNET_PORT)url.port, 0));
  if (!connection) return false;
  const InternetHandle request(OpenRequest(connection, url));
  return request && Pending::Attach(request, pending) && Send(request, step, deadline, *pending) &&
         ReadHead(request, answer) && ReadBody(request, deadline, *pending, body);
}

} // namespace kelvra

#endif
