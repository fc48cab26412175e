// Platform service: the program's string table. Quill.exe carries it as a resource; other builds
// have it compiled in. Both come from resources/strings.inc.
#pragma once

// The text of string `id` into `buffer` (terminated, cut to size - 1 units); its length, or 0 when
// the table has no such string.
int OsLoadString(unsigned id, char16_t* buffer, int size);
