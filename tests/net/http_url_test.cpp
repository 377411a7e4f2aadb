// Addresses: which are asked at all, and where a redirect leads.
#include "net/http_url.h"

#include <gtest/gtest.h>

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
  for (const std::string& text :
       {std::string(), std::string("/php/x"), std::string("h/x"), std::string("ftp://h/"),
        std::string("file:///etc/hosts"), std::string("http:/h"), std::string("http:///x"),
        std::string("http://:80/"), std::string("http://u:p@h/"), std::string("http://h:0/"),
        std::string("http://h:65536/"), std::string("http://h:8x/"), std::string("http://h/a b"),
        std::string("http://h/a\r\nHost: other"), std::string("http://h/#part"),
        std::string("http://h/\xc3\xa4"), std::string("http://h/\0x", 11),
        "http://h/" + std::string(kMostUrlBytes, 'x')})
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
