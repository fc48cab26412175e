// The head is taken whole once its empty line has arrived: replies are small and the caller keeps
// reading until then. Folded header lines and other obsolete forms are refused rather than
// guessed at.
#include "comm/http_reply.h"

#include <cstring>

namespace {

bool IsSpace(char c) {
  return c == ' ' || c == '\t';
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool SameName(const char* a, size_t length, const char* b) {
  if (strlen(b) != length) return false;
  for (size_t i = 0; i < length; ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

bool IsTokenChar(char c) {
  return c > 32 && c < 127 && !strchr("()<>@,;:\\\"/[]?={}", c);
}

// The end of the head: the offset just past its empty line, or 0.
size_t HeadEnd(const char* data, size_t size) {
  for (size_t i = 0; i < size; ++i) {
    if (data[i] != '\n') continue;
    if (i + 1 < size && data[i + 1] == '\n') return i + 2;
    if (i + 2 < size && data[i + 1] == '\r' && data[i + 2] == '\n') return i + 3;
  }
  return 0;
}

// Reads a decimal number of at most 18 digits spanning exactly [p, end).
bool ReadNumber(const char* p, const char* end, int64_t* value) {
  if (p == end || end - p > 18) return false;
  int64_t n = 0;
  for (; p < end; ++p) {
    if (!IsDigit(*p)) return false;
    n = n * 10 + (*p - '0');
  }
  *value = n;
  return true;
}

void CopyField(const char* value, size_t length, char* target, size_t size, bool truncate) {
  if (length >= size) {
    if (!truncate)
      length = 0;  // an address cut short would lead somewhere else
    else
      length = size - 1;
  }
  memcpy(target, value, length);
  target[length] = '\0';
}

// "bytes A-B/T", "bytes A-B/*" or "bytes */T"; anything else leaves the range unknown.
void ReadContentRange(const char* p, const char* end, HttpHead* head) {
  if (end - p < 6 || !SameName(p, 5, "bytes") || p[5] != ' ') return;
  p += 6;
  const char* slash = static_cast<const char*>(memchr(p, '/', static_cast<size_t>(end - p)));
  if (!slash) return;
  int64_t first = -1, last = -1, total = -1;
  if (!(slash - p == 1 && *p == '*')) {
    const char* dash = static_cast<const char*>(memchr(p, '-', static_cast<size_t>(slash - p)));
    if (!dash || !ReadNumber(p, dash, &first) || !ReadNumber(dash + 1, slash, &last) ||
        last < first) {
      return;
    }
  }
  if (!(end - slash == 2 && slash[1] == '*') && !ReadNumber(slash + 1, end, &total)) return;
  head->rangeFirst = first, head->rangeLast = last, head->rangeTotal = total;
}

bool ReadField(const char* name, size_t nameLength, const char* value, const char* end,
               HttpHead* head) {
  if (SameName(name, nameLength, "content-length")) {
    int64_t length;
    if (!ReadNumber(value, end, &length)) return false;
    if (head->contentLength >= 0 && head->contentLength != length) return false;
    head->contentLength = length;
  } else if (SameName(name, nameLength, "transfer-encoding")) {
    const char* last = end;
    while (last > value && last[-1] != ',')
      --last;
    while (last < end && IsSpace(*last))
      ++last;
    head->chunked = SameName(last, static_cast<size_t>(end - last), "chunked");
  } else if (SameName(name, nameLength, "location")) {
    CopyField(value, static_cast<size_t>(end - value), head->location, sizeof head->location,
              false);
  } else if (SameName(name, nameLength, "last-modified")) {
    CopyField(value, static_cast<size_t>(end - value), head->lastModified,
              sizeof head->lastModified, true);
  } else if (SameName(name, nameLength, "content-range")) {
    ReadContentRange(value, end, head);
  }
  return true;
}

bool ReadStatusLine(const char* p, const char* end, HttpHead* head) {
  if (end - p < 12 || memcmp(p, "HTTP/1.", 7) != 0 || !IsDigit(p[7]) || p[8] != ' ') return false;
  if (!IsDigit(p[9]) || !IsDigit(p[10]) || !IsDigit(p[11])) return false;
  head->status = (p[9] - '0') * 100 + (p[10] - '0') * 10 + (p[11] - '0');
  if (head->status < 100 || head->status > 599) return false;
  return end - p == 12 || p[12] == ' ';
}

}  // namespace

int ParseHttpHead(const char* data, size_t size, HttpHead* head) {
  memset(head, 0, sizeof *head);
  head->contentLength = -1;
  head->rangeFirst = head->rangeLast = head->rangeTotal = -1;
  size_t limit = size < kHttpMaxHead ? size : kHttpMaxHead;
  size_t headSize = HeadEnd(data, limit);
  if (!headSize) {
    // Refuse early what can never become a reply, so a stranger service is not read at length.
    size_t start = limit < 5 ? limit : 5;
    if (memcmp(data, "HTTP/", start) != 0) return kHttpHeadBad;
    return size >= kHttpMaxHead ? kHttpHeadBad : kHttpHeadMore;
  }
  const char* p = data;
  const char* end = data + headSize;
  bool first = true;
  while (p < end) {
    const char* newline = static_cast<const char*>(memchr(p, '\n', static_cast<size_t>(end - p)));
    const char* lineEnd = newline > p && newline[-1] == '\r' ? newline - 1 : newline;
    if (first) {
      if (!ReadStatusLine(p, lineEnd, head)) return kHttpHeadBad;
      first = false;
    } else if (lineEnd != p) {
      const char* colon = p;
      while (colon < lineEnd && IsTokenChar(*colon))
        ++colon;
      if (colon == p || colon == lineEnd || *colon != ':') return kHttpHeadBad;
      const char* value = colon + 1;
      const char* valueEnd = lineEnd;
      while (value < valueEnd && IsSpace(*value))
        ++value;
      while (valueEnd > value && IsSpace(valueEnd[-1]))
        --valueEnd;
      for (const char* c = value; c < valueEnd; ++c) {
        if (*c == '\r' || *c == '\0') return kHttpHeadBad;
      }
      if (!ReadField(p, static_cast<size_t>(colon - p), value, valueEnd, head)) return kHttpHeadBad;
    }
    p = newline + 1;
  }
  if (head->chunked) head->contentLength = -1;
  return static_cast<int>(headSize);
}

namespace {

enum ChunkState : int {
  kSize,
  kSizeExtension,
  kSizeLf,
  kData,
  kDataCr,
  kDataLf,
  kTrailerStart,
  kTrailer,
  kFinalLf,
  kDone,
  kBroken
};
constexpr size_t kMaxSizeLine = 4096;

int HexValue(char c) {
  if (IsDigit(c)) return c - '0';
  c = Lower(c);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

}  // namespace

void StartHttpChunks(HttpChunks* chunks) {
  chunks->state = kSize;
  chunks->remaining = 0;
  chunks->lineBytes = 0;
}

int DecodeHttpChunks(HttpChunks* chunks, char* data, size_t size, size_t* bodyBytes, size_t* used) {
  size_t in = 0, out = 0;
  while (in < size && chunks->state != kDone && chunks->state != kBroken) {
    char c = data[in];
    switch (chunks->state) {
      case kSize: {
        int digit = HexValue(c);
        if (digit >= 0) {
          if (chunks->remaining >> 56) {
            chunks->state = kBroken;
            break;
          }  // past any body this client takes
          chunks->remaining = chunks->remaining << 4 | static_cast<unsigned>(digit);
          chunks->lineBytes++;
        } else if (chunks->lineBytes == 0) {
          {
            chunks->state = kBroken;
            break;
          }
        } else if (c == ';' || IsSpace(c)) {
          chunks->state = kSizeExtension;
        } else if (c == '\r') {
          chunks->state = kSizeLf;
        } else if (c == '\n') {
          chunks->state = chunks->remaining ? kData : kTrailerStart;
          chunks->lineBytes = 0;
        } else {
          {
            chunks->state = kBroken;
            break;
          }
        }
        ++in;
        break;
      }
      case kSizeExtension:
        if (++chunks->lineBytes > kMaxSizeLine) {
          chunks->state = kBroken;
          break;
        }
        if (c == '\r') chunks->state = kSizeLf;
        if (c == '\n') {
          chunks->state = chunks->remaining ? kData : kTrailerStart;
          chunks->lineBytes = 0;
        }
        ++in;
        break;
      case kSizeLf:
        if (c != '\n') {
          chunks->state = kBroken;
          break;
        }
        chunks->state = chunks->remaining ? kData : kTrailerStart;
        chunks->lineBytes = 0;
        ++in;
        break;
      case kData: {
        size_t take = size - in;
        if (take > chunks->remaining) take = static_cast<size_t>(chunks->remaining);
        memmove(data + out, data + in, take);
        out += take, in += take;
        chunks->remaining -= take;
        if (!chunks->remaining) chunks->state = kDataCr;
        break;
      }
      case kDataCr:
      case kDataLf:
        if (c == '\r' && chunks->state == kDataCr) {
          chunks->state = kDataLf;
        } else if (c == '\n') {
          chunks->state = kSize;
          chunks->lineBytes = 0;
        } else {
          {
            chunks->state = kBroken;
            break;
          }
        }
        ++in;
        break;
      case kTrailerStart:
      case kTrailer:
        if (++chunks->lineBytes > kHttpMaxHead) {
          chunks->state = kBroken;
          break;
        }
        if (chunks->state == kTrailerStart && c == '\r') {
          chunks->state = kFinalLf;
        } else if (c == '\n') {
          chunks->state = chunks->state == kTrailerStart ? kDone : kTrailerStart;
        } else {
          chunks->state = kTrailer;
        }
        ++in;
        break;
      case kFinalLf:
        if (c != '\n') {
          chunks->state = kBroken;
          break;
        }
        chunks->state = kDone;
        ++in;
        break;
    }
  }
  *bodyBytes = out;
  *used = in;
  if (chunks->state == kBroken) return kHttpChunksBad;
  return chunks->state == kDone ? kHttpChunksDone : kHttpChunksMore;
}

namespace {

const char kMonths[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
const char kWeekdays[] = "ThuFriSatSunMonTueWed";  // 1970-01-01 was a Thursday

// Days since 1970-01-01 of a date of the proleptic Gregorian calendar.
int64_t DaysFromCivil(int64_t y, int m, int d) {
  y -= m <= 2;
  int64_t era = (y >= 0 ? y : y - 399) / 400;
  int64_t yoe = y - era * 400;
  int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

void CivilFromDays(int64_t z, int64_t* y, int* m, int* d) {
  z += 719468;
  int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  int64_t doe = z - era * 146097;
  int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  int64_t mp = (5 * doy + 2) / 153;
  *d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  *m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  *y = yoe + era * 400 + (*m <= 2);
}

int ReadDigits(const char** p, int most) {
  int value = 0, count = 0;
  while (count < most && IsDigit(**p))
    value = value * 10 + (*(*p)++ - '0'), ++count;
  return count ? value : -1;
}

int ReadMonth(const char** p) {
  for (int m = 0; m < 12; ++m) {
    if (strncmp(*p, kMonths + 3 * m, 3) == 0) {
      *p += 3;
      return m + 1;
    }
  }
  return 0;
}

bool ReadTime(const char** p, int* h, int* mi, int* s) {
  *h = ReadDigits(p, 2);
  if (*h < 0 || *(*p)++ != ':') return false;
  *mi = ReadDigits(p, 2);
  if (*mi < 0 || *(*p)++ != ':') return false;
  *s = ReadDigits(p, 2);
  return *s >= 0 && *h < 24 && *mi < 60 && *s < 61;
}

}  // namespace

bool ParseHttpDate(const char* text, int64_t* seconds) {
  const char* p = text;
  while ((*p >= 'A' && *p <= 'Z') || (*p >= 'a' && *p <= 'z'))
    ++p;
  if (p - text < 3) return false;
  int year, month, day, h, mi, s;
  if (*p == ',') {
    // "Sun, 06 Nov 1994 08:49:37 GMT" or "Sunday, 06-Nov-94 08:49:37 GMT"
    if (*++p != ' ') return false;
    ++p;
    day = ReadDigits(&p, 2);
    char separator = *p;
    if (day < 0 || (separator != ' ' && separator != '-')) return false;
    ++p;
    if (!(month = ReadMonth(&p)) || *p++ != separator) return false;
    const char* yearStart = p;
    year = ReadDigits(&p, 4);
    if (year < 0) return false;
    if (p - yearStart == 2)
      year += year < 70 ? 2000 : 1900;
    else if (p - yearStart != 4)
      return false;
    if (*p++ != ' ' || !ReadTime(&p, &h, &mi, &s) || strcmp(p, " GMT") != 0) return false;
  } else {
    // "Sun Nov  6 08:49:37 1994"
    if (*p++ != ' ' || !(month = ReadMonth(&p)) || *p++ != ' ') return false;
    if (*p == ' ') ++p;
    day = ReadDigits(&p, 2);
    if (day < 0 || *p++ != ' ' || !ReadTime(&p, &h, &mi, &s) || *p++ != ' ') return false;
    const char* yearStart = p;
    year = ReadDigits(&p, 4);
    if (p - yearStart != 4 || *p) return false;
  }
  static constexpr int kMonthDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (day < 1 || day > kMonthDays[month - 1]) return false;
  *seconds = DaysFromCivil(year, month, day) * 86400 + h * 3600 + mi * 60 + s;
  return true;
}

void FormatHttpDate(int64_t seconds, char* text) {
  int64_t days = seconds >= 0 ? seconds / 86400 : (seconds - 86399) / 86400;
  int64_t rest = seconds - days * 86400;
  int64_t year;
  int month, day;
  CivilFromDays(days, &year, &month, &day);
  int weekday = static_cast<int>(((days % 7) + 7) % 7);
  int h = static_cast<int>(rest / 3600), mi = static_cast<int>(rest / 60 % 60),
      s = static_cast<int>(rest % 60);
  char* p = text;
  memcpy(p, kWeekdays + 3 * weekday, 3), p += 3;
  *p++ = ',', *p++ = ' ';
  *p++ = static_cast<char>('0' + day / 10), *p++ = static_cast<char>('0' + day % 10), *p++ = ' ';
  memcpy(p, kMonths + 3 * (month - 1), 3), p += 3;
  *p++ = ' ';
  int y = static_cast<int>(year % 10000);
  for (int div = 1000; div; div /= 10)
    *p++ = static_cast<char>('0' + y / div % 10);
  *p++ = ' ';
  int parts[3] = {h, mi, s};
  for (int i = 0; i < 3; ++i) {
    *p++ = static_cast<char>('0' + parts[i] / 10);
    *p++ = static_cast<char>('0' + parts[i] % 10);
    *p++ = i < 2 ? ':' : ' ';
  }
  memcpy(p, "GMT", 4);
}
