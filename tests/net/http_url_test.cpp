// Addresses: which are asked at all, and where a redirect leads.
#include "net/http_url.h"
#include "support/common.h"

namespace kelvra {
namespace {

TEST(HttpUrl, IsTakenApartWithoutChange) {
  const struct {
    const char *text, *host, *target;
    int port;
    bool secure;
  } cases[] = {{"http://h", "h", "/", 80, false},
               {"HTTPS://h.example:8443/a?b", "h.example", "/a?b", 8443, true},
               {"http://h?x={\"y\":[1,2]}", "h", "/?x={\"y\":[1,2]}", 80, false},
               {"https://[::1]:81//a/../b%20", "[::1]", "//a/../b%20", 81, true},
               {"https://[::1]/", "[::1]", "/", 443, true},
               {"http://h:/a:7@b", "h", "/a:7@b", 80, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    HttpUrl url;
    ASSERT_TRUE(ParseHttpUrl(c.text, &url));
    EXPECT_EQ(url.text, c.text);
    EXPECT_EQ(url.host, c.host);
    EXPECT_EQ(url.target, c.target);
    EXPECT_EQ(url.port, c.port);
    EXPECT_EQ(url.secure, c.secure);
  }
}

TEST(HttpUrl, WhatCannotBeSentAsItIsIsRefused) {
  HttpUrl url;
  const std::string longest = "http://h/" + std::string(kMostUrlBytes, 'x');
  for (const std::string text :
       {"", "/php/x", "h/x", "ftp://h/", "file:///etc/hosts", "http:/h", "http:///x", "http://:80/",
        "http://u:p@h/", "http://h:0/", "http://h:65536/", "http://h:8x/", "http://h/a b",
        "http://h/a\r\nHost: other", "http://h/#part", "http://h/\xc3\xa4", longest.c_str()})
    EXPECT_FALSE(ParseHttpUrl(text, &url)) << text.substr(0, 40);
}

TEST(HttpUrl, RedirectsAreResolvedAgainstWhereTheyCameFrom) {
  const struct {
    const char *location, *expected;
  } cases[] = {{"https://o/p", "https://o/p"}, {"//o/p", "http://o/p"},    {"/p?q", "http://h:8/p?q"},
               {"p", "http://h:8/a/p"},        {"?q", "http://h:8/a/b?q"}, {"p:q", "p:q"},
               {"/p:q", "http://h:8/p:q"},     {"", "http://h:8/a/"}};
  HttpUrl from;
  ASSERT_TRUE(ParseHttpUrl("http://h:8/a/b?c=/d", &from));
  for (const auto& c : cases) EXPECT_EQ(ResolveRedirect(from, c.location), c.expected);
  ASSERT_TRUE(ParseHttpUrl("http://h?x", &from));
  EXPECT_EQ(ResolveRedirect(from, "p"), "http://h/p");
}

} // namespace
} // namespace kelvra
