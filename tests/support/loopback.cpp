#include "support/loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>
#include <unistd.h>

void ClearProxies() {
  for (const char* name : {"http_proxy", "https_proxy", "HTTP_PROXY", "HTTPS_PROXY", "all_proxy", "ALL_PROXY",
                           "KELVRA_GEOMETRY_SERVICE", "KELVRA_UPDATE_SERVER", "KELVRA_CA_FILE"})
    ::unsetenv(name);
}

RawServer::RawServer(std::function<void(int)> answer) : answer_(std::move(answer)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (::bind(listener_, (sockaddr*)&address, size) != 0 || ::listen(listener_, 8) != 0 ||
      ::getsockname(listener_, (sockaddr*)&address, &size) != 0)
    std::abort();
  port_ = ::ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

RawServer::~RawServer() {
  ::shutdown(listener_, SHUT_RDWR);
  thread_.join();
  ::close(listener_);
}

void RawServer::Serve() {
  for (int socket; (socket = ::accept(listener_, nullptr, nullptr)) >= 0; ::close(socket)) {
    std::string head;
    char bytes[4096];
    for (ssize_t got;
         head.find("\r\n\r\n") == std::string::npos && (got = ::recv(socket, bytes, sizeof bytes, 0)) > 0;)
      head.append(bytes, (std::size_t)got);
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      lines_.push_back(head.substr(0, head.find("\r\n")));
    }
    answer_(socket);
  }
}

std::vector<std::string> RawServer::RequestLines() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return lines_;
}

bool RawServer::Send(int socket, const std::string& bytes) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t now = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (now <= 0) return false;
    sent += (std::size_t)now;
  }
  return true;
}

std::string Head(std::size_t length, const std::string& status) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n";
}

TestCertificate::TestCertificate(const std::string& subject, long validFrom)
    : certificate(X509_new()), key(EVP_EC_gen("P-256")) {
  X509_set_version(certificate, 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate), validFrom);
  X509_gmtime_adj(X509_getm_notAfter(certificate), validFrom + 3600);
  X509_NAME* name = X509_get_subject_name(certificate);
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, (const unsigned char*)"test", -1, -1, 0);
  X509_set_issuer_name(certificate, name);
  X509_set_pubkey(certificate, key);
  X509_EXTENSION* names = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, subject.c_str());
  X509_add_ext(certificate, names, -1);
  X509_EXTENSION_free(names);
  if (!X509_sign(certificate, key, EVP_sha256())) std::abort();
}

TestCertificate::~TestCertificate() {
  X509_free(certificate);
  EVP_PKEY_free(key);
}

void TestCertificate::WritePem(const std::string& path) const {
  std::FILE* file = std::fopen(path.c_str(), "w");
  if (!file || !PEM_write_X509(file, certificate)) std::abort();
  std::fclose(file);
}

WebServer::WebServer(Answer answer, const TestCertificate* certificate)
    : server_(certificate ? new httplib::SSLServer(certificate->certificate, certificate->key)
                          : new httplib::Server) {
  server_->Get(".*", [this, answer](const httplib::Request& request, httplib::Response& response) {
    ++requests_;
    answer(request, response);
  });
  server_->set_keep_alive_timeout(1);
  const int port = server_->bind_to_any_port("127.0.0.1");
  address_ = (certificate ? "https" : "http") + std::string("://127.0.0.1:") + std::to_string(port);
  thread_ = std::thread([this] { server_->listen_after_bind(); });
  while (!server_->is_running()) std::this_thread::yield();
}

WebServer::~WebServer() {
  server_->stop();
  thread_.join();
}
