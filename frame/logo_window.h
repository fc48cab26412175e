// The logo window: the program's picture with its version, centred on the frame, briefly at
// start-up and on demand from the about command.
#pragma once
#include <windows.h>

bool RegisterLogoClass(HINSTANCE instance);
// Command 44. The picture is the cached copy of the server's, refreshed when the server has a
// newer one; when neither gives one, the about command shows the built-in picture and the
// start-up showing (`atStartup`) shows nothing.
void ShowLogoWindow(HWND frame, bool atStartup);

// The lParam of the command 44 that the frame's start-up timer posts.
constexpr LPARAM kLogoAtStartup = 0x4C4F474F;
