#include "csource/decl_text.h"

#include "csource/c_chars.h"
#include "foundation/text_builder.h"

namespace {

struct Writer {
  TextBuffer* out;
  size_t start;     // where this text began in `out`
  bool blank;       // a blank is pending
  bool lineStart;   // just after a line break and its indentation
  size_t lineMark;  // where that line break began
  int level;

  char Last() const { return out->length > start ? out->text[out->length - 1] : '\0'; }

  void NewLine(int indent) {
    lineMark = out->length;
    AppendText(out, "\r\n");
    for (int i = 0; i < indent; ++i)
      AppendText(out, "    ");
    lineStart = true;
    blank = false;
  }

  void Put(const char* text, size_t length) {
    char first = text[0];
    char last = Last();
    if (blank && !lineStart && last != '\0' && last != '(' && last != '[' && first != ';' &&
        first != ',' && first != ')' && first != ']') {
      AppendChar(out, ' ');
    }
    blank = false;
    lineStart = false;
    AppendText(out, text, length);
  }
};

}  // namespace

void NormalizeDeclText(const char* text, size_t length, bool blocks, TextBuffer* out) {
  Writer w = {out, out->length, false, false, 0, 0};
  const char* p = text;
  const char* end = text + length;
  int parens = 0;
  bool afterBreak = true;
  while (p < end) {
    char c = *p;
    if (IsCBlank(c)) {
      if (IsCLineEnd(c)) afterBreak = true;
      w.blank = true;
      ++p;
      continue;
    }
    if (c == '#' && afterBreak && p + 1 < end && IsCDigit(p[1])) {
      ++p;
      while (p < end && IsCDigit(*p))
        ++p;
      w.blank = true;
      continue;
    }
    afterBreak = false;
    if (c == '"' || c == '\'') {
      const char* e = SkipCQuoted(p, end);
      w.Put(p, static_cast<size_t>(e - p));
      p = e;
      continue;
    }
    if (IsCIdentChar(c)) {
      const char* e = p;
      while (e < end && (IsCIdentChar(*e) || *e == '.'))
        ++e;
      w.Put(p, static_cast<size_t>(e - p));
      p = e;
      continue;
    }
    ++p;
    if (c == '(') ++parens;
    if (c == ')' && parens > 0) --parens;
    if (!blocks) {
      w.Put(&c, 1);
      continue;
    }
    if (c == '{') {
      w.Put(&c, 1);
      ++w.level;
      w.NewLine(w.level);
    } else if (c == '}') {
      if (w.level > 0) --w.level;
      if (w.lineStart) {
        TruncateText(out, w.lineMark);
        w.NewLine(w.level);
      } else {
        w.NewLine(w.level);
      }
      w.Put(&c, 1);
    } else if ((c == ';' || (c == ',' && parens == 0)) && w.level > 0) {
      w.Put(&c, 1);
      w.NewLine(w.level);
    } else {
      w.Put(&c, 1);
    }
  }
  // A block that was not closed leaves its last line break behind.
  if (w.lineStart) TruncateText(out, w.lineMark);
}
