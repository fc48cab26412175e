// Case conversion of a word, for the editor's upper- and lower-case commands.
#pragma once

void UpperCaseWord(char16_t* units, int count);
void LowerCaseWord(char16_t* units, int count);
