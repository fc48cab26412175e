// quill-tool http against a real server on 127.0.0.1 (http_test_server.py): ranges, dates,
// chunks, redirects, multipart POST, and servers that are slow, silent or broken.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/support/tool_run.h"

namespace {

const char kModified[] = "Last-Modified: Tue, 03 Mar 2026 10:20:30 GMT\n";

std::string FileBytes() {
  std::string file;
  for (int i = 0; i < 40; ++i)
    for (int b = 0; b < 256; ++b)
      file.push_back(static_cast<char>(b));
  return file;
}

class HttpTool : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::string here = __FILE__;
    std::string script = here.substr(0, here.rfind('/')) + "/http_test_server.py";
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    server_ = fork();
    if (server_ == 0) {
      dup2(pipeEnds[1], 1);
      close(pipeEnds[0]);
      execlp("python3", "python3", script.c_str(), static_cast<char*>(nullptr));
      _exit(127);
    }
    close(pipeEnds[1]);
    // The server's first line is its port; the pipe stays open so that it can go on writing.
    char line[16] = {};
    ssize_t got = read(pipeEnds[0], line, sizeof line - 1);
    serverOutput_ = pipeEnds[0];
    ASSERT_GT(got, 0) << "the test server did not start";
    base_ = "http://127.0.0.1:" + std::to_string(atoi(line));
  }
  static void TearDownTestSuite() {
    if (server_ > 0) kill(server_, SIGTERM);
    close(serverOutput_);
  }
  static std::string Url(const std::string& path) { return base_ + path; }

  static pid_t server_;
  static int serverOutput_;
  static std::string base_;
};
pid_t HttpTool::server_ = -1;
int HttpTool::serverOutput_ = -1;
std::string HttpTool::base_;

TEST_F(HttpTool, Replies) {
  std::string file = FileBytes();
  std::string upload = testing::TempDir() + "quill_http_upload.bin";
  std::ofstream(upload, std::ios::binary) << std::string("line\r\n--not a boundary\r\n\0end", 29);
  struct Case {
    std::string args, out, body;
    int status;
  };
  const Case kCases[] = {
      {Url("/file"), std::string("200\n") + kModified + "Body: 10240 bytes\n", file, 0},
      {"--range 100-199 " + Url("/file"), std::string("206\n") + kModified + "Body: 100 bytes\n",
       file.substr(100, 100), 0},
      {"--range 10200- " + Url("/file"), std::string("206\n") + kModified + "Body: 40 bytes\n",
       file.substr(10200), 0},
      {"--since 'Tue, 03 Mar 2026 10:20:30 GMT' " + Url("/file"),
       std::string("304\n") + kModified + "Body: 0 bytes\n", "", 0},
      {Url("/chunked"), std::string("200\n") + kModified + "Body: 10240 bytes\n", file, 0},
      {Url("/until-close"), "200\nBody: 3000 bytes\n", file.substr(0, 3000), 0},
      {Url("/continue"), "200\nBody: 5 bytes\n", "after", 0},
      {Url("/redirect/4"), "200\nBody: 11 bytes\n", "arrived GET", 0},
      {Url("/relative/start"), "200\nBody: 11 bytes\n", "arrived GET", 0},
      // Only a 307 (or 308) repeats a POST; the others turn it into a GET.
      {"--post a=b " + Url("/redirect/1"), "200\nBody: 12 bytes\n", "arrived POST", 0},
      {"--post a=b " + Url("/redirect/2"), "200\nBody: 11 bytes\n", "arrived GET", 0},
      {"--post name=Quill --post 'empty=' --post data=@" + upload + " " + Url("/echo"),
       "200\nBody: 117 bytes\n",
       "POST multipart/form-data\nname None 5\nQuill\nempty None 0\n\n"
       "data quill_http_upload.bin 29\n" +
           std::string("line\r\n--not a boundary\r\n\0end", 29) + "\n",
       0},
      {Url("/status/503"), "503\nBody: 4 bytes\n", "busy", 1},
      {Url("/missing"), "404\nBody: 2 bytes\n", "no", 1},
  };
  std::string out = testing::TempDir() + "quill_http_out.bin";
  for (const Case& c : kCases) {
    std::remove(out.c_str());
    ToolRun run = Tool("http " + c.args + " " + out);
    EXPECT_EQ(run.out, c.out) << c.args;
    EXPECT_EQ(run.status, c.status) << c.args;
    EXPECT_TRUE(ReadFile(out) == c.body) << c.args;
  }
  std::remove(out.c_str());
  std::remove(upload.c_str());
}

TEST_F(HttpTool, FailuresAreQuickAndNamed) {
  struct Case {
    std::string path, out;
    double mostSeconds;
  };
  const Case kCases[] = {
      {"/loop", "302\nBody: 0 bytes\nquill-tool: URL: too many redirects\n", 3},
      {"/https",
       "302\nBody: 0 bytes\nquill-tool: URL: a redirect to an address that is not http://\n", 3},
      {"/silent", "quill-tool: URL: the server did not answer in time\n", 7},
      {"/drip", "quill-tool: URL: the server did not answer in time\n", 7},
      {"/endless-header", "quill-tool: URL: the reply is not valid HTTP\n", 3},
      {"/not-http", "quill-tool: URL: the reply is not valid HTTP\n", 3},
      {"/huge", "200\nBody: 0 bytes\nquill-tool: URL: the body is too large\n", 3},
      {"/cut",
       "200\nBody: 10 bytes\nquill-tool: URL: the server closed the connection before the end of "
       "the body\n",
       3},
      {"/bad-chunk", "200\nBody: 5 bytes\nquill-tool: URL: the reply is not valid HTTP\n", 3},
  };
  for (const Case& c : kCases) {
    std::string url = Url(c.path);
    auto start = std::chrono::steady_clock::now();
    ToolRun run = RunTool("http " + url, true);
    std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::string expected = c.out;
    expected.replace(expected.find("URL"), 3, url);
    EXPECT_EQ(run.out, expected) << c.path;
    EXPECT_EQ(run.status, 1) << c.path;
    EXPECT_LT(took.count(), c.mostSeconds) << c.path;
  }
}

TEST_F(HttpTool, AddressesAndUsage) {
  // A port nobody listens on: refused at once.
  EXPECT_EQ(RunTool("http http://127.0.0.1:1/", true).out,
            "quill-tool: http://127.0.0.1:1/: cannot connect\n");
  EXPECT_EQ(RunTool("http https://127.0.0.1/", true).out,
            "quill-tool: https://127.0.0.1/: not an http:// address, or a field that cannot be "
            "sent\n");
  EXPECT_EQ(Tool("http http://127.0.0.1:99999/").status, 1);
  EXPECT_EQ(Tool("http").status, 2);
  EXPECT_EQ(Tool("http --range 5-2 " + Url("/file")).status, 2);
  EXPECT_EQ(Tool("http --post novalue " + Url("/echo")).status, 2);
  EXPECT_EQ(Tool("http --post f=@/nonexistent/file " + Url("/echo")).status, 1);
}

}  // namespace
