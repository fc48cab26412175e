// One line of text (without its line end) between a file encoding and UTF-16.
//
// Every conversion has a counting form that returns how many units or bytes the conversion will
// produce, so that the caller can allocate first. The decoders write at most targetSize units and
// return the number written; the encoders write at most targetSize bytes.
#pragma once

// Johab: a byte below 0x80 other than 0x01 is one unit; 0x01 and bytes of 0x80 or more lead a
// pair. A pair whose second byte is a blank or a tab is U+3000; a lead at the very end is a space.
int JohabLineToUtf16Count(const char* bytes, int count);
int JohabLineToUtf16(const char* bytes, int count, char16_t* target, int targetSize);

// EUC-KR through the Korean code page 949. The count treats 0x01 and bytes of 0x80 or more as
// leads of two-byte characters; the code page reads 0x80 and 0xFF as characters of their own, so
// the conversion can give more units than the count: a caller that must not lose any sizes its
// target by the byte count, which is never exceeded.
int EucKrLineToUtf16Count(const char* bytes, int count);
int EucKrLineToUtf16(const char* bytes, int count, char16_t* target, int targetSize);

// UTF-8 of 1 to 6 bytes a sequence, by the lead-byte rule of the UTF-8 test. A four-byte
// sequence of U+10000 ... U+10FFFF is a surrogate pair; a value beyond that is U+FFFD. A byte that
// cannot lead stands for itself as one unit, and so does the lead of a sequence that is cut short
// or spells ASCII the long way (the bytes behind it are then read on their own). A pair that does
// not fit the target whole is left out.
int Utf8LineToUtf16Count(const char* bytes, int count);
int Utf8LineToUtf16(const char* bytes, int count, char16_t* target, int targetSize);

// Units below 128 are one byte, every other unit a pair, high byte first (0xD9 0x31 when it has
// no Johab code; a surrogate pair is one such character). A byte is written only while more than 1
// byte of the target remains, a pair only while more than 2 remain; the result is NUL-terminated.
// Returns the bytes written.
int Utf16LineToJohabCount(const char16_t* units, int count);
int Utf16LineToJohab(const char16_t* units, int count, char* target, int targetSize);

// EUC-KR through the Korean code page 949, unmappable units as the code page's default character
// and a surrogate pair as one.
int Utf16LineToEucKrCount(const char16_t* units, int count);
int Utf16LineToEucKr(const char16_t* units, int count, char* target, int targetSize);

// 1, 2 or 3 bytes a unit, 4 for a surrogate pair; a lone surrogate is encoded as a unit of its
// own (3 bytes), so that it reads back as it was.
int Utf16LineToUtf8Count(const char16_t* units, int count);
int Utf16LineToUtf8(const char16_t* units, int count, char* target, int targetSize);
