// The file encodings of a document and their names.
#pragma once

// A document's file encoding; ENCODING_DETECT asks the loader to find it out.
enum TextEncoding : unsigned char {
  ENCODING_DETECT = 0,
  JOHAP = 1,
  EUCKR = 2,
  UTF8 = 3,
  UTF16 = 4,
};

// "JOHAP", "EUCKR", "UTF8" or "UTF16" (the texts of the encoding lists, in order); null for
// anything else.
const char* EncodingName(int encoding);

// 1 ... 4 for one of the four names exactly as written, the caller's default for anything else.
int ParseEncodingName(const char* text, int defaultEncoding);
