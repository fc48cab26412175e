// Reading an HTTP/1.x reply from bytes: the head (status line and header fields) and the chunked
// transfer coding. Pure functions over buffers, so that every rule about what a server may send
// is checked without a network, and fuzzed.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr size_t kHttpMaxHead = 32768;  // a longer head is refused, however it goes on
constexpr size_t kHttpMaxUrl = 2048;
constexpr size_t kHttpMaxDate = 64;

struct HttpHead {
  int status;                                 // 100-599
  int64_t contentLength;                      // -1 when the reply names none
  bool chunked;                               // Transfer-Encoding ends in "chunked"
  char location[kHttpMaxUrl];                 // empty when absent (or too long to follow)
  char lastModified[kHttpMaxDate];            // the field's text, empty when absent
  int64_t rangeFirst, rangeLast, rangeTotal;  // Content-Range "bytes A-B/T"; -1 when absent
};

enum : int { kHttpHeadMore = 0, kHttpHeadBad = -1 };
// Parses the reply head at the start of `data`: its length in bytes (through the empty line)
// when complete, kHttpHeadMore when the bytes so far are a head's beginning, kHttpHeadBad when
// they cannot be one (or it grows past kHttpMaxHead).
int ParseHttpHead(const char* data, size_t size, HttpHead* head);

// The chunked transfer coding, decoded in place as bytes arrive.
struct HttpChunks {
  int state;
  uint64_t remaining;  // of the current chunk's data, or of its size line's digits
  size_t lineBytes;    // of the size line or of the trailer, to refuse endless ones
};
enum : int { kHttpChunksMore = 0, kHttpChunksDone = 1, kHttpChunksBad = -1 };
void StartHttpChunks(HttpChunks* chunks);
// Takes `size` bytes of the coded body: moves the data among them to the front of `data` and sets
// `*bodyBytes` to its length, `*used` to the bytes taken (fewer than `size` only when done or
// bad). Data before a fault is still moved and counted.
int DecodeHttpChunks(HttpChunks* chunks, char* data, size_t size, size_t* bodyBytes, size_t* used);

// HTTP dates (RFC 1123 form, "Sun, 06 Nov 1994 08:49:37 GMT"; the two obsolete forms are read
// too) as seconds since 1970-01-01 UTC. False when the text is not a date.
bool ParseHttpDate(const char* text, int64_t* seconds);
// Writes the RFC 1123 form; `text` holds at least 30 bytes.
void FormatHttpDate(int64_t seconds, char* text);
