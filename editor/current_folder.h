// The process's current folder in the internal form (UTF-8, '/' separators).
#pragma once

// Writes at most size - 1 bytes and a terminator; the length, 0 on failure ("" then).
int CurrentFolder(char* buffer, int size);
