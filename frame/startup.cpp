// The entry routine: start-up in order, the message loop, and shutdown.
// The socket header must come before the Windows header.
#include <winsock2.h>

#include <windows.h>

#include <commctrl.h>

#include "editor/colour_settings.h"
#include "foundation/diagnostics.h"
#include "foundation/language.h"
#include "foundation/library.h"
#include "foundation/memory.h"
#include "foundation/modeless.h"
#include "foundation/os_path.h"
#include "foundation/path.h"
#include "foundation/settings.h"
#include "frame/command_line.h"
#include "frame/crash_filter.h"
#include "frame/display_objects.h"
#include "frame/editor_child.h"
#include "frame/frame_owners.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/logo_window.h"
#include "frame/project_window.h"
#include "frame/update_check.h"
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

// Keeps the settings file's path in the internal form: the document list is written into it.
char* CopySettingsPath() {
  char module[kPathSize];
  if (!OsGetModulePath(module, sizeof module)) return nullptr;
  char* path = static_cast<char*>(AllocMem(sizeof module, kOwnerSettingsCopy));
  if (path && !MakeProfilePath(module, "ini", path, sizeof module)) {
    FreeMem(path);
    path = nullptr;
  }
  return path;
}

// The one argument of the command line, and whether it is a document rather than a project.
void ExamineCommandLine(const wchar_t* commandLine) {
  g_frame.commandPath[0] = '\0';
  g_frame.startedWithFile = false;
  if (!commandLine) return;
  int size = WideCharToMultiByte(CP_UTF8, 0, commandLine, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return;
  char* line = static_cast<char*>(AllocMem(static_cast<size_t>(size), kOwnerSessionScratch));
  if (!line) return;
  WideCharToMultiByte(CP_UTF8, 0, commandLine, -1, line, size, nullptr, nullptr);
  g_frame.startedWithFile = ParseCommandLine(line, g_frame.commandPath);
  FreeMem(line);
}

void Shutdown(bool sockets) {
  StopUpdateCheck();
  if (g_frame.richEdit) FreeLibrary(g_frame.richEdit);
  g_frame.richEdit = nullptr;
  FreeMem(g_frame.settingsPath);
  g_frame.settingsPath = nullptr;
  DeleteDisplayObjects();
  CloseKLib();
  if (sockets) WSACleanup();
}

}  // namespace

int QuillMain(HINSTANCE instance, HINSTANCE previous, const wchar_t* commandLine, int show) {
  (void)previous;
  int exitCode = 0;
  InstallCrashReport();
  InitKLib(instance, instance);
  InstallWindowHost();
  InitCommonControls();
  bool sockets = StartSockets();
  g_frame.settingsPath = CopySettingsPath();
  LoadConfiguredLanguage();
  LoadColours();
  CreateDisplayObjects();
  ExamineCommandLine(commandLine);
  RegisterLogoClass(instance);

  if (!RegisterFrameClass(instance)) {
    ScreenNote("Failed To Register The Window Class.");
    Shutdown(sockets);
    return 0;
  }
  RegisterEditorChildClass(instance);
  RegisterProjectChildClass(instance);
  if (HWND frame = CreateFrameWindow(instance); !frame) {
    ScreenNote("MDI Frame Window Creation Failed.");
  } else {
    ShowWindow(frame, show);
    UpdateWindow(frame);
    // In the background, once the frame is there to hear the answer.
    if (!g_frame.startedWithFile) StartUpdateCheck(frame);
    HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_QUILL));
    exitCode = RunMessageLoop(frame, accelerators);
  }
  Shutdown(sockets);
  return exitCode;
}

// The process entry: no C runtime start-up, only the main routine and the end of the process.
// The runtime's fix-up of references to data in system DLLs; without the C runtime's start-up
// code nobody else applies it.
extern "C" void _pei386_runtime_relocator(void);

extern "C"
#ifdef __i386__
    __attribute__((force_align_arg_pointer))
#endif
    void
    _start() {
  _pei386_runtime_relocator();
  STARTUPINFOW startup;
  GetStartupInfoW(&startup);
  int show = (startup.dwFlags & STARTF_USESHOWWINDOW) ? startup.wShowWindow : SW_SHOWDEFAULT;
  ExitProcess(
      static_cast<UINT>(QuillMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), show)));
}
