// One connection per request ("Connection: close"), so the end of a body without a length is the
// server's close and nothing is left over between requests.
#include "comm/http_client.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "foundation/memory.h"
#include "foundation/os_socket.h"
#include "foundation/os_time.h"

namespace {

constexpr int kOwnerHttpBuffer = 8010;
constexpr size_t kBufferSize = 65536;
static_assert(kBufferSize > kHttpMaxHead, "the head must fit in the buffer");
constexpr size_t kHostSize = 256;

bool StartsWithNoCase(const char* text, const char* prefix) {
  for (; *prefix; ++text, ++prefix) {
    char c = *text >= 'A' && *text <= 'Z' ? static_cast<char>(*text + 32) : *text;
    if (c != *prefix) return false;
  }
  return true;
}

bool IsRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Takes "." and ".." segments out of the path of an absolute http:// address, in place.
void RemoveDotSegments(char* url) {
  char* path = strchr(url + 7, '/');
  if (!path) return;
  char* end = path + strcspn(path, "?#");
  char* out = path;
  for (char* p = path; p < end;) {
    char* next = p + 1 + strcspn(p + 1, "/?#");  // p is at a '/'
    if (next > end) next = end;
    size_t length = static_cast<size_t>(next - p);
    if (length == 2 && p[1] == '.') {
      if (next == end) *out++ = '/';
    } else if (length == 3 && p[1] == '.' && p[2] == '.') {
      while (out > path && *--out != '/') {
      }
      if (next == end) *out++ = '/';
    } else {
      memmove(out, p, length);
      out += length;
    }
    p = next;
  }
  if (out == path) *out++ = '/';
  memmove(out, end, strlen(end) + 1);
}

bool HasOtherScheme(const char* location) {
  const char* scheme = strstr(location, "://");
  const char* stop = strpbrk(location, "/?#");
  return scheme && (!stop || scheme < stop);
}

// `location` against the address it came from, into `target`; false when it leaves http.
bool ResolveLocation(const char* base, const char* location, char* target) {
  char host[kHostSize];
  unsigned port;
  const char* path;
  if (!SplitHttpUrl(base, host, sizeof host, &port, &path)) return false;
  int length;
  if (StartsWithNoCase(location, "http://")) {
    length = snprintf(target, kHttpMaxUrl, "%s", location);
  } else if (HasOtherScheme(location)) {
    return false;
  } else if (location[0] == '/' && location[1] == '/') {
    length = snprintf(target, kHttpMaxUrl, "http:%s", location);
  } else if (location[0] == '/') {
    length = snprintf(target, kHttpMaxUrl, "http://%s:%u%s", host, port, location);
  } else {
    // Relative to the folder of the current path.
    size_t folder = strcspn(path, "?#");
    while (folder > 0 && path[folder - 1] != '/')
      --folder;
    length = snprintf(target, kHttpMaxUrl, "http://%s:%u%.*s%s%s", host, port,
                      static_cast<int>(folder), path, folder ? "" : "/", location);
  }
  if (length > 0 && static_cast<size_t>(length) < kHttpMaxUrl) RemoveDotSegments(target);
  char checkHost[kHostSize];
  return length > 0 && static_cast<size_t>(length) < kHttpMaxUrl &&
         SplitHttpUrl(target, checkHost, sizeof checkHost, &port, &path);
}

const char kBoundaryBase[] = "----QuillFormBoundary7d3a91c5e2";

bool Contains(const void* data, size_t size, const char* text) {
  size_t n = strlen(text);
  const char* p = static_cast<const char*>(data);
  for (size_t i = 0; i + n <= size; ++i) {
    if (p[i] == text[0] && memcmp(p + i, text, n) == 0) return true;
  }
  return false;
}

bool IsSafeFieldText(const char* text) {
  return text && !strpbrk(text, "\"\r\n");
}

// The head of one part (from its boundary line to the empty line) into `buffer`.
int PartHead(const HttpFormPart& part, const char* boundary, char* buffer, size_t size) {
  if (part.fileName) {
    return snprintf(buffer, size,
                    "--%s\r\nContent-Disposition: form-data; name=\"%s\"; filename=\"%s\"\r\n"
                    "Content-Type: application/octet-stream\r\n\r\n",
                    boundary, part.name, part.fileName);
  }
  return snprintf(buffer, size, "--%s\r\nContent-Disposition: form-data; name=\"%s\"\r\n\r\n",
                  boundary, part.name);
}

struct Connection {
  OsSocket socket;
  char* buffer;
  unsigned readTimeoutMs;
};

int SendAll(const Connection& c, const void* data, size_t size) {
  int sent = OsSend(c.socket, data, size, c.readTimeoutMs);
  if (sent == kOsSocketTimedOut) return kHttpTimedOut;
  return sent == 0 ? kHttpOk : kHttpConnectionLost;
}

int SendRequest(const HttpRequest& request, const char* host, unsigned port, const char* path,
                bool post, const Connection& c) {
  char boundary[sizeof kBoundaryBase + 4];
  uint64_t bodyLength = 0;
  if (post) {
    // A boundary that none of the data contains.
    for (int attempt = 0;; ++attempt) {
      if (attempt == 100) return kHttpBadRequest;
      snprintf(boundary, sizeof boundary, "%s%02d", kBoundaryBase, attempt);
      bool clash = false;
      for (int i = 0; i < request.partCount && !clash; ++i)
        clash = Contains(request.parts[i].data, request.parts[i].size, boundary);
      if (!clash) break;
    }
    char line[1024];
    for (int i = 0; i < request.partCount; ++i) {
      const HttpFormPart& part = request.parts[i];
      if (!IsSafeFieldText(part.name) || (part.fileName && !IsSafeFieldText(part.fileName)))
        return kHttpBadRequest;
      int length = PartHead(part, boundary, line, sizeof line);
      if (length < 0 || static_cast<size_t>(length) >= sizeof line) return kHttpBadRequest;
      bodyLength += static_cast<uint64_t>(length) + part.size + 2;
    }
    bodyLength += strlen(boundary) + 6;
  }
  size_t pathLength = strcspn(path, "#");
  char* head = c.buffer;
  int length = snprintf(head, kBufferSize, "%s %s%.*s HTTP/1.1\r\nHost: %s", post ? "POST" : "GET",
                        path[0] == '/' ? "" : "/", static_cast<int>(pathLength), path, host);
  auto append = [&](const char* format, ...) {
    if (length < 0 || static_cast<size_t>(length) >= kBufferSize) return;
    va_list values;
    va_start(values, format);
    int more = vsnprintf(head + length, kBufferSize - static_cast<size_t>(length), format, values);
    va_end(values);
    length = more < 0 ? -1 : length + more;
  };
  if (port != 80) append(":%u", port);
  append("\r\nUser-Agent: Quill\r\nAccept-Encoding: identity\r\nConnection: close\r\n");
  if (request.rangeFirst >= 0) {
    if (request.rangeLast >= 0) {
      append("Range: bytes=%lld-%lld\r\n", static_cast<long long>(request.rangeFirst),
             static_cast<long long>(request.rangeLast));
    } else {
      append("Range: bytes=%lld-\r\n", static_cast<long long>(request.rangeFirst));
    }
  }
  if (request.ifModifiedSince) {
    if (!IsSafeFieldText(request.ifModifiedSince)) return kHttpBadRequest;
    append("If-Modified-Since: %s\r\n", request.ifModifiedSince);
  }
  if (post) {
    append("Content-Type: multipart/form-data; boundary=%s\r\nContent-Length: %llu\r\n", boundary,
           static_cast<unsigned long long>(bodyLength));
  }
  append("\r\n");
  if (length < 0 || static_cast<size_t>(length) >= kBufferSize) return kHttpBadRequest;
  int error = SendAll(c, head, static_cast<size_t>(length));
  for (int i = 0; post && error == kHttpOk && i < request.partCount; ++i) {
    const HttpFormPart& part = request.parts[i];
    length = PartHead(part, boundary, head, kBufferSize);
    error = SendAll(c, head, static_cast<size_t>(length));
    if (error == kHttpOk && part.size) error = SendAll(c, part.data, part.size);
    if (error == kHttpOk) error = SendAll(c, "\r\n", 2);
  }
  if (post && error == kHttpOk) {
    length = snprintf(head, kBufferSize, "--%s--\r\n", boundary);
    error = SendAll(c, head, static_cast<size_t>(length));
  }
  return error;
}

// Receives into the buffer after `filled` bytes; the count, or an error as a negative HttpError.
int Receive(const Connection& c, size_t filled, unsigned timeoutMs) {
  int got = OsReceive(c.socket, c.buffer + filled, kBufferSize - filled, timeoutMs);
  if (got == kOsSocketTimedOut) return -kHttpTimedOut;
  if (got < 0) return -kHttpConnectionLost;
  return got;
}

int Deliver(const HttpRequest& request, HttpResponse* response, const char* data, size_t size) {
  if (!size) return kHttpOk;
  if (size > request.maxBody - response->bodyBytes) return kHttpTooLarge;
  response->bodyBytes += size;
  if (request.receive && !request.receive(request.context, data, size, response->contentLength))
    return kHttpCancelled;
  return kHttpOk;
}

// Reads the reply head, passing over interim (1xx) replies; the body bytes that came with it are
// left at the front of the buffer, their count in `*extra`.
int ReadHead(const Connection& c, HttpHead* head, size_t* extra) {
  size_t filled = 0;
  unsigned start = OsTickCount();
  for (;;) {
    int length = filled ? ParseHttpHead(c.buffer, filled, head) : kHttpHeadMore;
    if (length == kHttpHeadBad) return kHttpBadReply;
    if (length > 0) {
      filled -= static_cast<size_t>(length);
      memmove(c.buffer, c.buffer + length, filled);
      if (head->status >= 200 || head->status == 101) {
        *extra = filled;
        return kHttpOk;
      }
      continue;  // an interim reply: the real one follows
    }
    // The whole head within one read time-out, so a server dripping bytes cannot hold us.
    unsigned spent = OsTickCount() - start;
    if (spent >= c.readTimeoutMs) return kHttpTimedOut;
    int got = Receive(c, filled, c.readTimeoutMs - spent);
    if (got < 0) return -got;
    if (got == 0) return filled ? kHttpBadReply : kHttpConnectionLost;
    filled += static_cast<size_t>(got);
  }
}

int ReadBody(const HttpRequest& request, const Connection& c, const HttpHead& head, size_t extra,
             HttpResponse* response) {
  bool bodyless = head.status == 204 || head.status == 304 || head.status < 200;
  if (bodyless) return kHttpOk;
  if (head.contentLength >= 0 && static_cast<uint64_t>(head.contentLength) > request.maxBody)
    return kHttpTooLarge;
  HttpChunks chunks;
  StartHttpChunks(&chunks);
  uint64_t left = head.contentLength >= 0 ? static_cast<uint64_t>(head.contentLength) : 0;
  size_t filled = extra;
  for (;;) {
    if (head.chunked) {
      size_t body, used;
      int state = DecodeHttpChunks(&chunks, c.buffer, filled, &body, &used);
      int error = Deliver(request, response, c.buffer, body);
      if (error == kHttpOk && state == kHttpChunksBad) error = kHttpBadReply;
      if (error != kHttpOk || state == kHttpChunksDone) return error;
    } else if (head.contentLength >= 0) {
      size_t take = filled < left ? filled : static_cast<size_t>(left);
      int error = Deliver(request, response, c.buffer, take);
      left -= take;
      if (error != kHttpOk || left == 0) return error;
    } else {
      int error = Deliver(request, response, c.buffer, filled);
      if (error != kHttpOk) return error;
    }
    int got = Receive(c, 0, c.readTimeoutMs);
    if (got < 0) return -got;
    if (got == 0) return head.chunked || head.contentLength >= 0 ? kHttpClosedEarly : kHttpOk;
    filled = static_cast<size_t>(got);
  }
}

int FetchOnce(const HttpRequest& request, const char* url, bool post, HttpResponse* response,
              HttpHead* head, char* buffer) {
  char host[kHostSize];
  unsigned port;
  const char* path;
  if (!SplitHttpUrl(url, host, sizeof host, &port, &path) || strpbrk(path, " \t\r\n"))
    return kHttpBadRequest;
  bool timedOut;
  OsSocket socket = OsConnect(host, port, request.connectTimeoutMs, &timedOut);
  if (socket == kNoSocket) return timedOut ? kHttpTimedOut : kHttpConnectFailed;
  Connection c = {socket, buffer, request.readTimeoutMs};
  int error = SendRequest(request, host, port, path, post, c);
  size_t extra = 0;
  if (error == kHttpOk) error = ReadHead(c, head, &extra);
  if (error == kHttpOk) {
    response->status = head->status;
    response->contentLength = head->chunked ? -1 : head->contentLength;
    memcpy(response->lastModified, head->lastModified, sizeof response->lastModified);
    // A redirect's own body is of no use: the connection is dropped.
    if (!(IsRedirect(head->status) && head->location[0]))
      error = ReadBody(request, c, *head, extra, response);
  }
  OsCloseSocket(socket);
  return error;
}

}  // namespace

void StartHttpRequest(HttpRequest* request, const char* url) {
  memset(request, 0, sizeof *request);
  request->url = url;
  request->rangeFirst = request->rangeLast = -1;
  request->connectTimeoutMs = 5000;
  request->readTimeoutMs = 5000;
  request->maxBody = uint64_t{64} << 20;
  request->maxRedirects = 5;
}

bool SplitHttpUrl(const char* url, char* host, size_t hostSize, unsigned* port, const char** path) {
  if (!StartsWithNoCase(url, "http://")) return false;
  const char* p = url + 7;
  size_t hostLength = strcspn(p, ":/?#");
  if (hostLength == 0 || hostLength >= hostSize) return false;
  for (size_t i = 0; i < hostLength; ++i) {
    char c = p[i];
    bool fine = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                c == '.' || c == '-' || c == '_';
    if (!fine) return false;
  }
  memcpy(host, p, hostLength);
  host[hostLength] = '\0';
  p += hostLength;
  *port = 80;
  if (*p == ':') {
    unsigned value = 0;
    int digits = 0;
    for (++p; *p >= '0' && *p <= '9' && digits < 6; ++p, ++digits)
      value = value * 10 + static_cast<unsigned>(*p - '0');
    if (digits == 0 || value == 0 || value > 65535 || (*p && !strchr("/?#", *p))) return false;
    *port = value;
  }
  *path = *p ? p : "/";
  return true;
}

int HttpFetch(const HttpRequest& request, HttpResponse* response) {
  memset(response, 0, sizeof *response);
  response->contentLength = -1;
  if (strlen(request.url) >= kHttpMaxUrl) return kHttpBadRequest;
  strcpy(response->url, request.url);
  char* buffer = static_cast<char*>(AllocMem(kBufferSize + sizeof(HttpHead), kOwnerHttpBuffer));
  if (!buffer) return kHttpNoMemory;
  HttpHead* head = reinterpret_cast<HttpHead*>(buffer + kBufferSize);
  bool post = request.partCount > 0;
  int error;
  for (;;) {
    error = FetchOnce(request, response->url, post, response, head, buffer);
    if (error != kHttpOk || !IsRedirect(head->status) || !head->location[0]) break;
    if (response->redirects == request.maxRedirects) {
      error = kHttpTooManyRedirects;
      break;
    }
    char next[kHttpMaxUrl];
    if (!ResolveLocation(response->url, head->location, next)) {
      error = kHttpBadRedirect;
      break;
    }
    strcpy(response->url, next);
    response->redirects++;
    // As browsers do: only 307 and 308 repeat a POST.
    if (head->status != 307 && head->status != 308) post = false;
  }
  FreeMem(buffer);
  return error;
}

const char* HttpErrorText(int error) {
  switch (error) {
    case kHttpOk:
      return "ok";
    case kHttpBadRequest:
      return "not an http:// address, or a field that cannot be sent";
    case kHttpConnectFailed:
      return "cannot connect";
    case kHttpTimedOut:
      return "the server did not answer in time";
    case kHttpConnectionLost:
      return "the connection failed";
    case kHttpBadReply:
      return "the reply is not valid HTTP";
    case kHttpClosedEarly:
      return "the server closed the connection before the end of the body";
    case kHttpTooLarge:
      return "the body is too large";
    case kHttpTooManyRedirects:
      return "too many redirects";
    case kHttpBadRedirect:
      return "a redirect to an address that is not http://";
    case kHttpCancelled:
      return "cancelled";
    case kHttpNoMemory:
      return "out of memory";
  }
  return "unknown HTTP error";
}
