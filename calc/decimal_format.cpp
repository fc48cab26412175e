#include "calc/decimal_format.h"

#include "calc/decimal_registers.h"
#include "foundation/formatter.h"
#include "foundation/os_codepage.h"
#include "foundation/unicode.h"

namespace {

// The longest result: 28 digits with commas, an exponent, 2 x 29 hex digits, 28 x 5 binary and
// 14 characters of up to three bytes.
constexpr int kResultText = 512;
// The integer part is shown as a binary number of this many bits, in 32-bit words.
constexpr int kIntegerBits = 112;
constexpr int kWords = 4;
constexpr int kHexDigits = kIntegerBits / 4;
constexpr int kIntegerBytes = kIntegerBits / 8;

struct Text {
  char data[kResultText];
  int length;
};

void Append(Text* text, const char* part) {
  while (*part && text->length < kResultText - 1)
    text->data[text->length++] = *part++;
  text->data[text->length] = '\0';
}

void AppendChar(Text* text, char c) {
  char part[2] = {c, '\0'};
  Append(text, part);
}

// words = words * 10 + digit over 128 bits; false when the result no longer fits 112 bits.
bool MultiplyAdd(uint32_t* words, uint32_t digit) {
  uint64_t carry = digit;
  for (int i = kWords - 1; i >= 0; --i) {
    uint64_t product = static_cast<uint64_t>(words[i]) * 10 + carry;
    words[i] = static_cast<uint32_t>(product);
    carry = product >> 32;
  }
  return carry == 0 && (words[0] >> (kIntegerBits - 96)) == 0;
}

int HexDigit(const uint32_t* words, int index) {
  // index 0 is the most significant of the 28 digits.
  int bit = (kHexDigits - 1 - index) * 4;
  return static_cast<int>((words[kWords - 1 - bit / 32] >> (bit % 32)) & 0xF);
}

// Hex digits from `first`, with a blank after every fourth counted from the right; then the same
// digits in binary into `binary` (four bits a group).
void AppendHex(Text* text, Text* binary, const uint32_t* words, int first, char extra) {
  char digits[kHexDigits + 2];
  int count = 0;
  if (extra) digits[count++] = extra;
  for (int i = first; i < kHexDigits; ++i)
    digits[count++] = "0123456789ABCDEF"[HexDigit(words, i)];
  binary->length = 0;
  binary->data[0] = '\0';
  for (int i = 0; i < count; ++i) {
    if (i > 0 && (count - i) % 4 == 0) AppendChar(text, ' ');
    AppendChar(text, digits[i]);
    int value = digits[i] <= '9' ? digits[i] - '0' : digits[i] - 'A' + 10;
    if (i > 0) AppendChar(binary, ' ');
    for (int bit = 3; bit >= 0; --bit)
      AppendChar(binary, (value >> bit) & 1 ? '1' : '0');
  }
  Append(text, " (Hex)");
}

// Leading zeros dropped, one kept before a digit of 8 or more.
void AppendPositiveHex(Text* text, Text* binary, const uint32_t* words) {
  int first = 0;
  while (first < kHexDigits - 1 && HexDigit(words, first) == 0)
    ++first;
  AppendHex(text, binary, words, first, HexDigit(words, first) >= 8 ? '0' : '\0');
}

// Leading F digits dropped, one kept before a digit of 7 or less.
void AppendNegativeHex(Text* text, Text* binary, const uint32_t* words) {
  int first = 0;
  while (first < kHexDigits && HexDigit(words, first) == 0xF)
    ++first;
  if (first == kHexDigits) {
    AppendHex(text, binary, words, kHexDigits - 1, '\0');
    return;
  }
  AppendHex(text, binary, words, first, HexDigit(words, first) <= 7 ? 'F' : '\0');
}

bool IsDoubleByteLead(unsigned char c) {
  return c >= 0xA1 && c <= 0xFE;
}

// The integer's bytes as text, when any of them is printable.
void AppendCharacters(Text* text, const uint32_t* words) {
  unsigned char bytes[kIntegerBytes];
  for (int i = 0; i < kIntegerBytes; ++i) {
    int bit = (kIntegerBytes - 1 - i) * 8;
    bytes[i] = static_cast<unsigned char>(words[kWords - 1 - bit / 32] >> (bit % 32));
  }
  int first = 0;
  while (first < kIntegerBytes && bytes[first] == 0)
    ++first;
  Text line;
  line.length = 0;
  line.data[0] = '\0';
  bool printable = false;
  for (int i = first; i < kIntegerBytes; ++i) {
    unsigned char c = bytes[i];
    if (IsDoubleByteLead(c) && i + 1 < kIntegerBytes && IsDoubleByteLead(bytes[i + 1])) {
      char16_t wide[2];
      char utf8[8];
      int units =
          OsCodePageToWide(kCodePageKorean, reinterpret_cast<const char*>(bytes + i), 2, wide, 2);
      int length = units == 1 ? Utf16ToUtf8(wide, 1, utf8, sizeof utf8 - 1) : 0;
      if (length > 0) {
        utf8[length] = '\0';
        Append(&line, utf8);
        printable = true;
      } else {
        Append(&line, "  ");
      }
      ++i;
    } else if (c >= 32 && c < 128) {
      AppendChar(&line, static_cast<char>(c));
      printable = printable || c < 127;
    } else {
      AppendChar(&line, ' ');
    }
  }
  if (!printable) return;
  Append(text, "\r\n= '");
  Append(text, line.data);
  AppendChar(text, '\'');
}

void AppendIntegerForms(Text* text, const DecimalParts& parts) {
  uint32_t words[kWords] = {};
  for (int i = 0; i < parts.exponent; ++i) {
    uint32_t digit = i < kDecimalDigits ? parts.digits[i] : 0;
    if (!MultiplyAdd(words, digit)) {
      Append(text, "\r\n= Over (Hex)");
      return;
    }
  }
  Text binary;
  Append(text, "\r\n= ");
  if (parts.negative) {
    AppendChar(text, '-');
    AppendPositiveHex(text, &binary, words);
    uint32_t complement[kWords];
    uint64_t carry = 1;
    for (int i = kWords - 1; i >= 0; --i) {
      uint64_t sum = static_cast<uint64_t>(~words[i]) + carry;
      complement[i] = static_cast<uint32_t>(sum);
      carry = sum >> 32;
    }
    Append(text, "\r\n= ");
    AppendNegativeHex(text, &binary, complement);
  } else {
    AppendPositiveHex(text, &binary, words);
  }
  if (DecimalBinaryOutput()) {
    Append(text, "\r\n= ");
    Append(text, binary.data);
    Append(text, " (Bin)");
  }
  AppendCharacters(text, words);
}

}  // namespace

void FormatDecimalResult(char* buffer, int size, const DecimalNumber& value) {
  Text text;
  text.length = 0;
  Append(&text, "= ");
  if (IsDecimalZero(value)) {
    Append(&text, "0");
    FormatStr(buffer, size, "%s", text.data);
    return;
  }
  DecimalParts parts;
  UnpackDecimal(value, &parts);
  if (parts.negative) AppendChar(&text, '-');
  int shown = 0;   // the exponent printed after the digits
  int before = 0;  // digits before the point
  if (parts.exponent >= 1 && parts.exponent < kDecimalDigits) {
    before = parts.exponent;
  } else if (parts.exponent >= kDecimalDigits) {
    before = kDecimalDigits - 1;
    shown = parts.exponent - before;
  } else {
    // Engineering form: an exponent that is a multiple of three, one to three digits before it.
    shown = parts.exponent / 3 * 3 - 3;
    before = parts.exponent - shown;
  }
  for (int i = 0; i < before; ++i) {
    if (i > 0 && (before - i) % 3 == 0) AppendChar(&text, ',');
    AppendChar(&text, static_cast<char>('0' + parts.digits[i]));
  }
  int last = kDecimalDigits - 1;
  while (last >= before && parts.digits[last] == 0)
    --last;
  if (last >= before) {
    AppendChar(&text, '.');
    for (int i = before; i <= last; ++i)
      AppendChar(&text, static_cast<char>('0' + parts.digits[i]));
  }
  if (shown != 0) {
    char exponent[16];
    FormatStr(exponent, sizeof exponent, "e%d", shown);
    Append(&text, exponent);
  }
  if (parts.exponent >= 1) AppendIntegerForms(&text, parts);
  FormatStr(buffer, size, "%s", text.data);
}
