#include "foundation/os_text_order.h"

namespace {

// The system's punctuation order, then digits, then letters regardless of case.
constexpr char kPunctuation[] = " !\"#$%&()*,./:;?@[\\]^_`{|}~+<=>";

int Weight(unsigned char c) {
  if (c >= 'A' && c <= 'Z') c = static_cast<unsigned char>(c - 'A' + 'a');
  if (c >= 'a' && c <= 'z') return 300 + (c - 'a');
  if (c >= '0' && c <= '9') return 200 + (c - '0');
  for (int i = 0; kPunctuation[i]; ++i)
    if (kPunctuation[i] == c) return 100 + i;
  return c < 0x80 ? c : 400 + c;  // control characters first, bytes above ASCII last
}

bool IsUpper(unsigned char c) {
  return c >= 'A' && c <= 'Z';
}

}  // namespace

int OsCompareText(const char* name, int length, const char* other) {
  int otherLength = 0;
  while (other[otherLength])
    ++otherLength;
  int shorter = length < otherLength ? length : otherLength;
  for (int i = 0; i < shorter; ++i) {
    int a = Weight(static_cast<unsigned char>(name[i]));
    int b = Weight(static_cast<unsigned char>(other[i]));
    if (a != b) return a < b ? -1 : 1;
  }
  if (length != otherLength) return length < otherLength ? -1 : 1;
  // Alike but for case: the first difference decides, lower case first.
  for (int i = 0; i < length; ++i) {
    bool a = IsUpper(static_cast<unsigned char>(name[i]));
    bool b = IsUpper(static_cast<unsigned char>(other[i]));
    if (a != b) return a ? 1 : -1;
  }
  return 0;
}
