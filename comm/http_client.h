// The HTTP client: plain HTTP/1.1 over the platform's sockets, one request per connection. GET
// (with a byte range and If-Modified-Since) and POST with a multipart/form-data body; replies
// with Content-Length, chunked, or read to the close; redirects followed within the same scheme.
// Every wait is bounded by the request's time-outs and the body by its cap, so a background
// thread calling HttpFetch always comes back. No state is shared between calls.
#pragma once
#include <cstddef>
#include <cstdint>

#include "comm/http_reply.h"

// One field of a multipart/form-data body; a file's field has a file name.
struct HttpFormPart {
  const char* name;
  const char* fileName;  // null for a plain field
  const void* data;
  size_t size;
};

struct HttpRequest {
  const char* url;              // http://host[:port]/path
  int64_t rangeFirst;           // Range: bytes=first-last; -1 for the whole resource
  int64_t rangeLast;            // -1 for "to the end"
  const char* ifModifiedSince;  // an HTTP date, or null
  const HttpFormPart* parts;    // a POST when partCount > 0
  int partCount;
  unsigned connectTimeoutMs;
  unsigned readTimeoutMs;  // the longest silence the server may keep, head or body
  uint64_t maxBody;        // a longer body (announced or sent) fails with kHttpTooLarge
  int maxRedirects;
  // Receives the body as it arrives, with the announced total length or -1; returning false
  // stops the transfer (kHttpCancelled). Null discards the body.
  bool (*receive)(void* context, const char* data, size_t size, int64_t total);
  void* context;
};

// The defaults: GET of `url`, 5 s to connect, 5 s of silence, 64 MB of body, 5 redirects.
void StartHttpRequest(HttpRequest* request, const char* url);

enum HttpError : int {
  kHttpOk = 0,          // a reply came; its status may still be an HTTP error
  kHttpBadRequest,      // the address is not http://host[:port][/path], or a field cannot be sent
  kHttpConnectFailed,   // unknown host or connection refused
  kHttpTimedOut,        // connecting, sending or waiting for the server took too long
  kHttpConnectionLost,  // sending or receiving failed
  kHttpBadReply,        // not an HTTP reply, or a broken head or chunk
  kHttpClosedEarly,     // the server closed before the body's announced end
  kHttpTooLarge,        // the body is longer than the request allows
  kHttpTooManyRedirects,
  kHttpBadRedirect,  // a redirect without a usable http:// address
  kHttpCancelled,    // the receiver stopped the transfer
  kHttpNoMemory,
};

struct HttpResponse {
  int status;             // the final reply's status code, 0 when none came
  int64_t contentLength;  // announced, -1 when not
  uint64_t bodyBytes;     // delivered to the receiver
  int redirects;          // followed
  char lastModified[kHttpMaxDate];
  char url[kHttpMaxUrl];  // where the final reply came from
};

// Runs the request; kHttpOk when a final reply was read whole, whatever its status.
int HttpFetch(const HttpRequest& request, HttpResponse* response);
const char* HttpErrorText(int error);

// Splits an http:// address; false when it is not one (https and others included).
bool SplitHttpUrl(const char* url, char* host, size_t hostSize, unsigned* port, const char** path);
