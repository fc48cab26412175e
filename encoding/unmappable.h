// Which characters of a line a file encoding cannot hold: the ones its conversion would replace
// by a substitute (the code page's default character, Johab's fallback code).
#pragma once

// The number of characters of `units` (a surrogate pair counts once) that `encoding` cannot
// represent, and in `first` the unit index of the first of them (-1 when there is none). UTF-8
// and UTF-16 represent everything; in Johab and EUC-KR a surrogate, paired or not, has no code.
int CountUnmappable(const char16_t* units, int count, int encoding, int* first);
