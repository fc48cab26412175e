// The HTTP reply's head and chunked body on arbitrary bytes. A head is found only where it ends
// and its fields stay in range; the chunked body decodes the same however the bytes are split
// (the first byte chooses the pieces' size).
#include <cstdint>
#include <cstring>
#include <string>

#include "comm/http_reply.h"

namespace {

// Decodes `coded` in pieces of `step` bytes: the body, the final state and the bytes used.
std::string Dechunk(const std::string& coded, size_t step, int* state, size_t* usedTotal) {
  HttpChunks chunks;
  StartHttpChunks(&chunks);
  std::string body;
  *state = kHttpChunksMore;
  *usedTotal = 0;
  for (size_t at = 0; at < coded.size() && *state == kHttpChunksMore; at += step) {
    std::string piece = coded.substr(at, step);
    size_t bodyBytes, used;
    *state = DecodeHttpChunks(&chunks, &piece[0], piece.size(), &bodyBytes, &used);
    if (bodyBytes > used || used > piece.size()) __builtin_trap();
    body.append(piece, 0, bodyBytes);
    *usedTotal += used;
  }
  return body;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  size_t step = data[0] % 16 + 1;
  std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  HttpHead head;
  int length = ParseHttpHead(bytes.data(), bytes.size(), &head);
  if (length > 0) {
    if (static_cast<size_t>(length) > bytes.size() || static_cast<size_t>(length) > kHttpMaxHead)
      __builtin_trap();
    if (head.status < 100 || head.status > 599 || head.contentLength < -1) __builtin_trap();
    if (strlen(head.location) >= kHttpMaxUrl || strlen(head.lastModified) >= kHttpMaxDate)
      __builtin_trap();
    HttpHead shorter;
    if (ParseHttpHead(bytes.data(), static_cast<size_t>(length) - 1, &shorter) > 0)
      __builtin_trap();
    int64_t seconds;
    if (head.lastModified[0] && ParseHttpDate(head.lastModified, &seconds)) {
      char text[32];
      FormatHttpDate(seconds, text);
      int64_t back;
      if (!ParseHttpDate(text, &back) || back != seconds) __builtin_trap();
    }
  }
  std::string body = bytes.substr(length > 0 ? static_cast<size_t>(length) : 0);
  int wholeState, pieceState;
  size_t wholeUsed, pieceUsed;
  std::string whole = Dechunk(body, body.size() ? body.size() : 1, &wholeState, &wholeUsed);
  std::string pieces = Dechunk(body, step, &pieceState, &pieceUsed);
  if (whole != pieces || wholeState != pieceState) __builtin_trap();
  if (wholeState == kHttpChunksDone && wholeUsed != pieceUsed) __builtin_trap();
  return 0;
}
