#include "encoding/text_encoding.h"

#include <cstring>

namespace {
const char* const kEncodingNames[] = {"JOHAP", "EUCKR", "UTF8", "UTF16"};
}  // namespace

const char* EncodingName(int encoding) {
  if (encoding < JOHAP || encoding > UTF16) return nullptr;
  return kEncodingNames[encoding - JOHAP];
}

int ParseEncodingName(const char* text, int defaultEncoding) {
  if (!text) return defaultEncoding;
  for (int encoding = JOHAP; encoding <= UTF16; ++encoding) {
    if (strcmp(text, kEncodingNames[encoding - JOHAP]) == 0) return encoding;
  }
  return defaultEncoding;
}
