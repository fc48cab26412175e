// Platform service: the order in which the system sorts ANSI text (lstrcmpA on Windows). Letters
// compare alike in either case first, lower case before upper case only when all else is equal;
// digits come before letters, and punctuation (the underscore among it) before digits. The POSIX
// build imitates that order for the ASCII characters, so that a sorted table is the same on both.
#pragma once

// `name` (`length` bytes, not terminated) against the terminated `other`: negative, 0 or
// positive.
int OsCompareText(const char* name, int length, const char* other);
