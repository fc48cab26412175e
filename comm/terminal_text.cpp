#include "comm/terminal_text.h"

#include <cstring>

#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "foundation/formatter.h"

namespace {

constexpr int kCr = 13;
constexpr int kLf = 10;
constexpr int kNone = -1;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A decimal number (with an optional sign) saturating at `limit`; *at moves behind it. False when
// no digit is there.
bool ReadNumber(const char** at, long long limit, long long* value) {
  const char* p = *at;
  bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!IsDigit(*p)) return false;
  long long number = 0;
  for (; IsDigit(*p); ++p)
    if (number <= limit) number = number * 10 + (*p - '0');
  if (number > limit) number = limit;
  *value = negative ? -number : number;
  *at = p;
  return true;
}

// A field of a small index: out of range takes the default.
int Field(long long value, int low, int high, int fallback) {
  return value < low || value > high ? fallback : static_cast<int>(value);
}

}  // namespace

bool IsPortSpecification(const char* name) {
  if ((name[0] | 0x20) != 'c' || (name[1] | 0x20) != 'o' || (name[2] | 0x20) != 'm') return false;
  const char* p = name + 3;
  long long number = 0;
  if (!IsDigit(*p) || !ReadNumber(&p, 1LL << 40, &number)) return false;
  return number >= 1 && *p == ',';
}

bool ParsePortSpecification(const char* name, PortSpecification* settings) {
  if (!IsPortSpecification(name)) return false;
  *settings = PortSpecification{0, 115200, 0, 8, 0, 0};
  const char* p = name + 3;
  long long port = 0;
  ReadNumber(&p, 1LL << 40, &port);
  settings->port = port > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(port);
  long long values[5] = {115200, 0, 8, 0, 0};
  // Like scanf, the fields are taken while each is a comma followed by a number.
  for (long long& value : values) {
    if (*p != ',') break;
    ++p;
    if (!ReadNumber(&p, 0xFFFFFFFFLL, &value)) break;
  }
  settings->baud = values[0] > 0 ? static_cast<uint32_t>(values[0]) : 115200;
  settings->parity = Field(values[1], 0, 4, 0);
  settings->dataBits = Field(values[2], 5, 8, 8);
  settings->stopBits = Field(values[3], 0, 2, 0);
  settings->flow = Field(values[4], 0, 2, 0);
  return true;
}

int FormatPortSpecification(const PortSpecification* settings, char* text, int size) {
  FormatStr(text, size, "COM%d,%d,%d,%d,%d,%d", settings->port, static_cast<int>(settings->baud),
            settings->parity, settings->dataBits, settings->stopBits, settings->flow);
  return static_cast<int>(strlen(text));
}

int TerminalLineEnd(int byte, int* previous) {
  if (byte == kCr) {
    if (*previous == kCr) return kNone;
    *previous = kCr;
    return kCr;
  }
  if (byte == kLf) {
    bool afterCr = *previous == kCr;
    *previous = kNone;
    return afterCr ? kNone : kCr;
  }
  *previous = byte;
  return byte;
}

void TypeReceivedBytes(EditorView* view, const unsigned char* bytes, int count, int* previous) {
  EditDocument* document = view->document;
  if (!document || count <= 0) return;
  int firstLine = view->caretLine;
  TextPosition at = {view->caretColumn, view->caretLine};
  char16_t units[4096];
  int used = 0;
  // Puts the collected units at the caret; a line that cannot take them all is broken first.
  auto flush = [&] {
    int from = 0;
    while (from < used) {
      if (!EnsureLine(document, at.line)) return;
      int room = kMaxLineUnits - LineLength(DocumentLine(document, at.line));
      // Padding up to a caret behind the line's end takes room too.
      room -= at.column - LineColumns(DocumentLine(document, at.line)) > 0
                  ? at.column - LineColumns(DocumentLine(document, at.line))
                  : 0;
      int take = used - from < room ? used - from : room;
      TextPosition end = at;
      if (take <= 0 || !InsertStream(document, at, units + from, take, &end)) {
        static const char16_t kBreak = kCr;
        if (!InsertStream(document, at, &kBreak, 1, &end)) return;  // out of memory
        at = end;
        continue;
      }
      at = end;
      from += take;
    }
    used = 0;
  };
  for (int i = 0; i < count; ++i) {
    int typed = TerminalLineEnd(bytes[i], previous);
    if (typed < 0) continue;
    if (typed == kCr) {
      flush();
      static const char16_t kBreak = kCr;
      TextPosition end = at;
      if (InsertStream(document, at, &kBreak, 1, &end)) at = end;
      continue;
    }
    units[used++] = static_cast<char16_t>(typed);
    if (used == static_cast<int>(sizeof units / sizeof units[0])) flush();
  }
  flush();
  SetCaret(view, at.column, at.line);
  if (at.line == firstLine)
    EditorRepaintLine(view, at.line);
  else
    EditorRepaintAll(view);
}
