// Process-wide state of the frame: one instance, plain globals, owned by the user-interface thread.
#pragma once
#include <windows.h>

struct FrameState {
  HINSTANCE instance;
  HWND frame;
  HWND mdiClient;
  HWND statusBar;
};

extern FrameState g_frame;

// Height of the status bar under the MDI client.
constexpr int kStatusBarHeight = 21;
