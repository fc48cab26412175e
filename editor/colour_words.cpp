#include "editor/colour_words.h"

#include "editor/char_class.h"

namespace {

constexpr const char* kBuiltinWords[] = {
    "void",         "char",     "int",        "float",    "short",    "long",     "double",
    "signed",       "unsigned", "__int64",    "_asm",     "union",    "enum",     "struct",
    "typedef",      "auto",     "const",      "static",   "extern",   "register", "volatile",
    "if",           "else",     "for",        "do",       "while",    "switch",   "case",
    "break",        "continue", "default",    "inline",   "return",   "goto",     "sizeof",
    "__stdcall",    "__cdecl",  "__fastcall", "__DATE__", "__TIME__", "__LINE__", "__FILE__",
    "__FUNCTION__",
};
static_assert(sizeof kBuiltinWords / sizeof kBuiltinWords[0] == 43, "the built-in words");

constexpr const char* kDirectives[] = {"include", "define", "undef", "if",     "ifdef", "ifndef",
                                       "else",    "elif",   "endif", "pragma", "error", "line"};
static_assert(sizeof kDirectives / sizeof kDirectives[0] == 12, "the directives");

constexpr int kWordSlots = 128;  // a power of two, about three times the longer list

constexpr int TextLength(const char* text) {
  int length = 0;
  while (text[length] != '\0')
    ++length;
  return length;
}

// Any unit of a word may be wide: the hash takes what it needs modulo the slot count.
constexpr unsigned WordHash(unsigned first, unsigned last, int length) {
  return (first * 7u + last * 3u + static_cast<unsigned>(length) * 13u) & (kWordSlots - 1);
}

// An open-addressed table of a word list: each identifier of a painted file is one hash and,
// mostly, one comparison instead of a walk along the list.
struct WordTable {
  signed char slot[kWordSlots];  // index into the list, -1 when free
};

template <int N>
constexpr WordTable MakeWordTable(const char* const (&list)[N]) {
  WordTable table = {};
  for (int i = 0; i < kWordSlots; ++i)
    table.slot[i] = -1;
  for (int i = 0; i < N; ++i) {
    int length = TextLength(list[i]);
    unsigned at = WordHash(static_cast<unsigned char>(list[i][0]),
                           static_cast<unsigned char>(list[i][length - 1]), length);
    while (table.slot[at] >= 0)
      at = (at + 1) & (kWordSlots - 1);
    table.slot[at] = static_cast<signed char>(i);
  }
  return table;
}

constexpr WordTable kBuiltinTable = MakeWordTable(kBuiltinWords);
constexpr WordTable kDirectiveTable = MakeWordTable(kDirectives);

bool SameWord(const char16_t* word, int length, const char* ascii) {
  int i = 0;
  for (; i < length; ++i) {
    if (ascii[i] == '\0' || word[i] != static_cast<char16_t>(ascii[i])) return false;
  }
  return ascii[i] == '\0';
}

template <int N>
bool InList(const char* const (&list)[N], const WordTable& table, const char16_t* word,
            int length) {
  if (length <= 0) return false;
  for (unsigned at = WordHash(word[0], word[length - 1], length); table.slot[at] >= 0;
       at = (at + 1) & (kWordSlots - 1)) {
    if (SameWord(word, length, list[table.slot[at]])) return true;
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
  return InList(kBuiltinWords, kBuiltinTable, word, length);
}

bool IsDirective(const char16_t* word, int length) {
  return InList(kDirectives, kDirectiveTable, word, length);
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
