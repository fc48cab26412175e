#include "frame/logo_rules.h"

#include <cstring>

#include "comm/http_reply.h"

bool AddressLastComponent(const char* url, char* name, size_t size) {
  size_t end = strcspn(url, "?#");
  size_t start = end;
  while (start > 0 && url[start - 1] != '/')
    --start;
  size_t length = end - start;
  if (length == 0 || length >= size || start < 8) return false;  // past "http://h"
  memcpy(name, url + start, length);
  name[length] = '\0';
  return true;
}

bool AddressBeside(const char* url, const char* name, char* target, size_t size) {
  size_t end = strcspn(url, "?#");
  size_t start = end;
  while (start > 0 && url[start - 1] != '/')
    --start;
  size_t nameLength = strlen(name);
  if (start < 8 || start + nameLength >= size) return false;
  memcpy(target, url, start);
  memcpy(target + start, name, nameLength + 1);
  return true;
}

bool ServerCopyIsNewer(const char* lastModified, int64_t localSeconds) {
  int64_t server;
  if (!lastModified || !ParseHttpDate(lastModified, &server)) return true;
  return server > localSeconds;
}

LogoRect PlaceLogo(int frameLeft, int frameTop, int frameRight, int frameBottom, int pictureWidth,
                   int pictureHeight) {
  auto halfDown = [](int value) { return value >= 0 ? value / 2 : -((-value + 1) / 2); };
  LogoRect rect;
  rect.width = pictureWidth + 4;
  rect.height = pictureHeight + 4;
  rect.x = frameLeft + halfDown(frameRight - frameLeft - rect.width);
  rect.y = frameTop + halfDown(frameBottom - frameTop - rect.height);
  return rect;
}

namespace {

// The next number of a dotted version; false at the end or at something else.
bool NextPart(const char** text, long* value) {
  const char* p = *text;
  if (*p < '0' || *p > '9') return false;
  long v = 0;
  for (; *p >= '0' && *p <= '9'; ++p) {
    if (v < 100000000) v = v * 10 + (*p - '0');
  }
  *value = v;
  if (*p == '.' && p[1] >= '0' && p[1] <= '9') ++p;
  *text = p;
  return true;
}

bool IsVersion(const char* text) {
  long value;
  if (!NextPart(&text, &value)) return false;
  while (NextPart(&text, &value)) {
  }
  return *text == '\0';
}

}  // namespace

int CompareVersions(const char* a, const char* b) {
  bool validA = IsVersion(a), validB = IsVersion(b);
  if (!validA || !validB) return validA - validB;
  while (*a || *b) {
    long x = 0, y = 0;
    if (*a) NextPart(&a, &x);
    if (*b) NextPart(&b, &y);
    if (x != y) return x < y ? -1 : 1;
  }
  return 0;
}

bool ParseVersionOffer(const char* text, size_t size, const char* versionUrl, VersionOffer* offer) {
  size_t at = 0;
  auto line = [&](char* out, size_t outSize) {
    while (at < size && (text[at] == ' ' || text[at] == '\t'))
      ++at;
    size_t start = at;
    while (at < size && text[at] != '\r' && text[at] != '\n')
      ++at;
    size_t end = at;
    while (end > start && (text[end - 1] == ' ' || text[end - 1] == '\t'))
      --end;
    if (at < size && text[at] == '\r') ++at;
    if (at < size && text[at] == '\n') ++at;
    if (end - start >= outSize || memchr(text + start, '\0', end - start)) return false;
    memcpy(out, text + start, end - start);
    out[end - start] = '\0';
    return true;
  };
  if (!line(offer->version, sizeof offer->version) || !IsVersion(offer->version)) return false;
  if (!line(offer->page, sizeof offer->page)) return false;
  if (offer->page[0] == '\0') return AddressBeside(versionUrl, "", offer->page, sizeof offer->page);
  // Only a web page: the text comes from outside and is handed to the shell.
  return strncmp(offer->page, "http://", 7) == 0 || strncmp(offer->page, "https://", 8) == 0;
}

bool ShouldOfferVersion(const char* offered, const char* current, const char* asked) {
  return CompareVersions(offered, current) > 0 && strcmp(offered, asked) != 0;
}
