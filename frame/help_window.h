// The help window: a modeless dialog showing the help text of the current language, or the
// program's own when no language is set.
#pragma once
#include <windows.h>

// Command 43: loads the rich-edit library once, then opens the window or brings the open one
// back from its icon to the front.
void ShowHelpWindow(HWND frame);
