// Platform service: text painted straight onto the screen, without a window.
#pragma once

// Height of the primary screen in pixels.
int OsScreenHeight();
// Draws UTF-8 text with the screen's device context at (x, y). On POSIX the text goes to stderr.
void OsDrawScreenText(int x, int y, const char* text);
