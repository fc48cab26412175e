// Process-wide state of the frame: one instance, plain globals, owned by the user-interface thread.
#pragma once
#include <windows.h>

#include "foundation/path.h"

#include "frame/status_text.h"

struct FrameState {
  HINSTANCE instance;
  HWND frame;
  HWND mdiClient;
  HWND statusBar;
  HWND projectWindow;  // the project MDI child, when a project is open
  HWND helpWindow;
  HMODULE richEdit;
  bool startedWithFile;
  char* settingsPath;  // internal form (owner 1006)
  char commandPath[kPathSize];
  HBITMAP buildBitmaps[3];  // commands 124, 125, 126
  StatusMemory status;
  StatusMemory formatStatus;  // part 3: encoding and line ends
  int optionsStartPage;
};

extern FrameState g_frame;

// Height of the status bar under the MDI client.
constexpr int kStatusBarHeight = 21;

// The active MDI child, or null.
HWND ActiveChild();
