// The HTTP reply's head, chunked coding and dates, from bytes.
#include <gtest/gtest.h>

#include <string>

#include "comm/http_client.h"
#include "comm/http_reply.h"

namespace {

constexpr int kMore = -2;

TEST(HttpReply, Heads) {
  struct Case {
    std::string bytes;
    int result;  // bytes after the head, or kHttpHeadMore or kHttpHeadBad
    int status;
    int64_t length;
    bool chunked;
    const char* location;
    const char* modified;
  };
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const Case kCases[] = {
      {ok + "Content-Length: 12\r\n\r\nbody", 4, 200, 12, false, "", ""},
      {"HTTP/1.0 404\n\n", 0, 404, -1, false, "", ""},
      {ok + "content-length:  7 \r\nCONTENT-LENGTH: 7\r\n\r\n", 0, 200, 7, false, "", ""},
      {ok + "Transfer-Encoding: gzip, Chunked\r\nContent-Length: 5\r\n\r\n", 0, 200, -1, true, "",
       ""},
      {"HTTP/1.1 302 Found\r\nLocation: /next?a=1\r\nLast-Modified: Tue, 03 Mar 2026 10:20:30 "
       "GMT\r\n\r\n",
       0, 302, -1, false, "/next?a=1", "Tue, 03 Mar 2026 10:20:30 GMT"},
      {ok + "Location: /" + std::string(3000, 'a') + "\r\n\r\n", 0, 200, -1, false, "", ""},
      {ok + "Content-Len", kMore, 0, 0, false, "", ""},
      {"HTT", kMore, 0, 0, false, "", ""},
      {"SSH-2.0-OpenSSH_9.2\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {"HTTP/2 200 OK\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {"HTTP/1.1 20 OK\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {"HTTP/1.1 600 Odd\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {"HTTP/1.1 200OK\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + "Content-Length: 12\r\nContent-Length: 13\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + "Content-Length: -1\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + "Content-Length: 1234567890123456789\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + "No colon here\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + " folded: line\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + "X: a\rb\r\n\r\n", kHttpHeadBad, 0, 0, false, "", ""},
      {ok + std::string(kHttpMaxHead, 'x'), kHttpHeadBad, 0, 0, false, "", ""},
  };
  for (const Case& c : kCases) {
    HttpHead head;
    int result = ParseHttpHead(c.bytes.data(), c.bytes.size(), &head);
    int expected = c.result == kMore ? kHttpHeadMore
                   : c.result < 0    ? c.result
                                     : static_cast<int>(c.bytes.size()) - c.result;
    EXPECT_EQ(result, expected) << c.bytes.substr(0, 80);
    if (result <= 0) continue;
    EXPECT_EQ(head.status, c.status) << c.bytes;
    EXPECT_EQ(head.contentLength, c.length) << c.bytes;
    EXPECT_EQ(head.chunked, c.chunked) << c.bytes;
    EXPECT_STREQ(head.location, c.location) << c.bytes;
    EXPECT_STREQ(head.lastModified, c.modified) << c.bytes;
  }
}

TEST(HttpReply, ContentRange) {
  struct Case {
    const char* value;
    int64_t first, last, total;
  };
  const Case kCases[] = {
      {"bytes 100-199/10240", 100, 199, 10240},
      {"bytes */10240", -1, -1, 10240},
      {"bytes 5-9/*", 5, 9, -1},
      {"bytes 9-5/10", -1, -1, -1},
      {"pages 1-2/3", -1, -1, -1},
      {"bytes 1-2", -1, -1, -1},
  };
  for (const Case& c : kCases) {
    std::string bytes =
        std::string("HTTP/1.1 206 Partial\r\nContent-Range: ") + c.value + "\r\n\r\n";
    HttpHead head;
    ASSERT_GT(ParseHttpHead(bytes.data(), bytes.size(), &head), 0) << c.value;
    EXPECT_EQ(head.rangeFirst, c.first) << c.value;
    EXPECT_EQ(head.rangeLast, c.last) << c.value;
    EXPECT_EQ(head.rangeTotal, c.total) << c.value;
  }
}

// Decodes `coded` fed in pieces of `step` bytes; the body, or "BAD".
std::string Dechunk(const std::string& coded, size_t step, size_t* left) {
  HttpChunks chunks;
  StartHttpChunks(&chunks);
  std::string body;
  for (size_t at = 0; at < coded.size(); at += step) {
    std::string piece = coded.substr(at, step);
    size_t bodyBytes, used;
    int state = DecodeHttpChunks(&chunks, &piece[0], piece.size(), &bodyBytes, &used);
    body += piece.substr(0, bodyBytes);
    if (state == kHttpChunksBad) return body + "BAD";
    if (state == kHttpChunksDone) {
      *left = coded.size() - at - used;
      return body;
    }
  }
  return body + "MORE";
}

TEST(HttpReply, ChunkedBodies) {
  struct Case {
    std::string coded, body;
    size_t left;  // bytes after the end
  };
  const Case kCases[] = {
      {"5\r\nhello\r\n6;x=y\r\n world\r\n0\r\n\r\n", "hello world", 0},
      {"A\nabcdefghij\n0\nTrailer: 1\nMore: 2\n\nNEXT", "abcdefghij", 4},
      {"3 \r\nabc\r\n0\r\nX: y\r\n\r\n", "abc", 0},
      {"5\r\nhello\r\nzz\r\n", "helloBAD", 0},
      {"5\r\nhelloX\r\n", "helloBAD", 0},
      {"\r\n", "BAD", 0},
      {"10000000000000000\r\n", "BAD", 0},  // 2^64
      {"5;" + std::string(5000, 'e') + "\r\n", "BAD", 0},
      {"0\r\n" + std::string(kHttpMaxHead + 10, 't'), "BAD", 0},
      {"5\r\nhel", "helMORE", 0},
  };
  for (const Case& c : kCases) {
    for (size_t step : {size_t{1}, size_t{2}, size_t{7}, c.coded.size()}) {
      size_t left = 0;
      EXPECT_EQ(Dechunk(c.coded, step, &left), c.body) << c.coded.substr(0, 40) << " by " << step;
      EXPECT_EQ(left, c.left) << c.coded.substr(0, 40) << " by " << step;
    }
  }
}

TEST(HttpReply, Dates) {
  struct Case {
    const char* text;
    int64_t seconds;  // -1: not a date
  };
  const Case kCases[] = {
      {"Sun, 06 Nov 1994 08:49:37 GMT", 784111777},
      {"Sunday, 06-Nov-94 08:49:37 GMT", 784111777},
      {"Sun Nov  6 08:49:37 1994", 784111777},
      {"Thu, 01 Jan 1970 00:00:00 GMT", 0},
      {"Tue, 29 Feb 2028 23:59:59 GMT", 1835481599},
      {"Tue, 03 Mar 2026 10:20:30 GMT", 1772533230},
      {"Sun, 06 Nov 1994 08:49:37 UTC", -1},
      {"Sun, 32 Nov 1994 08:49:37 GMT", -1},
      {"Sun, 06 Foo 1994 08:49:37 GMT", -1},
      {"Sun, 06 Nov 1994 24:00:00 GMT", -1},
      {"06 Nov 1994 08:49:37 GMT", -1},
      {"", -1},
  };
  for (const Case& c : kCases) {
    int64_t seconds = -1;
    bool parsed = ParseHttpDate(c.text, &seconds);
    EXPECT_EQ(parsed, c.seconds >= 0) << c.text;
    if (parsed) EXPECT_EQ(seconds, c.seconds) << c.text;
    if (parsed && c.text[3] == ',') {
      char formatted[32];
      FormatHttpDate(seconds, formatted);
      EXPECT_STREQ(formatted, c.text);
    }
  }
}

TEST(HttpReply, Addresses) {
  struct Case {
    const char* url;
    bool ok;
    const char* host;
    unsigned port;
    const char* path;
  };
  const Case kCases[] = {
      {"http://example.org", true, "example.org", 80, "/"},
      {"HTTP://127.0.0.1:8080/a/b?c#d", true, "127.0.0.1", 8080, "/a/b?c#d"},
      {"http://host:80?q", true, "host", 80, "?q"},
      {"https://example.org/", false, "", 0, ""},
      {"http://:80/", false, "", 0, ""},
      {"http://host:0/", false, "", 0, ""},
      {"http://host:65536/", false, "", 0, ""},
      {"http://host:12x/", false, "", 0, ""},
      {"http://user@host/", false, "", 0, ""},
      {"ftp://host/", false, "", 0, ""},
  };
  for (const Case& c : kCases) {
    char host[64];
    unsigned port = 0;
    const char* path = nullptr;
    ASSERT_EQ(SplitHttpUrl(c.url, host, sizeof host, &port, &path), c.ok) << c.url;
    if (!c.ok) continue;
    EXPECT_STREQ(host, c.host);
    EXPECT_EQ(port, c.port);
    EXPECT_STREQ(path, c.path);
  }
}

}  // namespace
