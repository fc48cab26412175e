// What core code asks of the user interface: a message box, and whatever a subsystem adds beside
// it. Quill.exe installs the window implementation at start-up; tests and quill-tool install
// scripted answers and a record of what was asked. Without a host every question is answered
// with the cancelling button and the text goes to the diagnostic log.
#pragma once

// The message-box styles and answers core code uses, with their Win32 values.
enum : unsigned {
  kMbOk = 0x0,
  kMbOkCancel = 0x1,
  kMbYesNoCancel = 0x3,
  kMbYesNo = 0x4,
  kMbIconStop = 0x10,
  kMbIconQuestion = 0x20,
  kMbIconExclamation = 0x30,
  kMbIconInformation = 0x40,
};
enum : int { kIdOk = 1, kIdCancel = 2, kIdYes = 6, kIdNo = 7 };

struct UiHost {
  // Shows `text` (internal form) with kMb* `flags` and returns the answer (kId*).
  int (*message)(void* context, const char* text, unsigned flags);
  void* context;
};

// Installs `host` (kept by pointer; null restores the default) and returns the previous one.
const UiHost* SetUiHost(const UiHost* host);

// A message box through the installed host.
int HostMessage(const char* text, unsigned flags);
// The same with string `id` formatted by FormatText with one argument, as the program's messages
// with a file name or a number do ("'%s' 파일이 ..."); `argument` may be null for texts without
// one.
int HostMessageId(int id, unsigned flags, const char* argument);
int HostMessageIdNumber(int id, unsigned flags, int number);
// The same for a message that names a file: the path (internal form) is shown with the system's
// separators, as window titles show it.
int HostMessagePath(int id, unsigned flags, const char* path);
