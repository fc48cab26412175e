// Platform service: the system's upper and lower case of UTF-16 units, in place.
#pragma once

void OsUpperCase(char16_t* units, int count);
void OsLowerCase(char16_t* units, int count);
