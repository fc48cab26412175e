// The options property sheet: fonts, colours and other editor options.
#pragma once
#include <windows.h>

// Shows the sheet over `frame`, opening on the page used last; true when the user confirmed it.
bool ShowOptionsSheet(HWND frame);
// Whether the sheet last confirmed stored another language under "Config"/"Language".
bool OptionsChangedLanguage();
