// The character classes of C text on UTF-16 units, shared by the colouring and the word commands.
#pragma once

// _ $ A-Z a-z 0-9
bool IsIdentifierChar(char16_t unit);
// ASCII punctuation 0x21-0x2F, 0x3A-0x40, 0x5B-0x60, 0x7B-0x7E, except _ and $.
bool IsSeparator(char16_t unit);
// Any unit of 33 or more that is not a separator: Hangul and every other unit of 128 or more too.
bool IsWordChar(char16_t unit);
// Any unit below 33.
bool IsBlank(char16_t unit);
bool IsDecimalDigit(char16_t unit);
bool IsHexDigit(char16_t unit);
