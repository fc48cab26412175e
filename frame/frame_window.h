// The MDI frame window: its class, its creation and its window procedure.
#pragma once
#include <windows.h>

extern const wchar_t kFrameClassName[];

bool RegisterFrameClass(HINSTANCE instance);
// Creates the frame (caption "Quill", 1024 x 768); null on failure.
HWND CreateFrameWindow(HINSTANCE instance);
