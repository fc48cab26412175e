// The Korean code page 949 of the POSIX backend; os_codepage's calls use it for kCodePageKorean.
// Same contract as those calls: a zero target size counts, a short target fails with 0.
#pragma once

int KoreanToWide(const char* source, int sourceLength, char16_t* target, int targetSize);
int WideToKorean(const char16_t* source, int sourceLength, char* target, int targetSize);
