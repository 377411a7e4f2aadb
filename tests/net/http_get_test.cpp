// Requests to servers of this test: what comes back as a body and what counts as no answer.
#include "net/http_get.h"

#include "host/base/module_scope.h"
#include "support/loopback.h"
#include "support/object_fixture.h"

#include <chrono>
#include <optional>

namespace kelvra {
namespace {

constexpr std::size_t kMostBody = 1 << 20;

class HttpGetTest : public ObjectTest {
protected:
  void SetUp() override {
    ObjectTest::SetUp();
    ClearProxies();
    options_.totalMilliseconds = 10000;
  }
  std::optional<std::string> Get(const std::string& url) {
    CHAR* body = HttpGet(url.c_str(), options_);
    if (!body) return std::nullopt;
    const std::string text = body;
    GeFree(body);
    return text;
  }
  HttpOptions options_;
};

TEST_F(HttpGetTest, RequestLineIsTheAddressAsItWasBuilt) {
  RawServer server([](int s) { RawServer::Send(s, Head(2) + "ok"); });
  const std::string targets[] = {"/p?geometries={\"g\":\"e\",\"geometries\":[{\"x\":-1.5,\"y\":2}]}",
                                 "/a/../b//./c?d=%7B|^`\\<>", "/?", "/a?x=1&y=[2]"};
  for (const std::string& target : targets) EXPECT_EQ(Get(server.Address() + target), "ok");
  const std::vector<std::string> lines = server.RequestLines();
  ASSERT_EQ(lines.size(), std::size(targets));
  for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i], "GET " + targets[i] + " HTTP/1.1");
}

TEST_F(HttpGetTest, OnlyStatus200IsAnAnswer) {
  WebServer server([](const httplib::Request& request, httplib::Response& response) {
    response.status = std::stoi(request.path.substr(1));
    response.body = "body";
  });
  EXPECT_EQ(Get(server.Address() + "/200"), "body");
  for (const char* status : {"201", "203", "300", "301", "304", "401", "404", "500", "503"})
    EXPECT_EQ(Get(server.Address() + "/" + status), std::nullopt) << status;
}

TEST_F(HttpGetTest, BodyHasABound) {
  WebServer server([](const httplib::Request& request, httplib::Response& response) {
    response.body = std::string((std::size_t)std::stoul(request.path.substr(1)), 'x');
  });
  for (const std::size_t size :
       {std::size_t(0), std::size_t(1), std::size_t(4095), std::size_t(4096), kMostBody}) {
    const auto body = Get(server.Address() + "/" + std::to_string(size));
    ASSERT_TRUE(body) << size;
    EXPECT_EQ(body->size(), size);
  }
  EXPECT_EQ(Get(server.Address() + "/" + std::to_string(kMostBody + 1)), std::nullopt);
}

TEST_F(HttpGetTest, BrokenAnswersAreNone) {
  const struct {
    const char* name;
    std::function<void(int)> answer;
  } cases[] = {
      {"closed at once", [](int) {}},
      {"no HTTP", [](int s) { RawServer::Send(s, "hello\r\n\r\n"); }},
      {"closed within the head", [](int s) { RawServer::Send(s, "HTTP/1.1 200 OK\r\nContent-Le"); }},
      {"closed within the body", [](int s) { RawServer::Send(s, Head(10) + "12345"); }},
      {"broken chunks",
       [](int s) { RawServer::Send(s, "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nab"); }},
      {"endless body",
       [](int s) {
         if (RawServer::Send(s, "HTTP/1.1 200 OK\r\n\r\n"))
           while (RawServer::Send(s, std::string(65536, 'x'))) {
           }
       }},
      {"endless head", [](int s) {
         if (RawServer::Send(s, "HTTP/1.1 200 OK\r\n"))
           for (int i = 0;
                RawServer::Send(s, "X-" + std::to_string(i) + ": " + std::string(500, 'x') + "\r\n");)
             ++i;
       }}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    RawServer server(c.answer);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Get(server.Address() + "/"), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5))
        << "ended by the time bound only";
    EXPECT_EQ(server.RequestLines().size(), 1u);
  }
}

TEST_F(HttpGetTest, TimeIsBoundedAsAWhole) {
  // Each step is quick enough; all of them together are not.
  const auto drip = [](int s) {
    if (RawServer::Send(s, Head(1000)))
      while (RawServer::Send(s, "x")) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  };
  const auto wait = [](int s) {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    RawServer::Send(s, "HTTP/1.1 302 Found\r\nLocation: /again\r\nContent-Length: 0\r\n\r\n");
  };
  options_.totalMilliseconds = 400;
  for (const std::function<void(int)>& answer :
       {std::function<void(int)>(drip), std::function<void(int)>(wait)}) {
    RawServer server(answer);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Get(server.Address() + "/"), std::nullopt);
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_GE(took, std::chrono::milliseconds(350));
    EXPECT_LT(took, std::chrono::milliseconds(4000));
  }
}

TEST_F(HttpGetTest, RedirectsAreFollowedToABound) {
  WebServer server([](const httplib::Request& request, httplib::Response& response) {
    const int left = std::stoi(request.path.substr(1));
    if (left == 0) {
      response.body = "there";
    } else {
      const std::string next = std::to_string(left - 1);
      response.set_redirect(left % 2 ? next : "/" + next, left % 2 ? 301 : 307);
    }
  });
  EXPECT_EQ(Get(server.Address() + "/5"), "there");
  EXPECT_EQ(server.Requests(), 6);
  EXPECT_EQ(Get(server.Address() + "/6"), std::nullopt);
  EXPECT_EQ(server.Requests(), 12);
}

TEST_F(HttpGetTest, NoRedirectLeadsFromHttpsToHttpOrElsewhere) {
  const TestCertificate certificate;
  certificate.WritePem(Path("ca.pem"));
  options_.caFile = String(Path("ca.pem").c_str());
  const WebServer::Answer answer = [&](const httplib::Request& request, httplib::Response& response) {
    if (request.path == "/end")
      response.body = "end";
    else
      response.set_redirect(request.get_param_value("to"));
  };
  WebServer plain(answer), secure(answer, &certificate);
  EXPECT_EQ(Get(secure.Address() + "/?to=" + secure.Address() + "/end"), "end");
  EXPECT_EQ(Get(plain.Address() + "/?to=" + secure.Address() + "/end"), "end");
  const int before = plain.Requests();
  EXPECT_EQ(Get(secure.Address() + "/?to=" + plain.Address() + "/end"), std::nullopt);
  EXPECT_EQ(plain.Requests(), before) << "the plain server must not even be asked";
  // By way of https back to http.
  EXPECT_EQ(Get(plain.Address() + "/?to=" + secure.Address() + "/%3Fto%3D" + plain.Address() + "/end"),
            std::nullopt);
  EXPECT_EQ(plain.Requests(), before + 1);
  EXPECT_EQ(secure.Requests(), 5);
  for (const char* target : {"file:///etc/hosts", "ftp://127.0.0.1/x", "gopher://127.0.0.1/"})
    EXPECT_EQ(Get(plain.Address() + "/?to=" + target), std::nullopt) << target;
}

TEST_F(HttpGetTest, CertificatesAreChecked) {
  const TestCertificate good, otherAuthority, otherHost("DNS:other.invalid"), expired("IP:127.0.0.1", -7200),
      early("IP:127.0.0.1", 7200);
  const struct {
    const char* name;
    const TestCertificate *server, *trusted;
    bool answered;
  } cases[] = {{"trusted", &good, &good, true},
               {"unknown authority", &good, nullptr, false},
               {"another authority", &good, &otherAuthority, false},
               {"another host", &otherHost, &otherHost, false},
               {"expired", &expired, &expired, false},
               {"not valid yet", &early, &early, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    WebServer server([](const httplib::Request&, httplib::Response& response) { response.body = "ok"; },
                     c.server);
    options_.caFile = String();
    if (c.trusted) {
      c.trusted->WritePem(Path("ca.pem"));
      options_.caFile = String(Path("ca.pem").c_str());
    }
    EXPECT_EQ(Get(server.Address() + "/").has_value(), c.answered);
    EXPECT_EQ(server.Requests(), c.answered ? 1 : 0) << "nothing may be sent to whom nobody trusts";
    options_.caFile = String(Path("missing.pem").c_str());
    EXPECT_EQ(Get(server.Address() + "/"), std::nullopt);
  }
}

TEST_F(HttpGetTest, RefusedMemoryIsNoAnswer) {
  WebServer server(
      [](const httplib::Request&, httplib::Response& response) { response.body = std::string(100000, 'x'); });
  const host::ModuleScope asModule;
  const host::LiveCounts live = application_->Live();
  std::optional<std::string> body;
  FailEach(
      *application_, host::Fault::Allocation, [&] { body = Get(server.Address() + "/"); },
      [&](bool struck) {
        EXPECT_NE(body.has_value(), struck);
        EXPECT_EQ(application_->Live().blocks, live.blocks);
      });
}

TEST_F(HttpGetTest, AMissingAddressIsExplainedOnceARun) {
  const std::size_t before = application_->GetConsole().Lines().size();
  for (const char* url : {"/ArcGIS/rest", "ftp://127.0.0.1/", ""})
    EXPECT_EQ(HttpGet(url, kGeometryService), nullptr);
  const std::vector<std::string> lines = application_->GetConsole().Lines();
  ASSERT_EQ(lines.size(), before + 1);
  for (const char* part : {"prefs set geometry_service ADDRESS\"", "KELVRA_GEOMETRY_SERVICE"})
    EXPECT_NE(lines.back().find(part), std::string::npos) << part;
}

} // namespace
} // namespace kelvra
