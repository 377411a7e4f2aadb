// Servers that listen on 127.0.0.1 at a port of their own. Nothing here reaches any other machine.
#include "support/common.h"

#pragma once

#include <httplib.h>
#include <mutex>
#include <thread>

/** Takes what would lead requests elsewhere out of the environment. */
void ClearProxies();

/** Gives each connection the bytes that its function sends; keeps the heads of the requests. */
class RawServer {
public:
  /** Called with each connection's socket, which is closed afterwards. */
  explicit RawServer(std::function<void(int socket)> answer);
  ~RawServer();
  std::string Address() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::vector<std::string> RequestLines() const;
  /** False once the other side is gone. */
  static bool Send(int socket, const std::string& bytes);

private:
  void Serve();

  std::function<void(int)> answer_;
  int listener_ = -1, port_ = 0;
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  std::thread thread_;
};

/** The head of an answer with a body of that length. */
std::string Head(std::size_t length, const std::string& status = "200 OK");

/** A certificate of its own authority, made for this run. */
class TestCertificate {
public:
  /** subject: "IP:..." or "DNS:..."; valid from the given number of seconds from now on for an hour. */
  explicit TestCertificate(const std::string& subject = "IP:127.0.0.1", long validFrom = -60);
  ~TestCertificate();
  void WritePem(const std::string& path) const;
  X509* certificate = nullptr;
  EVP_PKEY* key = nullptr;
};

/** An HTTP server, with a certificate an HTTPS server. */
class WebServer {
public:
  using Answer = std::function<void(const httplib::Request&, httplib::Response&)>;
  explicit WebServer(Answer answer, const TestCertificate* certificate = nullptr);
  ~WebServer();
  const std::string& Address() const { return address_; }
  int Requests() const { return requests_; }

private:
  std::unique_ptr<httplib::Server> server_;
  std::string address_;
  std::atomic<int> requests_{0};
  std::thread thread_;
};
