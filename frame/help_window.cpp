#include "frame/help_window.h"

#include <richedit.h>

#include <cstring>

#include "foundation/diagnostics.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/modeless.h"
#include "foundation/placement.h"
#include "foundation/settings.h"
#include "frame/frame_owners.h"
#include "frame/frame_state.h"
#include "resources/resource.h"

namespace {

// What the rich-edit control reads its text from.
struct TextSource {
  const char* text;
  size_t size;
  size_t done;
};

DWORD CALLBACK ReadSource(DWORD_PTR cookie, LPBYTE buffer, LONG wanted, LONG* given) {
  TextSource* source = reinterpret_cast<TextSource*>(cookie);
  size_t left = source->size - source->done;
  size_t count = left < static_cast<size_t>(wanted) ? left : static_cast<size_t>(wanted);
  memcpy(buffer, source->text + source->done, count);
  source->done += count;
  *given = static_cast<LONG>(count);
  return 0;
}

void StreamIn(HWND control, const char* text, size_t size) {
  TextSource source = {text, size, 0};
  EDITSTREAM stream = {reinterpret_cast<DWORD_PTR>(&source), 0, ReadSource};
  SendMessageW(control, EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&stream));
}

// "LANGUAGE/<name>.Help.rtf" beside the program for a set language, else the built-in text.
void LoadHelpText(HWND control) {
  char language[kLanguageNameSize];
  if (ReadText(kConfigSection, "Language", language, sizeof language, "") > 0 &&
      IsLanguageName(language)) {
    char path[800];
    int length = ProgramFolder(path, sizeof path);
    FormatStr(path + length, sizeof path - length, "/LANGUAGE/%s.Help.rtf", language);
    size_t size = 0;
    if (char* text = ReadWholeFile(path, &size, kOwnerHelpText)) {
      StreamIn(control, text, size);
      FreeMem(text);
      return;
    }
  }
  HINSTANCE instance = g_frame.instance;
  HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(IDR_HELP_TEXT), L"RTF");
  HGLOBAL loaded = found ? LoadResource(instance, found) : nullptr;
  const char* text = loaded ? static_cast<const char*>(LockResource(loaded)) : nullptr;
  if (text) StreamIn(control, text, SizeofResource(instance, found));
}

void FillClient(HWND dialog) {
  RECT client;
  GetClientRect(dialog, &client);
  MoveWindow(GetDlgItem(dialog, IDC_HELP_TEXT), 0, 0, client.right, client.bottom, TRUE);
}

INT_PTR CALLBACK HelpProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  PlaceDialog(dialog, message, true, true);
  switch (message) {
    case WM_INITDIALOG: {
      HWND text = GetDlgItem(dialog, IDC_HELP_TEXT);
      FillClient(dialog);
      LoadHelpText(text);
      // The focus set here, not by the dialog manager, which would select the whole text.
      SetFocus(text);
      SendMessageW(text, EM_SETSEL, 0, 0);
      return FALSE;
    }
    case WM_SIZE:
      FillClient(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
        DestroyWindow(dialog);
        return TRUE;
      }
      break;
    case WM_DESTROY:
      RemoveModelessDialog(dialog);
      if (g_frame.helpWindow == dialog) g_frame.helpWindow = nullptr;
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void ShowHelpWindow(HWND frame) {
  if (!g_frame.richEdit) {
    g_frame.richEdit = LoadLibraryW(L"RICHED20.DLL");
    if (!g_frame.richEdit) {
      ScreenNote("RICHED20.DLL load Fail!!!");
      return;
    }
  }
  if (g_frame.helpWindow) {
    if (IsIconic(g_frame.helpWindow)) ShowWindow(g_frame.helpWindow, SW_RESTORE);
    SetForegroundWindow(g_frame.helpWindow);
    return;
  }
  HWND dialog =
      CreateDialogParamW(g_frame.instance, MAKEINTRESOURCEW(IDD_HELP), frame, HelpProc, 0);
  if (!dialog) return;
  if (!RegisterModelessDialog(dialog)) {
    DestroyWindow(dialog);
    return;
  }
  g_frame.helpWindow = dialog;
  ShowWindow(dialog, SW_SHOW);
}
