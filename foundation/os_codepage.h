// Platform service: conversion between UTF-16 and the system's code pages.
#pragma once

// Code page numbers as Windows knows them. 0 is the system's ANSI code page (949 on a Korean
// Windows; UTF-8 on POSIX, where file names and terminals are UTF-8).
enum : unsigned { kCodePageSystem = 0, kCodePageKorean = 949, kCodePageUtf8 = 65001 };

// Both work like the Win32 calls: lengths in units, no terminator added, a zero destination size
// asks for the length needed, and 0 means failure (or empty input).
int OsWideToCodePage(unsigned codePage, const char16_t* source, int sourceLength, char* target,
                     int targetSize);
int OsCodePageToWide(unsigned codePage, const char* source, int sourceLength, char16_t* target,
                     int targetSize);

#ifdef _WIN32
// UTF-8 path to a terminated UTF-16 path with '\' separators; false when it does not fit.
bool OsUtf8PathToWide(const char* path, wchar_t* target, int targetSize);
#endif
