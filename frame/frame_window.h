// The MDI frame window: its class, its creation and its window procedure.
#pragma once
#include <windows.h>

extern const wchar_t kFrameClassName[];

bool RegisterFrameClass(HINSTANCE instance);
// Creates the frame (caption "Quill", 1024 x 768); null on failure.
HWND CreateFrameWindow(HINSTANCE instance);

// Opens `path` in an editor window: activates a window that shows it already, reuses an empty
// unmodified new document, or makes a new window. `style` is a conversion-style name or null;
// `importCode` an encoding to read the file in (0 detects it) and `importOption` its tab width
// (0 asks when the file holds tabs).
HWND OpenOrActivateDocument(const char* path, const char* style, int importCode, int importOption);

// Menu state: mode 0 nothing open, 1 a document, 2 the project window; see PlanMenuState.
void UpdateMenuState(int mode, bool quick);
