#include "editor/colour_words.h"

#include "editor/char_class.h"

namespace {

const char* const kBuiltinWords[] = {
    "void",         "char",     "int",        "float",    "short",    "long",     "double",
    "signed",       "unsigned", "__int64",    "_asm",     "union",    "enum",     "struct",
    "typedef",      "auto",     "const",      "static",   "extern",   "register", "volatile",
    "if",           "else",     "for",        "do",       "while",    "switch",   "case",
    "break",        "continue", "default",    "inline",   "return",   "goto",     "sizeof",
    "__stdcall",    "__cdecl",  "__fastcall", "__DATE__", "__TIME__", "__LINE__", "__FILE__",
    "__FUNCTION__",
};
static_assert(sizeof kBuiltinWords / sizeof kBuiltinWords[0] == 43, "the built-in words");

const char* const kDirectives[] = {"include", "define", "undef", "if",     "ifdef", "ifndef",
                                   "else",    "elif",   "endif", "pragma", "error", "line"};
static_assert(sizeof kDirectives / sizeof kDirectives[0] == 12, "the directives");

bool SameWord(const char16_t* word, int length, const char* ascii) {
  int i = 0;
  for (; i < length; ++i) {
    if (ascii[i] == '\0' || word[i] != static_cast<char16_t>(ascii[i])) return false;
  }
  return ascii[i] == '\0';
}

template <int N>
bool InList(const char* const (&list)[N], const char16_t* word, int length) {
  // Every identifier of a file being painted asks: most differ in their first unit already.
  if (length <= 0 || word[0] > 0x7F) return false;
  for (const char* entry : list) {
    if (static_cast<char16_t>(entry[0]) == word[0] && SameWord(word, length, entry)) return true;
  }
  return false;
}

bool IsLongSuffix(const char16_t* suffix, int length) {
  if (length == 1) return suffix[0] == u'L' || suffix[0] == u'l';
  return length == 2 && (suffix[0] == u'U' || suffix[0] == u'u') &&
         (suffix[1] == u'L' || suffix[1] == u'l');
}

}  // namespace

bool IsBuiltinWord(const char16_t* word, int length) {
  return InList(kBuiltinWords, word, length);
}

bool IsDirective(const char16_t* word, int length) {
  return InList(kDirectives, word, length);
}

bool IsNumber(const char16_t* word, int length) {
  int digits = 0;
  int i = 0;
  if (length >= 2 && word[0] == u'0' && (word[1] == u'x' || word[1] == u'X')) {
    for (i = 2; i < length && IsHexDigit(word[i]); ++i)
      ++digits;
  } else {
    for (; i < length && IsDecimalDigit(word[i]); ++i)
      ++digits;
  }
  return digits > 0 && (i == length || IsLongSuffix(word + i, length - i));
}
