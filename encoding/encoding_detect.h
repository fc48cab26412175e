// The tests that tell a file's encoding from its data, and the order the loader asks them in.
#pragma once

// At least 90 % (rounded) of the units are below 127 or Hangul syllables; false when empty.
bool DetectUtf16(const char16_t* units, int count);
// Every sequence is well formed by the lead-byte rule (up to 6 bytes); data that ends inside a
// sequence passes, and so does empty data.
bool DetectUtf8(const char* bytes, int count);
// Every byte of 0x80 or more is a valid lead with a valid trail behind it; the end after a lead
// passes, and so does empty data.
bool DetectEucKr(const char* bytes, int count);
// At least 25 % of the two-byte pairs look like Johab. The box-drawing pairs that DOS screens
// are full of do not count either way.
bool DetectJohab(const char* bytes, int count);
// For data that passes both the EUC-KR and the Johab test, whether Johab is clearly the better
// reading. Passing the Johab test already puts a quarter of the pairs outside the KS X 1001 area
// (both bytes 0xA1-0xFE), where EUC-KR text keeps nearly all of its pairs; on top of that every
// pair must be a Johab code, nine in ten of them everyday characters (a syllable among the 2,350
// of KS X 1001, a letter, a symbol or a hanja), and there must be at least four pairs. Text made
// of the code page's extra syllables reads as rare or malformed Johab and stays EUC-KR.
bool PrefersJohab(const char* bytes, int count);

// The encoding that opening the data would choose: a byte-order mark first (its length goes to
// *bomLength, else 0), then the four tests in order, then `unrecognised` (1 ... 4). Data that
// passes the EUC-KR test is Johab only when it also passes the Johab test and PrefersJohab.
int DetectTextEncoding(const char* bytes, int count, int unrecognised, int* bomLength);
