// The declaration text normaliser: how macro definitions and declarations are stored and shown.
#pragma once
#include <cstddef>

struct TextBuffer;

// Appends `text` tidied: line markers ("#12 " after a line break) dropped, runs of blanks made one
// blank, none at either end, none before ; , ) ] or after ( [. With `blocks`, braces put each
// member on a line of its own, indented by four blanks a level:
//   "{ int x; int y; }" -> "{\r\n    int x;\r\n    int y;\r\n}"
void NormalizeDeclText(const char* text, size_t length, bool blocks, TextBuffer* out);
