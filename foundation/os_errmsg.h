// Platform service: the system's message text for a Win32 error code.
#pragma once

// The text in the system's code page, exactly as the system gives it (line end included), cut to
// size - 1 bytes and terminated. Returns its length, 0 when the system has no text for the code,
// or -1 when this system keeps no Win32 message table.
int OsGetErrorText(unsigned code, char* buffer, int size);
