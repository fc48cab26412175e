// The entry routine: start-up in order, the message loop, and shutdown.
// The socket header must come before the Windows header.
#include <winsock2.h>

#include <windows.h>

#include <commctrl.h>

#include "foundation/diagnostics.h"
#include "foundation/language.h"
#include "foundation/library.h"
#include "foundation/modeless.h"
#include "foundation/settings.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/window_host.h"
#include "resources/resource.h"

namespace {

// Each message goes first to the open modeless tool dialogs, then to the accelerators, then to
// the MDI system keys, and only when none of them takes it is it translated and dispatched.
int RunMessageLoop(HWND frame, HACCEL accelerators) {
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    bool taken = false;
    for (int i = 0; i < kMaxModelessDialogs && !taken; ++i) {
      HWND dialog = static_cast<HWND>(ModelessDialogAt(i));
      taken = dialog && IsDialogMessageW(dialog, &msg);
    }
    if (taken) continue;
    if (accelerators && TranslateAcceleratorW(frame, accelerators, &msg)) continue;
    if (g_frame.mdiClient && TranslateMDISysAccel(g_frame.mdiClient, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return static_cast<int>(msg.wParam);
}

// A language named in the settings replaces the Korean texts of menus, dialogs and messages.
void LoadConfiguredLanguage() {
  char language[33 * 3];
  if (ReadText(kConfigSection, "Language", language, sizeof language, "") > 0) {
    LoadLanguage(language);
  }
}

bool StartSockets() {
  WSADATA data;
  return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

}  // namespace

int QuillMain(HINSTANCE instance, HINSTANCE previous, const wchar_t* commandLine, int show) {
  (void)previous;
  (void)commandLine;
  int exitCode = 0;
  InitKLib(instance, instance);
  InstallWindowHost();
  InitCommonControls();
  bool sockets = StartSockets();
  LoadConfiguredLanguage();

  if (!RegisterFrameClass(instance)) {
    ScreenNote("Failed To Register The Window Class.");
  } else if (HWND frame = CreateFrameWindow(instance); !frame) {
    ScreenNote("MDI Frame Window Creation Failed.");
  } else {
    ShowWindow(frame, show);
    UpdateWindow(frame);
    HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_QUILL));
    exitCode = RunMessageLoop(frame, accelerators);
  }

  CloseKLib();
  if (sockets) WSACleanup();
  return exitCode;
}

// The process entry: no C runtime start-up, only the main routine and the end of the process.
extern "C"
#ifdef __i386__
    __attribute__((force_align_arg_pointer))
#endif
    void
    _start() {
  STARTUPINFOW startup;
  GetStartupInfoW(&startup);
  int show = (startup.dwFlags & STARTF_USESHOWWINDOW) ? startup.wShowWindow : SW_SHOWDEFAULT;
  ExitProcess(
      static_cast<UINT>(QuillMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), show)));
}
