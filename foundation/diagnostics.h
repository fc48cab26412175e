// Outlets for internal faults that the user is not meant to handle: the log file DEBUG.TXT in the
// temporary folder, a hex dump into it, and screen notes painted straight onto the screen.
#pragma once

// Formats a line (the caller writes "\r\n") into at most 1024 bytes and appends it to the log.
void DebugLog(const char* format, ...);

// Appends `count` bytes at `address` to the log, 16 to a line: "%04X:" offset, " %02X" bytes
// ("-%02X" for the ninth), blanks up to column 56, the bytes as characters, "\r\n".
void DebugDump(const void* address, int count);

// Paints a formatted line (at most 260 bytes) at the left edge of the screen, each note 16 pixels
// below the last, starting again at the top when the screen height is reached.
void ScreenNote(const char* format, ...);

// One line of the hex dump for up to 16 bytes; `line` holds at least 80 bytes. Returns its length.
int FormatDumpLine(const unsigned char* bytes, int count, unsigned offset, char* line);

// Full path of DEBUG.TXT; false when the temporary folder is unknown.
bool GetDebugLogPath(char* path, int size);

// Where screen notes are painted; the screen itself unless a test puts a surface of its own.
struct ScreenSurface {
  int (*height)();
  void (*draw)(int x, int y, const char* text);
};
// Installs `surface` (null restores the screen), moves the line position to the top, and returns
// the surface that was installed before.
const ScreenSurface* SetScreenSurface(const ScreenSurface* surface);
